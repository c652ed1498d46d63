#pragma once

#include "app/settings/Localisation.h"
#include "library/NoteSummary.h"
#include "model/Folder.h"
#include "model/PersistenceController.h"
#include "model/Tag.h"
#include "platform/NotificationCenter.h"

#include <sigc++/signal.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

class Library;

/// A folder to put notes into.
struct FolderChoice {
    Uuid id;
    std::string path;  ///< its name after those of the folders it lies in
};

/// The sidebar's counts, folder tree and tag tree, and what can be done with folders. Reloads on
/// `folderDidChange` and, from the loop's idle time, whenever a note was
/// written. Failures of the store are printed as one line
/// and leave the state as it was.
class SidebarViewModel {
public:
    SidebarViewModel(Library& library,
                     const Localisation& texts,
                     NotificationCenter& notifications);

    std::vector<Tag> tagTree;
    std::vector<Folder> folders;
    std::int64_t allNotesCount = 0;
    std::int64_t unfiledCount = 0;
    std::int64_t localFilesCount = 0;
    std::int64_t archivedCount = 0;
    std::int64_t trashCount = 0;

    /// Emits `signalChanged` only when something differs.
    void reload();

    std::optional<Folder> createFolder(const std::string& name,
                                       const std::optional<Uuid>& parentID);
    void renameFolder(const Uuid& id, const std::string& name);
    void deleteFolder(const Uuid& id);
    /// Every folder for the "add to folder" menu, in the order of the interface language.
    std::vector<FolderChoice> allFolders() const;
    std::vector<Uuid> folderIDsOf(const Uuid& noteID) const;

    /// True when one of the notes is already in another folder than the target: move or add must be
    /// asked.
    bool dropNeedsQuestion(const std::vector<Uuid>& noteIDs, const Uuid& folderID) const;
    void moveNotes(const std::vector<Uuid>& noteIDs, const Uuid& folderID);
    void addNotes(const std::vector<Uuid>& noteIDs, const Uuid& folderID);

    sigc::signal<void()>& signalChanged() { return m_changed; }

private:
    void reloadSoon();
    bool readAll();
    void changeFolders(const char* failure, const std::function<void()>& operation);
    static void logged(const char* failure, const std::function<void()>& operation);

    Library& m_library;
    const Localisation& m_texts;
    NotificationCenter& m_notifications;
    ScopedConnection m_pendingReload;
    std::vector<ScopedConnection> m_connections;
    sigc::signal<void()> m_changed;
};

}  // namespace corvel
