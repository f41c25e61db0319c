#include "Platform/Simulated/SimulatedRegistry.h"

#include <gtest/gtest.h>

namespace vantor::simulated {
namespace {

RegistryNode device(std::int64_t figure, std::vector<RegistryNode> children = {}) {
    return {2, "IOPCIDevice", "GPU", {{"figure", figure}}, std::move(children)};
}

RegistryNode tree(std::vector<RegistryNode> children) {
    return {1, "Root", "Root", {}, std::move(children)};
}

TEST(SimulatedRegistryTest, AtFirstItIsARootWithoutChildren) {
    SimulatedRegistry registry;
    ASSERT_NE(registry.root(), nullptr);
    EXPECT_TRUE(registry.root()->children().empty());
    EXPECT_EQ(registry.root()->parent(), nullptr);
}

TEST(SimulatedRegistryTest, NodeOfTheSameIDIsTheSameObjectWithNewProperties) {
    SimulatedRegistry registry;
    registry.setTree(tree({device(1)}));
    const RegistryObject before = registry.objectWithID(2);
    registry.setTree(tree({{7, "Bridge", "bridge", {}, {device(2)}}}));
    EXPECT_EQ(registry.objectWithID(2), before);
    EXPECT_EQ(before->property("figure"), PropertyValue(std::int64_t{2}));
    EXPECT_EQ(before->path(), "IOService:/bridge/GPU");
}

TEST(SimulatedRegistryTest, NodeThatLeftKeepsItsPropertiesAndHasNoFamily) {
    SimulatedRegistry registry;
    registry.setTree(tree({device(1, {{3, "IOAccelerator", "driver", {}, {}}})}));
    const RegistryObject left = registry.objectWithID(2);
    registry.setTree(tree({}));
    EXPECT_EQ(left->property("figure"), PropertyValue(std::int64_t{1}));
    EXPECT_EQ(left->parent(), nullptr);
    EXPECT_TRUE(left->children().empty());
    EXPECT_EQ(left->path(), std::nullopt);
}

TEST(SimulatedRegistryTest, NodeThatCameBackIsTheSameObject) {
    SimulatedRegistry registry;
    registry.setTree(tree({device(1)}));
    const RegistryObject before = registry.objectWithID(2);
    registry.setTree(tree({}));
    registry.setTree(tree({device(3)}));
    EXPECT_EQ(registry.objectsMatching({{"IOProviderClass", "IOPCIDevice"}}).at(0), before);
    EXPECT_EQ(before->parent(), registry.root());
}

}  // namespace
}  // namespace vantor::simulated
