#include "ui/ContextPopover.h"

#include "ui/Menus.h"

namespace corvel {

ContextPopover::~ContextPopover() {
    drop();
}

void ContextPopover::drop() {
    if (m_popover) m_popover->unparent();
    m_popover.reset();
}

void ContextPopover::popup(const Glib::RefPtr<Gio::MenuModel>& menu,
                           const std::string& prefix,
                           const Glib::RefPtr<Gio::ActionGroup>& actions,
                           Gtk::Widget& origin,
                           const Gdk::Rectangle& at) {
    drop();
    m_owner.insert_action_group(prefix, actions);
    m_popover = std::make_unique<Gtk::PopoverMenu>(menu);
    m_popover->set_parent(m_owner);
    m_popover->set_has_arrow(false);
    m_popover->set_halign(Gtk::Align::START);
    double x = 0;
    double y = 0;
    origin.translate_coordinates(m_owner, at.get_x(), at.get_y(), x, y);
    m_popover->set_pointing_to(
        {static_cast<int>(x), static_cast<int>(y), at.get_width(), at.get_height()});
    focusFirstOfSubmenus(*m_popover);
    m_popover->signal_closed().connect(m_giveFocus);
    m_popover->popup();
}

}  // namespace corvel
