#include "Hosts/Menu/MenuChain.h"

#include <algorithm>
#include <utility>

#include "Hosts/Menu/MenuControls.h"
#include "Painting/Path.h"
#include "Shared/Views/DropdownTheme.h"
#include "Shared/Views/StatInterfaceView.h"

namespace vantor {
namespace {

constexpr double kRingDistance = 2.5, kRingRadius = 4, kRingWidth = 1.5;

Rect grown(const Rect& rect, double by) noexcept {
    return {rect.x - by, rect.y - by, rect.width + 2 * by, rect.height + 2 * by};
}

/// A row of buttons has a ring around one of them, at most.
bool takesHighlight(const VTRMenuItem* item) {
    return item != nullptr && item->view() != nullptr && buttonsIn(*item->view()).empty();
}

}  // namespace

MenuChain::MenuChain(MainQueue& queue, std::function<void()> ended)
    : queue_(queue), ended_(std::move(ended)) {}

MenuChain::~MenuChain() { close(); }

bool MenuChain::open(VTRMenu& menu, MenuWindows& windows) {
    close();
    windows_ = &windows;
    return push({}, menu, nullptr);
}

/// Rows are placed before there is a window, which is as large as they need.
bool MenuChain::push(Level level, VTRMenu& menu, const Rect* row) {
    const std::size_t index = levels_.size();
    level.picture = std::make_unique<MenuPicture>(menu, owner());
    level.size = level.picture->layOut(mostHeight(index));
    level.window = row == nullptr
                       ? windows_->open(level.size)
                       : windows_->openBeside(levels_[index - 1].window, *row, level.size);
    if (level.window == MenuWindowID::none)
        return false;
    levels_.push_back(std::move(level));
    return true;
}

void MenuChain::close() noexcept {
    if (std::exchange(isLayoutDue_, false))
        queue_.cancel(layout_);
    if (levels_.empty())
        return;
    windows_->close(levels_.front().window);
    while (!levels_.empty())
        levels_.pop_back();  // submenus hear of it first
}

void MenuChain::closeBelow(std::size_t level) noexcept {
    if (level + 1 >= levels_.size())
        return;
    windows_->close(levels_[level + 1].window);
    while (levels_.size() > level + 1)
        levels_.pop_back();
}

std::optional<std::size_t> MenuChain::levelOf(MenuWindowID window) const noexcept {
    const auto level = std::ranges::find(levels_, window, &Level::window);
    if (window == MenuWindowID::none || level == levels_.end())
        return std::nullopt;
    return static_cast<std::size_t>(level - levels_.begin());
}

void MenuChain::setFrameInParent(MenuWindowID window, const Rect& frame) noexcept {
    if (const auto level = levelOf(window))
        levels_[*level].inParent = frame;
}

std::optional<Rect> MenuChain::submenuFrame(std::size_t level) const noexcept {
    if (level + 1 >= levels_.size())
        return std::nullopt;
    return levels_[level + 1].inParent;
}

const MenuChain::Row* MenuChain::highlightedRow(std::size_t level) const noexcept {
    const auto item = levels_[level].highlighted.lock();
    return item ? levels_[level].picture->layout().rowOf(item.get()) : nullptr;
}

/// The delegate hears of a row once, for as long as it stays the one.
void MenuChain::highlight(std::size_t level, const Row* row) {
    Level& highlighted = levels_[level];
    const auto item = row != nullptr ? row->item : nullptr;
    if (highlighted.highlighted.lock() == item)
        return;
    highlighted.highlighted = item;
    if (row != nullptr)
        windows_->rowHighlighted(
            highlighted.window,
            static_cast<std::size_t>(row - highlighted.picture->layout().rows().data()));
    VTRMenu* const menu = highlighted.picture->menu();
    if (menu != nullptr && menu->delegate() != nullptr)
        menu->delegate()->menuWillHighlightItem(*menu,
                                                takesHighlight(item.get()) ? item.get() : nullptr);
}

const MenuChain::Row* MenuChain::openRow(std::size_t level) const noexcept {
    if (level + 1 >= levels_.size())
        return nullptr;
    const auto item = levels_[level + 1].openedFrom.lock();
    return item ? levels_[level].picture->layout().rowOf(item.get()) : nullptr;
}

bool MenuChain::openSubmenu(std::size_t level, const Row& row) {
    const std::shared_ptr<VTRMenu> submenu = row.item->submenu();
    if (openRow(level) == &row)
        return true;
    closeBelow(level);
    const bool isShown = std::ranges::any_of(
        levels_, [&](const Level& each) { return each.picture->menu() == submenu.get(); });
    if (!submenu || isShown)
        return false;
    Level opening;
    opening.openedFrom = row.item;
    const Rect frame = levels_[level].picture->frameOf(row);
    return push(std::move(opening), *submenu, &frame);
}

View* MenuChain::focusedControl(std::size_t level) const noexcept {
    return levels_[level].focused.lock().get();
}

void MenuChain::focus(std::size_t level, View* control) {
    Level& focused = levels_[level];
    const Rect before = focusRing(focused);
    focused.focused = control != nullptr ? control->weak_from_this() : std::weak_ptr<View>();
    for (const Rect& ring : {before, focusRing(focused)})
        if (!isEmpty(ring))
            windows_->repaint(focused.window, grown(ring, kRingWidth));
}

Rect MenuChain::focusRing(const Level& level) const noexcept {
    const auto control = level.focused.lock();
    return control ? grown(level.picture->frameOf(*control), kRingDistance) : Rect{};
}

void MenuChain::paint(Painting::Context& context, std::size_t level, std::span<const Rect> parts) {
    levels_[level].picture->paint(context, parts);
    const Rect ring = focusRing(levels_[level]);
    if (isEmpty(ring))
        return;
    Painting::Path path;
    path.addRoundedRect(ring, kRingRadius);
    context.stroke(path, kHighlightLower, kRingWidth);
}

/// Most parts don't touch it: rows have a margin.
void MenuChain::paintEdge(Painting::Context& context, std::size_t level,
                          std::span<const Rect> parts, double cornerRadius) {
    const Size size = levels_[level].size;
    const double width = 1 / context.scale();
    const Rect inside{cornerRadius, width, size.width - 2 * cornerRadius, size.height - 2 * width};
    const Rect middle{width, cornerRadius, size.width - 2 * width, size.height - 2 * cornerRadius};
    const bool isFree = std::ranges::all_of(parts, [&](const Rect& part) {
        return intersection(part, inside) == part || intersection(part, middle) == part;
    });
    if (isFree)
        return;
    Painting::Path path;
    path.addRoundedRect(grown({0, 0, size.width, size.height}, -width / 2),
                        std::max(0.0, cornerRadius - width / 2));
    context.stroke(path, themed(grey(0, 0.22), grey(1, 0.2)), width);
}

void MenuChain::pictureChanged(MenuPicture& picture, const Rect& part) {
    const auto level =
        std::ranges::find(levels_, &picture, [](const Level& each) { return each.picture.get(); });
    if (level != levels_.end())  // else it is about to open
        windows_->repaint(level->window, part);
}

/// Once for all that happens to the rows in one go: nobody sees a menu half rebuilt.
void MenuChain::picturesRowsChanged(MenuPicture&) {
    if (std::exchange(isLayoutDue_, true))
        return;
    layout_ = queue_.after(0, [this] {
        isLayoutDue_ = false;
        layOut();
    });
}

double MenuChain::mostHeight(std::size_t level) const noexcept {
    return windows_->mostHeight(level == 0 ? MenuWindowID::none : levels_[level - 1].window);
}

void MenuChain::layOut() {
    for (std::size_t level = 0; level < levels_.size(); ++level)
        layOut(levels_[level], mostHeight(level));
    closeOrphans();
}

void MenuChain::layOut(Level& level, double mostHeight) {
    const Size size = level.picture->layOut(mostHeight);
    if (std::exchange(level.size, size) != size)
        windows_->resize(level.window, size);
    repaint(level);
}

/// Submenus whose row has gone, and all of it where the first menu has.
void MenuChain::closeOrphans() {
    for (std::size_t level = 0; level + 1 < levels_.size(); ++level)
        if (openRow(level) == nullptr || picture(level + 1).menu() == nullptr)
            closeBelow(level);
    if (!levels_.empty() && picture(0).menu() == nullptr)
        ended_();
}

void MenuChain::repaint(const Level& level) noexcept {
    windows_->repaint(level.window, {0, 0, level.size.width, level.size.height});
}

}  // namespace vantor
