#include "Programs/vantorbar-preferences/Window/ModesList.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Painting/Context.h"
#include "Painting/Path.h"
#include "Programs/vantorbar-preferences/Window/PreviewStrip.h"

namespace vantor {
namespace {

constexpr const char* kKey = "CPU_MenubarMode";
constexpr const char* kPlace = "vantor-place";
constexpr const char* kTarget = "VANTOR_MODE_ROW";

GtkTargetEntry dragTarget() noexcept {
    static char name[] = "VANTOR_MODE_ROW";
    return {name, GTK_TARGET_SAME_APP, 0};
}

void setPlace(GtkWidget* widget, std::size_t place) noexcept {
    g_object_set_data(G_OBJECT(widget), kPlace, GSIZE_TO_POINTER(place));
}

std::size_t placeOf(GtkWidget* widget) noexcept {
    return GPOINTER_TO_SIZE(g_object_get_data(G_OBJECT(widget), kPlace));
}

const ModeDescription& descriptionOf(std::int64_t mode) noexcept {
    return *std::ranges::find(modeDescriptions(), mode, &ModeDescription::mode);
}

std::string nameOf(std::int64_t mode) { return text(descriptionOf(mode).name); }

gboolean drawGrip(GtkWidget* grip, cairo_t* cairo, gpointer) noexcept {
    constexpr double kDot = 2, kStep = 5;
    const Size size{static_cast<double>(gtk_widget_get_allocated_width(grip)),
                    static_cast<double>(gtk_widget_get_allocated_height(grip))};
    GdkRGBA ink;
    gtk_style_context_get_color(gtk_widget_get_style_context(grip),
                                gtk_widget_get_state_flags(grip), &ink);
    Painting::Context context(cairo, size, gtk_widget_get_scale_factor(grip),
                              Painting::Origin::upperLeft);
    Painting::Path dots;
    for (int row = -1; row <= 1; ++row)
        for (int column = 0; column < 2; ++column)
            dots.addOval({column * kStep, size.height / 2 + row * kStep - kDot / 2, kDot, kDot});
    context.fill(dots, Colour{ink.red, ink.green, ink.blue, 0.4});
    return TRUE;
}

/// Dots that say that the row can be dragged.
GtkWidget* newGrip() {
    constexpr int kWidth = 8, kHeight = 14;
    GtkWidget* const grip = gtk_drawing_area_new();
    gtk_widget_set_size_request(grip, kWidth, kHeight);
    gtk_widget_set_valign(grip, GTK_ALIGN_CENTER);
    g_signal_connect(grip, "draw", G_CALLBACK(drawGrip), nullptr);
    return grip;
}

}  // namespace

ModesList::ModesList(PreferencesModel& model, ItemPreview& preview, GtkWidget* column,
                     WidgetMaker& make)
    : model_(model), preview_(preview), modes_(model.text(kKey)), list_(make.addGroup(column, "")) {
    mnemonics_ = make.mnemonics();
    setSpokenName(list_, text("What the item shows"));
    g_object_ref_sink(list_);
    g_signal_connect(list_, "key-press-event", G_CALLBACK(keyPressed), this);
    fill();
}

ModesList::~ModesList() {
    if (waitingDrop_ != 0)
        g_source_remove(waitingDrop_);
    g_signal_handlers_disconnect_by_data(list_, this);
    g_object_unref(list_);
}

void ModesList::show(std::string_view key) {
    if ((key.empty() || key == kKey) && modes_.follow(model_.text(kKey)))
        fill();
    else
        gtk_widget_queue_draw(list_);
}

void ModesList::fill(std::size_t focused, Focus focus) {
    isFilling_ = true;
    gtk_container_foreach(
        GTK_CONTAINER(list_), [](GtkWidget* row, gpointer) { gtk_widget_destroy(row); }, nullptr);
    for (std::size_t place = 0; place < modes_.rows().size(); ++place)
        if (MenubarModes::isKnown(modes_.rows()[place].mode))
            addRow(place, focused, focus);
    gtk_widget_show_all(list_);
    isFilling_ = false;
}

void ModesList::addRow(std::size_t place, std::size_t focused, Focus focus) {
    const ModeDescription& mode = descriptionOf(modes_.rows()[place].mode);
    GtkWidget* const line = newLine(12);
    gtk_box_pack_start(GTK_BOX(line), newGrip(), FALSE, FALSE, 0);
    GtkWidget* const tick = newTick(place);
    gtk_widget_set_halign(tick, GTK_ALIGN_START);  // the rest of the row is to be dragged
    GtkWidget* const words = newColumn(2);
    gtk_widget_set_valign(words, GTK_ALIGN_CENTER);
    gtk_container_add(GTK_CONTAINER(words), tick);
    GtkWidget* const help = newText(text(mode.help), "help");
    gtk_widget_set_margin_start(help, 28);
    gtk_container_add(GTK_CONTAINER(words), help);
    gtk_box_pack_start(GTK_BOX(line), words, TRUE, TRUE, 0);
    gtk_box_pack_start(GTK_BOX(line), newModePicture(preview_, mode.mode), FALSE, FALSE, 0);

    GtkWidget* const movers = newLine(0);
    gtk_widget_set_valign(movers, GTK_ALIGN_CENTER);
    GtkWidget* const up = newMover(place, -1, text("Move up"));
    GtkWidget* const down = newMover(place, 1, text("Move down"));
    gtk_container_add(GTK_CONTAINER(movers), up);
    gtk_container_add(GTK_CONTAINER(movers), down);
    gtk_box_pack_start(GTK_BOX(line), movers, FALSE, FALSE, 0);

    GtkWidget* const handle = gtk_event_box_new();
    gtk_container_add(GTK_CONTAINER(handle), line);
    GtkWidget* const row = gtk_list_box_row_new();
    gtk_container_add(GTK_CONTAINER(row), handle);
    gtk_widget_set_can_focus(row, FALSE);
    gtk_list_box_row_set_activatable(GTK_LIST_BOX_ROW(row), FALSE);
    for (GtkWidget* const widget : {row, handle, tick, up, down})
        setPlace(widget, place);
    makeDraggable(handle, row);
    gtk_list_box_insert(GTK_LIST_BOX(list_), row, -1);
    gtk_widget_show_all(row);
    if (place != focused || focus == Focus::none)
        return;
    GtkWidget* const wanted = focus == Focus::up ? up : focus == Focus::down ? down : tick;
    gtk_widget_grab_focus(gtk_widget_get_sensitive(wanted) ? wanted : tick);
}

GtkWidget* ModesList::newTick(std::size_t place) {
    const MenubarModes::Row& row = modes_.rows()[place];
    Mnemonics all = mnemonics_;
    std::string label;
    for (const ModeDescription& mode : modeDescriptions()) {  // so that each keeps its letter
        std::string marked = all.mark(text(mode.name));
        if (mode.mode == row.mode)
            label = std::move(marked);
    }
    GtkWidget* const tick = gtk_check_button_new_with_mnemonic(label.c_str());
    gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(tick), row.shown);
    const bool isLast = row.shown && !modes_.canHide(place);
    gtk_widget_set_sensitive(tick, !isLast);
    if (isLast)
        gtk_widget_set_tooltip_text(tick,
                                    text("Something has to stay: tick another one first").c_str());
    setSpokenName(tick, nameOf(row.mode), text(descriptionOf(row.mode).help));
    onSignal(tick, "toggled", [this, place, tick] {
        setShown(place, gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(tick)) != FALSE);
    });
    return tick;
}

