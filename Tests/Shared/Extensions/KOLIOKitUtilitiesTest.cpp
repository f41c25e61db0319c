#include "Shared/Extensions/KOLIOKitUtilities.h"

#include <gtest/gtest.h>

#include "Tests/Support/World.h"

namespace vantor {
namespace {

using simulated::RegistryNode;

/// The root, a bridge with two devices, the first of which has a child.
class KOLIOKitUtilitiesTest : public testing::Test {
protected:
    KOLIOKitUtilitiesTest() {
        const RegistryNode driver{4, "Driver", "driver", {{"speed", 7}}, {}};
        const RegistryNode first{3, "Device", "first", {{"BSD Name", "disk0"}}, {driver}};
        const RegistryNode second{5, "Device", "second", {}, {}};
        const RegistryNode bridge{
            2, "Bridge", "bridge", {{"speed", 9}, {"width", 16}}, {first, second}};
        world.machine.registry.setTree({1, "Root", "Root", {{"width", 1}}, {bridge}});
    }
    RegistryObject object(std::uint64_t id) const {
        return world.machine.registry.objectWithID(id);
    }

    test::World world;
};

TEST_F(KOLIOKitUtilitiesTest, ClassThatMatchesNothingGivesAnEmptyWalk) {
    auto iterator = KOLIOKitUtilities::iteratorWithServiceMatch("FakeSMC");
    EXPECT_EQ(iterator.next(), nullptr);
    EXPECT_EQ(iterator.object(), nullptr);
}

TEST_F(KOLIOKitUtilitiesTest, WalkHandsOutEachMatchAndThenEnds) {
    auto iterator = KOLIOKitUtilities::iteratorWithServiceMatch("Device");
    ASSERT_NE(iterator.next(), nullptr);
    EXPECT_EQ(iterator.objectName(), "first");
    EXPECT_EQ(iterator.objectPath(), "IOService:/bridge/first");
    EXPECT_EQ(iterator.objectID(), "3");
    ASSERT_NE(iterator.next(), nullptr);
    EXPECT_EQ(iterator.object(), object(5));
    EXPECT_EQ(iterator.next(), nullptr);
    EXPECT_EQ(iterator.objectName(), std::nullopt);
}

TEST_F(KOLIOKitUtilitiesTest, BeforeTheFirstStepThereIsNoCurrentObject) {
    const auto iterator = KOLIOKitUtilities::iteratorWithServiceMatch("Device");
    EXPECT_EQ(iterator.objectID(), std::nullopt);
    EXPECT_EQ(iterator.objectName(), std::nullopt);
    EXPECT_EQ(iterator.objectPath(), std::nullopt);
}

TEST_F(KOLIOKitUtilitiesTest, NamesMatchToo) {
    auto byName = KOLIOKitUtilities::iteratorWithServiceNameMatch("driver");
    ASSERT_NE(byName.next(), nullptr);
    EXPECT_EQ(byName.object(), object(4));
    auto byBSDName = KOLIOKitUtilities::iteratorWithBSDNameMatch("disk0");
    ASSERT_NE(byBSDName.next(), nullptr);
    EXPECT_EQ(byBSDName.object(), object(3));
}

TEST_F(KOLIOKitUtilitiesTest, ChildrenAreWalkedInTheirOrder) {
    auto iterator = KOLIOKitUtilities::childIteratorFromObject(object(2));
    ASSERT_NE(iterator.next(), nullptr);
    EXPECT_EQ(iterator.object(), object(3));
    ASSERT_NE(iterator.next(), nullptr);
    EXPECT_EQ(iterator.object(), object(5));
    EXPECT_EQ(iterator.next(), nullptr);
    EXPECT_EQ(KOLIOKitUtilities::childIteratorFromObject(nullptr).next(), nullptr);
}

TEST_F(KOLIOKitUtilitiesTest, ObjectWithUnreadablePropertiesEndsTheWalk) {
    struct Unreadable final : RegistryEntry {
        std::uint64_t entryID() const noexcept override { return 9; }
        std::string_view className() const noexcept override { return "Device"; }
        std::optional<std::string> name() const override { return std::nullopt; }
        std::optional<std::string> path() const override { return std::nullopt; }
        const PropertyValue::Dictionary* properties() override { return nullptr; }
        const PropertyValue& property(std::string_view) override { return nothing; }
        RegistryObject parent() const override { return nullptr; }
        std::vector<RegistryObject> children() const override { return {self.lock()}; }
        PropertyValue nothing;
        std::weak_ptr<Unreadable> self;
    };
    const auto entry = std::make_shared<Unreadable>();
    entry->self = entry;
    auto iterator = KOLIOKitUtilities::childIteratorFromObject(entry);
    EXPECT_EQ(iterator.next(), nullptr);
    EXPECT_EQ(iterator.object(), entry);
}

TEST_F(KOLIOKitUtilitiesTest, ParentAtZeroIsTheObjectWithOneMoreReference) {
    const RegistryObject start = object(3);
    const auto references = start.use_count();
    const RegistryObject same = KOLIOKitUtilities::parentAtIndex(0, start);
    EXPECT_EQ(same, start);
    EXPECT_EQ(start.use_count(), references + 1);
    EXPECT_EQ(KOLIOKitUtilities::parentAtIndex(-1, start), start);
}

TEST_F(KOLIOKitUtilitiesTest, ParentsAreCountedUpwardsAndEndAtTheRoot) {
    EXPECT_EQ(KOLIOKitUtilities::parentAtIndex(1, object(4)), object(3));
    EXPECT_EQ(KOLIOKitUtilities::parentAtIndex(3, object(4)), object(1));
    EXPECT_EQ(KOLIOKitUtilities::parentAtIndex(4, object(4)), nullptr);
    EXPECT_EQ(KOLIOKitUtilities::parentAtIndex(100, object(4)), nullptr);
}

TEST_F(KOLIOKitUtilitiesTest, EachStepDownTakesTheFirstChild) {
    EXPECT_EQ(KOLIOKitUtilities::childAtIndex(0, object(1)), object(1));
    EXPECT_EQ(KOLIOKitUtilities::childAtIndex(2, object(1)), object(3));
    EXPECT_EQ(KOLIOKitUtilities::childAtIndex(4, object(1)), nullptr);
    EXPECT_EQ(KOLIOKitUtilities::childAtIndex(50, object(1)), nullptr);
}

TEST_F(KOLIOKitUtilitiesTest, DictionariesOfParentsAndChildrenAreCopies) {
    const auto parent = KOLIOKitUtilities::dictionaryForParentAtIndex(2, object(4));
    ASSERT_TRUE(parent);
    EXPECT_EQ(parent->at("width"), PropertyValue(16));
    EXPECT_EQ(KOLIOKitUtilities::dictionaryForParentAtIndex(9, object(4)), std::nullopt);
    const auto child = KOLIOKitUtilities::dictionaryForChildAtIndex(1, object(3));
    ASSERT_TRUE(child);
    EXPECT_EQ(child->at("speed"), PropertyValue(7));
    EXPECT_EQ(KOLIOKitUtilities::dictionaryForChildAtIndex(2, object(3)), std::nullopt);
}

TEST_F(KOLIOKitUtilitiesTest, FirstMatchGivesItsDictionary) {
    const auto found = KOLIOKitUtilities::dictionaryWithMatch({{"IOProviderClass", "Device"}});
    ASSERT_TRUE(found);
    EXPECT_EQ(found->at("BSD Name"), PropertyValue("disk0"));
    EXPECT_EQ(KOLIOKitUtilities::dictionaryWithMatch({{"IOProviderClass", "None"}}), std::nullopt);
}

TEST_F(KOLIOKitUtilitiesTest, PathsLeadToObjectsAndTheirProperties) {
    EXPECT_EQ(KOLIOKitUtilities::objectAtPath("IOService:/bridge/first/driver"), object(4));
    EXPECT_EQ(KOLIOKitUtilities::propertiesFromObjectAtPath("IOService:/bridge")->at("speed"),
              PropertyValue(9));
    EXPECT_EQ(KOLIOKitUtilities::propertiesFromObjectAtPath("IOService:/gone"), std::nullopt);
}

TEST_F(KOLIOKitUtilitiesTest, KeyIsSearchedUpwardsAndNotInTheStart) {
    const auto search = KOLIOKitUtilities::searchForKeyInParents;
    EXPECT_EQ(search("speed", 5, object(4)), PropertyValue(9));
    EXPECT_EQ(search("width", 2, object(4)), PropertyValue(16));
    EXPECT_EQ(search("width", 1, object(4)), PropertyValue());
    EXPECT_EQ(search("speed", 0, object(4)), PropertyValue());
    EXPECT_EQ(search("colour", 50, object(4)), PropertyValue());
}

TEST_F(KOLIOKitUtilitiesTest, NoObjectAnswersNothing) {
    EXPECT_EQ(KOLIOKitUtilities::property("speed", nullptr), PropertyValue());
    EXPECT_EQ(KOLIOKitUtilities::propertiesFromObject(nullptr), nullptr);
    EXPECT_EQ(KOLIOKitUtilities::pathForObject(nullptr), std::nullopt);
    EXPECT_EQ(KOLIOKitUtilities::nameForObject(nullptr), std::nullopt);
    EXPECT_EQ(KOLIOKitUtilities::parentAtIndex(1, nullptr), nullptr);
}

}  // namespace
}  // namespace vantor
