#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantor::inline VANTOR_MODULE {

struct ManufactureDate {
    std::int64_t year = 0;  // two digits; one digit in serial numbers of 11 characters
    std::int64_t week = 0;
    bool operator==(const ManufactureDate&) const = default;
};

/// When the machine of that serial number was made; nothing where the number doesn't tell.
std::optional<ManufactureDate> manufactureDateOf(std::string_view serial);

/// What tells production variants apart: the last 3 characters of 11, else the last 4; "" where
/// there are fewer than 5.
std::string serialTail(std::string_view serial);

}  // namespace vantor::inline VANTOR_MODULE