GtkWidget* ModesList::newMover(std::size_t place, int step, const std::string& name) {
    GtkWidget* const button = gtk_button_new_from_icon_name(
        step < 0 ? "go-up-symbolic" : "go-down-symbolic", GTK_ICON_SIZE_BUTTON);
    gtk_button_set_relief(GTK_BUTTON(button), GTK_RELIEF_NONE);
    addClass(button, "mover");
    gtk_widget_set_tooltip_text(button, name.c_str());
    setSpokenName(button, name + ": " + nameOf(modes_.rows()[place].mode));
    const std::size_t to = modes_.neighbour(place, step);
    gtk_widget_set_sensitive(button, to != place);
    onSignal(button, "clicked",
             [this, place, to, step] { move(place, to, step < 0 ? Focus::up : Focus::down); });
    return button;
}

/// Not where somebody else has written in the meantime: the user sees that first.
bool ModesList::isUpToDate() {
    const std::vector<MenubarModes::Row> rows = modes_.rows();
    model_.noteChanged();
    return rows == modes_.rows();
}

void ModesList::setShown(std::size_t place, bool shown) {
    if (isFilling_ || !isUpToDate() || !modes_.setShown(place, shown))
        return;
    store();
    fill(place, Focus::tick);
}

void ModesList::move(std::size_t place, std::size_t to, Focus focus) {
    if (!isUpToDate() || !modes_.move(place, to))
        return;
    store();
    fill(to, focus);
}

