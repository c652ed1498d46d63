#include "ui/SubWindow.h"

#include <gtkmm/shortcutcontroller.h>

namespace corvel {

SubWindow::SubWindow(GtkWidget* window, Gtk::Window& parent)
    : m_hold(GTK_WINDOW(g_object_ref(window))), m_window(*Glib::wrap(GTK_WINDOW(window))) {
    m_window.set_transient_for(parent);
    m_window.set_hide_on_close(true);
}

SubWindow::~SubWindow() {
    gtk_window_destroy(m_hold.get());
}

void SubWindow::closeOnEscape() {
    const auto keys = Gtk::ShortcutController::create();
    keys->add_shortcut(Gtk::Shortcut::create(Gtk::ShortcutTrigger::parse_string("Escape"),
                                             Gtk::NamedAction::create("window.close")));
    m_window.add_controller(keys);
}

}  // namespace corvel
