#include "Platform/Linux/LinuxRegionalSettings.h"

#include <clocale>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/Support/Environment.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor::test {
namespace {

/// A folder of locales of our own, where the C library looks first.
class LinuxRegionalSettingsTest : public ::testing::Test {
protected:
    /// False where this machine has no means to make locales.
    bool makeLocale(const std::string& name) {
        const std::string command = "localedef -c -i " + name + " -f ISO-8859-1 '" +
                                    (folder_ / name).string() + "' 2>/dev/null";
        return std::system(command.c_str()) == 0;
    }

private:
    TemporaryFolder folder_;
    Variable path_{"LOCPATH", folder_.path().string()};
    LeakOfSearchPath leak_;
};

TEST_F(LinuxRegionalSettingsTest, HourConversionGivesThePattern) {
    const std::map<const char*, const char*> patterns{
        {"%H:%M:%S", "HH:mm"},   {"%T", "HH:mm"},
        {"%R", "HH:mm"},         {"%H.%M.%S", "HH:mm"},
        {"%OH:%OM", "HH:mm"},    {"%I:%M:%S %p", "h:mm a"},
        {"%p %I:%M", "h:mm a"},  {"%r", "h:mm a"},
        {"%l:%M %P", "h:mm a"},  {"%-I:%M", "h:mm a"},
        {"%EI%M", "h:mm a"},     {"%k:%M:%S", "H:mm"},
        {"%-H:%M", "H:mm"},      {"%_H:%M", "H:mm"},
        {"kl. %H %%I", "HH:mm"}, {"%% %%H %I", "h:mm a"},
        {"%M %S", "HH:mm"},      {"", "HH:mm"},
        {"%", "HH:mm"},          {"%-", "HH:mm"},
        {"I l r", "HH:mm"},      {"\xE5\x8D\x88%I", "h:mm a"}};
    for (const auto& [format, pattern] : patterns)
        EXPECT_EQ(shortTimeFormatFor(format), pattern) << format;
}

TEST_F(LinuxRegionalSettingsTest, PlainLocaleIsMetricAndWrites24Hours) {
    for (const char* const name : {"C", "POSIX"}) {
        const LinuxRegionalSettings settings(name);
        EXPECT_TRUE(settings.usesMetricSystem());
        EXPECT_EQ(settings.shortTimeFormat(), "HH:mm");
    }
}

TEST_F(LinuxRegionalSettingsTest, LocaleThatIsNotInstalledReadsAsThePlainOne) {
    const LinuxRegionalSettings settings("xx_YY.UTF-8");
    EXPECT_TRUE(settings.usesMetricSystem());
    EXPECT_EQ(settings.shortTimeFormat(), "HH:mm");
}

TEST_F(LinuxRegionalSettingsTest, AmericansMeasureInInchesAndWriteTwelveHours) {
    if (!makeLocale("en_US"))
        GTEST_SKIP() << "no localedef";
    const LinuxRegionalSettings settings("en_US");
    EXPECT_FALSE(settings.usesMetricSystem());
    EXPECT_EQ(settings.shortTimeFormat(), "h:mm a");
}

TEST_F(LinuxRegionalSettingsTest, CategoriesOfTheEnvironmentMayDiffer) {
    if (!makeLocale("en_US") || !makeLocale("de_DE"))
        GTEST_SKIP() << "no localedef";
    const Variable all("LC_ALL", "");
    const Variable language("LANG", "en_US");
    const Variable measurement("LC_MEASUREMENT", "de_DE");
    const Variable time("LC_TIME", "");
    const LinuxRegionalSettings settings;
    EXPECT_TRUE(settings.usesMetricSystem());
    EXPECT_EQ(settings.shortTimeFormat(), "h:mm a");
}

TEST_F(LinuxRegionalSettingsTest, LocaleOfTheProcessIsLeftAsItIs) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    const LinuxRegionalSettings settings;
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
}

// --- Languages ---------------------------------------------------------------------------------

using Variables = std::map<std::string, std::string>;
using Languages = std::vector<std::string>;

Environment environmentOf(Variables variables) {
    return [variables = std::move(variables)](const std::string& name) {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    };
}

Languages languagesIn(const Variables& variables) {
    return preferredLanguagesIn(environmentOf(variables));
}

TEST_F(LinuxRegionalSettingsTest, LanguageIsThatOfTheStrongestVariable) {
    EXPECT_EQ(languagesIn({{"LANG", "de_AT.UTF-8"}}), Languages{"de_AT"});
    EXPECT_EQ(languagesIn({{"LC_MESSAGES", "fr_FR@euro"}, {"LANG", "de_AT"}}), Languages{"fr_FR"});
    EXPECT_EQ(languagesIn({{"LC_ALL", "ja_JP"}, {"LC_MESSAGES", "fr_FR"}, {"LANG", "de_AT"}}),
              Languages{"ja_JP"});
}

TEST_F(LinuxRegionalSettingsTest, EmptyVariablesSayNothing) {
    EXPECT_EQ(languagesIn({{"LC_ALL", ""}, {"LANG", "de_AT"}, {"LANGUAGE", ""}}),
              Languages{"de_AT"});
}

TEST_F(LinuxRegionalSettingsTest, ListOfLanguagesStandsInPlaceOfTheLocales) {
    EXPECT_EQ(languagesIn({{"LC_ALL", "ja_JP.UTF-8"}, {"LANGUAGE", "de_AT.UTF-8:fr::zh-Hans:"}}),
              (Languages{"de_AT", "fr", "zh-Hans"}));
    EXPECT_EQ(languagesIn({{"LANG", "C.UTF-8"}, {"LANGUAGE", "de"}}), Languages{"de"});
}

TEST_F(LinuxRegionalSettingsTest, PlainLocaleWantsNoLanguageWhateverTheListSays) {
    for (const char* const name : {"C", "POSIX"})
        EXPECT_EQ(languagesIn({{"LC_ALL", name}, {"LANG", "de_AT"}, {"LANGUAGE", "fr"}}),
                  Languages{})
            << name;
    EXPECT_EQ(languagesIn({{"LANGUAGE", "fr"}}), Languages{});
    EXPECT_EQ(languagesIn({}), Languages{});
    EXPECT_EQ(languagesIn({{"LANG", "C.UTF-8"}}), Languages{});
}

TEST_F(LinuxRegionalSettingsTest, PlainLocaleEndsTheListOfLanguages) {
    EXPECT_EQ(languagesIn({{"LANG", "de_AT"}, {"LANGUAGE", "de:C:fr"}}), Languages{"de"});
}

TEST_F(LinuxRegionalSettingsTest, LanguagesAreReadAtConstruction) {
    Variables variables{{"LANG", "de_AT"}};
    const LinuxRegionalSettings settings(
        "C", [&variables](const std::string& name) { return environmentOf(variables)(name); });
    variables["LANG"] = "fr_FR";
    EXPECT_EQ(settings.preferredLanguages(), Languages{"de_AT"});
}

}  // namespace
}  // namespace vantor::test
