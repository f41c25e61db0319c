#include "Platform/Linux/BusValues.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include "Tests/Support/LooseMessages.h"

namespace vantor {
namespace {

class BusValuesTest : public testing::Test {
protected:
    template <class... Arguments>
    std::optional<PropertyValue::Dictionary> read(const char* types, Arguments... arguments) {
        const auto message = messages.written([&](sd_bus_message& open) {
            EXPECT_GE(sd_bus_message_append(&open, types, arguments...), 0);
        });
        return readBusDictionary(*message);
    }
    /// A field "f" whose contents `write` writes.
    std::optional<PropertyValue::Dictionary>
    readField(const char* signature, const std::function<void(sd_bus_message&)>& write) {
        const auto message = messages.written([&](sd_bus_message& open) {
            sd_bus_message_open_container(&open, 'a', "{sv}");
            sd_bus_message_open_container(&open, 'e', "sv");
            sd_bus_message_append(&open, "s", "f");
            sd_bus_message_open_container(&open, 'v', signature);
            write(open);
            for (int container = 0; container < 3; ++container)
                EXPECT_GE(sd_bus_message_close_container(&open), 0);
        });
        return readBusDictionary(*message);
    }
    std::optional<PropertyValue::Dictionary> readEmptyRecords(int count) {
        return readField("aa{sv}", [count](sd_bus_message& open) {
            sd_bus_message_open_container(&open, 'a', "a{sv}");
            for (int record = 0; record < count; ++record)
                sd_bus_message_append(&open, "a{sv}", 0);
            sd_bus_message_close_container(&open);
        });
    }

