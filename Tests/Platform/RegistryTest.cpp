#include "Platform/Registry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedRegistry.h"

namespace vantor {
namespace {

using simulated::RegistryNode;
using simulated::SimulatedRegistry;
using testing::ElementsAre;
using testing::IsEmpty;

RegistryNode node(std::uint64_t id, std::string className, std::string name,
                  std::vector<RegistryNode> children = {},
                  PropertyValue::Dictionary properties = {}) {
    return {id, std::move(className), std::move(name), std::move(properties), std::move(children)};
}

std::vector<std::uint64_t> idsOf(const std::vector<RegistryObject>& objects) {
    std::vector<std::uint64_t> ids;
    for (const RegistryObject& object : objects)
        ids.push_back(object->entryID());
    return ids;
}

class RegistryTest : public testing::Test {
protected:
    RegistryTest() {
        registry.setTree(node(
            1, "Root", "Root",
            {node(2, "Bridge", "a", {node(3, "Device", "b", {node(4, "Device", "c")}, {{"x", 1}})}),
             node(5, "Device", "a/b", {}, {{"x", 2}}), node(6, "Device2", "")}));
    }
    SimulatedRegistry registry;
};

TEST_F(RegistryTest, ClassMatchesExactlyAndParentsComeBeforeTheirChildren) {
    EXPECT_THAT(idsOf(registry.objectsMatching({{"IOProviderClass", "Device"}})),
                ElementsAre(3, 4, 5));
    EXPECT_THAT(registry.objectsMatching({{"IOProviderClass", "Dev"}}), IsEmpty());
}

TEST_F(RegistryTest, NamesAndPropertiesMatchToo) {
    EXPECT_THAT(idsOf(registry.objectsMatching({{"IONameMatch", "c"}})), ElementsAre(4));
    EXPECT_THAT(idsOf(registry.objectsMatching({{"IOProviderClass", "Device"}, {"x", 2}})),
                ElementsAre(5));
    EXPECT_THAT(registry.objectsMatching({{"x", 3}}), IsEmpty());
}

TEST_F(RegistryTest, EmptyDictionaryMatchesNothing) {
    EXPECT_THAT(registry.objectsMatching({}), IsEmpty());
}

TEST_F(RegistryTest, PathsLeadBackToTheirObjects) {
    for (const std::uint64_t id : {1, 2, 3, 4, 6}) {
        const RegistryObject object = registry.objectWithID(id);
        EXPECT_EQ(registry.objectAtPath(object->path().value()), object) << id;
    }
    EXPECT_EQ(registry.root()->path(), "IOService:");
    EXPECT_EQ(registry.objectWithID(4)->path(), "IOService:/a/b/c");
}

TEST_F(RegistryTest, OfTwoObjectsWithOnePathTheFirstIsFound) {
    EXPECT_EQ(registry.objectAtPath("IOService:/a/b"), registry.objectWithID(3));
}

TEST_F(RegistryTest, PathThatLeadsNowhereIsNoObject) {
    for (const char* const path : {"", "/a", "IODeviceTree:/a", "IOService:a", "IOService:/b",
                                   "IOService:/a/", "IOService:/a/b/c/d"})
        EXPECT_EQ(registry.objectAtPath(path), nullptr) << path;
}

}  // namespace
}  // namespace vantor
