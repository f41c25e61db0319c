#include "Foundation/YearlyZoneRule.h"

#include <chrono>

namespace vantor {
namespace {

using std::chrono::days, std::chrono::sys_days;
using Change = YearlyZoneRule::Change;

constexpr std::int64_t kDay = 86'400;
constexpr int kMostHours = 167;  // a change may fall up to a week away

bool isDigit(char letter) noexcept { return letter >= '0' && letter <= '9'; }
bool isLetter(char letter) noexcept {
    return (letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z');
}

/// Reads a rule from the front. Once something is missing, everything after it is, too.
class RuleReader {
public:
    explicit RuleReader(std::string_view text) noexcept : rest_(text) {}

    bool failed() const noexcept { return failed_; }
    bool atEnd() const noexcept { return rest_.empty(); }
    char next() const noexcept { return rest_.empty() ? '\0' : rest_.front(); }
    bool take(char letter) noexcept {
        if (next() != letter)
            return false;
        rest_.remove_prefix(1);
        return true;
    }
    void expect(char letter) noexcept { failed_ = !take(letter) || failed_; }

    int number(int least, int most) noexcept {
        int value = 0, digits = 0;
        for (; isDigit(next()) && digits < 4; ++digits, rest_.remove_prefix(1))
            value = value * 10 + (next() - '0');
        failed_ = failed_ || digits == 0 || value < least || value > most;
        return value;
    }

    /// "CET", "<+0330>"
    void name() noexcept {
        std::size_t length = 0;
        if (take('<')) {
            while (isLetter(next()) || isDigit(next()) || next() == '+' || next() == '-')
                rest_.remove_prefix(1), ++length;
            expect('>');
        } else {
            while (isLetter(next()))
                rest_.remove_prefix(1), ++length;
        }
        failed_ = failed_ || length == 0;
    }

    /// "-3:30", "+167:00:00"
    std::int32_t seconds() noexcept {
        const bool negative = next() == '-';
        if (negative || next() == '+')
            rest_.remove_prefix(1);
        std::int32_t value = number(0, kMostHours) * 3600;
        if (take(':'))
            value += number(0, 59) * 60;
        if (take(':'))
            value += number(0, 59);
        return negative ? -value : value;
    }

    /// ",M3.5.0/3", ",J60", ",59"
    Change change() noexcept {
        Change change;
        expect(',');
        if (take('M')) {
            change.kind = Change::Kind::weekday;
            change.month = number(1, 12);
            expect('.');
            change.week = number(1, 5);
            expect('.');
            change.day = number(0, 6);
        } else if (take('J')) {
            change.kind = Change::Kind::dayWithoutLeapDay;
            change.day = number(1, 365) - 1;
        } else {
            change.day = number(0, 365);
        }
        if (take('/'))
            change.seconds = seconds();
        return change;
    }

private:
    std::string_view rest_;
    bool failed_ = false;
};

sys_days dayOf(const Change& change, std::chrono::year year) noexcept {
    using namespace std::chrono;
    const sys_days newYear = year / January / 1;
    if (change.kind == Change::Kind::day)
        return newYear + days(change.day);
    if (change.kind == Change::Kind::dayWithoutLeapDay)
        return newYear + days(change.day + (year.is_leap() && change.day >= 59 ? 1 : 0));
    const weekday day(static_cast<unsigned>(change.day));
    const auto month = year / std::chrono::month(static_cast<unsigned>(change.month));
    return change.week == 5 ? sys_days(month / day[last])
                            : sys_days(month / day[static_cast<unsigned>(change.week)]);
}

/// By a clock that shows GMT.
std::int64_t timeOf(const Change& change, std::chrono::year year, std::int32_t offset) noexcept {
    return dayOf(change, year).time_since_epoch().count() * kDay + change.seconds - offset;
}

std::chrono::year yearOf(std::int64_t time) noexcept {
    constexpr std::int64_t kFarthest = 10'000 * 366 * kDay;  // dates beyond are nobody's
    const std::int64_t near = time > kFarthest ? kFarthest : time < -kFarthest ? -kFarthest : time;
    const auto day = std::chrono::floor<days>(std::chrono::seconds(near));
    return std::chrono::year_month_day(sys_days(day)).year();
}

}  // namespace

std::optional<YearlyZoneRule> YearlyZoneRule::fromText(std::string_view text) {
    RuleReader reader(text);
    YearlyZoneRule rule;
    reader.name();
    rule.offset_ = -reader.seconds();  // told as what to add for GMT
    if (!reader.failed() && !reader.atEnd()) {
        reader.name();
        const bool hasOffset = !reader.failed() && reader.next() != ',';
        const std::int32_t offset = hasOffset ? -reader.seconds() : rule.offset_ + 3600;
        const Change toSummer = reader.change();
        rule.summer_ = Summer{offset, {toSummer, reader.change()}};
    }
    if (reader.failed() || !reader.atEnd())
        return std::nullopt;
    return rule;
}

std::int32_t YearlyZoneRule::secondsFromGMT(std::int64_t time) const noexcept {
    if (!summer_)
        return offset_;
    const auto year = yearOf(time + offset_);
    const std::int64_t begin = timeOf(summer_->changes[0], year, offset_);
    const std::int64_t end = timeOf(summer_->changes[1], year, summer_->offset);
    // South of the equator the summer goes over the turn of the year.
    const bool isSummer =
        begin < end ? begin <= time && time < end : !(end <= time && time < begin);
    return isSummer ? summer_->offset : offset_;
}

}  // namespace vantor
