#include "Foundation/PropertyList.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "Tests/Support/DecimalCommas.h"

namespace vantor {
namespace {

using Array = PropertyValue::Array;
using Date = PropertyValue::Date;
using Dictionary = PropertyValue::Dictionary;

PropertyValue roundTrip(const PropertyValue& value) {
    return propertyListValue(propertyListXML(value)).value_or("unreadable");
}

std::string document(std::string_view element) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\">" +
           std::string(element) + "</plist>";
}

PropertyValue valueIn(std::string_view element) {
    return propertyListValue(document(element)).value_or("unreadable");
}

/// A binary list: objects in order, the first the topmost; offsets and references of one byte.
std::string binaryList(const std::vector<std::string>& objects) {
    std::string list = "bplist00";
    std::string offsets;
    for (const std::string& object : objects) {
        offsets += static_cast<char>(list.size());
        list += object;
    }
    const auto tableOffset = static_cast<char>(list.size());
    list += offsets + std::string(6, '\0') + "\x01\x01";
    list += std::string(7, '\0') + static_cast<char>(objects.size());
    list += std::string(8, '\0');
    return list + std::string(7, '\0') + tableOffset;
}

TEST(PropertyListTest, KindsComeBackFromXML) {
    const std::vector<PropertyValue> values = {
        true,
        false,
        std::int64_t{0},
        std::int64_t{-5},
        std::numeric_limits<std::int64_t>::min(),
        std::numeric_limits<std::int64_t>::max(),
        std::numeric_limits<std::uint64_t>::max(),
        std::uint64_t{1} << 63,
        0.5,
        "",
        "  blanks kept \n\t",
        "<&>\"']]>\r\n\u00e9\U0001F600",
        PropertyValue::Data{},
        PropertyValue::Data{std::byte{0}},
        PropertyValue::Data{std::byte{0xFF}, std::byte{1}},
        PropertyValue::Data{std::byte{1}, std::byte{2}, std::byte{3}, std::byte{0xFE}},
        Date{0},
        Date{-1},
        Date{978307200},
        Date{4102444800},
        Array{},
        Dictionary{},
        Array{true, Array{std::int64_t{1}}, Dictionary{{"a", "b"}}},
        Dictionary{{"", "empty key"}, {"<&>", Dictionary{{"inner", 1.25}}}},
    };
    for (const PropertyValue& value : values)
        EXPECT_EQ(roundTrip(value), value) << propertyListXML(value);
}

TEST(PropertyListTest, RealsComeBackExactly) {
    for (const double real : {0.1, 1.0 / 3, 0.30000000000000004, 123456789.123456789, 1e300,
                              -1e-300, 5e-324, std::numeric_limits<double>::max(), -0.0}) {
        const PropertyValue back = roundTrip(real);
        ASSERT_NE(back.as<double>(), nullptr);
        EXPECT_EQ(*back.as<double>(), real);
        EXPECT_EQ(std::signbit(*back.as<double>()), std::signbit(real));
    }
    EXPECT_EQ(roundTrip(INFINITY), PropertyValue(std::numeric_limits<double>::infinity()));
    EXPECT_EQ(roundTrip(-INFINITY), PropertyValue(-std::numeric_limits<double>::infinity()));
    EXPECT_TRUE(std::isnan(*roundTrip(double{NAN}).as<double>()));
}

TEST(PropertyListTest, NarrowKindsComeBackWidened) {
    EXPECT_EQ(roundTrip(std::int32_t{-7}), PropertyValue(std::int64_t{-7}));
    EXPECT_EQ(roundTrip(std::uint32_t{7}), PropertyValue(std::int64_t{7}));
    EXPECT_EQ(roundTrip(0.1f), PropertyValue(static_cast<double>(0.1f)));
}

TEST(PropertyListTest, NothingInsideAContainerIsLeftOut) {
    EXPECT_EQ(roundTrip(Array{PropertyValue{}, true}), PropertyValue(Array{true}));
    EXPECT_EQ(roundTrip(Dictionary{{"a", {}}, {"b", true}}),
              PropertyValue(Dictionary{{"b", true}}));
}

TEST(PropertyListTest, ControlCharacterThatXMLCannotHoldIsLeftOut) {
    EXPECT_EQ(roundTrip("a\x01z"), PropertyValue("az"));
}

TEST(PropertyListTest, NumbersDoNotFollowTheLocale) {
    const test::DecimalCommas commas;
    EXPECT_EQ(roundTrip(0.25), PropertyValue(0.25));
    EXPECT_EQ(valueIn("<real>1.75</real>"), PropertyValue(1.75));
    EXPECT_TRUE(commas.areInUse()) << "the thread's locale is put back";
}

TEST(PropertyListTest, WhatOthersWriteIsRead) {
    EXPECT_EQ(valueIn("<integer>0x10</integer>"), PropertyValue(std::int64_t{16}));
    EXPECT_EQ(valueIn("<true></true>"), PropertyValue(true));
    EXPECT_EQ(valueIn("<string><![CDATA[<x>]]></string>"), PropertyValue("<x>"));
    EXPECT_EQ(valueIn("<!-- note --><date>2001-01-01T00:00:01Z</date>"),
              PropertyValue(Date{978307201}));
    EXPECT_EQ(valueIn("<dict><key>a</key><integer>1</integer><key>a</key><true/></dict>"),
              PropertyValue(Dictionary{{"a", true}}));
}

TEST(PropertyListTest, BinaryListIsRead) {
    const std::string real{'\x23', '\x3F', '\xF8', 0, 0, 0, 0, 0, 0};
    const std::string list = binaryList({std::string("\xD2\x01\x02\x03\x04"),
                                         "\x51"
                                         "a",
                                         "\x51"
                                         "b",
                                         "\x10\x07", real});
    EXPECT_EQ(propertyListValue(list),
              PropertyValue(Dictionary{{"a", std::int64_t{7}}, {"b", 1.5}}));
}

TEST(PropertyListTest, ReferenceOfAnArchiveIsNothing) {
    EXPECT_EQ(propertyListValue(binaryList({std::string("\xA1\x01"), std::string("\x80\x05")})),
              PropertyValue(Array{PropertyValue{}}));
}

TEST(PropertyListTest, DamagedInputGivesNothing) {
    const std::string whole = propertyListXML(Dictionary{{"a", Array{1.5, "text"}}});
    const std::string binary = binaryList({std::string("\xA1\x01"), std::string("\x10\x07")});
    EXPECT_EQ(propertyListValue(""), std::nullopt);
    EXPECT_EQ(propertyListValue("no list at all, only words"), std::nullopt);
    EXPECT_EQ(propertyListValue(std::string(4096, '\0')), std::nullopt);
    EXPECT_EQ(propertyListValue(document("")), std::nullopt);
    EXPECT_EQ(propertyListValue("bplist00"), std::nullopt);
    for (std::size_t length = 0; length < whole.rfind("/dict>"); ++length)
        EXPECT_EQ(propertyListValue(whole.substr(0, length)), std::nullopt) << length;
    for (std::size_t length = 0; length < binary.size(); ++length)
        EXPECT_EQ(propertyListValue(binary.substr(0, length)), std::nullopt) << length;
}

TEST(PropertyListTest, ListNestedTooDeepGivesNothing) {
    const auto nested = [](int depth) {
        std::string element;
        for (int level = 0; level < depth; ++level)
            element += "<array>";
        for (int level = 0; level < depth; ++level)
            element += "</array>";
        return document(element);
    };
    EXPECT_TRUE(propertyListValue(nested(100)));
    EXPECT_EQ(propertyListValue(nested(1'000)), std::nullopt);
    EXPECT_EQ(propertyListValue(nested(1'000'000)), std::nullopt);
}

TEST(PropertyListTest, BinaryListWithANullInAKeyGivesNothing) {
    const std::string key("\x52"
                          "a\0",
                          3);
    EXPECT_EQ(propertyListValue(binaryList({std::string("\xD1\x01\x02"), key, "\x09"})),
              std::nullopt);
}

TEST(PropertyListTest, BinaryListThatContainsItselfGivesNothing) {
    EXPECT_EQ(propertyListValue(binaryList({std::string("\xA1\x00", 2)})), std::nullopt);
}

TEST(PropertyListTest, BinaryListThatWouldGrowWithoutEndGivesNothing) {
    std::vector<std::string> objects;  // each holds the next one twice: 2^60 objects in all
    for (char level = 1; level < 61; ++level)
        objects.push_back({'\xA2', level, level});
    objects.push_back("\x10\x07");
    EXPECT_EQ(propertyListValue(binaryList(objects)), std::nullopt);
}

}  // namespace
}  // namespace vantor
