#include "Platform/Linux/LinuxMachineIdentity.h"

#include <algorithm>
#include <cstddef>

#include "Platform/Linux/KernelText.h"

namespace vantor {
namespace {

constexpr std::size_t kMostBytes = 127;

std::string_view trimmed(std::string_view text) noexcept {
    constexpr std::string_view kBlanks = " \t\r\n\v\f";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

}  // namespace

std::optional<std::string> LinuxMachineIdentity::modelIdentifier() const {
    const auto name = trimmedTextOf(files_.sys / "class/dmi/id/product_name");
    return name ? modelIdentifierOf(*name) : std::nullopt;
}

std::optional<std::string> modelIdentifierOf(std::string_view productName) {
    const std::string_view name = trimmed(trimmed(productName).substr(0, kMostBytes));
    const bool printable = std::ranges::all_of(name, [](char c) { return c >= ' ' && c <= '~'; });
    return printable && !name.empty() ? std::optional<std::string>(name) : std::nullopt;
}

}  // namespace vantor
