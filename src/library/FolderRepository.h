#pragma once

#include "library/NoteSummary.h"
#include "model/Folder.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

class Database;
class ViewContext;

/// Folders and the links of notes to them. An id that is not found makes an operation do nothing.
/// Mutations save before they return. Every member throws StoreError.
class FolderRepository {
public:
    explicit FolderRepository(ViewContext& context);  // must outlive the repository

    /// Top-level folders in ascending `sortOrder`, each with its sub-tree.
    std::vector<Folder> fetchRootFolders() const;
    /// Every folder by name, without sub-trees.
    std::vector<Folder> fetchAllFolders() const;
    std::optional<Folder> fetchFolder(const Uuid& id) const;

    /// The new folder goes last among its siblings. The name is stored unchanged. No other folder
    /// may have an `id` that is given.
    Folder createFolder(const std::string& name,
                        const std::optional<Uuid>& parentID,
                        const Uuid& id = Uuid::random());
    void renameFolder(const Uuid& id, const std::string& name);
    /// Deletes the folder and its sub-folders; notes stay.
    void deleteFolder(const Uuid& id);

    void addNoteToFolder(const Uuid& noteID, const Uuid& folderID);
    void removeNoteFromFolder(const Uuid& noteID, const Uuid& folderID);
    void removeNoteFromAllFolders(const Uuid& noteID);
    void moveNoteToFolder(const Uuid& noteID, const Uuid& folderID);

    std::vector<Uuid> folderIDsOf(const Uuid& noteID) const;

    /// Grows with every folder that is created, renamed or deleted: what was fetched before is old.
    std::size_t changeCount() const { return m_changeCount; }

private:
    void change(std::function<void(Database&)> change);
    void changeLinks(const Uuid& noteID, std::function<void(Database&, RowId)> change);

    ViewContext& m_context;
    std::size_t m_changeCount = 0;
};

}  // namespace corvel
