#include "Shared/StatInterface.h"

#include <gtest/gtest.h>

#include "Shared/VTRMenuItemHeaderBuilders.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

/// Counts what a menu tells of its rows.
class CountingHost final : public VTRMenuHost {
public:
    void menuChanged(VTRMenu&) override { ++changes; }
    int changes = 0;
};

class StatInterfaceTest : public testing::Test {
protected:
    std::shared_ptr<VTRMenuItem> row() { return createFillerItem(nullptr, "", {10, 10}); }

    test::World world;
    VTRMenu menu;
    CountingHost host;
};

}  // namespace

TEST_F(StatInterfaceTest, TheSameRowsAgainChangeNothing) {
    const StatInterface::Items rows{row(), row(), row()};
    StatInterface::rebuildMenu(menu, rows);
    menu.setHost(&host, nullptr);

    StatInterface::rebuildMenu(menu, rows);

    EXPECT_EQ(host.changes, 0);
    EXPECT_EQ(menu.itemArray(), rows);
}

TEST_F(StatInterfaceTest, AnotherOrderIsTakenOver) {
    const StatInterface::Items rows{row(), row(), row()};
    StatInterface::rebuildMenu(menu, rows);
    const StatInterface::Items turned{rows[2], rows[0], rows[1]};

    StatInterface::rebuildMenu(menu, turned);

    EXPECT_EQ(menu.itemArray(), turned);
}

TEST_F(StatInterfaceTest, ANewRowComesToItsPlaceAndAnOldOneGoes) {
    const StatInterface::Items rows{row(), row(), row()};
    StatInterface::rebuildMenu(menu, rows);
    menu.setHost(&host, nullptr);
    const StatInterface::Items others{rows[0], row(), rows[2]};

    StatInterface::rebuildMenu(menu, others);

    EXPECT_EQ(menu.itemArray(), others);
    EXPECT_EQ(host.changes, 2);
    EXPECT_EQ(rows[1]->menu(), nullptr);
}

}  // namespace vantor
