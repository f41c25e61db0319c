#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "Foundation/UTF8.h"
#include "Platform/Linux/ProcessNames.h"
#include "Platform/Linux/ProcessTexts.h"

namespace vantor {
namespace {

void require(bool holds) noexcept {
    if (!holds)
        std::abort();
}

bool isWithin(std::string_view part, std::string_view whole) noexcept {
    return part.empty() || (part.data() >= whole.data() &&
                            part.data() + part.size() <= whole.data() + whole.size());
}

void readTexts(std::string_view stat, std::string_view cmdline, std::string_view cgroup) {
    const auto process = processIn(stat);
    require(!process || process->nameSize <= process->nameBytes.size());
    require(isWithin(applicationPathIn(cgroup), cgroup));
    const std::string kernelName(process ? process->name() : stat.substr(0, 15));
    for (const std::string_view name : {std::string_view(kernelName), std::string_view("python3"),
                                        std::string_view("bash"), std::string_view("perl5.36")}) {
        const std::string shown =
            readable(knownName({.kernelName = name, .cmdline = cmdline, .exe = cgroup}));
        require(validUTF8Prefix(shown).size() == shown.size() && shown.size() <= 128);
        require(shown.find('\n') == shown.npos);
    }
}

}  // namespace
}  // namespace vantor

/// The input holds three texts with form feeds between them: "stat", "cmdline" and "cgroup".
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t first = std::min(input.find('\f'), input.size());
    const std::size_t second = std::min(input.find('\f', first + 1), input.size());
    vantor::readTexts(input.substr(0, first), input.substr(first, second - first),
                      input.substr(second));
    return 0;
}
