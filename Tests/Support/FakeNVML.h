#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <string>
#include <string_view>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {

// What a library may be made of.
namespace nvml_functions {

/// What a library for these tests begins with. It writes what is asked of it into a file beside
/// it, a letter a call.
inline constexpr const char* kPreface = R"(
#include <fcntl.h>
#include <unistd.h>
static void note(char letter) {
    int file = open(JOURNAL, O_WRONLY | O_CREAT | O_APPEND, 0600);
    if (write(file, &letter, 1) < 0) {}
    close(file);
}
struct Memory { unsigned long long total, free, used; };
struct Utilization { unsigned gpu, memory; };
#define API extern "C" __attribute__((visibility("default")))
)";

inline constexpr const char* kInit = "API int nvmlInit_v2() { note('i'); return 0; }\n";
inline constexpr const char* kShutdown = "API int nvmlShutdown() { note('s'); return 0; }\n";
inline constexpr const char* kHandle = R"(
API int nvmlDeviceGetHandleByPciBusId_v2(const char* address, void** device) {
    static int one;
    *device = &one;
    return address[6] == '1' ? 0 : 6;
}
)";
inline constexpr const char* kMemory = R"(
API int nvmlDeviceGetMemoryInfo(void*, Memory* memory) {
    *memory = {1000, 600, 400};
    return 0;
}
)";
inline constexpr const char* kRates = R"(
API int nvmlDeviceGetUtilizationRates(void*, Utilization* rates) {
    note('r');
    *rates = {37, 5};
    return 0;
}
)";

}  // namespace nvml_functions

/// Builds libraries that stand for that of NVIDIA's driver, and tells what was asked of them.
class FakeNVML {
public:
    /// A library with these functions; "" where it can't be built.
    std::string library(std::initializer_list<std::string_view> functions) {
        const auto source = folder_ / "nvml.cpp", file = folder_ / "libnvidia-ml.so.1";
        std::ofstream(source) << nvml_functions::kPreface
                              << fmt::format("{}", fmt::join(functions, ""));
        const std::string command = fmt::format("c++ -shared -fPIC -DJOURNAL='\"{}\"' -o {} {}",
                                                journal().string(), file.string(), source.string());
        return std::system(command.c_str()) == 0 ? file.string() : "";
    }
    /// A letter for each call that notes itself.
    std::string calls() const {
        std::ifstream stream(journal());
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }

private:
    std::filesystem::path journal() const { return folder_ / "journal"; }

    TemporaryFolder folder_;
};

}  // namespace vantor::test
