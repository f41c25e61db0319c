#include "Hosts/Menu/MenuSession.h"

#include <utility>

#include "Hosts/Menu/MenuSentences.h"
#include "Painting/Context.h"

namespace vantor {

MenuSession::MenuSession(MainQueue& queue, std::function<void()> closed)
    : closed_(std::move(closed)), menus_(queue, [this] { dismissed(); }),
      pointer_(queue, menus_, [this] { dismissed(); }),
      keyboard_(queue, menus_, pointer_, [this] { dismissed(); }) {}

MenuSession::~MenuSession() { close(); }

bool MenuSession::open(VTRMenu& menu, MenuWindows& windows) {
    close();
    windows_ = &windows;
    windows.setOwner(this);
    if (menus_.open(menu, windows))
        return true;
    close();
    return false;
}

void MenuSession::close() noexcept {
    pointer_.forget();
    keyboard_.forget();
    menus_.close();
    if (MenuWindows* const windows = std::exchange(windows_, nullptr))
        windows->setOwner(nullptr);
}

void MenuSession::dismissed() noexcept {
    if (!isOpen())
        return;
    close();
    closed_();
}

void MenuSession::paintMenu(_cairo* cairo, MenuWindowID window, std::span<const Rect> parts,
                            const MenuLook& look) noexcept {
    const auto level = menus_.levelOf(window);
    if (!level)
        return;
    Painting::Context context(cairo, menus_.windowSize(*level), look.scale,
                              Painting::Origin::upperLeft);
    menus_.paint(context, *level, parts);
    menus_.paintEdge(context, *level, parts, look.cornerRadius);
}

void MenuSession::windowPlaced(MenuWindowID window, const Rect& inParent) noexcept {
    menus_.setFrameInParent(window, inParent);
}

void MenuSession::pointerMoved(MenuWindowID window, Point to) noexcept {
    if (const auto level = menus_.levelOf(window))
        pointer_.move(*level, to);
    else
        pointer_.leave();
}

void MenuSession::pointerPressed(MenuWindowID window, Point at) noexcept {
    if (const auto level = menus_.levelOf(window))
        pointer_.press(*level, at);
}

void MenuSession::pointerReleased(MenuWindowID window, Point at) noexcept {
    if (const auto level = menus_.levelOf(window))
        pointer_.release(*level, at);
    else
        pointer_.releaseElsewhere();
}

void MenuSession::wheelTurned(MenuWindowID window, double notches) noexcept {
    if (const auto level = menus_.levelOf(window))
        pointer_.turnWheel(*level, notches);
}

void MenuSession::keyPressed(MenuKey key) noexcept {
    if (key == MenuKey::escape)
        dismissed();
    else
        keyboard_.press(key);
}

std::size_t MenuSession::describedRows(MenuWindowID window) noexcept {
    const auto level = menus_.levelOf(window);
    return level ? menus_.picture(*level).layout().rows().size() : 0;
}

MenuRowDescription MenuSession::describedRow(MenuWindowID window, std::size_t index) noexcept {
    const auto level = menus_.levelOf(window);
    if (!level || index >= describedRows(window))
        return {};
    const MenuPicture& picture = menus_.picture(*level);
    MenuRowDescription row = vantor::describedRow(picture.layout(), index);
    row.place.y -= picture.scroll().offset;
    return row;
}

bool MenuSession::isRowHighlighted(MenuWindowID window, std::size_t index) noexcept {
    const auto level = menus_.levelOf(window);
    return level && index < describedRows(window) &&
           menus_.highlightedRow(*level) == &menus_.picture(*level).layout().rows()[index];
}

/// In its middle, where it shows.
void MenuSession::rowPressed(MenuWindowID window, std::size_t index) noexcept {
    const auto level = menus_.levelOf(window);
    if (!level || index >= describedRows(window))
        return;
    MenuPicture& picture = menus_.picture(*level);
    const auto& row = picture.layout().rows()[index];
    picture.reveal(row);
    const Rect frame = picture.frameOf(row);
    const Point middle{frame.x + frame.width / 2, frame.y + frame.height / 2};
    pointer_.press(*level, middle);
    pointer_.release(*level, middle);
}

void MenuSession::textTyped(std::string_view text) noexcept { keyboard_.type(text); }

}  // namespace vantor
