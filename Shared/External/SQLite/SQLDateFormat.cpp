#include "Shared/External/SQLite/SQLDateFormat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <iterator>

#include <fmt/format.h>

namespace vantor::inline VANTOR_MODULE {
namespace {

constexpr std::string_view kLetters = "yMdHmsS";
constexpr std::size_t kShortName = 3, kFractionDigits = 9;
constexpr std::array<std::string_view, 12> kMonths{"January",   "February", "March",    "April",
                                                   "May",       "June",     "July",     "August",
                                                   "September", "October",  "November", "December"};
constexpr double kFirstSecond = -62'167'219'200, kPastLastSecond = 253'402'300'800;
constexpr double kNanoseconds = 1e9;

struct DateFields {
    int year = 1970, month = 1, day = 1, hour = 0, minute = 0, second = 0, nanosecond = 0;

    /// The field that `letter` stands for.
    template <class Fields>
    static auto& of(Fields& fields, char letter) noexcept {
        switch (letter) {
        case 'y':
            return fields.year;
        case 'M':
            return fields.month;
        case 'd':
            return fields.day;
        case 'H':
            return fields.hour;
        case 'm':
            return fields.minute;
        case 's':
            return fields.second;
        default:
            return fields.nanosecond;
        }
    }
};

DateFields fieldsOf(PropertyValue::Date date) {
    using namespace std::chrono;
    const double whole = std::floor(date.seconds);
    const sys_seconds time{seconds(static_cast<std::int64_t>(whole))};
    const auto midnight = floor<days>(time);
    const year_month_day day(midnight);
    const hh_mm_ss clock(time - midnight);
    return {static_cast<int>(day.year()),
            static_cast<int>(static_cast<unsigned>(day.month())),
            static_cast<int>(static_cast<unsigned>(day.day())),
            static_cast<int>(clock.hours().count()),
            static_cast<int>(clock.minutes().count()),
            static_cast<int>(clock.seconds().count()),
            static_cast<int>((date.seconds - whole) * kNanoseconds)};
}

std::optional<PropertyValue::Date> dateOf(const DateFields& fields) {
    using namespace std::chrono;
    const year_month_day day{year(fields.year), month(static_cast<unsigned>(fields.month)),
                             std::chrono::day(static_cast<unsigned>(fields.day))};
    if (!day.ok() || fields.hour > 23 || fields.minute > 59 || fields.second > 60)
        return std::nullopt;
    const auto time =
        sys_days(day) + hours(fields.hour) + minutes(fields.minute) + seconds(fields.second);
    return PropertyValue::Date{static_cast<double>(time.time_since_epoch().count()) +
                               fields.nanosecond / kNanoseconds};
}

std::string_view monthName(std::size_t month, std::size_t width) {
    return width == kShortName ? kMonths[month].substr(0, kShortName) : kMonths[month];
}

/// Reads the name at the start of `text` off it.
bool takeMonth(std::string_view& text, std::size_t width, int& month) {
    for (std::size_t index = 0; index < kMonths.size(); ++index) {
        const std::string_view name = monthName(index, width);
        if (!text.starts_with(name))
            continue;
        text.remove_prefix(name.size());
        month = static_cast<int>(index) + 1;
        return true;
    }
    return false;
}

/// Reads up to `mostDigits` digits off the start of `text`; answers how many there were.
std::size_t takeNumber(std::string_view& text, std::size_t mostDigits, int& number) {
    const std::string_view digits = text.substr(0, mostDigits);
    if (digits.starts_with('-'))
        return 0;
    const char* const end =
        std::from_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    const auto taken = static_cast<std::size_t>(end - digits.data());
    text.remove_prefix(taken);
    return taken;
}

/// `fraction` has `digits` digits behind the point.
int nanosecondsOf(int fraction, std::size_t digits) {
    for (; digits < kFractionDigits; ++digits)
        fraction *= 10;
    return fraction;
}

/// The year nearest to our time that ends so.
int fullYear(int withinCentury) { return withinCentury + (withinCentury < 50 ? 2000 : 1900); }

}  // namespace

SQLDateFormat::SQLDateFormat(std::string_view pattern) {
    bool quoted = false;
    while (!pattern.empty()) {
        const char letter = pattern.front();
        const auto end = std::min(pattern.find_first_not_of(letter), pattern.size());
        std::size_t taken = 1;
        if (pattern.starts_with("''")) {
            addLiteral("'");
            taken = 2;
        } else if (letter == '\'') {
            quoted = !quoted;
        } else if (!quoted && kLetters.find(letter) != kLetters.npos) {
            pieces_.push_back({letter, end, {}});
            taken = end;
        } else {
            addLiteral(pattern.substr(0, 1));
        }
        pattern.remove_prefix(taken);
    }
}

void SQLDateFormat::addLiteral(std::string_view text) {
    if (pieces_.empty() || pieces_.back().letter != 0)
        pieces_.emplace_back();
    pieces_.back().literal += text;
}

std::string SQLDateFormat::stringFromDate(PropertyValue::Date date) const {
    if (!(date.seconds >= kFirstSecond && date.seconds < kPastLastSecond))
        return {};
    const DateFields fields = fieldsOf(date);
    std::string text;
    for (const Piece& piece : pieces_) {
        const int value = DateFields::of(fields, piece.letter);
        if (piece.letter == 0)
            text += piece.literal;
        else if (piece.letter == 'M' && piece.width >= kShortName)
            text += monthName(static_cast<std::size_t>(value) - 1, piece.width);
        else if (piece.letter == 'S')
            text += fmt::format("{:09}", value).substr(0, piece.width);
        else
            fmt::format_to(std::back_inserter(text), "{:0{}}",
                           piece.letter == 'y' && piece.width == 2 ? value % 100 : value,
                           piece.width);
    }
    return text;
}

std::optional<PropertyValue::Date> SQLDateFormat::dateFromString(std::string_view text) const {
    DateFields fields;
    for (std::size_t index = 0; index < pieces_.size(); ++index) {
        const Piece& piece = pieces_[index];
        if (piece.letter == 0) {
            if (!text.starts_with(piece.literal))
                return std::nullopt;
            text.remove_prefix(piece.literal.size());
            continue;
        }
        int& field = DateFields::of(fields, piece.letter);
        if (piece.letter == 'M' && piece.width >= kShortName) {
            if (!takeMonth(text, piece.width, field))
                return std::nullopt;
            continue;
        }
        // Where another number follows at once, only the width tells where this one ends.
        const bool abuts = index + 1 < pieces_.size() && pieces_[index + 1].letter != 0;
        const std::size_t digits = takeNumber(text, abuts ? piece.width : kFractionDigits, field);
        if (digits == 0)
            return std::nullopt;
        if (piece.letter == 'S')
            field = nanosecondsOf(field, digits);
        else if (piece.letter == 'y' && piece.width == 2 && digits == 2)
            field = fullYear(field);
    }
    return text.empty() ? dateOf(fields) : std::nullopt;
}

}  // namespace vantor::inline VANTOR_MODULE
