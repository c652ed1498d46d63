#pragma once

#include "app/Session.h"
#include "ui/ContextPopover.h"

#include <giomm/menu.h>
#include <giomm/simpleactiongroup.h>

#include <functional>
#include <string>
#include <vector>

namespace corvel {

/// The context menu of the selected notes.
class NoteMenu {
public:
    /// What the menu cannot do alone, for the notes it was opened for.
    struct Callbacks {
        /// Runs an operation that may take the notes off the list.
        std::function<void(const std::function<void()>&)> removing;
        std::function<void()> deletePermanently;                    ///< asks first
        std::function<void(const std::vector<Uuid>&)> toNewFolder;  ///< asks for its name
        std::function<void()> giveFocus;  ///< to the list, when the menu is closed
    };

    NoteMenu(Session& session, Gtk::Widget& owner, Callbacks callbacks);

    void popup(std::vector<Uuid> noteIDs, Gtk::Widget& origin, const Gdk::Rectangle& at);

private:
    using Operation = void (NoteListViewModel::*)(const std::vector<Uuid>&);

    void addItem(Gio::Menu& menu,
                 const char* name,
                 const Text& label,
                 const std::function<void()>& run);
    void addOperation(Gio::Menu& menu, const char* name, const Text& label, Operation operation);
    void addForLiving(Gio::Menu& menu);
    void addForTrashed(Gio::Menu& menu);
    void addFolders(Gio::Menu& menu);
    Glib::RefPtr<Gio::Menu> folderMenu(const std::vector<Uuid>& inAll);
    std::vector<Uuid> foldersOfAll(bool& inAny) const;

    Session& m_session;
    Callbacks m_callbacks;
    ContextPopover m_popover;
    Glib::RefPtr<Gio::SimpleActionGroup> m_actions;
    std::vector<Uuid> m_noteIDs;
    NoteSummary m_first;
};

}  // namespace corvel
