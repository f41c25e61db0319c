#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/PropertyValue.h"

namespace vantor::inline VANTOR_MODULE {

/// How dates are stored as texts: Greenwich time, English names.
/// Shape:  runs of the letters y M d H m s S are year, month, day, hour, minute, second and
///         fraction of a second, as many digits as letters at least; "yy" is the year within its
///         century, MMM and MMMM are the month's short and full name. Text between single quotes
///         and all else stands for itself; two single quotes are one.
/// Errors: a text that doesn't fit is no date; a date beyond the years 0 to 9999 is "".
class SQLDateFormat {
public:
    explicit SQLDateFormat(std::string_view pattern);

    std::string stringFromDate(PropertyValue::Date date) const;
    /// Fields that the format lacks are those of 1970-01-01 00:00:00.
    std::optional<PropertyValue::Date> dateFromString(std::string_view text) const;

private:
    struct Piece {
        char letter = 0;  // 0 for `literal`
        std::size_t width = 0;
        std::string literal;
    };

    void addLiteral(std::string_view text);

    std::vector<Piece> pieces_;
};

}  // namespace vantor::inline VANTOR_MODULE
