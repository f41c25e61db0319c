#include "Hosts/Gtk/Menus/GtkDescribedWindow.h"

#include <cstdlib>
#include <cstring>

#include <gtk/gtk-a11y.h>

// GTK asks a class of ours for the accessible objects of a window's parts. Types are registered
// with a process once and for all, under a name that modules built from this source don't share.

#define VANTOR_TEXT_OF(name) #name
#define VANTOR_TYPE_NAME(name, module) name VANTOR_TEXT_OF(module)

namespace vantor {
namespace {

constexpr const char* kDescriber = "vantor-describer";
constexpr const char* kParts = "vantor-parts";

/// One part's accessible object; it may outlive its window.
struct PartAccessible {
    AtkObject parent;
    GtkWidget* window;  // null once it has gone
    std::size_t index;
    std::string* text;  // of the last name or description that somebody asked for
};

WindowDescriber* describerOf(GtkWidget* window) noexcept {
    return window == nullptr
               ? nullptr
               : static_cast<WindowDescriber*>(g_object_get_data(G_OBJECT(window), kDescriber));
}

PartAccessible& partOf(gpointer object) noexcept { return *static_cast<PartAccessible*>(object); }

DescribedPart described(const PartAccessible& part) noexcept {
    WindowDescriber* const describer = describerOf(part.window);
    if (describer == nullptr || part.index >= describer->describedParts())
        return {};
    return describer->describedPart(part.index);
}

const char* keep(PartAccessible& part, std::string text) noexcept {
    *part.text = std::move(text);
    return part.text->c_str();
}

void finalizePart(GObject* object) noexcept {
    PartAccessible& part = partOf(object);
    if (part.window != nullptr)
        g_object_remove_weak_pointer(G_OBJECT(part.window),
                                     reinterpret_cast<gpointer*>(&part.window));
    delete part.text;
    static_cast<GObjectClass*>(g_type_class_peek(ATK_TYPE_OBJECT))->finalize(object);
}

AtkStateSet* statesOf(AtkObject* object) noexcept {
    AtkStateSet* const states = atk_state_set_new();
    const PartAccessible& part = partOf(object);
    if (describerOf(part.window) == nullptr) {
        atk_state_set_add_state(states, ATK_STATE_DEFUNCT);
        return states;
    }
    const DescribedPart now = described(part);
    for (const AtkStateType state : {ATK_STATE_VISIBLE, ATK_STATE_SHOWING})
        atk_state_set_add_state(states, state);
    if (now.isEnabled)
        for (const AtkStateType state :
             {ATK_STATE_ENABLED, ATK_STATE_SENSITIVE, ATK_STATE_FOCUSABLE, ATK_STATE_SELECTABLE})
            atk_state_set_add_state(states, state);
    if (now.isFocused)
        for (const AtkStateType state : {ATK_STATE_FOCUSED, ATK_STATE_SELECTED})
            atk_state_set_add_state(states, state);
    return states;
}

void initPartClass(gpointer type, gpointer) noexcept {
    G_OBJECT_CLASS(type)->finalize = finalizePart;
    AtkObjectClass* const accessible = ATK_OBJECT_CLASS(type);
    accessible->get_name = [](AtkObject* object) {
        return keep(partOf(object), described(partOf(object)).name);
    };
    accessible->get_description = [](AtkObject* object) {
        return keep(partOf(object), described(partOf(object)).description);
    };
    accessible->get_role = [](AtkObject* object) { return described(partOf(object)).role; };
    accessible->get_index_in_parent = [](AtkObject* object) {
        return static_cast<gint>(partOf(object).index);
    };
    accessible->get_parent = [](AtkObject* object) {
        GtkWidget* const window = partOf(object).window;
        return window != nullptr ? gtk_widget_get_accessible(window) : nullptr;
    };
    accessible->ref_state_set = statesOf;
}

void getExtents(AtkComponent* component, gint* x, gint* y, gint* width, gint* height,
                AtkCoordType relativeTo) noexcept {
    const PartAccessible& part = partOf(component);
    const DescribedPart now = described(part);
    gint left = 0, top = 0;
    GdkWindow* const window = part.window != nullptr ? gtk_widget_get_window(part.window) : nullptr;
    if (window != nullptr && relativeTo == ATK_XY_SCREEN)
        gdk_window_get_origin(window, &left, &top);
    *x = left + now.place.x;
    *y = top + now.place.y;
    *width = now.place.width;
    *height = now.place.height;
}

void initComponent(gpointer interface, gpointer) noexcept {
    static_cast<AtkComponentIface*>(interface)->get_extents = getExtents;
}

gboolean press(AtkAction* action, gint) noexcept {
    PartAccessible& part = partOf(action);
    WindowDescriber* const describer = describerOf(part.window);
    if (describer == nullptr || part.index >= describer->describedParts())
        return FALSE;
    describer->pressPart(part.index);
    return TRUE;
}

void initAction(gpointer interface, gpointer) noexcept {
    auto* const action = static_cast<AtkActionIface*>(interface);
    action->do_action = press;
    action->get_n_actions = [](AtkAction* of) { return described(partOf(of)).isEnabled ? 1 : 0; };
    action->get_name = [](AtkAction*, gint) -> const gchar* { return "click"; };
}

GType partType() noexcept {
    static const GType type = [] {
        GTypeQuery parent;
        g_type_query(ATK_TYPE_OBJECT, &parent);
        const GType made = g_type_register_static_simple(
            ATK_TYPE_OBJECT, VANTOR_TYPE_NAME("VantorPart", VANTOR_MODULE), parent.class_size,
            initPartClass, sizeof(PartAccessible),
            [](GTypeInstance* part, gpointer) { partOf(part).text = new std::string; },
            GTypeFlags{});
        const GInterfaceInfo component{initComponent, nullptr, nullptr};
        const GInterfaceInfo action{initAction, nullptr, nullptr};
        g_type_add_interface_static(made, ATK_TYPE_COMPONENT, &component);
        g_type_add_interface_static(made, ATK_TYPE_ACTION, &action);
        return made;
    }();
    return type;
}

/// The window's own list of them, which grows as somebody asks.
AtkObject* partAt(GtkWidget* window, std::size_t index) noexcept {
    auto* parts = static_cast<GPtrArray*>(g_object_get_data(G_OBJECT(window), kParts));
    if (parts == nullptr) {
        parts = g_ptr_array_new_with_free_func(g_object_unref);
        g_object_set_data_full(G_OBJECT(window), kParts, parts, [](gpointer list) {
            g_ptr_array_unref(static_cast<GPtrArray*>(list));
        });
    }
    while (parts->len <= index) {
        auto* const part = static_cast<PartAccessible*>(g_object_new(partType(), nullptr));
        part->window = window;
        part->index = parts->len;
        g_object_add_weak_pointer(G_OBJECT(window), reinterpret_cast<gpointer*>(&part->window));
        g_ptr_array_add(parts, part);
    }
    return ATK_OBJECT(g_ptr_array_index(parts, index));
}

GtkWidget* widgetOf(AtkObject* accessible) noexcept {
    return gtk_accessible_get_widget(GTK_ACCESSIBLE(accessible));
}

gint countParts(AtkObject* accessible) noexcept {
    WindowDescriber* const describer = describerOf(widgetOf(accessible));
    return describer != nullptr ? static_cast<gint>(describer->describedParts()) : 0;
}

AtkObject* referPart(AtkObject* accessible, gint index) noexcept {
    if (index < 0 || index >= countParts(accessible))
        return nullptr;
    return ATK_OBJECT(g_object_ref(partAt(widgetOf(accessible), static_cast<std::size_t>(index))));
}

GType windowAccessibleType() noexcept {
    static const GType type = [] {
        GTypeQuery parent;
        g_type_query(GTK_TYPE_WINDOW_ACCESSIBLE, &parent);
        return g_type_register_static_simple(
            GTK_TYPE_WINDOW_ACCESSIBLE, VANTOR_TYPE_NAME("VantorWindowAccessible", VANTOR_MODULE),
            parent.class_size,
            [](gpointer made, gpointer) {
                ATK_OBJECT_CLASS(made)->get_n_children = countParts;
                ATK_OBJECT_CLASS(made)->ref_child = referPart;
            },
            parent.instance_size, nullptr, GTypeFlags{});
    }();
    return type;
}

GType windowType() noexcept {
    static const GType type = [] {
        GTypeQuery parent;
        g_type_query(GTK_TYPE_WINDOW, &parent);
        return g_type_register_static_simple(
            GTK_TYPE_WINDOW, VANTOR_TYPE_NAME("VantorWindow", VANTOR_MODULE), parent.class_size,
            [](gpointer made, gpointer) {
                gtk_widget_class_set_accessible_type(GTK_WIDGET_CLASS(made),
                                                     windowAccessibleType());
            },
            parent.instance_size, nullptr, GTypeFlags{});
    }();
    return type;
}

bool isAnybodyListening() noexcept {
    static const bool listening = std::getenv("NO_AT_BRIDGE") == nullptr;
    return listening;
}

}  // namespace

GtkWidget* newDescribedWindow(GtkWindowType type, WindowDescriber& describer) noexcept {
    auto* const window = static_cast<GtkWidget*>(g_object_new(windowType(), "type", type, nullptr));
    g_object_set_data(G_OBJECT(window), kDescriber, &describer);
    g_signal_connect(window, "destroy", G_CALLBACK(+[](GtkWidget* gone, gpointer) {
                         g_object_set_data(G_OBJECT(gone), kDescriber, nullptr);
                     }),
                     nullptr);
    return window;
}

void tellFocus(GtkWidget* window, std::size_t part) noexcept {
    if (!isAnybodyListening())
        return;
    AtkObject* const accessible = partAt(window, part);
    for (const AtkStateType state : {ATK_STATE_FOCUSED, ATK_STATE_SELECTED})
        atk_object_notify_state_change(accessible, state, TRUE);
}

}  // namespace vantor
