#pragma once

#include "app/Session.h"
#include "ui/FolderDialogs.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <gtkmm/menubutton.h>
#include <gtkmm/popover.h>

namespace corvel {

/// The folders of the open note: a button that names them and opens a list to file the note by.
class FolderPicker : public Gtk::MenuButton {
public:
    explicit FolderPicker(Session& session);

    void refresh();

private:
    void fill();
    void addNewFolder();
    std::string names() const;
    void file(const Uuid& folderID, bool isIn);

    Session& m_session;
    FolderDialogs m_dialogs;
    Gtk::Popover m_popover;
    Gtk::Box m_rows;
    Gtk::Box m_face;
    Gtk::Label m_label;
};

}  // namespace corvel
