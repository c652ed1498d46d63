#pragma once

#include "app/settings/Localisation.h"

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/label.h>
#include <gtkmm/overlay.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/textview.h>
#include <sigc++/signal.h>

#include <string>

namespace corvel {

/// Where a message is written: grows with its lines, Enter sends, Shift+Enter begins a line. Its
/// button sends, or stops the reply that is arriving.
class AssistantInput : public Gtk::Box {
public:
    AssistantInput();

    std::string text() const { return m_text.get_buffer()->get_text(); }
    void setText(const std::string& text);
    void setStreaming(bool isStreaming);
    void focusText() { m_text.grab_focus(); }
    Gtk::TextView& textView() { return m_text; }
    Gtk::Button& button() { return m_button; }
    void relabel(const Localisation& texts);

    /// The user changed the text.
    sigc::signal<void()>& signalChanged() { return m_changed; }
    sigc::signal<void()>& signalSend() { return m_send; }
    sigc::signal<void()>& signalStop() { return m_stop; }

private:
    void build();
    bool keyPressed(guint key, Gdk::ModifierType modifiers, GdkEvent* event);
    void showButton();

    Gtk::Overlay m_overlay;
    Gtk::ScrolledWindow m_scroller;
    Gtk::TextView m_text;
    Gtk::Label m_placeholder;
    Gtk::Button m_button;
    std::string m_sendLabel;
    std::string m_stopLabel;
    bool m_isStreaming = false;
    sigc::signal<void()> m_changed;
    sigc::signal<void()> m_send;
    sigc::signal<void()> m_stop;
};

}  // namespace corvel
