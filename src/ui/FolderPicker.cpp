#include "ui/FolderPicker.h"

#include "app/Texts.h"
#include "ui/Accessible.h"

#include <giomm/themedicon.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/image.h>
#include <gtkmm/scrolledwindow.h>

#include <algorithm>

namespace corvel {

namespace {

constexpr int kMostDepth = 32;

bool holds(const std::vector<Uuid>& ids, const Uuid& id) {
    return std::ranges::find(ids, id) != ids.end();
}

}  // namespace

FolderPicker::FolderPicker(Session& session)
    : m_session(session), m_rows(Gtk::Orientation::VERTICAL, 2) {
    set_has_frame(false);
    m_face.set_spacing(6);
    m_face.append(*Gtk::make_managed<Gtk::Image>(Gio::ThemedIcon::create("folder-symbolic")));
    m_label.set_ellipsize(Pango::EllipsizeMode::END);
    m_label.set_max_width_chars(40);
    m_face.append(m_label);
    set_child(m_face);

    auto& scroller = *Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller.set_propagate_natural_height(true);
    scroller.set_propagate_natural_width(true);
    scroller.set_max_content_height(320);
    scroller.set_child(m_rows);
    m_popover.set_child(scroller);
    set_popover(m_popover);
    m_popover.signal_show().connect([this] { fill(); });
    refresh();
}

std::string FolderPicker::pathOf(const Folder& folder, const std::vector<Folder>& all) const {
    std::string path = folder.name;
    auto parentID = folder.parentID;
    for (int depth = 0; parentID && depth < kMostDepth; ++depth) {
        const auto parent = std::ranges::find(all, *parentID, &Folder::id);
        if (parent == all.end()) break;
        path.insert(0, parent->name + " / ");
        parentID = parent->parentID;
    }
    return path;
}

std::string FolderPicker::names() const {
    const auto& note = m_session.editor.note();
    if (!note || note->folderIDs.empty()) return m_session.texts(texts::unfiled);
    const auto all = m_session.sidebar.allFolders();
    std::string joined;
    for (const Folder& folder : all) {
        if (!holds(note->folderIDs, folder.id)) continue;
        joined += (joined.empty() ? "" : ", ") + pathOf(folder, all);
    }
    return joined;
}

void FolderPicker::refresh() {
    const std::string text = names();
    m_label.set_text(text);
    labelControl(*this, std::string(m_session.texts(texts::noteFolders)) + ": " + text);
}

void FolderPicker::fill() {
    const auto& note = m_session.editor.note();
    while (auto* row = m_rows.get_first_child())
        m_rows.remove(*row);
    if (!note) return;
    const auto all = m_session.sidebar.allFolders();
    for (const Folder& folder : all) {
        auto& row = *Gtk::make_managed<Gtk::CheckButton>(pathOf(folder, all));
        row.set_active(holds(note->folderIDs, folder.id));
        row.signal_toggled().connect([this, &row, id = folder.id] { file(id, row.get_active()); });
        m_rows.append(row);
    }
    if (!all.empty()) return;
    auto& none = *Gtk::make_managed<Gtk::Label>(m_session.texts(texts::noFoldersYet));
    m_rows.append(none);
}

void FolderPicker::file(const Uuid& folderID, bool isIn) {
    const auto& note = m_session.editor.note();
    if (!note) return;
    const std::vector<Uuid> notes{note->id};
    if (isIn) {
        m_session.list.addToFolder(notes, folderID);
    } else {
        m_session.list.removeFromFolder(notes, folderID);
    }
}

}  // namespace corvel
