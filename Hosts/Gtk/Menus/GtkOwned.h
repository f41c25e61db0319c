#pragma once

#include <memory>

#include <gtk/gtk.h>

namespace vantor {

struct DestroyWidget {
    void operator()(GtkWidget* widget) const noexcept { gtk_widget_destroy(widget); }
};
/// A window of ours: it goes from the screen with this.
using OwnedWindow = std::unique_ptr<GtkWidget, DestroyWidget>;

}  // namespace vantor
