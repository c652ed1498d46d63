#include "ui/Resources.h"

#include "platform/Handle.h"

#include <gtkmm/cssprovider.h>
#include <gtkmm/icontheme.h>
#include <gtkmm/stylecontext.h>

// Generated from corvel.gresource.xml.
void corvel_register_resource();  // NOLINT(readability-identifier-naming)

namespace corvel {

namespace {

// The toolkit reads the icon theme in a thread when it starts, and drops what it read when a path
// is added, as libadwaita does. Without this the first icon of the window would read it again.
void readIconsInThread(const Glib::RefPtr<Gtk::IconTheme>& icons) {
    g_thread_unref(g_thread_new(
        "icon-theme",
        [](gpointer data) -> gpointer {
            const GObjectHandle<GtkIconTheme> theme(GTK_ICON_THEME(data));
            gtk_icon_theme_has_icon(theme.get(), "corvel-notes-symbolic");
            return nullptr;
        },
        g_object_ref(icons->gobj())));
}

}  // namespace

void registerResources() {
    corvel_register_resource();
    const auto icons = Gtk::IconTheme::get_for_display(Gdk::Display::get_default());
    icons->add_resource_path("/com/qno/corvel/icons");
    readIconsInThread(icons);
    const auto shapes = Gtk::CssProvider::create();
    shapes->load_from_resource("/com/qno/corvel/window.css");
    Gtk::StyleContext::add_provider_for_display(Gdk::Display::get_default(), shapes,
                                                GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

}  // namespace corvel
