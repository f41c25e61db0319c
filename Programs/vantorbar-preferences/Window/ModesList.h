#pragma once

#include <cstddef>

#include <gtk/gtk.h>

#include "Programs/vantorbar-preferences/Model/ItemPreview.h"
#include "Programs/vantorbar-preferences/Model/MenubarModes.h"
#include "Programs/vantorbar-preferences/Model/PreferencesModel.h"
#include "Programs/vantorbar-preferences/Window/Widgets.h"

namespace vantor {

/// The modes of the item as a list: a tick shows one, dragging a row, the buttons at its end or Alt
/// with an arrow key put it elsewhere.
/// Thread: main. The model and the preview outlive it.
class ModesList {
public:
    ModesList(PreferencesModel& model, ItemPreview& preview, GtkWidget* column, WidgetMaker& make);
    ~ModesList();
    ModesList(const ModesList&) = delete;
    ModesList& operator=(const ModesList&) = delete;

    /// After the setting, or how modes look, may have changed.
    void show(std::string_view key);

private:
    /// Which control of a moved row keeps the focus.
    enum class Focus { none, tick, up, down };

    void fill(std::size_t focused = 0, Focus focus = Focus::none);
    void addRow(std::size_t place, std::size_t focused, Focus focus);
    GtkWidget* newTick(std::size_t place);
    GtkWidget* newMover(std::size_t place, int step, const std::string& name);
    bool isUpToDate();
    void setShown(std::size_t place, bool shown);
    void move(std::size_t place, std::size_t to, Focus focus);
    void store();
    void makeDraggable(GtkWidget* handle, GtkWidget* row);

    static gboolean keyPressed(GtkWidget* list, GdkEventKey* event, gpointer self) noexcept;
    static void dragBegins(GtkWidget* handle, GdkDragContext* context, gpointer self) noexcept;
    static void dragAsks(GtkWidget* handle, GdkDragContext*, GtkSelectionData* data, guint, guint,
                         gpointer) noexcept;
    static void dropped(GtkWidget* row, GdkDragContext*, gint, gint, GtkSelectionData* data, guint,
                        guint, gpointer self) noexcept;

    PreferencesModel& model_;
    ItemPreview& preview_;
    Mnemonics mnemonics_;  // those of the rest of the window
    MenubarModes modes_;
    GtkWidget* list_;
    bool isFilling_ = false;
    guint waitingDrop_ = 0;
    std::size_t dropFrom_ = 0, dropTo_ = 0;
};

}  // namespace vantor
