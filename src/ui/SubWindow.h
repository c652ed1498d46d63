#pragma once

#include "platform/Handle.h"

#include <gtkmm/window.h>

#include <functional>

namespace corvel {

/// A window beside the main one. Closing it hides it; it goes with its owner.
class SubWindow {
public:
    /// Takes a new toplevel of libadwaita and puts it over `parent`.
    SubWindow(GtkWidget* window, Gtk::Window& parent);
    SubWindow(const SubWindow&) = delete;
    SubWindow& operator=(const SubWindow&) = delete;
    ~SubWindow();

    Gtk::Window& window() { return m_window; }
    void present() { m_window.present(); }

    /// Escape asks the window to close.
    void closeOnEscape();

private:
    GObjectHandle<GtkWindow> m_hold;
    Gtk::Window& m_window;
};

}  // namespace corvel
