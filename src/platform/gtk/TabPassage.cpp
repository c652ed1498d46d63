#include "platform/gtk/TabPassage.h"

#include <gdk/gdkkeysyms.h>
#include <gtk/gtk.h>
#include <gtkmm/root.h>

namespace corvel {

TabPassage::TabPassage(Gtk::Widget& view) : m_view(view) {
    // The view keeps a text field, never seen, to look up the keys of editing commands. It comes
    // first when the focus walks in, and swallows every Tab from then on.
    for (auto* child = view.get_first_child(); child != nullptr; child = child->get_next_sibling())
        child->set_can_focus(false);
    m_connections.emplace_back(view.signal_realize().connect([this] { enterWindow(); }));
    m_connections.emplace_back(view.signal_unrealize().connect([this] { leaveWindow(); }, false));
}

void TabPassage::enterWindow() {
    m_window = dynamic_cast<Gtk::Widget*>(m_view.get_root());
    if (m_window == nullptr) return;
    m_keys = Gtk::EventControllerKey::create();
    m_keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
    auto* controller = GTK_EVENT_CONTROLLER(m_keys->gobj());
    m_keys->signal_key_pressed().connect(
        [this, controller](guint key, guint, Gdk::ModifierType) {
            return isRepeated(key, gtk_event_controller_get_current_event_time(controller));
        },
        false);
    m_window->add_controller(m_keys);
}

void TabPassage::leaveWindow() {
    if (m_window != nullptr) m_window->remove_controller(m_keys);
    m_window = nullptr;
    m_keys.reset();
}

// Behind its last element the page hands the focus on, and then the key comes again, as one it did
// not use: it would move the focus by another step.
bool TabPassage::isRepeated(guint key, std::uint32_t time) {
    if (key != GDK_KEY_Tab && key != GDK_KEY_ISO_Left_Tab) return false;
    if (m_view.is_focus()) {
        m_given = time;
        return false;
    }
    if (!m_given) return false;
    // The clock of the events starts anew every 50 days.
    const bool isOld = static_cast<std::int32_t>(time - *m_given) <= 0;
    if (!isOld) m_given.reset();
    return isOld;
}

}  // namespace corvel
