#include "Programs/Common/SettingValue.h"

#include <cstdint>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace vantor {
namespace {

using Array = PropertyValue::Array;
using Dictionary = PropertyValue::Dictionary;

const PropertyValue kColour = "0.11 0.11 0.11 1.0";

PropertyValue integer(std::int64_t value) { return value; }

TEST(SettingValueTest, FlagIsReadByItsWords) {
    for (const std::string_view text : {"true", "yes", "on", "1", "TRUE", "On"})
        EXPECT_EQ(parsedSetting("a", text, true).value, PropertyValue(true)) << text;
    for (const std::string_view text : {"false", "no", "off", "0", "No"})
        EXPECT_EQ(parsedSetting("a", text, true).value, PropertyValue(false)) << text;
    for (const std::string_view text : {"", "2", "maybe", "true "}) {
        EXPECT_FALSE(parsedSetting("a", text, true).value) << text;
        EXPECT_EQ(parsedSetting("a", text, true).expected, "true or false");
    }
}

TEST(SettingValueTest, NumberIsReadWhole) {
    EXPECT_EQ(parsedSetting("a", "42", integer(1)).value, integer(42));
    EXPECT_EQ(parsedSetting("a", "-7", integer(1)).value, integer(-7));
    EXPECT_EQ(parsedSetting("a", "0.25", 0.5).value, PropertyValue(0.25));
    EXPECT_EQ(parsedSetting("a", "1", 0.5).value, PropertyValue(1.0));
    for (const std::string_view text : {"", "one", "1.5", "1x", "99999999999999999999"})
        EXPECT_EQ(parsedSetting("a", text, integer(1)).expected, "a whole number") << text;
    for (const std::string_view text : {"", "half", "0,5", "nan", "inf"})
        EXPECT_EQ(parsedSetting("a", text, 0.5).expected, "a number") << text;
}

TEST(SettingValueTest, FlagThatIsKeptAsAnIntegerTakesWordsToo) {
    EXPECT_EQ(parsedSetting("CPU_CombineLogicalCores", "off", integer(1)).value, integer(0));
    EXPECT_EQ(parsedSetting("CPU_CombineLogicalCores", "yes", integer(1)).value, integer(1));
    EXPECT_FALSE(parsedSetting("TimerFrequency", "yes", integer(1)).value);
}

TEST(SettingValueTest, OddNumberIsStoredWithAWarning) {
    const ParsedSetting odd = parsedSetting("TimerFrequency", "3", integer(1));
    EXPECT_EQ(odd.value, integer(3));
    EXPECT_EQ(odd.unusual, "TimerFrequency is usually 0 to 2");
    EXPECT_EQ(parsedSetting("TimerFrequency", "2", integer(1)).unusual, "");
    EXPECT_NE(parsedSetting("CPU_MenubarTextSize", "40", integer(13)).unusual, "");
    EXPECT_NE(parsedSetting("DropdownTheme-Dark", "2", integer(1)).unusual, "");
}

TEST(SettingValueTest, ImpossibleNumberIsRefused) {
    EXPECT_EQ(parsedSetting("CPU_MenubarTextSize", "0", integer(13)).expected,
              "a number from 1 to 200");
    EXPECT_FALSE(parsedSetting("CPU_MenubarGraphWidth", "-30", integer(30)).value);
    EXPECT_FALSE(parsedSetting("MenubarGraphOpacity", "1.5", 0.5).value);
}

TEST(SettingValueTest, OpacityIsAFractionWhateverItsDefault) {
    EXPECT_EQ(parsedSetting("MenubarGraphOpacity-DarkMode", "0.7", integer(1)).value,
              PropertyValue(0.7));
}

TEST(SettingValueTest, ColourIsReadByComponentsAndAsHexDigits) {
    for (const std::string_view text : {"1 0 0.5 1", "0.11 0.11 0.11 1.0"})
        EXPECT_EQ(parsedSetting("a", text, kColour).value, PropertyValue(text));
    EXPECT_EQ(parsedSetting("a", "#FF8000", kColour).value, PropertyValue("1.00 0.50 0.00 1.00"));
    EXPECT_EQ(parsedSetting("a", "#00ff0080", kColour).value, PropertyValue("0.00 1.00 0.00 0.50"));
    for (const std::string_view text : {"", "red", "1 0 0", "1 0 0 2", "1 0 0 -0.1", "1  0 0 1",
                                        "1 0 0 1 1", "#FF80", "#GG8000", "a b c d"})
        EXPECT_TRUE(parsedSetting("a", text, kColour).expected.starts_with("a colour")) << text;
}

TEST(SettingValueTest, ModesAreNumbersWithCommas) {
    const PropertyValue standard = "100,0";
    EXPECT_EQ(parsedSetting("CPU_MenubarMode", "100,6,2", standard).value,
              PropertyValue("100,6,2"));
    EXPECT_EQ(parsedSetting("CPU_MenubarMode", "0,7", standard).unusual,
              "CPU_MenubarMode shows nothing for 7");
    for (const std::string_view text : {"", "graph", "0,", "0 1"})
        EXPECT_FALSE(parsedSetting("CPU_MenubarMode", text, standard).value) << text;
}

TEST(SettingValueTest, OtherTextStandsAsItIs) {
    EXPECT_EQ(parsedSetting("Memory_MenubarMode", "any \"text\"", "100,1").value,
              PropertyValue("any \"text\""));
}

TEST(SettingValueTest, ContainersAreJSONOfTheirKind) {
    const PropertyValue list = Array{"a"}, dictionary = Dictionary{};
    EXPECT_EQ(parsedSetting("a", R"(["x", 1, 1.5, true, {"k": -2}])", list).value,
              PropertyValue(Array{"x", integer(1), 1.5, true, Dictionary{{"k", integer(-2)}}}));
    EXPECT_EQ(parsedSetting("a", "{}", dictionary).value, PropertyValue(Dictionary{}));
    for (const std::string_view text : {"", "{}", "[1", "[null]", "x"})
        EXPECT_TRUE(parsedSetting("a", text, list).expected.starts_with("a list")) << text;
    EXPECT_TRUE(parsedSetting("a", "[]", dictionary).expected.starts_with("a dictionary"));
    EXPECT_FALSE(parsedSetting("a", std::string(5'000, '[') + std::string(5'000, ']'), list).value);
}

TEST(SettingValueTest, UnknownSettingIsWhatJSONTakesItFor) {
    EXPECT_EQ(freelyParsedSetting("5"), integer(5));
    EXPECT_EQ(freelyParsedSetting("-0.5"), PropertyValue(-0.5));
    EXPECT_EQ(freelyParsedSetting("18446744073709551615"),
              PropertyValue(std::numeric_limits<std::uint64_t>::max()));
    EXPECT_EQ(freelyParsedSetting("true"), PropertyValue(true));
    EXPECT_EQ(freelyParsedSetting("[1]"), PropertyValue(Array{integer(1)}));
    EXPECT_EQ(freelyParsedSetting("{\"a\":1}"), PropertyValue(Dictionary{{"a", integer(1)}}));
    for (const std::string_view text : {"de_DE", "\"quoted\"", "null", "", "[1", "\xFF"})
        EXPECT_EQ(freelyParsedSetting(text), PropertyValue(text)) << text;
}

TEST(SettingValueTest, ValueIsShownInOneLine) {
    EXPECT_EQ(settingText("100,0"), "100,0");
    EXPECT_EQ(settingText(true), "true");
    EXPECT_EQ(settingText(integer(-5)), "-5");
    EXPECT_EQ(settingText(0.5), "0.5");
    EXPECT_EQ(settingText(Array{"a", integer(1)}), "[\"a\",1]");
    EXPECT_EQ(settingText(Dictionary{{"a", false}}), "{\"a\":false}");
}

}  // namespace
}  // namespace vantor
