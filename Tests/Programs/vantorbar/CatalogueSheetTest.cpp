#include "Programs/vantorbar/CatalogueSheet.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

#include "Programs/vantorbar/CatalogueExhibits.h"
#include "Tests/Support/Pictures.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

const std::filesystem::path kResources = std::filesystem::path(VANTOR_BUNDLE_DIR).parent_path();

}  // namespace

TEST(CatalogueSheetTest, TheSheetGrowsWithTheScale) {
    const auto once = paintCatalogue(kResources, 1, Paper::light);
    const auto twice = paintCatalogue(kResources, 2, Paper::light);
    EXPECT_GT(once.widthPixels(), 1000);
    EXPECT_GT(once.heightPixels(), 500);
    EXPECT_NEAR(twice.widthPixels(), 2 * once.widthPixels(), 1);
}

TEST(CatalogueSheetTest, TwoSheetsHaveTheSamePixels) {
    EXPECT_EQ(test::pixelsOf(paintCatalogue(kResources, 1, Paper::dark)),
              test::pixelsOf(paintCatalogue(kResources, 1, Paper::dark)));
}

TEST(CatalogueSheetTest, PaperLiesAroundThePanels) {
    EXPECT_NE(paintCatalogue(kResources, 1, Paper::light).pixel(1, 1),
              paintCatalogue(kResources, 1, Paper::dark).pixel(1, 1));
}

TEST(CatalogueSheetTest, EveryBuilderHasAnExhibit) {
    const test::World world;
    const CatalogueSamples samples(CatalogueSamples::Kind::shares);
    std::set<std::string> names;
    for (const ExhibitFamily& family : catalogueExhibits(samples, samples))
        for (const Exhibit& exhibit : family.exhibits) {
            EXPECT_NE(exhibit.item->anyView(), nullptr) << exhibit.name;
            names.insert(exhibit.name.substr(0, exhibit.name.find(',')));
        }
    for (const char* const name : {"createMenuItem",
                                   "createFlippedMenuItem",
                                   "createSpacerItem",
                                   "createFillerItem",
                                   "createMainHeaderItem",
                                   "createHeaderItem",
                                   "createLabelMenuItem",
                                   "createCenteredLabel",
                                   "createTextMenuItem",
                                   "createTextMenuItem2",
                                   "createComboTextMenuItem",
                                   "createComboTextMenuItemWithLegend",
                                   "createComboTextMenuItem2",
                                   "createComboTextMenuItemWithLegend2",
                                   "createMenuItemWithRightStatusDot",
                                   "createComboButtonMenuItem",
                                   "createButtonMenuItem",
                                   "createTickButtonMenuItem",
                                   "createIconLabelMenuItem",
                                   "createRightIconLabelMenuItem",
                                   "createDoubleProcessItem",
                                   "createProcessHeaderItem",
                                   "createProcessImageHeaderItem",
                                   "createBarGraphItem",
                                   "createBarGraphItem2",
                                   "createBarGraphItemWithLabel",
                                   "createHistoryGraph",
                                   "createLauncherMenuItem",
                                   "createHistoryGraphs",
                                   "createGraphs"})
        EXPECT_TRUE(names.contains(name)) << name;
}

TEST(CatalogueSheetTest, WithoutArtworkTheSheetIsPaintedAllTheSame) {
    EXPECT_GT(paintCatalogue("/nonexistent", 1, Paper::light).widthPixels(), 1000);
}

}  // namespace vantor
