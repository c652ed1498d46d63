#include "ui/FolderPicker.h"

#include "app/Texts.h"
#include "ui/Accessible.h"

#include <giomm/themedicon.h>
#include <gtkmm/button.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/image.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/window.h>

#include <algorithm>

namespace corvel {

namespace {

bool holds(const std::vector<Uuid>& ids, const Uuid& id) {
    return std::ranges::find(ids, id) != ids.end();
}

}  // namespace

FolderPicker::FolderPicker(Session& session)
    : m_session(session), m_dialogs(session), m_rows(Gtk::Orientation::VERTICAL, 2) {
    set_has_frame(false);
    m_face.set_spacing(6);
    m_face.append(*Gtk::make_managed<Gtk::Image>(Gio::ThemedIcon::create("folder-symbolic")));
    m_label.set_ellipsize(Pango::EllipsizeMode::MIDDLE);
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

std::string FolderPicker::names() const {
    const auto& note = m_session.editor.note();
    if (!note || note->folderIDs.empty()) return m_session.texts(texts::unfiled);
    std::string joined;
    for (const auto& folder : m_session.sidebar.allFolders()) {
        if (!holds(note->folderIDs, folder.id)) continue;
        joined += (joined.empty() ? "" : ", ") + folder.path;
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
    for (const auto& folder : m_session.sidebar.allFolders()) {
        auto& row = *Gtk::make_managed<Gtk::CheckButton>(folder.path);
        row.set_active(holds(note->folderIDs, folder.id));
        row.signal_toggled().connect([this, &row, id = folder.id] { file(id, row.get_active()); });
        m_rows.append(row);
    }
    addNewFolder();
}

void FolderPicker::addNewFolder() {
    auto& button = *Gtk::make_managed<Gtk::Button>(m_session.texts(texts::newFolder));
    button.set_has_frame(false);
    button.signal_clicked().connect([this] {
        m_popover.popdown();
        const auto& note = m_session.editor.note();
        auto* window = dynamic_cast<Gtk::Window*>(get_root());
        if (note && window != nullptr) m_dialogs.createFor(*window, {note->id});
    });
    m_rows.append(button);
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
