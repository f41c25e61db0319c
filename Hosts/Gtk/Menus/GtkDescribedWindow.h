#pragma once

#include <cstddef>
#include <string>

#include <gtk/gtk.h>

namespace vantor {

/// A part of a window that GTK knows nothing of, as assistive technology is told of it.
struct DescribedPart {
    AtkRole role = ATK_ROLE_UNKNOWN;
    std::string name, description;
    GdkRectangle place{};  // in the window, in points
    bool isEnabled = false, isFocused = false;
};

/// Who tells of a window's parts, when it is asked.
class WindowDescriber {
public:
    virtual std::size_t describedParts() noexcept = 0;
    virtual DescribedPart describedPart(std::size_t index) noexcept = 0;
    /// What a press of the pointer there would do.
    virtual void pressPart(std::size_t index) noexcept = 0;

protected:
    ~WindowDescriber() = default;
};

/// A window of GTK whose parts `describer` tells of, for as long as it lives.
GtkWidget* newDescribedWindow(GtkWindowType type, WindowDescriber& describer) noexcept;
/// The user is at that part now. Nothing happens where nobody listens.
void tellFocus(GtkWidget* window, std::size_t part) noexcept;

}  // namespace vantor
