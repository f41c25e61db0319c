#include "Foundation/StringTable.h"

#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// The text of the only key, "k".
std::string textOf(std::string_view quoted) {
    const StringTable table = stringTable("\"k\" = \"" + std::string(quoted) + "\";");
    return table.size() == 1 ? table.begin()->second : "not one text";
}

TEST(StringTableTest, PairsAreRead) {
    EXPECT_THAT(
        stringTable("\"User\" = \"Benutzer\";\n\"System\"=\"System\" ; \"Idle\" =\n"
                    "\t\"Leerlauf\";"),
        ElementsAre(Pair("Idle", "Leerlauf"), Pair("System", "System"), Pair("User", "Benutzer")));
}

TEST(StringTableTest, CommentsMayStandWhereBlanksMay) {
    EXPECT_THAT(stringTable("/* head \"x\" = \"y\"; * / **/ // and more\n"
                            "\"a\" /* = */ = // \"no\";\n \"b\" /**/ ; // the end"),
                ElementsAre(Pair("a", "b")));
}

TEST(StringTableTest, CommentMarksInsideQuotesAreText) {
    EXPECT_THAT(stringTable(R"("a/*" = "http://x";)"), ElementsAre(Pair("a/*", "http://x")));
}

TEST(StringTableTest, ByteOrderMarkIsSkipped) {
    EXPECT_THAT(stringTable("\xEF\xBB\xBF\"a\" = \"b\";"), ElementsAre(Pair("a", "b")));
}

TEST(StringTableTest, EscapesAreResolved) {
    const std::map<std::string_view, std::string_view> texts{
        {R"(\"a\" \\)", "\"a\" \\"},
        {R"(\n\t\r)", "\n\t\r"},
        {R"(\'\q\%)", "'q%"},
        {R"(24\U00a0Heures)", "24\u00A0Heures"},
        {R"(\u00E9\U20ac)", "\u00E9\u20AC"},
        {R"(\U41g\U)", "Ag\uFFFD"},
        {R"(\Ud83d\Ude00!)", "\U0001F600!"},
        {R"(\Ud83d\ude00\U0041)", "\U0001F600A"},
        {"\\\u00E9", "\u00E9"},
    };
    for (const auto& [quoted, text] : texts)
        EXPECT_EQ(textOf(quoted), text) << quoted;
}

TEST(StringTableTest, UnitThatIsNoLetterIsReplaced) {
    const std::map<std::string_view, std::string_view> texts{
        {R"(\Ud83d)", "\uFFFD"},
        {R"(\Ude00)", "\uFFFD"},
        {R"(\Ud83d\U0041)", "\uFFFDA"},
        {R"(\Ud83d\n)", "\uFFFD\n"},
        {R"(\Ud83d\Ud83d\Ude00)", "\uFFFD\U0001F600"},
        {R"(\U0000)", "\uFFFD"}};
    for (const auto& [quoted, text] : texts)
        EXPECT_EQ(textOf(quoted), text) << quoted;
}

TEST(StringTableTest, TextsKeepTheirLinesAndLetters) {
    EXPECT_EQ(textOf("\u5E73\u5747\n \u8CA0\u8377"), "\u5E73\u5747\n \u8CA0\u8377");
}

TEST(StringTableTest, EmptyTextIsATextOfItsOwn) {
    EXPECT_THAT(stringTable(R"("a" = "";)"), ElementsAre(Pair("a", "")));
}

TEST(StringTableTest, LaterTextOfAKeyHolds) {
    EXPECT_THAT(stringTable(R"("a" = "1"; "b" = "2"; "a" = "3";)"),
                ElementsAre(Pair("a", "3"), Pair("b", "2")));
}

TEST(StringTableTest, NothingButBlanksGivesNoText) {
    for (const std::string_view text : {"", " \n", "// nothing", "/* nothing */", "\xEF\xBB\xBF"})
        EXPECT_THAT(stringTable(text), IsEmpty()) << text;
}

TEST(StringTableTest, PairsBeforeTheDamageStay) {
    for (const std::string_view damaged :
         {"\"c\" = \"d\"", "\"c\" \"d\";", "\"c\" = \"d", "\"c\" = \"d\\", "\"c\" = \"d\\U", "\"c",
          "\"c\" =", "\"c\";", "c = \"d\";", "\"c\" = d;", "/* \"c\" = \"d\";", "/",
          "; \"c\" = \"d\";", "\"c\" = \"\xFF\";", "\"c\" = \"\xC3\";", "\xFF\xFE\"c\" = \"d\";",
          "<plist/>"})
        EXPECT_THAT(stringTable("\"a\" = \"b\";" + std::string(damaged)),
                    ElementsAre(Pair("a", "b")))
            << damaged;
}

}  // namespace
}  // namespace vantor
