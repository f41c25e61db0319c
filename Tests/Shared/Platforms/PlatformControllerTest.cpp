#include "Shared/Platforms/PlatformController.h"

#include <gtest/gtest.h>

#include "Shared/Platforms/PlatformMac.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

class PlatformControllerTest : public testing::Test {
protected:
    void setModel(std::optional<std::string> model) {
        world.machine.machineIdentity.setModelIdentifier(std::move(model));
    }
    void pretend() {
        world.machine.registry.setTree(
            {1, "Root", "Root", {}, {{2, "FakeSMC", "FakeSMC", {}, {}}}});
    }
    PlatformController controller() { return PlatformController(world.machine.ports()); }

    test::World world;
};

TEST_F(PlatformControllerTest, IdentifierPicksTheModel) {
    setModel("MacBookPro8,2");
    const PlatformController found = controller();
    EXPECT_EQ(found.platform().name(), "MacBook Pro");
    EXPECT_EQ(found.platform().identifier(), "MacBookPro8,2");
    EXPECT_EQ(found.platform().supportedSensors().size(), 41u);
}

TEST_F(PlatformControllerTest, MachineThatIsNotInTheTableKeepsItsIdentifier) {
    setModel("MacBookPro18,3");
    const PlatformController found = controller();
    EXPECT_EQ(found.platform().name(), "Unknown");
    EXPECT_EQ(found.platform().identifier(), "MacBookPro18,3");
    EXPECT_EQ(found.platform().variationName(), std::nullopt);
}

TEST_F(PlatformControllerTest, MachineWithoutAnIdentifierIsUnknown) {
    setModel(std::nullopt);
    EXPECT_EQ(controller().platform().identifier(), "Unknown");
    EXPECT_EQ(PlatformController::modelIdentifier(), std::nullopt);
    EXPECT_FALSE(PlatformController::isLaptop());
}

TEST_F(PlatformControllerTest, MachineThatPretendsIsAFauxMacButStaysALaptop) {
    setModel("MacBookPro8,2");
    pretend();
    const PlatformController found = controller();
    EXPECT_TRUE(found.fauxMac());
    EXPECT_EQ(found.platform().name(), "FauxMac");
    EXPECT_TRUE(PlatformController::isLaptop());
}

TEST_F(PlatformControllerTest, GraphicsFlagsFollowTheFamily) {
    struct Case {
        const char* model;
        bool hides, ignores;
    };
    for (const auto& [model, hides, ignores] :
         {Case{"MacPro6,1", false, true}, Case{"iMac14,2", true, false},
          Case{"MacBookPro11,3", false, false}, Case{"Xserve3,1", false, false},
          Case{"Macmini7,1", false, false}, Case{"Unheard1,1", false, false}}) {
        setModel(model);
        const PlatformController found = controller();
        EXPECT_EQ(found.platform().hideIntergratedGraphics(), hides) << model;
        EXPECT_EQ(found.platform().ignoreGraphicsControl(), ignores) << model;
    }
}

TEST_F(PlatformControllerTest, SharedControllerIsMadeOnFirstUse) {
    setModel("iMac14,2");
    EXPECT_EQ(PlatformController::sharedPlatformController(), nullptr);
    PlatformMac& platform = PlatformController::currentPlatform();
    EXPECT_EQ(&PlatformController::sharedPlatformController()->platform(), &platform);
    setModel("MacPro6,1");
    EXPECT_EQ(PlatformController::currentPlatform().identifier(), "iMac14,2");
    EXPECT_EQ(PlatformController::modelIdentifier(), "MacPro6,1");
}

TEST_F(PlatformControllerTest, LaptopsAreToldByTheirIdentifier) {
    for (const char* const model : {"MacBook1,1", "MACBOOKAIR9,9", "macbookpro"})
        EXPECT_TRUE(isLaptopModel(model)) << model;
    for (const char* const model : {"Macmini1,1", "iMac4,1", "", "My MacBook"})
        EXPECT_FALSE(isLaptopModel(model)) << model;
}

}  // namespace
}  // namespace vantor
