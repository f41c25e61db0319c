#include "Platform/Linux/LinuxThisProcess.h"

#include <array>
#include <cerrno>

#include <pthread.h>
#include <unistd.h>

namespace vantor {

std::string LinuxThisProcess::name() const { return program_invocation_short_name; }

std::uint32_t LinuxThisProcess::threadID() const noexcept {
    return static_cast<std::uint32_t>(gettid());
}

std::string LinuxThisProcess::threadName() const {
    std::array<char, 16> name{};  // the kernel keeps no more
    // A name that can't be had stays empty.
    pthread_getname_np(pthread_self(), name.data(), name.size());
    return name.data();
}

}  // namespace vantor