void ModesList::store() {
    model_.setValue(kKey, modes_.text());
    modes_.follow(model_.text(kKey));  // where it couldn't be stored
}

gboolean ModesList::keyPressed(GtkWidget* list, GdkEventKey* event, gpointer self) noexcept {
    auto* const modes = static_cast<ModesList*>(self);
    const bool isUp = event->keyval == GDK_KEY_Up, isDown = event->keyval == GDK_KEY_Down;
    GtkWidget* const window = gtk_widget_get_toplevel(list);
    GtkWidget* const focused = gtk_window_get_focus(GTK_WINDOW(window));
    if (heldModifiers(*event) != GDK_MOD1_MASK || (!isUp && !isDown) || focused == nullptr ||
        gtk_widget_is_ancestor(focused, list) == FALSE)
        return FALSE;
    const std::size_t place = placeOf(focused);
    modes->move(place, modes->modes_.neighbour(place, isUp ? -1 : 1), Focus::tick);
    return TRUE;
}

void ModesList::makeDraggable(GtkWidget* handle, GtkWidget* row) {
    const GtkTargetEntry target = dragTarget();
    gtk_drag_source_set(handle, GDK_BUTTON1_MASK, &target, 1, GDK_ACTION_MOVE);
    g_signal_connect(handle, "drag-begin", G_CALLBACK(dragBegins), this);
    g_signal_connect(handle, "drag-data-get", G_CALLBACK(dragAsks), nullptr);
    gtk_drag_dest_set(row, GTK_DEST_DEFAULT_ALL, &target, 1, GDK_ACTION_MOVE);
    g_signal_connect(row, "drag-data-received", G_CALLBACK(dropped), this);
}

/// The row itself hangs at the pointer.
void ModesList::dragBegins(GtkWidget* handle, GdkDragContext* context, gpointer) noexcept {
    GtkWidget* const row = gtk_widget_get_parent(handle);
    gint left = 0, top = 0;
    GdkWindow* const window = gtk_widget_get_window(row);
    gdk_window_get_device_position(window, gdk_drag_context_get_device(context), &left, &top,
                                   nullptr);
    GdkWindow* const picture = gdk_window_get_toplevel(window);
    gint rowLeft = 0, rowTop = 0;
    gtk_widget_translate_coordinates(row, gtk_widget_get_toplevel(row), 0, 0, &rowLeft, &rowTop);
    GdkPixbuf* const pixels =
        gdk_pixbuf_get_from_window(picture, rowLeft, rowTop, gtk_widget_get_allocated_width(row),
                                   gtk_widget_get_allocated_height(row));
    if (pixels == nullptr)
        return;
    const int scale = gtk_widget_get_scale_factor(row);
    cairo_surface_t* const icon = gdk_cairo_surface_create_from_pixbuf(pixels, scale, window);
    cairo_surface_set_device_offset(icon, -left * scale, -top * scale);
    gtk_drag_set_icon_surface(context, icon);
    cairo_surface_destroy(icon);
    g_object_unref(pixels);
}

void ModesList::dragAsks(GtkWidget* handle, GdkDragContext*, GtkSelectionData* data, guint, guint,
                         gpointer) noexcept {
    const std::size_t place = placeOf(handle);
    gtk_selection_data_set(data, gdk_atom_intern_static_string(kTarget), 8,
                           reinterpret_cast<const guchar*>(&place), sizeof(place));
}

/// The rows are made anew only when the drag is over.
void ModesList::dropped(GtkWidget* row, GdkDragContext*, gint, gint, GtkSelectionData* data, guint,
                        guint, gpointer self) noexcept {
    auto* const modes = static_cast<ModesList*>(self);
    gint length = 0;
    const guchar* const bytes = gtk_selection_data_get_data_with_length(data, &length);
    if (length != sizeof(std::size_t) || modes->waitingDrop_ != 0)
        return;
    std::copy_n(bytes, length, reinterpret_cast<guchar*>(&modes->dropFrom_));
    modes->dropTo_ = placeOf(row);
    modes->waitingDrop_ = g_idle_add(
        [](gpointer list) -> gboolean {
            auto* const waiting = static_cast<ModesList*>(list);
            waiting->waitingDrop_ = 0;
            waiting->move(waiting->dropFrom_, waiting->dropTo_, Focus::tick);
            return G_SOURCE_REMOVE;
        },
        modes);
}

}  // namespace vantor
