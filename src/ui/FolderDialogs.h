#pragma once

#include "app/Session.h"

#include <gtkmm/window.h>

#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// The questions about folders, and what follows from their answers.
class FolderDialogs {
public:
    explicit FolderDialogs(Session& session) : m_session(session) {}

    void create(Gtk::Window& parent) { createFor(parent, {}); }
    /// The notes go into the new folder.
    void createFor(Gtk::Window& parent, std::vector<Uuid> noteIDs);
    void createIn(Gtk::Window& parent, const Uuid& folderID, const std::string& folderName);
    void rename(Gtk::Window& parent, const Uuid& folderID, const std::string& folderName);
    void remove(Gtk::Window& parent, const Uuid& folderID, const std::string& folderName);
    /// Notes dropped on a folder: asks whether to move or to add where both make sense.
    void drop(Gtk::Window& parent, std::vector<Uuid> noteIDs, const Uuid& folderID);

private:
    Session& m_session;
};

}  // namespace corvel
