#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "Foundation/PropertyValue.h"

namespace vantor::simulated {

/// Objects keep their keys in the order of the file.
using ScenarioJSON = nlohmann::ordered_json;

/// A value of a scenario with the place where it stands, for the reader to take apart. What
/// doesn't fit throws ScenarioError with that place. How JSON is kept is no affair of who reads
/// it: its header takes seconds to compile.
class ScenarioValue {
public:
    ScenarioValue(const ScenarioJSON& value, std::string place);

    const ScenarioJSON& json() const noexcept { return value_; }
    const std::string& place() const noexcept { return place_; }
    [[noreturn]] void fail(std::string_view reason) const;

    bool isNull() const noexcept;
    bool isText() const noexcept;
    bool isArray() const noexcept;
    bool isObject() const noexcept;
    bool boolean() const;
    double number() const;
    double numberAtLeast(double least) const;
    std::int64_t integer(std::int64_t least, std::int64_t most) const;
    const std::string& text() const;
    PropertyValue propertyValue(int depth = 0) const;
    /// The elements of an array; `count` of them unless it is kAnyCount.
    static constexpr std::size_t kAnyCount = static_cast<std::size_t>(-1);
    std::vector<ScenarioValue> elements(std::size_t count = kAnyCount) const;
    /// The values of an object by their keys, in the order of the file.
    std::vector<std::pair<std::string, ScenarioValue>> members() const;

private:
    const ScenarioJSON& value_;
    std::string place_;
};

/// An object of a scenario. Whoever reads it asks for the keys that it knows, then calls
/// `finish`, which doesn't allow any other.
class ScenarioObject {
public:
    explicit ScenarioObject(ScenarioValue value);

    /// The value under `key`, or nothing.
    std::optional<ScenarioValue> find(std::string_view key);
    ScenarioValue require(std::string_view key);
    /// Calls `read` with the value under `key`, if there is one.
    template <class Read>
    void with(std::string_view key, Read&& read) {
        if (const auto value = find(key))
            read(*value);
    }
    void finish() const;
    const ScenarioValue& value() const noexcept { return value_; }

private:
    ScenarioValue value_;
    std::set<std::string, std::less<>> known_;
};

}  // namespace vantor::simulated
