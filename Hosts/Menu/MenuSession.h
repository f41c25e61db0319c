#pragma once

#include <functional>
#include <memory>

#include "Hosts/Menu/MenuChain.h"
#include "Hosts/Menu/MenuKeyboard.h"
#include "Hosts/Menu/MenuPointer.h"
#include "Hosts/Menu/MenuWindows.h"

namespace vantor {

/// An extra's menu while it is open, with the submenus that the user opens from it. Hosts open it
/// on a click; from there on it serves pointer and keyboard until it closes.
/// Errors: where there is no window to be had, nothing opens.
/// Thread: main queue. Nothing is painted, measured or kept while it is closed.
class MenuSession final : private MenuWindowsOwner {
public:
    /// `closed` is called after it closed by itself: the user or the toolkit wanted that, or the
    /// menu has ended.
    MenuSession(MainQueue& queue, std::function<void()> closed);
    ~MenuSession();
    MenuSession(const MenuSession&) = delete;
    MenuSession& operator=(const MenuSession&) = delete;

    /// Shows `menu` in `windows`, which outlive its being open; closes what was open before.
    [[nodiscard]] bool open(VTRMenu& menu, MenuWindows& windows);
    /// The menus hear of it, `closed` doesn't.
    void close() noexcept;
    bool isOpen() const noexcept { return menus_.size() > 0; }
    const MenuChain& menus() const noexcept { return menus_; }

private:
    void paintMenu(_cairo* cairo, MenuWindowID window, std::span<const Rect> parts,
                   const MenuLook& look) noexcept override;
    void windowPlaced(MenuWindowID window, const Rect& inParent) noexcept override;
    void pointerMoved(MenuWindowID window, Point to) noexcept override;
    void pointerPressed(MenuWindowID window, Point at) noexcept override;
    void pointerReleased(MenuWindowID window, Point at) noexcept override;
    void wheelTurned(MenuWindowID window, double notches) noexcept override;
    void keyPressed(MenuKey key) noexcept override;
    std::size_t describedRows(MenuWindowID window) noexcept override;
    MenuRowDescription describedRow(MenuWindowID window, std::size_t index) noexcept override;
    bool isRowHighlighted(MenuWindowID window, std::size_t index) noexcept override;
    void rowPressed(MenuWindowID window, std::size_t index) noexcept override;
    void textTyped(std::string_view text) noexcept override;
    void dismissed() noexcept override;

    std::function<void()> closed_;
    MenuWindows* windows_ = nullptr;
    MenuChain menus_;
    MenuPointer pointer_;
    MenuKeyboard keyboard_;
};

}  // namespace vantor
