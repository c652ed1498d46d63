#pragma once

#include "app/AppCommands.h"
#include "app/Session.h"

#include <giomm/menu.h>

namespace corvel {

/// The menus made from the command table. `relabel` makes new ones in the language of the
/// moment: buttons take theirs again then.
class CommandMenus {
public:
    explicit CommandMenus(const Session& session);

    const Glib::RefPtr<Gio::Menu>& primary() const { return m_primary; }
    const Glib::RefPtr<Gio::Menu>& sort() const { return m_sort; }
    const Glib::RefPtr<Gio::Menu>& importing() const { return m_import; }
    void relabel();

private:
    void appendCommand(Gio::Menu& menu, CommandID id) const;
    Glib::RefPtr<Gio::Menu> groupMenu(CommandGroup group) const;
    Glib::RefPtr<Gio::Menu> languageMenu() const;
    Glib::RefPtr<Gio::Menu> sizeMenu() const;
    void fillPrimary();
    void fillList();

    const Session& m_session;
    Glib::RefPtr<Gio::Menu> m_primary;
    Glib::RefPtr<Gio::Menu> m_sort;
    Glib::RefPtr<Gio::Menu> m_import;
};

}  // namespace corvel
