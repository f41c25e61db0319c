#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Programs/vantorbar/MachineFacts.h"

namespace vantor {

enum class Verdict : std::uint8_t { fine, limited, missing };

struct Finding {
    std::string_view name;
    Verdict verdict = Verdict::fine;
    std::string what;    // what there is, or what it means that there is none
    std::string remedy;  // "" where there is nothing to do
};

/// Goes through all that the program asks of a machine. `missing` is what it can't do without.
std::vector<Finding> examine(const MachineFacts& facts);

/// The findings as text, a line or two each, with line ends.
std::string report(std::span<const Finding> findings);

/// The program's exit status: 0, or 1 where something is missing.
int statusOf(std::span<const Finding> findings) noexcept;

}  // namespace vantor
