#pragma once

#include "app/Session.h"
#include "ui/Adw.h"

#include <gtkmm/window.h>

#include <string>

namespace corvel {

/// A window for reading beside the main one: a flat header, the page's own colours, closed by
/// Escape and Ctrl+W. It remembers its size under `name`.
class PageWindow : public Gtk::Window {
public:
    struct Size {
        int width;
        int height;
    };

    /// `session` must outlive the window. A closed window only hides; its owner may destroy it.
    PageWindow(Session& session, std::string name, Size size);
    ~PageWindow() override;

protected:
    adw::HeaderBar& header() { return m_header; }
    Session& session() const { return m_session; }
    /// Called when the language changes.
    virtual void relabel() = 0;

private:
    void followKeys();
    void rememberSize();

    Session& m_session;
    std::string m_name;
    adw::HeaderBar m_header;
    ScopedConnection m_preferenceChanged;
};

}  // namespace corvel
