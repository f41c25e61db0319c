#include "Platform/Simulated/ScenarioObject.h"

#include <utility>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "Platform/Simulated/Scenario.h"

namespace vantor::simulated {
namespace {

constexpr int kDeepestValue = 64;

}  // namespace

ScenarioError::ScenarioError(std::string_view place, std::string_view reason)
    : std::runtime_error(place.empty() ? std::string(reason)
                                       : fmt::format("{}: {}", place, reason)) {}

ScenarioValue::ScenarioValue(const ScenarioJSON& value, std::string place)
    : value_(value), place_(std::move(place)) {}

void ScenarioValue::fail(std::string_view reason) const { throw ScenarioError(place_, reason); }

bool ScenarioValue::isNull() const noexcept { return value_.is_null(); }

bool ScenarioValue::isText() const noexcept { return value_.is_string(); }

bool ScenarioValue::isArray() const noexcept { return value_.is_array(); }

bool ScenarioValue::isObject() const noexcept { return value_.is_object(); }

bool ScenarioValue::boolean() const {
    if (!value_.is_boolean())
        fail("expected true or false");
    return value_.get<bool>();
}

double ScenarioValue::number() const {
    if (!value_.is_number())
        fail("expected a number");
    return value_.get<double>();
}

double ScenarioValue::numberAtLeast(double least) const {
    const double value = number();
    if (value < least)
        fail(fmt::format("expected a number of at least {}", least));
    return value;
}

std::int64_t ScenarioValue::integer(std::int64_t least, std::int64_t most) const {
    const bool fits = value_.is_number_integer() &&
                      !(value_.is_number_unsigned() && value_.get<std::uint64_t>() > INT64_MAX);
    const std::int64_t value = fits ? value_.get<std::int64_t>() : 0;
    if (!fits || value < least || value > most)
        fail(fmt::format("expected an integer from {} to {}", least, most));
    return value;
}

const std::string& ScenarioValue::text() const {
    if (!value_.is_string())
        fail("expected a text");
    return value_.get_ref<const std::string&>();
}

std::vector<ScenarioValue> ScenarioValue::elements(std::size_t count) const {
    if (!value_.is_array())
        fail("expected an array");
    if (count != kAnyCount && value_.size() != count)
        fail(fmt::format("expected {} elements, found {}", count, value_.size()));
    std::vector<ScenarioValue> elements;
    for (std::size_t index = 0; index < value_.size(); ++index)
        elements.emplace_back(value_[index], fmt::format("{}/{}", place_, index));
    return elements;
}

std::vector<std::pair<std::string, ScenarioValue>> ScenarioValue::members() const {
    if (!value_.is_object())
        fail("expected an object");
    std::vector<std::pair<std::string, ScenarioValue>> members;
    for (const auto& [key, value] : value_.items())
        members.emplace_back(key, ScenarioValue(value, fmt::format("{}/{}", place_, key)));
    return members;
}

PropertyValue ScenarioValue::propertyValue(int depth) const {
    if (depth > kDeepestValue)
        fail("nested too deeply");
    if (value_.is_boolean())
        return value_.get<bool>();
    if (value_.is_number_unsigned() && value_.get<std::uint64_t>() > INT64_MAX)
        return value_.get<std::uint64_t>();
    if (value_.is_number_integer())
        return value_.get<std::int64_t>();
    if (value_.is_number())
        return value_.get<double>();
    if (value_.is_string())
        return text();
    if (value_.is_array()) {
        PropertyValue::Array array;
        for (const ScenarioValue& element : elements())
            array.push_back(element.propertyValue(depth + 1));
        return array;
    }
    if (!value_.is_object())
        fail("null is no value");
    PropertyValue::Dictionary dictionary;
    for (const auto& [key, value] : members())
        dictionary[key] = value.propertyValue(depth + 1);
    return dictionary;
}

ScenarioObject::ScenarioObject(ScenarioValue value) : value_(std::move(value)) {
    if (!value_.isObject())
        value_.fail("expected an object");
}

std::optional<ScenarioValue> ScenarioObject::find(std::string_view key) {
    known_.emplace(key);
    const auto entry = value_.json().find(key);
    if (entry == value_.json().end())
        return std::nullopt;
    return ScenarioValue(*entry, value_.place().empty()
                                     ? std::string(key)
                                     : fmt::format("{}/{}", value_.place(), key));
}

ScenarioValue ScenarioObject::require(std::string_view key) {
    if (auto value = find(key))
        return *value;
    value_.fail(fmt::format("\"{}\" is missing", key));
}

void ScenarioObject::finish() const {
    for (const auto& [key, value] : value_.json().items())
        if (!known_.contains(key))
            value_.fail(fmt::format("unknown key \"{}\"", key));
}

}  // namespace vantor::simulated
