// What somebody who took the daemon's name may send in place of a response.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include <fuzzer/FuzzedDataProvider.h>
#include <systemd/sd-bus.h>

#include "Platform/Linux/BusValues.h"
#include "Tests/Support/LooseMessages.h"

namespace {

constexpr int kDeepest = 24;
constexpr const char* kSignatures[] = {
    "b", "y",  "n",  "q",  "i",  "u",     "x",      "t",     "d",     "s",    "o",     "g",
    "v", "as", "ay", "av", "ai", "a{sv}", "aa{sv}", "a{ss}", "a{iv}", "(si)", "a(sd)", "aai"};

/// Writes values of whatever kinds the bytes ask for.
class Writer {
public:
    Writer(sd_bus_message& message, FuzzedDataProvider& bytes) : message_(message), bytes_(bytes) {}

    /// One complete value of that signature.
    void value(const std::string& signature, int depth = 0) {
        switch (signature.front()) {
        case 'v':
            return variant(depth);
        case 'a':
            return array(signature.substr(1), depth);
        case '{':
            return parts('e', signature.substr(1, signature.size() - 2), depth);
        case '(':
            return parts('r', signature.substr(1, signature.size() - 2), depth);
        case 's':
        case 'o':
        case 'g':
            return text(signature.front());
        default:
            number(signature.front());
        }
    }

private:
    void variant(int depth) {
        const std::string signature = depth > kDeepest ? "y" : bytes_.PickValueInArray(kSignatures);
        sd_bus_message_open_container(&message_, 'v', signature.c_str());
        value(signature, depth + 1);
        sd_bus_message_close_container(&message_);
    }

    void array(const std::string& element, int depth) {
        sd_bus_message_open_container(&message_, 'a', element.c_str());
        while (bytes_.remaining_bytes() > 0 && bytes_.ConsumeBool())
            value(element, depth + 1);
        sd_bus_message_close_container(&message_);
    }

    /// The fields of a struct or an entry, all of them of one letter.
    void parts(char type, const std::string& fields, int depth) {
        sd_bus_message_open_container(&message_, type, fields.c_str());
        for (const char field : fields)
            value(std::string(1, field), depth + 1);
        sd_bus_message_close_container(&message_);
    }

    void text(char type) {
        static constexpr const char* kKeys[] = {"type", "processes", "name", "c", "/a", "a{sv}"};
        const std::string own = bytes_.ConsumeRandomLengthString(64);
        if (sd_bus_message_append_basic(&message_, type, own.c_str()) >= 0)
            return;
        const char* const known =
            type == 's' ? bytes_.PickValueInArray(kKeys) : (type == 'o' ? "/a" : "a{sv}");
        sd_bus_message_append_basic(&message_, type, known);
    }

    void number(char type) {
        const auto figure = bytes_.ConsumeIntegral<std::uint64_t>();
        const int truth = static_cast<int>(figure & 1);
        const bool isTruth = type == 'b';
        sd_bus_message_append_basic(&message_, type,
                                    isTruth ? static_cast<const void*>(&truth) : &figure);
    }

    sd_bus_message& message_;
    FuzzedDataProvider& bytes_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const vantor::test::LooseMessages messages;
    FuzzedDataProvider bytes(data, size);
    const bool isDictionary = bytes.ConsumeIntegralInRange(0, 7) != 0;
    const auto message = messages.written([&](sd_bus_message& open) {
        Writer(open, bytes).value(isDictionary ? "a{sv}" : bytes.PickValueInArray(kSignatures));
    });
    if (!message)
        return 0;
    const auto response = vantor::readBusDictionary(*message);
    const bool isAsked =
        std::string_view(sd_bus_message_get_signature(message.get(), 1)) == "a{sv}";
    if (response && !isAsked)
        std::abort();
    return 0;
}
