#include "ui/NoteMenu.h"

#include "app/Texts.h"
#include "ui/Menus.h"

#include <giomm/simpleaction.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace corvel {

NoteMenu::NoteMenu(Session& session, Gtk::Widget& owner, Callbacks callbacks)
    : m_session(session)
    , m_callbacks(std::move(callbacks))
    , m_popover(owner, m_callbacks.giveFocus) {}

void NoteMenu::popup(std::vector<Uuid> noteIDs, Gtk::Widget& origin, const Gdk::Rectangle& at) {
    if (noteIDs.empty()) return;
    const auto position = m_session.list.positionOf(noteIDs.front());
    const auto first = position ? m_session.list.summaryAt(*position) : std::nullopt;
    if (!first) return;
    m_noteIDs = std::move(noteIDs);
    m_first = *first;
    m_actions = Gio::SimpleActionGroup::create();
    const auto menu = Gio::Menu::create();
    if (m_first.isTrashed) {
        addForTrashed(*menu);
    } else {
        addForLiving(*menu);
    }
    m_popover.popup(menu, "note", m_actions, origin, at);
}

void NoteMenu::addItem(Gio::Menu& menu,
                       const char* name,
                       const Text& label,
                       const std::function<void()>& run) {
    m_actions->add_action(name, run);
    menu.append(m_session.texts(label), std::string("note.") + name);
}

void NoteMenu::addOperation(Gio::Menu& menu,
                            const char* name,
                            const Text& label,
                            Operation operation) {
    addItem(menu, name, label, [this, operation] {
        m_callbacks.removing([&] { (m_session.list.*operation)(m_noteIDs); });
    });
}

void NoteMenu::addForLiving(Gio::Menu& menu) {
    const auto state = Gio::Menu::create();
    addOperation(*state, "pin", m_first.isPinned ? texts::unpin : texts::pin,
                 &NoteListViewModel::togglePin);
    addOperation(*state, "archive", m_first.isArchived ? texts::fromArchive : texts::toArchive,
                 &NoteListViewModel::toggleArchive);
    menu.append_section(state);
    const auto folders = Gio::Menu::create();
    addFolders(*folders);
    menu.append_section(folders);
    const auto away = Gio::Menu::create();
    addItem(*away, "export", AppCommands::command(CommandID::exportNote).label,
            [this] { m_session.state.isExportSheetPresented.set(true); });
    menu.append_section(away);
    const auto end = Gio::Menu::create();
    addOperation(*end, "trash", texts::moveToTrash, &NoteListViewModel::moveToTrash);
    menu.append_section(end);
}

void NoteMenu::addForTrashed(Gio::Menu& menu) {
    addOperation(menu, "restore", texts::restore, &NoteListViewModel::restoreFromTrash);
    addItem(menu, "delete", texts::deletePermanently, [this] { m_callbacks.deletePermanently(); });
}

std::vector<Uuid> NoteMenu::foldersOfAll(bool& inAny) const {
    std::optional<std::vector<Uuid>> common;
    for (const auto& id : m_noteIDs) {
        const auto folders = m_session.sidebar.folderIDsOf(id);
        inAny = inAny || !folders.empty();
        if (!common) {
            common = folders;
        } else {
            std::erase_if(*common, [&](const Uuid& folder) {
                return std::find(folders.begin(), folders.end(), folder) == folders.end();
            });
        }
    }
    return common.value_or(std::vector<Uuid>{});
}

Glib::RefPtr<Gio::Menu> NoteMenu::folderMenu(const std::vector<Uuid>& inAll) {
    const auto folders = Gio::Menu::create();
    int number = 0;
    for (const auto& folder : m_session.sidebar.allFolders()) {
        const bool isIn = std::find(inAll.begin(), inAll.end(), folder.id) != inAll.end();
        const auto name = "folder" + std::to_string(number++);
        const auto action = Gio::SimpleAction::create_bool(name, isIn);
        action->signal_activate().connect([this, isIn, id = folder.id](const Glib::VariantBase&) {
            m_callbacks.removing([&] {
                if (isIn) {
                    m_session.list.removeFromFolder(m_noteIDs, id);
                } else {
                    m_session.list.addToFolder(m_noteIDs, id);
                }
            });
        });
        m_actions->add_action(action);
        folders->append(menuLabel(folder.path), "note." + name);
    }
    const auto making = Gio::Menu::create();
    addItem(*making, "new-folder", texts::newFolder,
            [this] { m_callbacks.toNewFolder(m_noteIDs); });
    auto menu = Gio::Menu::create();
    menu->append_section(folders);
    menu->append_section(making);
    return menu;
}

void NoteMenu::addFolders(Gio::Menu& menu) {
    bool inAny = false;
    const auto inAll = foldersOfAll(inAny);
    menu.append_submenu(m_session.texts(texts::addToFolder), folderMenu(inAll));
    const auto& filter = m_session.list.filter();
    if (filter.kind == SidebarFilter::Kind::folder && !m_session.list.isSearching()) {
        addItem(menu, "remove", texts::removeFromFolder, [this, id = filter.folderID] {
            m_callbacks.removing([&] { m_session.list.removeFromFolder(m_noteIDs, id); });
        });
    }
    if (inAny) {
        addOperation(menu, "remove-all", texts::removeFromAllFolders,
                     &NoteListViewModel::removeFromAllFolders);
    }
}

}  // namespace corvel
