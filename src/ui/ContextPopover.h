#pragma once

#include <giomm/actiongroup.h>
#include <giomm/menumodel.h>
#include <gtkmm/popovermenu.h>
#include <gtkmm/widget.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace corvel {

/// A context menu over a widget. The widget must have a layout manager (a box has one).
class ContextPopover {
public:
    /// `giveFocus` puts the focus back where the menu was opened.
    ContextPopover(Gtk::Widget& owner, std::function<void()> giveFocus)
        : m_owner(owner), m_giveFocus(std::move(giveFocus)) {}
    ContextPopover(const ContextPopover&) = delete;
    ContextPopover& operator=(const ContextPopover&) = delete;
    ~ContextPopover();

    /// `at` is in the coordinates of `origin`, a widget inside the owner. The items' actions are
    /// found under `prefix`.
    void popup(const Glib::RefPtr<Gio::MenuModel>& menu,
               const std::string& prefix,
               const Glib::RefPtr<Gio::ActionGroup>& actions,
               Gtk::Widget& origin,
               const Gdk::Rectangle& at);

private:
    void drop();

    Gtk::Widget& m_owner;
    std::function<void()> m_giveFocus;
    std::unique_ptr<Gtk::PopoverMenu> m_popover;
};

}  // namespace corvel
