#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vantor {

/// A property-list value: what preferences, samples in dictionary form, query arguments and
/// daemon messages are made of. A number keeps its kind and width, because whoever binds it to
/// a statement or writes it to a file goes by them.
/// Errors: the readings never fail: what can't be read that way is false, 0 or "".
class PropertyValue {
public:
    using Array = std::vector<PropertyValue>;
    using Dictionary = std::map<std::string, PropertyValue, std::less<>>;
    using Data = std::vector<std::byte>;
    /// Seconds since 1970.
    struct Date {
        double seconds = 0;
        bool operator==(const Date&) const = default;
    };
    using Storage = std::variant<std::monostate, bool, std::int32_t, std::uint32_t, std::int64_t,
                                 std::uint64_t, float, double, std::string, Data, Date, Array,
                                 Dictionary>;

    PropertyValue() noexcept = default;
    PropertyValue(bool value) : storage_(value) {}
    PropertyValue(std::int32_t value) : storage_(value) {}
    PropertyValue(std::uint32_t value) : storage_(value) {}
    PropertyValue(std::int64_t value) : storage_(value) {}
    PropertyValue(std::uint64_t value) : storage_(value) {}
    PropertyValue(long long value) : storage_(static_cast<std::int64_t>(value)) {}
    PropertyValue(float value) : storage_(value) {}
    PropertyValue(double value) : storage_(value) {}
    PropertyValue(const char* value) : storage_(std::string(value)) {}
    PropertyValue(std::string_view value) : storage_(std::string(value)) {}
    PropertyValue(std::string value) : storage_(std::move(value)) {}
    PropertyValue(Data value) : storage_(std::move(value)) {}
    PropertyValue(Date value) : storage_(value) {}
    PropertyValue(Array value) : storage_(std::move(value)) {}
    PropertyValue(Dictionary value) : storage_(std::move(value)) {}

    const Storage& storage() const noexcept { return storage_; }
    template <class Kind>
    const Kind* as() const noexcept {
        return std::get_if<Kind>(&storage_);
    }

    bool isNothing() const noexcept { return storage_.index() == 0; }
    explicit operator bool() const noexcept { return !isNothing(); }
    /// True for a boolean, too: a boolean is a number here.
    bool isNumber() const noexcept { return storage_.index() >= 1 && storage_.index() <= 7; }
    const std::string* text() const noexcept { return as<std::string>(); }
    const Array* array() const noexcept { return as<Array>(); }
    const Dictionary* dictionary() const noexcept { return as<Dictionary>(); }

    /// A number is true unless 0; a text when it begins with Y, y, T, t or a digit from 1 to 9,
    /// behind blanks, one sign and zeros.
    bool boolValue() const noexcept;
    /// A floating figure is cut towards zero, and to the ends of the range; a text reads as its
    /// leading integer.
    std::int64_t integerValue() const noexcept;
    float floatValue() const noexcept { return static_cast<float>(doubleValue()); }
    /// A text reads as its leading number.
    double doubleValue() const noexcept;
    /// A text as it stands, a number in its shortest decimal form, else "".
    std::string stringValue() const;

    /// Same kind, same value: the integer 1 isn't the double 1.
    bool operator==(const PropertyValue&) const = default;

private:
    Storage storage_;
};

/// Wraps a double in a number value.
inline PropertyValue NSDouble(double value) { return {value}; }
/// Wraps an integer in a number value.
inline PropertyValue NSInt(std::int64_t value) { return {value}; }
/// Whether a number's text form is `text`, so that a key may be a number or a text.
bool isEqualToString(const PropertyValue& number, std::string_view text);

}  // namespace vantor
