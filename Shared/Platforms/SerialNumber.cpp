#include "Shared/Platforms/SerialNumber.h"

#include <cstddef>

#include "Foundation/NumberText.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::size_t kShortForm = 11;
constexpr std::string_view kPlaceholder = "System";
constexpr std::int64_t kFirstCodedYear = 10;   // two codes a year
constexpr std::int64_t kSecondHalfWeeks = 27;  // not 26

constexpr std::string_view kYearCodes = "CDFGHJKLMNPQRSTVXY";
// The week is the place of its code here, counted from 1.
constexpr std::string_view kWeekCodes = "123456789CDFGHJKLMNPQRTVWXY";

std::optional<std::int64_t> placeOf(char code, std::string_view codes) noexcept {
    const auto place = codes.find(code);
    return place == codes.npos ? std::nullopt : std::optional(static_cast<std::int64_t>(place));
}

ManufactureDate dateOfShortForm(std::string_view serial) {
    const std::string_view week = serial[3] == '0' ? serial.substr(4, 1) : serial.substr(3, 2);
    return {leadingInteger(serial.substr(2, 1)), leadingInteger(week)};
}

}  // namespace

std::optional<ManufactureDate> manufactureDateOf(std::string_view serial) {
    if (serial.size() < kShortForm || serial.find(kPlaceholder) != serial.npos)
        return std::nullopt;
    if (serial.size() == kShortForm)
        return dateOfShortForm(serial);
    const auto halfYear = placeOf(serial[3], kYearCodes);
    const auto week = placeOf(serial[4], kWeekCodes);
    if (!halfYear || !week)
        return std::nullopt;
    const bool isSecondHalf = *halfYear % 2 == 1;
    return ManufactureDate{kFirstCodedYear + *halfYear / 2,
                           *week + 1 + (isSecondHalf ? kSecondHalfWeeks : 0)};
}

std::string serialTail(std::string_view serial) {
    if (serial.size() < 5)
        return "";
    const std::size_t length = serial.size() == kShortForm ? 3 : 4;
    return std::string(serial.substr(serial.size() - length));
}

}  // namespace vantor::inline VANTOR_MODULE
