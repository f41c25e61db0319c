#include "Programs/vantorbar-preferences/Model/ItemPreview.h"

#include <cstdint>
#include <set>

#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedMachine.h"
#include "Programs/vantorbar-preferences/Model/SettingCatalogue.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRPreferences.h"

namespace vantor {
namespace {

class ItemPreviewTest : public testing::Test {
protected:
    static PreviewMachine machineOf(std::size_t cpus) {
        return {.cpus = cpus,
                .physicalCores = static_cast<std::int64_t>(cpus),
                .resources = std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path()};
    }
    static double inkOf(const Painting::ImageSurface& picture) {
        double ink = 0;
        for (int y = 0; y < picture.heightPixels(); ++y)
            for (const std::uint32_t pixel : picture.row(y))
                ink += pixel >> 24;
        return ink;
    }
    double width(BarShade shade = BarShade::light) {
        return preview.picture(shade, 1).size().width;
    }

    simulated::SimulatedRegionalSettings regionalSettings;
    ItemPreview preview{machineOf(4), regionalSettings, {{"CPU_MenubarMode", "100,0"}}};
};

TEST_F(ItemPreviewTest, ItemIsAsWideAsThePaintersMakeIt) { EXPECT_EQ(width(), 12 + 30); }

TEST_F(ItemPreviewTest, SettingShowsAtOnce) {
    preview.setSetting("CPU_MenubarMode", "100,1");
    preview.setSetting("CPU_MenubarCombineCores", std::int64_t{0});
    EXPECT_EQ(width(), 12 + 4 * 13 - 4);
    preview.setSetting("CPU_MenubarCombineCores", {});
    EXPECT_EQ(width(), 12 + 13 - 4);
}

TEST_F(ItemPreviewTest, AllSettingsCanBeReplaced) {
    preview.setSettings({{"CPU_MenubarGraphWidth", std::int64_t{50}}});
    EXPECT_EQ(width(), 12 + 50);
}

TEST_F(ItemPreviewTest, GraphIsFullFromTheBeginning) {
    preview.setSettings({{"CPU_MenubarMode", "0"},
                         {"CPU_MenubarGraphWidth", std::int64_t{200}},
                         {"CPU_MenubarGraphCustomColors", true},
                         {"TimerFrequency", std::int64_t{0}},
                         {"CPU_MenubarGraphOverall", "1 0 0 1"}});
    const Painting::ImageSurface picture = preview.picture(BarShade::light, 1);
    for (int x = 2; x < 198; ++x)
        EXPECT_EQ(picture.pixel(x, 18), 0xFFFF0000u) << x;
}

TEST_F(ItemPreviewTest, TimePassesInIt) {
    const auto pixels = [this] {
        const Painting::ImageSurface picture = preview.picture(BarShade::light, 1);
        std::vector<std::uint32_t> all;
        for (int y = 0; y < picture.heightPixels(); ++y)
            all.insert(all.end(), picture.row(y).begin(), picture.row(y).end());
        return all;
    };
    const auto before = pixels();
    EXPECT_EQ(pixels(), before);
    preview.advance();
    preview.advance();
    EXPECT_NE(pixels(), before);
}

TEST_F(ItemPreviewTest, DarkBarsHaveWhiteInk) {
    const auto middleOfLabel = [this](BarShade shade) {
        const Painting::ImageSurface picture = preview.pictureOf(100, shade, 2);
        std::uint32_t brightest = 0;
        for (int y = 0; y < picture.heightPixels(); ++y)
            for (const std::uint32_t pixel : picture.row(y))
                brightest = std::max(brightest, pixel & 0xFF);
        return brightest;
    };
    EXPECT_LT(middleOfLabel(BarShade::light), 0x80u);
    EXPECT_EQ(middleOfLabel(BarShade::dark), 0xFFu);
    EXPECT_LT(middleOfLabel(BarShade::light), 0x80u);
}

TEST_F(ItemPreviewTest, EachModeHasAPictureOfItsOwnAndTheItemStaysAsItWas) {
    for (const ModeDescription& mode : modeDescriptions())
        EXPECT_GT(inkOf(preview.pictureOf(mode.mode, BarShade::light, 1)), 0) << mode.name;
    EXPECT_EQ(width(), 12 + 30);
}

TEST_F(ItemPreviewTest, ScaleIsThatOfTheScreen) {
    EXPECT_EQ(preview.picture(BarShade::light, 2).heightPixels(), 44);
}

TEST_F(ItemPreviewTest, GraphicsProcessorIsTheMachines) {
    PreviewMachine machine = machineOf(2);
    machine.graphicsModel = "Radeon";
    ItemPreview other(machine, regionalSettings, {{"CPU_MenubarMode", "5"}});
    EXPECT_EQ(other.picture(BarShade::light, 1).size().width, 16 - 4);
}

TEST_F(ItemPreviewTest, MachineIsAsTheRealOne) {
    simulated::SimulatedMachine real;
    real.processorCounters.setCPUs(8, 8, 8, 4);
    real.registry.setTree(
        {1,
         "Root",
         "Root",
         {},
         {{2, "IOPCIDevice", "audio", {{"IOName", "sound"}}, {}},
          {3, "IOPCIDevice", "display", {{"IOName", "display"}, {"model", "Intel HD"}}, {}}}});
    const PreviewMachine machine = PreviewMachine::of(real.ports());
    EXPECT_EQ(machine.cpus, 8u);
    EXPECT_EQ(machine.physicalCores, 4);
    EXPECT_EQ(machine.graphicsModel, "Intel HD");
    EXPECT_TRUE(machine.isGraphicsIntegrated);
}

}  // namespace
}  // namespace vantor
