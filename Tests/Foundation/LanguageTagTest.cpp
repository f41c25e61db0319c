#include "Foundation/LanguageTag.h"

#include <map>
#include <vector>

#include <gtest/gtest.h>

namespace vantor {

void PrintTo(const LanguageTag& tag, std::ostream* stream) {
    *stream << tag.language << '/' << tag.script << '/' << tag.region;
}

namespace {

using Tags = std::vector<std::string>;

const Tags kBundle{"de", "en", "es", "fr", "ja", "zh-Hans"};

TEST(LanguageTagTest, PartsAreToldByTheirForm) {
    const std::map<std::string_view, LanguageTag> tags{
        {"de", {"de", "", ""}},           {"de_AT", {"de", "", "AT"}},
        {"DE-at", {"de", "", "AT"}},      {"de_AT.UTF-8@euro", {"de", "", "AT"}},
        {"sr@latin", {"sr", "", ""}},     {"sr-latn-RS", {"sr", "Latn", "RS"}},
        {"es-419", {"es", "", "419"}},    {"ast_ES", {"ast", "", "ES"}},
        {"de-CH-1996", {"de", "", "CH"}}, {"de-", {"de", "", ""}},
    };
    for (const auto& [text, tag] : tags)
        EXPECT_EQ(languageTag(text), tag) << text;
}

TEST(LanguageTagTest, ChineseAlwaysHasAScript) {
    const std::map<std::string_view, std::string_view> scripts{
        {"zh", "Hans"},          {"zh_CN", "Hans"}, {"zh-SG", "Hans"},      {"zh_TW", "Hant"},
        {"zh_HK.UTF-8", "Hant"}, {"zh-MO", "Hant"}, {"zh-Hant-CN", "Hant"}, {"zh-Hans-HK", "Hans"}};
    for (const auto& [text, script] : scripts)
        EXPECT_EQ(languageTag(text).script, script) << text;
}

TEST(LanguageTagTest, WhatNamesNoLanguageHasNone) {
    for (const std::string_view text :
         {"", "C", "C.UTF-8", "POSIX", "_DE", "-", "d3", "1a", "\xC3\xA9"})
        EXPECT_EQ(languageTag(text), LanguageTag()) << text;
}

TEST(LanguageTagTest, UserGetsTheFirstLanguageThatThereIs) {
    const std::vector<std::pair<Tags, std::string>> cases{
        {{"fr"}, "fr"},
        {{"de_AT", "fr"}, "de"},
        {{"it_IT", "es_MX", "de"}, "es"},
        {{"zh_CN"}, "zh-Hans"},
        {{"zh-SG", "en"}, "zh-Hans"},
        {{"zh_TW", "ja_JP"}, "ja"},
        {{"C", "ja"}, "ja"},
        {{"en_GB"}, "en"},
    };
    for (const auto& [preferences, language] : cases)
        EXPECT_EQ(preferredLocalization(kBundle, preferences), language) << preferences.front();
}

TEST(LanguageTagTest, NothingIsThereForOtherLanguages) {
    for (const Tags& preferences : {Tags{}, Tags{"it"}, Tags{"zh_TW"}, Tags{"C"}, Tags{""}})
        EXPECT_EQ(preferredLocalization(kBundle, preferences), std::nullopt);
    EXPECT_EQ(preferredLocalization({}, Tags{"en"}), std::nullopt);
}

TEST(LanguageTagTest, OwnRegionIsBetterThanNoneAndNoneBetterThanAnother) {
    const Tags bundle{"pt-PT", "pt-BR", "pt", "en"};
    EXPECT_EQ(preferredLocalization(bundle, Tags{"pt_BR"}), "pt-BR");
    EXPECT_EQ(preferredLocalization(bundle, Tags{"pt_AO"}), "pt");
    EXPECT_EQ(preferredLocalization(Tags{"en", "pt-PT"}, Tags{"pt_BR"}), "pt-PT");
}

TEST(LanguageTagTest, FolderThatIsNoLanguageSuitsNobody) {
    EXPECT_EQ(preferredLocalization(Tags{"Base", "C"}, Tags{"C", "Base", "en"}), std::nullopt);
}

}  // namespace
}  // namespace vantor
