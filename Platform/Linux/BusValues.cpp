#include "Platform/Linux/BusValues.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include <systemd/sd-bus.h>

namespace vantor {
namespace {

// The daemon's largest response is far below these.
constexpr std::size_t kMostBytes = 1024 * 1024;
constexpr std::size_t kMostElements = 4096;  // of one array
constexpr int kDeepest = 16;
constexpr std::size_t kValueBytes = 16;  // what each value counts for, beside its text or data

bool append(sd_bus_message& message, const std::string& text) {
    // A text ends for the bus at its first zero.
    return text.find('\0') == text.npos && sd_bus_message_append(&message, "s", text.c_str()) >= 0;
}

bool appendVariant(sd_bus_message& message, const PropertyValue& value);

/// What is between the opening and the closing of a container.
template <class Contents>
bool appendContainer(sd_bus_message& message, char type, const char* signature,
                     Contents&& contents) {
    return sd_bus_message_open_container(&message, type, signature) >= 0 && contents() &&
           sd_bus_message_close_container(&message) >= 0;
}

bool append(sd_bus_message& message, const PropertyValue::Array& array) {
    return appendContainer(message, SD_BUS_TYPE_ARRAY, "v", [&] {
        bool isGood = true;
        for (const PropertyValue& element : array)
            isGood = isGood && appendVariant(message, element);
        return isGood;
    });
}

bool append(sd_bus_message& message, const PropertyValue::Dictionary& dictionary) {
    return appendContainer(message, SD_BUS_TYPE_ARRAY, "{sv}", [&] {
        bool isGood = true;
        for (const auto& entry : dictionary)
            isGood =
                isGood && appendContainer(message, SD_BUS_TYPE_DICT_ENTRY, "sv", [&] {
                    return append(message, entry.first) && appendVariant(message, entry.second);
                });
        return isGood;
    });
}

bool append(sd_bus_message& message, const PropertyValue::Data& data) {
    return sd_bus_message_append_array(&message, SD_BUS_TYPE_BYTE, data.data(), data.size()) >= 0;
}

template <class Contents>
bool appendVariantOf(sd_bus_message& message, const char* signature, const Contents& contents) {
    return appendContainer(message, SD_BUS_TYPE_VARIANT, signature,
                           [&] { return append(message, contents); });
}

bool appendVariant(sd_bus_message& message, const PropertyValue& value) {
    const auto number = [&](const char* signature, auto figure) {
        return sd_bus_message_append(&message, "v", signature, figure) >= 0;
    };
    if (const auto* const truth = value.as<bool>())
        return number("b", static_cast<int>(*truth));
    if (const auto* const integer = value.as<std::int32_t>())
        return number("i", *integer);
    if (const auto* const integer = value.as<std::uint32_t>())
        return number("u", *integer);
    if (const auto* const integer = value.as<std::int64_t>())
        return number("x", *integer);
    if (const auto* const integer = value.as<std::uint64_t>())
        return number("t", *integer);
    if (value.isNumber())
        return number("d", value.doubleValue());
    if (const auto* const text = value.text())
        return appendVariantOf(message, "s", *text);
    if (const auto* const data = value.as<PropertyValue::Data>())
        return appendVariantOf(message, "ay", *data);
    if (const auto* const array = value.array())
        return appendVariantOf(message, "av", *array);
    if (const auto* const dictionary = value.dictionary())
        return appendVariantOf(message, "a{sv}", *dictionary);
    return false;
}

/// Reads values until something is wrong with them; false is for good.
class ValueReader {
public:
    explicit ValueReader(sd_bus_message& message) noexcept : message_(message) {}

    bool dictionary(PropertyValue::Dictionary& into, int depth = 0) {
        return container(SD_BUS_TYPE_ARRAY, "{sv}", [&] {
            return elements([&] {
                return container(SD_BUS_TYPE_DICT_ENTRY, "sv",
                                 [&] { return field(into, depth + 1); });
            });
        });
    }

