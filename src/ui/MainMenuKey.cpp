#include "ui/MainMenuKey.h"

#include "ui/Menus.h"

#include <gtkmm/eventcontrollerkey.h>

#include <utility>

namespace corvel {

MainMenuKey::MainMenuKey(Gtk::Window& window, Glib::RefPtr<Gio::MenuModel> menu, Place place)
    : m_window(window), m_menu(std::move(menu)), m_place(std::move(place)) {
    const auto keys = Gtk::EventControllerKey::create();
    keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    keys->signal_key_pressed().connect(
        [this](guint key, guint /*code*/, Gdk::ModifierType state) {
            const auto others = Gdk::ModifierType::SHIFT_MASK | Gdk::ModifierType::CONTROL_MASK |
                                Gdk::ModifierType::ALT_MASK;
            return key == GDK_KEY_F10 && (state & others) == Gdk::ModifierType{} && open();
        },
        false);
    window.add_controller(keys);
}

MainMenuKey::~MainMenuKey() {
    drop();
}

bool MainMenuKey::open() {
    auto* place = m_place();
    if (place == nullptr) return false;
    drop();
    auto* focus = gtk_window_get_focus(m_window.gobj());
    m_focus.reset(focus == nullptr ? nullptr : GTK_WIDGET(g_object_ref(focus)));
    m_popover = std::make_unique<Gtk::PopoverMenu>(m_menu);
    m_popover->set_parent(*place);
    m_popover->set_has_arrow(false);
    m_popover->set_halign(Gtk::Align::START);
    focusFirstOfSubmenus(*m_popover);
    m_popover->signal_closed().connect([this] { giveFocusBack(); });
    m_popover->popup();
    return true;
}

void MainMenuKey::giveFocusBack() {
    if (m_focus && gtk_widget_get_mapped(m_focus.get()) != FALSE)
        gtk_widget_grab_focus(m_focus.get());
    m_focus.reset();
}

void MainMenuKey::drop() {
    if (m_popover) m_popover->unparent();
    m_popover.reset();
}

}  // namespace corvel
