#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "Foundation/PropertyValue.h"

namespace vantor::inline VANTOR_MODULE {

/// One write that waits for the next commit of its file.
/// Shape:  the statement with "%@" in place of the table's name, that name, and the values of the
///         "?" parameters in order. Up to kInlineValues numbers need no heap.
struct HistoryRecord {
    static constexpr std::size_t kInlineValues = 8;
    static constexpr std::size_t kLongestTableName = 47;

    /// `statementFormat` is a literal; a longer table name than the longest is cut.
    HistoryRecord(std::string_view statementFormat, std::string_view tableName) noexcept;

    void add(PropertyValue value);
    std::string_view format() const noexcept { return format_; }
    std::string_view table() const noexcept { return {table_.data(), tableSize_}; }
    std::span<const PropertyValue> args() const noexcept;

private:
    std::string_view format_;
    std::array<char, kLongestTableName> table_{};
    std::size_t tableSize_ = 0;
    std::size_t count_ = 0;
    std::array<PropertyValue, kInlineValues> few_;
    std::vector<PropertyValue> many_;  // all of them, once they are more than a few
};

}  // namespace vantor::inline VANTOR_MODULE
