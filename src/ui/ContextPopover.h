#pragma once

#include <giomm/actiongroup.h>
#include <giomm/menumodel.h>
#include <gtkmm/popovermenu.h>
#include <gtkmm/widget.h>

#include <memory>
#include <string>

namespace corvel {

/// A context menu over a widget. The widget must have a layout manager (a box has one).
class ContextPopover {
public:
    explicit ContextPopover(Gtk::Widget& owner) : m_owner(owner) {}
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
    std::unique_ptr<Gtk::PopoverMenu> m_popover;
};

}  // namespace corvel
