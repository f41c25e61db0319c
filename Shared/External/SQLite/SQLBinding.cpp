#include "Shared/External/SQLite/SQLBinding.h"

#include <string>
#include <string_view>
#include <type_traits>

#include <sqlite3.h>

#include "Shared/External/SQLite/SQLDateFormat.h"

namespace vantor::inline VANTOR_MODULE {
namespace {

std::string description(const PropertyValue& value, const std::string& indent);

std::string description(const PropertyValue::Array& array, const std::string& indent) {
    std::string text = "(";
    for (const PropertyValue& value : array)
        text +=
            (text == "(" ? "\n" : ",\n") + indent + "    " + description(value, indent + "    ");
    return text + "\n" + indent + ")";
}

std::string description(const PropertyValue::Dictionary& dictionary, const std::string& indent) {
    std::string text = "{";
    for (const auto& [key, value] : dictionary)
        text += "\n" + indent + "    " + key + " = " + description(value, indent + "    ") + ";";
    return text + "\n" + indent + "}";
}

/// A value as people read it, in as many lines as it takes; what follows the first is indented.
std::string description(const PropertyValue& value, const std::string& indent) {
    if (value.array() != nullptr)
        return description(*value.array(), indent);
    if (value.dictionary() != nullptr)
        return description(*value.dictionary(), indent);
    return value.stringValue();
}

/// One parameter of a statement. What the bind calls answer isn't read: a value too large for
/// SQLite leaves its parameter NULL, and goes unnoticed like any other value that can't be kept.
class Parameter {
public:
    Parameter(sqlite3_stmt* statement, int column, BoundBytes bytes, const SQLDateFormat* dates)
        : statement_(statement), column_(column), bytes_(bytes), dates_(dates) {}

    void operator()(std::monostate) const { sqlite3_bind_null(statement_, column_); }
    void operator()(bool value) const { sqlite3_bind_int(statement_, column_, value ? 1 : 0); }
    void operator()(std::int32_t value) const { sqlite3_bind_int(statement_, column_, value); }
    void operator()(std::uint32_t value) const { sqlite3_bind_int64(statement_, column_, value); }
    void operator()(std::int64_t value) const { sqlite3_bind_int64(statement_, column_, value); }
    void operator()(std::uint64_t value) const {
        sqlite3_bind_int64(statement_, column_, static_cast<sqlite3_int64>(value));
    }
    void operator()(float value) const { sqlite3_bind_double(statement_, column_, value); }
    void operator()(double value) const { sqlite3_bind_double(statement_, column_, value); }
    void operator()(const std::string& value) const { bindText(value, kept()); }
    void operator()(const PropertyValue::Data& value) const {
        // A null pointer would bind NULL in place of a blob without bytes.
        const void* first = value.empty() ? static_cast<const void*>("") : value.data();
        sqlite3_bind_blob64(statement_, column_, first, value.size(), kept());
    }
    void operator()(PropertyValue::Date value) const {
        if (dates_ != nullptr)
            bindText(dates_->stringFromDate(value), SQLITE_TRANSIENT);
        else
            sqlite3_bind_double(statement_, column_, value.seconds);
    }
    void operator()(const PropertyValue::Array& value) const {
        bindText(description(value, ""), SQLITE_TRANSIENT);
    }
    void operator()(const PropertyValue::Dictionary& value) const {
        bindText(description(value, ""), SQLITE_TRANSIENT);
    }

private:
    sqlite3_destructor_type kept() const {
        return bytes_ == BoundBytes::copied ? SQLITE_TRANSIENT : SQLITE_STATIC;
    }
    void bindText(const std::string& text, sqlite3_destructor_type destructor) const {
        sqlite3_bind_text64(statement_, column_, text.data(), text.size(), destructor, SQLITE_UTF8);
    }

    sqlite3_stmt* statement_;
    int column_;
    BoundBytes bytes_;
    const SQLDateFormat* dates_;
};

}  // namespace

void bindObject(const PropertyValue& value, int toColumn, sqlite3_stmt* inStatement,
                BoundBytes bytes, const SQLDateFormat* dates) {
    std::visit(Parameter(inStatement, toColumn, bytes, dates), value.storage());
}

namespace {

int bindDictionary(const PropertyValue::Dictionary& dictionary, sqlite3_stmt* statement,
                   BoundBytes bytes, const SQLDateFormat* dates) {
    int bound = 0;
    for (const auto& [key, value] : dictionary) {
        const int column = sqlite3_bind_parameter_index(statement, (":" + key).c_str());
        if (column <= 0)
            continue;
        bindObject(value, column, statement, bytes, dates);
        ++bound;
    }
    return bound;
}

}  // namespace

int bindArguments(const SQLArguments& arguments, sqlite3_stmt* inStatement, BoundBytes bytes,
                  const SQLDateFormat* dates) {
    if (arguments.dictionary != nullptr)
        return bindDictionary(*arguments.dictionary, inStatement, bytes, dates);
    const int parameters = sqlite3_bind_parameter_count(inStatement);
    int bound = 0;
    for (const auto values : {arguments.array, arguments.list})
        for (std::size_t index = 0; index < values.size() && bound < parameters; ++index)
            bindObject(values[index], ++bound, inStatement, bytes, dates);
    return bound;
}

}  // namespace vantor::inline VANTOR_MODULE