    test::LooseMessages messages;
};

TEST_F(BusValuesTest, NumbersKeepTheirKinds) {
    const auto dictionary =
        read("a{sv}", 9, "b", "b", 1, "y", "y", 255, "n", "n", -5, "q", "q", 65535, "i", "i", -7,
             "u", "u", 4000000000U, "x", "x", std::numeric_limits<std::int64_t>::min(), "t", "t",
             std::numeric_limits<std::uint64_t>::max(), "d", "d", 0.5);
    const PropertyValue::Dictionary expected{{"b", true},
                                             {"y", std::uint32_t{255}},
                                             {"n", std::int32_t{-5}},
                                             {"q", std::uint32_t{65535}},
                                             {"i", std::int32_t{-7}},
                                             {"u", std::uint32_t{4000000000U}},
                                             {"x", std::numeric_limits<std::int64_t>::min()},
                                             {"t", std::numeric_limits<std::uint64_t>::max()},
                                             {"d", 0.5}};
    EXPECT_EQ(dictionary, expected);
}

TEST_F(BusValuesTest, ArraysDictionariesAndDataAreRead) {
    const auto dictionary = read("a{sv}", 4, "texts", "as", 2, "a", "b", "any", "av", 1, "v", "s",
                                 "deep", "empty", "a{sv}", 0, "data", "ay", 2, 1, 2);
    const PropertyValue::Dictionary expected{
        {"texts", PropertyValue::Array{"a", "b"}},
        {"any", PropertyValue::Array{"deep"}},
        {"empty", PropertyValue::Dictionary{}},
        {"data", PropertyValue::Data{std::byte{1}, std::byte{2}}}};
    EXPECT_EQ(dictionary, expected);
}

TEST_F(BusValuesTest, WhatHasNoKindHereIsLeftOut) {
    const auto dictionary = read("a{sv}", 4, "struct", "(si)", "a", 1, "path", "o", "/a", "map",
                                 "a{ss}", 1, "a", "b", "good", "s", "yes");
    EXPECT_EQ(dictionary, (PropertyValue::Dictionary{{"good", "yes"}}));
}

TEST_F(BusValuesTest, OnlyOneDictionaryIsRead) {
    EXPECT_FALSE(read(""));
    EXPECT_FALSE(read("a{ss}", 0));
    EXPECT_FALSE(read("a{sv}i", 0, 1));
    EXPECT_TRUE(read("a{sv}", 0));
}

TEST_F(BusValuesTest, AsManyRecordsAsThereMayBeAreRead) {
    EXPECT_EQ(readEmptyRecords(4096)->at("f").array()->size(), 4096U);
    EXPECT_FALSE(readEmptyRecords(4097));
}

TEST_F(BusValuesTest, WhatIsTooLargeIsNotRead) {
    EXPECT_TRUE(read("a{sv}", 1, "a", "s", std::string(1'000'000, 'x').c_str()));
    EXPECT_FALSE(read("a{sv}", 1, "a", "s", std::string(1'100'000, 'x').c_str()));
    EXPECT_FALSE(read("a{sv}", 1, std::string(1'100'000, 'x').c_str(), "s", ""));
    const std::string half(600'000, 'x');
    EXPECT_FALSE(read("a{sv}", 2, "a", "s", half.c_str(), "b", "s", half.c_str()));
    EXPECT_FALSE(readField("ay", [](sd_bus_message& open) {
        const std::string bytes(1'100'000, 'x');
        sd_bus_message_append_array(&open, 'y', bytes.data(), bytes.size());
    }));
}

TEST_F(BusValuesTest, WhatIsTooDeepIsNotRead) {
    const auto nested = [&](int depth) {
        return readField("v", [depth](sd_bus_message& open) {
            for (int level = 1; level < depth; ++level)
                sd_bus_message_open_container(&open, 'v', "v");
            sd_bus_message_append(&open, "v", "i", 1);
            for (int level = 1; level < depth; ++level)
                sd_bus_message_close_container(&open);
        });
    };
    EXPECT_TRUE(nested(8));
    EXPECT_FALSE(nested(30));
}

TEST_F(BusValuesTest, ArgumentsAreWrittenByTheirKind) {
    const auto message = messages.written([](sd_bus_message& open) {
        EXPECT_TRUE(appendBusArgument(open, std::int64_t{-1}));
        EXPECT_TRUE(appendBusArgument(open, "text"));
        EXPECT_TRUE(appendBusArgument(
            open, PropertyValue::Array{
                      PropertyValue::Dictionary{{"fan", std::int32_t{1}}, {"speed", 2.5F}},
                      PropertyValue::Array{true, std::uint32_t{2}, std::uint64_t{3}},
                      PropertyValue::Data{std::byte{9}}}));
    });
    ASSERT_TRUE(message);
    EXPECT_STREQ(sd_bus_message_get_signature(message.get(), 1), "xsav");
}

TEST_F(BusValuesTest, WhatIsWrittenIsReadAgain) {
    const PropertyValue::Dictionary fan{{"fan", std::int32_t{1}},
                                        {"speeds", PropertyValue::Array{2.5}}};
    const auto message = messages.written([&](sd_bus_message& open) {
        EXPECT_TRUE(appendBusArgument(open, PropertyValue::Array{fan}));
    });
    sd_bus_message_enter_container(message.get(), 'a', "v");
    const auto again = messages.written([&](sd_bus_message& open) {
        sd_bus_message_open_container(&open, 'a', "{sv}");
        sd_bus_message_open_container(&open, 'e', "sv");
        sd_bus_message_append(&open, "s", "f");
        EXPECT_GE(sd_bus_message_copy(&open, message.get(), 0), 0);
        sd_bus_message_close_container(&open);
        sd_bus_message_close_container(&open);
    });
    EXPECT_EQ(readBusDictionary(*again), (PropertyValue::Dictionary{{"f", fan}}));
}

TEST_F(BusValuesTest, WhatNoBusCarriesIsRefused) {
    messages.written([](sd_bus_message& open) {
        EXPECT_FALSE(appendBusArgument(open, PropertyValue{}));
        EXPECT_FALSE(appendBusArgument(open, 1.5));
        EXPECT_FALSE(appendBusArgument(open, std::string("a\0b", 3)));
        EXPECT_FALSE(appendBusArgument(open, PropertyValue::Array{PropertyValue{}}));
    });
}

}  // namespace
}  // namespace vantor