    /// Every argument, for its size.
    bool all() {
        return elements([&] {
            PropertyValue ignored;
            return value(ignored, 0);
        });
    }

private:
    /// The next value; one of no kind of ours is passed over and stays nothing.
    bool value(PropertyValue& into, int depth) {
        char type = 0;
        const char* contents = nullptr;
        if (depth > kDeepest || !charge(kValueBytes) ||
            sd_bus_message_peek_type(&message_, &type, &contents) <= 0)
            return false;
        switch (type) {
        case SD_BUS_TYPE_BOOLEAN:
            return number<int, bool>(into, type);
        case SD_BUS_TYPE_BYTE:
            return number<std::uint8_t, std::uint32_t>(into, type);
        case SD_BUS_TYPE_INT16:
            return number<std::int16_t, std::int32_t>(into, type);
        case SD_BUS_TYPE_UINT16:
            return number<std::uint16_t, std::uint32_t>(into, type);
        case SD_BUS_TYPE_INT32:
            return number<std::int32_t, std::int32_t>(into, type);
        case SD_BUS_TYPE_UINT32:
            return number<std::uint32_t, std::uint32_t>(into, type);
        case SD_BUS_TYPE_INT64:
            return number<std::int64_t, std::int64_t>(into, type);
        case SD_BUS_TYPE_UINT64:
            return number<std::uint64_t, std::uint64_t>(into, type);
        case SD_BUS_TYPE_DOUBLE:
            return number<double, double>(into, type);
        case SD_BUS_TYPE_STRING:
            return text(into);
        case SD_BUS_TYPE_VARIANT:
            return container(type, contents, [&] { return value(into, depth + 1); });
        case SD_BUS_TYPE_ARRAY:
            return array(into, contents, depth);
        default:
            return skip();
        }
    }

    bool array(PropertyValue& into, const char* contents, int depth) {
        const std::string_view signature = contents;
        if (signature == "y")
            return data(into);
        if (signature == "{sv}") {
            PropertyValue::Dictionary entries;
            const bool isGood = dictionary(entries, depth);
            into = std::move(entries);
            return isGood;
        }
        if (signature.starts_with('{'))
            return skip();
        PropertyValue::Array all;
        const bool isGood = container(SD_BUS_TYPE_ARRAY, contents, [&] {
            return elements([&] { return value(all.emplace_back(), depth + 1); });
        });
        into = std::move(all);
        return isGood;
    }

    bool field(PropertyValue::Dictionary& into, int depth) {
        const char* key = nullptr;
        PropertyValue read;
        if (sd_bus_message_read_basic(&message_, SD_BUS_TYPE_STRING, &key) <= 0 ||
            !charge(std::string_view(key).size()) || !value(read, depth))
            return false;
        if (read)
            into.insert_or_assign(key, std::move(read));
        return true;
    }

    template <class Wire, class Kind>
    bool number(PropertyValue& into, char type) {
        Wire figure{};
        if (sd_bus_message_read_basic(&message_, type, &figure) <= 0)
            return false;
        into = static_cast<Kind>(figure);
        return true;
    }

    bool text(PropertyValue& into) {
        const char* letters = nullptr;
        if (sd_bus_message_read_basic(&message_, SD_BUS_TYPE_STRING, &letters) <= 0 ||
            !charge(std::string_view(letters).size()))
            return false;
        into = letters;
        return true;
    }

    bool data(PropertyValue& into) {
        const void* bytes = nullptr;
        std::size_t size = 0;
        if (sd_bus_message_read_array(&message_, SD_BUS_TYPE_BYTE, &bytes, &size) < 0 ||
            !charge(size))
            return false;
        const auto* const first = static_cast<const std::byte*>(bytes);
        into = PropertyValue::Data(first, first + size);
        return true;
    }

    bool skip() { return sd_bus_message_skip(&message_, nullptr) >= 0; }

    template <class Contents>
    bool container(char type, const char* signature, Contents&& contents) {
        return sd_bus_message_enter_container(&message_, type, signature) > 0 && contents() &&
               sd_bus_message_exit_container(&message_) >= 0;
    }

    template <class Element>
    bool elements(Element&& element) {
        std::size_t count = 0;
        int atEnd = 0;
        while ((atEnd = sd_bus_message_at_end(&message_, 0)) == 0)
            if (++count > kMostElements || !element())
                return false;
        return atEnd > 0;
    }

    bool charge(std::size_t bytes) noexcept {
        if (bytes > bytesLeft_)
            return false;
        bytesLeft_ -= bytes;
        return true;
    }

    sd_bus_message& message_;
    std::size_t bytesLeft_ = kMostBytes;
};

}  // namespace

bool appendBusArgument(sd_bus_message& message, const PropertyValue& value) {
    if (const auto* const integer = value.as<std::int64_t>())
        return sd_bus_message_append(&message, "x", *integer) >= 0;
    if (const auto* const text = value.text())
        return append(message, *text);
    const auto* const array = value.array();
    return array != nullptr && append(message, *array);
}

std::optional<PropertyValue::Dictionary> readBusDictionary(sd_bus_message& message) {
    PropertyValue::Dictionary dictionary;
    if (sd_bus_message_has_signature(&message, "a{sv}") <= 0 ||
        !ValueReader(message).dictionary(dictionary))
        return std::nullopt;
    return dictionary;
}

bool isWithinBusBounds(sd_bus_message& message) {
    const bool isWithin = ValueReader(message).all();
    return sd_bus_message_rewind(&message, 1) >= 0 && isWithin;
}

}  // namespace vantor
