#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Shared/Collectors/StatCollectorItem.h"
#include "Tests/Support/TestCollector.h"

namespace vantor {
namespace {

using test::sampleOf;
using testing::IsEmpty;

class StatCollectorItemExportTest : public testing::Test {
protected:
    StatCollectorItemExportTest() {
        item.config = {.addSampleIDKeys = {"sample"},
                       .addSampleMap = {{"a", 0}, {"b", 1}},
                       .sampleKeys = {},
                       .emptySampleKeys = {},
                       .xmlSampleKeys = {{"u", 0}, {"s", 1}},
                       .sqlInsert = {},
                       .sqlInsertKeys = {},
                       .sqlCreate = {},
                       .sqlCreateLong = {}};
        for (int sample = 1; sample <= 3; ++sample)
            item.addSample(sampleOf({{"sample", sample}, {"time", 100.6 + sample}, {"a", 1000}}),
                           1);
    }

    std::string exported(std::string_view key, int protocol = 1) {
        return item.xmlSampleFromSample(item.sampleAtIndex(0, StorageType::hour), 0, protocol)
            .find(key)
            ->second.stringValue();
    }
    std::vector<std::string> idsSince(double sampleID) {
        std::vector<std::string> ids;
        for (const auto& sample : item.samplesSinceID(sampleID, StorageType::hour, 1))
            ids.push_back(*sample.at("id").text());
        return ids;
    }

    StatCollectorItem item{2};
};

TEST_F(StatCollectorItemExportTest, FiguresHaveTwoDecimalsAndTheTimeNone) {
    EXPECT_EQ(exported("u"), "1000.00");
    EXPECT_EQ(exported("s"), "0.00");
    EXPECT_EQ(exported("t"), "104");
}

TEST_F(StatCollectorItemExportTest, AReaderGetsWhatIsNewerThanWhatItSawOldestFirst) {
    EXPECT_EQ(idsSince(1), (std::vector<std::string>{"2", "3"}));
    EXPECT_EQ(idsSince(0), (std::vector<std::string>{"1", "2", "3"}));
}

TEST_F(StatCollectorItemExportTest, NothingIsNewerThanTheNewest) {
    EXPECT_THAT(idsSince(3), IsEmpty());
    EXPECT_THAT(idsSince(4), IsEmpty());
}

TEST_F(StatCollectorItemExportTest, MinusOneGivesTheNewestAlone) {
    EXPECT_EQ(idsSince(-1), std::vector<std::string>{"-1"});
    EXPECT_EQ(item.samplesSinceID(-1, StorageType::hour, 1).at(0).at("t").stringValue(), "104");
}

TEST_F(StatCollectorItemExportTest, AnIdentifierThatIsNoWholeNumberKeepsItsFraction) {
    item.addSample(sampleOf({{"sample", 3.5}}), 1);
    EXPECT_EQ(idsSince(3), std::vector<std::string>{"3.5"});
}

TEST_F(StatCollectorItemExportTest, ADivisorHoldsForEveryProtocolWithoutAListOfThem) {
    item.config.xmlSampleDivide = 1024;
    EXPECT_EQ(exported("u", 7), "0.98");
}

TEST_F(StatCollectorItemExportTest, ADivisorHoldsForTheListedProtocolsAlone) {
    item.config.xmlSampleDivide = 1024;
    item.config.xmlSampleDivideProtocols = std::vector<int>{2, 3};
    EXPECT_EQ(exported("u", 1), "1000.00");
    EXPECT_EQ(exported("u", 3), "0.98");
    item.config.xmlSampleDivideProtocols->clear();
    EXPECT_EQ(exported("u", 3), "1000.00");
}

TEST_F(StatCollectorItemExportTest, AnExcludedKeyIsNeverDivided) {
    item.config.xmlSampleDivide = 1024;
    item.config.xmlSampleDivideExcludeKeys = {"u"};
    EXPECT_EQ(exported("u"), "1000.00");
}

TEST_F(StatCollectorItemExportTest, AnEmptySampleHasItsFiguresAndSaysThatItIsEmpty) {
    item.storageForType(1).setEmpty(0, 1);
    const auto sample = item.xmlSampleFromSample(item.sampleAtIndex(0, StorageType::hour), 0, 1);
    EXPECT_EQ(sample.at("empty"), PropertyValue(true));
    EXPECT_EQ(sample.at("u").stringValue(), "1000.00");
}

TEST_F(StatCollectorItemExportTest, ASampleThatIsNotEmptyDoesNotSaySo) {
    const auto sample = item.xmlSampleFromSample(item.sampleAtIndex(0, StorageType::hour), 0, 1);
    EXPECT_FALSE(sample.contains("empty"));
}

}  // namespace
}  // namespace vantor
