#include "Foundation/KeyedArchive.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Tests/Support/DecimalCommas.h"
#include "Tests/Support/PropertyLists.h"

namespace vantor {

void PrintTo(const ArchivedObject& object, std::ostream* stream) {
    const auto* const colour = std::get_if<Colour>(&object);
    *stream << (colour != nullptr ? stringFromColor(*colour)
                                  : std::vector<std::string>{"none", "another"}[object.index()]);
}

namespace {

using test::archiveXML;
using test::binaryList;
using test::colourFields;
using test::dataElement;
using test::referenceElement;

const ArchivedObject kNone = NotAnArchive{}, kAnother = AnotherObject{};

void replace(std::string& text, std::string_view from, std::string_view to) {
    const auto at = text.find(from);
    ASSERT_NE(at, text.npos) << from;
    text.replace(at, from.size(), to);
}

/// What both forms of the same archive hold.
void expectObject(const std::string& xml, const ArchivedObject& object, std::string_view what) {
    ASSERT_TRUE(binaryList(xml).starts_with("bplist00")) << what;
    EXPECT_EQ(objectInKeyedArchive(xml), object) << what << ", XML";
    EXPECT_EQ(objectInKeyedArchive(binaryList(xml)), object) << what << ", binary";
}

TEST(KeyedArchiveTest, ColourIsReadWhateverItsSpace) {
    struct Case {
        int space;
        const char *key, *components;
        Colour colour;
    };
    const std::vector<Case> cases{
        {1, "NSRGB", "0.25 0.5 0.75", {0.25, 0.5, 0.75, 1}},
        {2, "NSRGB", "0.25 0.5 0.75 0.125", {0.25, 0.5, 0.75, 0.125}},
        {2, "NSRGB", "1 0 0.0", {1, 0, 0, 1}},
        {2, "NSRGB", " 1  0.5 0 ", {1, 0.5, 0, 1}},
        {3, "NSWhite", "0.5", {0.5, 0.5, 0.5, 1}},
        {4, "NSWhite", "1 0.25", {1, 1, 1, 0.25}},
        {5, "NSCMYK", "0 0.5 1 0.5", {0.5, 0.25, 0, 1}},
        {5, "NSCMYK", "1 1 0 0 0.5", {0, 0, 1, 0.5}},
        {1, "NSComponents", "0.25 0.5 0.75 1", {0.25, 0.5, 0.75, 1}},
        {3, "NSComponents", "0.25 0.5", {0.25, 0.25, 0.25, 0.5}},
        {5, "NSComponents", "0 0 0 1 1", {0, 0, 0, 1}},
    };
    for (const Case& one : cases)
        expectObject(archiveXML("NSColor", colourFields(one.space, one.key, one.components)),
                     one.colour, one.components);
}

TEST(KeyedArchiveTest, ComponentsNeedNoNullBehindThem) {
    expectObject(archiveXML("NSColor", "<key>NSRGB</key>" + dataElement("0.5 0 1")),
                 Colour{0.5, 0, 1, 1}, "no null, no space");
}

TEST(KeyedArchiveTest, ComponentsBeyondTheRangeAreCut) {
    expectObject(archiveXML("NSColor", colourFields(1, "NSRGB", "-0.25 1.5 1 2")),
                 Colour{0, 1, 1, 1}, "beyond");
}

TEST(KeyedArchiveTest, OwnComponentsComeBeforeThoseOfACustomSpace) {
    expectObject(archiveXML("NSColor", "<key>NSComponents</key>" + dataElement("0.1 0.2 0.3 1") +
                                           colourFields(1, "NSRGB", "0.25 0.5 0.75") +
                                           "<key>NSCustomColorSpace</key>" + referenceElement(0)),
                 Colour{0.25, 0.5, 0.75, 1}, "both");
}

TEST(KeyedArchiveTest, SubclassOfAColourIsAColour) {
    std::string xml = archiveXML("NSColor", colourFields(2, "NSRGB", "1 0 0"));
    replace(xml, "<key>$classname</key><string>NSColor", "<key>$classname</key><string>AnInk");
    expectObject(xml, Colour{1, 0, 0, 1}, "listed among its classes");
}

TEST(KeyedArchiveTest, ColourOfAListIsTheOneArchivedWithItsName) {
    const std::string named =
        "<key>NSColorSpace</key><integer>6</integer><key>NSColor</key>" + referenceElement(3);
    const std::string grey = "<dict><key>$class</key>" + referenceElement(2) +
                             colourFields(3, "NSWhite", "0.5") + "</dict>";
    expectObject(archiveXML("NSColor", named, grey), Colour{0.5, 0.5, 0.5, 1}, "named");
}

TEST(KeyedArchiveTest, ColourThatStandsForItselfIsAnotherObject) {
    expectObject(archiveXML("NSColor", "<key>NSColor</key>" + referenceElement(1)), kAnother,
                 "a ring");
}

TEST(KeyedArchiveTest, WhatIsNoReadableColourIsAnotherObject) {
    const std::vector<std::string> components{"",       "0.5 0.5",     "0 0 0 0 0", "0 0 0 0 0 0 0",
                                              "a b c",  "0,5 0,5 0,5", "nan 0 0",   "inf 0 0",
                                              "0x1 0 0"};
    for (const std::string& one : components)
        expectObject(archiveXML("NSColor", colourFields(2, "NSRGB", one)), kAnother, one);
    expectObject(archiveXML("NSColor", ""), kAnother, "no components");
    expectObject(archiveXML("NSColor", colourFields(2, "NSComponents", "1 1")), kAnother,
                 "too few for the space");
    expectObject(archiveXML("NSColor", colourFields(10, "NSComponents", "1 1 1 1")), kAnother,
                 "a pattern's space");
    expectObject(archiveXML("NSColor", "<key>NSRGB</key><string>1 1 1</string>"), kAnother,
                 "a text");
    expectObject(archiveXML("NSFont", colourFields(2, "NSRGB", "1 0 0")), kAnother, "a font");
}

TEST(KeyedArchiveTest, ObjectOfNoKnownClassIsAnotherObject) {
    std::string classless = archiveXML("NSColor", colourFields(2, "NSRGB", "1 0 0"));
    replace(classless, "<key>$class</key>" + referenceElement(2), "");
    expectObject(classless, kAnother, "no class");
    std::string nowhere = archiveXML("NSColor", colourFields(2, "NSRGB", "1 0 0"));
    replace(nowhere, "<integer>2</integer></dict>", "<integer>4000000000</integer></dict>");
    expectObject(nowhere, kAnother, "a class that isn't there");
    std::string text = archiveXML("NSColor", "");
    replace(text, "<string>$null</string><dict><key>$class</key>" + referenceElement(2) + "</dict>",
            "<string>$null</string><string>a text</string>");
    expectObject(text, kAnother, "a text");
}

TEST(KeyedArchiveTest, ListThatIsNoArchiveIsNone) {
    const std::string archive = archiveXML("NSColor", colourFields(2, "NSRGB", "1 0 0"));
    std::string other = archive;
    replace(other, "NSKeyedArchiver", "NSArchiver");
    expectObject(other, kNone, "another archiver");
    std::string rootless = archive;
    replace(rootless, "<key>root</key>", "<key>leaf</key>");
    expectObject(rootless, kNone, "no root");
    std::string beyond = archive;
    replace(beyond, "<integer>1</integer>", "<integer>3</integer>");
    expectObject(beyond, kNone, "a root beyond the objects");
    std::string unnumbered = archive;
    replace(unnumbered, "<key>$objects</key>", "<key>objects</key>");
    expectObject(unnumbered, kNone, "no objects");
    expectObject(test::listXML("<dict/>"), kNone, "an empty dictionary");
    expectObject(test::listXML("<array><true/></array>"), kNone, "an array");
}

TEST(KeyedArchiveTest, BytesThatAreNoListAreNone) {
    const std::string archive =
        binaryList(archiveXML("NSColor", colourFields(2, "NSRGB", "1 0 0")));
    for (const std::string& bytes :
         {std::string{}, std::string("\x04\x0Bstreamtyped", 13), std::string("1 0 0 1"),
          archive.substr(0, archive.size() / 2), archive.substr(0, archive.size() - 1)})
        EXPECT_EQ(objectInKeyedArchive(bytes), kNone) << bytes.size();
}

TEST(KeyedArchiveTest, NumbersDoNotFollowTheLocale) {
    const test::DecimalCommas commas;
    EXPECT_EQ(objectInKeyedArchive(archiveXML("NSColor", colourFields(2, "NSRGB", "0.25 0.5 1"))),
              ArchivedObject(Colour{0.25, 0.5, 1, 1}));
}

}  // namespace
}  // namespace vantor
