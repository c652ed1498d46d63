#pragma once

#include "platform/ScopedConnection.h"

#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/widget.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace corvel {

/// Lets Tab walk into a web view, through its page and out again at both ends.
class TabPassage {
public:
    explicit TabPassage(Gtk::Widget& view);  // must outlive this

private:
    void enterWindow();
    void leaveWindow();
    bool isRepeated(guint key, std::uint32_t time);

    Gtk::Widget& m_view;
    Gtk::Widget* m_window = nullptr;
    Glib::RefPtr<Gtk::EventControllerKey> m_keys;
    std::optional<std::uint32_t> m_given;  // when the page was last given a Tab, in milliseconds
    std::vector<ScopedConnection> m_connections;
};

}  // namespace corvel
