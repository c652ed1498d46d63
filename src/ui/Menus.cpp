#include "ui/Menus.h"

#include "platform/Handle.h"

#include <gtk/gtk.h>

#include <string_view>

namespace corvel {

namespace {

constexpr std::string_view kTop = "main";  // the toolkit's name for the menu itself

// Going back leads to the top. A submenu that was open before has the focus where it was left.
bool leadsBack(GtkWidget* item) {
    const auto* name = g_object_class_find_property(G_OBJECT_GET_CLASS(item), "menu-name");
    if (name == nullptr) return false;
    char* target = nullptr;
    g_object_get(item, "menu-name", &target, nullptr);
    const Handle<char, g_free> held(target);
    return target != nullptr && target == kTop;
}

int leaveBackEntry(gpointer popover) {
    auto* menu = GTK_WIDGET(popover);
    auto* root = gtk_widget_get_root(menu);
    auto* focused = root == nullptr ? nullptr : gtk_root_get_focus(root);
    if (focused != nullptr && gtk_widget_is_ancestor(focused, menu) != 0 && leadsBack(focused)) {
        gtk_widget_child_focus(menu, GTK_DIR_DOWN);
    }
    return G_SOURCE_REMOVE;
}

}  // namespace

std::string menuLabel(const std::string& text) {
    std::string label;
    for (const char byte : text) {
        label += byte;
        if (byte == '_') label += '_';
    }
    return label;
}

void focusFirstOfSubmenus(Gtk::Popover& menu) {
    if (!GTK_IS_POPOVER_MENU(menu.gobj())) return;
    // The toolkit gives the entry the focus only after it has told of the submenu.
    g_signal_connect(menu.gobj(), "notify::visible-submenu",
                     G_CALLBACK(+[](GObject* self, GParamSpec*, gpointer) {
                         g_idle_add_full(G_PRIORITY_HIGH_IDLE, leaveBackEntry, g_object_ref(self),
                                         g_object_unref);
                     }),
                     nullptr);
}

}  // namespace corvel
