#include "ui/Resources.h"

#include <gtkmm/cssprovider.h>
#include <gtkmm/icontheme.h>
#include <gtkmm/stylecontext.h>

// Generated from corvel.gresource.xml.
void corvel_register_resource();  // NOLINT(readability-identifier-naming)

namespace corvel {

void registerResources() {
    corvel_register_resource();
    Gtk::IconTheme::get_for_display(Gdk::Display::get_default())
        ->add_resource_path("/com/qno/corvel/icons");
    const auto shapes = Gtk::CssProvider::create();
    shapes->load_from_resource("/com/qno/corvel/window.css");
    Gtk::StyleContext::add_provider_for_display(Gdk::Display::get_default(), shapes,
                                                GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

}  // namespace corvel
