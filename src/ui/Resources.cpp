#include "ui/Resources.h"

#include <gtkmm/icontheme.h>

void corvel_register_resource();  // generated from corvel.gresource.xml

namespace corvel {

void registerResources() {
    corvel_register_resource();
    Gtk::IconTheme::get_for_display(Gdk::Display::get_default())
        ->add_resource_path("/com/qno/corvel/icons");
}

}  // namespace corvel
