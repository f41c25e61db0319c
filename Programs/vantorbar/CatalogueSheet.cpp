#include "Programs/vantorbar/CatalogueSheet.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "Painting/Context.h"
#include "Painting/Path.h"
#include "Platform/Simulated/SimulatedMachine.h"
#include "Programs/vantorbar/CatalogueExhibits.h"
#include "Shared/ProcessContext.h"
#include "Shared/VTRMenuItemBuilders.h"
#include "Shared/VTRPreferenceFunctions.h"
#include "Shared/Views/DropdownTheme.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor {
namespace {

constexpr double kMargin = 24, kPanelInset = 16, kPanelRadius = 10;
constexpr double kCellWidth = 225, kGap = 12, kColumnGap = 28;
constexpr double kCaptionHeight = 14, kCellGap = 8, kTitleHeight = 24, kFamilyGap = 10;
constexpr Colour kLightPaper{0.86, 0.87, 0.88, 1}, kDarkPaper{0.05, 0.05, 0.06, 1};

/// A row's place on the panel, and what stands above it.
struct Cell {
    std::string_view caption;
    bool isTitle = false;
    std::shared_ptr<VTRMenuItem> plain{}, highlighted{};
    Point place{};
};

/// The rows of a theme, in two columns of two.
struct Panel {
    std::vector<ExhibitFamily> plain, highlighted;
    std::vector<Cell> cells;
    Size size;
};

Size sizeOf(const VTRMenuItem& item) { return item.anyView()->frame().size(); }

double heightOf(const Cell& cell) {
    return cell.isTitle ? kTitleHeight
                        : kCaptionHeight + std::max(1.0, sizeOf(*cell.plain).height) + kCellGap;
}

/// What is wider than a column stands over both of its places, and isn't shown highlighted: the
/// graphs hide nearly all of it.
bool isWide(const VTRMenuItem& item) { return sizeOf(item).width > kCellWidth + kGap; }

/// A row as a menu has it: what is to be stacked is stacked.
std::shared_ptr<VTRMenuItem> asRow(std::shared_ptr<VTRMenuItem> item) {
    if (item->view() != nullptr)
        return item;
    auto around = createMenuItem();
    around->addSubMenuItem(item, "row");
    return around;
}

void addFamily(Panel& panel, const ExhibitFamily& plain, const ExhibitFamily& highlighted) {
    panel.cells.push_back({.caption = plain.title, .isTitle = true});
    for (std::size_t index = 0; index < plain.exhibits.size(); ++index)
        panel.cells.push_back({.caption = plain.exhibits[index].name,
                               .plain = asRow(plain.exhibits[index].item),
                               .highlighted = asRow(highlighted.exhibits[index].item)});
}

/// From the top down, and from the second column's top once the first one holds half of it all.
void place(Panel& panel) {
    double whole = 0;
    for (const Cell& cell : panel.cells)
        whole += heightOf(cell);
    constexpr double kColumnWidth = 2 * kCellWidth + kGap;
    double x = kPanelInset, y = kPanelInset, lowest = 0;
    for (Cell& cell : panel.cells) {
        if (cell.isTitle && x == kPanelInset && y - kPanelInset >= whole * 0.42) {
            x += kColumnWidth + kColumnGap;
            y = kPanelInset;
        } else if (cell.isTitle && y > kPanelInset) {
            y += kFamilyGap;
        }
        cell.place = {x, y};
        y += heightOf(cell);
        lowest = std::max(lowest, y);
    }
    panel.size = {2 * (kPanelInset + kColumnWidth) + kColumnGap, lowest + kPanelInset};
}

Panel makePanel(const StatSamples& shares, const StatSamples& loads) {
    Panel panel{catalogueExhibits(shares, loads), catalogueExhibits(shares, loads), {}, {}};
    for (std::size_t index = 0; index < panel.plain.size(); ++index)
        addFamily(panel, panel.plain[index], panel.highlighted[index]);
    place(panel);
    for (const Cell& cell : panel.cells)
        if (cell.highlighted)
            cell.highlighted->view()->setMenuItemHighlighted(true);
    return panel;
}

void paintRow(Painting::Context& context, const VTRMenuItem& item, Point place) {
    StatInterfaceView& view = *item.view();
    Painting::Context inside(context, {place.x, place.y, view.frame().width, view.frame().height},
                             view.isFlipped() ? Painting::Origin::upperLeft
                                              : Painting::Origin::lowerLeft);
    view.display(inside);
}

void paintCell(Painting::Context& context, const Cell& cell) {
    const Rect line{cell.place.x, cell.place.y, 2 * kCellWidth + kGap, kCaptionHeight};
    if (cell.isTitle) {
        context.drawText(cell.caption, line,
                         {.font = {.size = 13, .weight = Painting::Weight::bold},
                          .colour = themed(grey(0.15), grey(0.92))});
        return;
    }
    context.drawText(cell.caption, line,
                     {.font = {.size = 9}, .colour = themed(grey(0.45), grey(0.62))});
    const double y = cell.place.y + kCaptionHeight;
    paintRow(context, *cell.plain, {cell.place.x, y});
    if (!isWide(*cell.plain))
        paintRow(context, *cell.highlighted, {cell.place.x + kCellWidth + kGap, y});
}

void paintPanel(Painting::Context& context, const Panel& panel) {
    Painting::Path card;
    card.addRoundedRect({0, 0, panel.size.width, panel.size.height}, kPanelRadius);
    context.fill(card, themed(grey(0.93), grey(0.11)));
    for (const Cell& cell : panel.cells)
        paintCell(context, cell);
}

/// The panel of one theme, in a world of its own.
Painting::ImageSurface paintTheme(const std::filesystem::path& resources, double scale,
                                  std::int64_t theme) {
    simulated::SimulatedMachine machine;
    machine.directories.setResources(resources);
    ProcessContext context(machine.ports());
    VTRSetBoolForKey("Theme-SeperateStyles", false);
    VTRSetIntegerForKey("DropdownTheme", theme);
    const CatalogueSamples shares(CatalogueSamples::Kind::shares);
    const CatalogueSamples loads(CatalogueSamples::Kind::loads);
    const Panel panel = makePanel(shares, loads);
    Painting::ImageSurface surface(panel.size, scale);
    Painting::Context picture = surface.context(Painting::Origin::upperLeft);
    paintPanel(picture, panel);
    return surface;
}

}  // namespace

Painting::ImageSurface paintCatalogue(const std::filesystem::path& resources, double scale,
                                      Paper paper) {
    const Painting::ImageSurface panels[]{paintTheme(resources, scale, 0),
                                          paintTheme(resources, scale, 1)};
    const Size panel = panels[0].size();
    Painting::ImageSurface sheet({2 * panel.width + 3 * kMargin, panel.height + 2 * kMargin},
                                 scale);
    Painting::Context context = sheet.context(Painting::Origin::upperLeft);
    context.fill(context.clipBounds(), paper == Paper::dark ? kDarkPaper : kLightPaper);
    context.drawImage(panels[0], Point{kMargin, kMargin});
    context.drawImage(panels[1], Point{2 * kMargin + panel.width, kMargin});
    return sheet;
}

}  // namespace vantor
