#pragma once

#include "app/Session.h"
#include "ui/FolderPicker.h"

#include <gtkmm/box.h>
#include <gtkmm/label.h>

#include <string>

namespace corvel {

/// Under the note: words, reading time, folders, and how the note stands to the library.
class StatusLine : public Gtk::Box {
public:
    explicit StatusLine(Session& session);

    /// Writes everything anew; `notice` is what else there is to say about the note.
    void refresh(const std::string& notice);
    void refreshCounts();
    void refreshSaveState();
    void refreshFolders() { m_folders.refresh(); }

private:
    std::string saveText() const;

    Session& m_session;
    Gtk::Label m_words;
    Gtk::Label m_reading;
    FolderPicker m_folders;
    Gtk::Label m_notice;
    Gtk::Label m_save;
};

}  // namespace corvel
