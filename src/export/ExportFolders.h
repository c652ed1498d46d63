#pragma once

#include "export/PortableNames.h"
#include "library/LibraryManifest.h"
#include "model/Folder.h"

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvel {

/// The folders of a library as folders on a disk, and the names that are given in each.
class ExportFolders {
public:
    struct Place {
        std::string path;  ///< from the root of the export, with "/" between names
        PortableNames files;
        PortableNames attachments;  ///< of the folder of attachments in it
        bool isMade = false;
        bool hasAttachments = false;  ///< whether that folder is made
    };

    explicit ExportFolders(const std::string& trashName);

    /// Gives the folders that have no place yet one, in their order.
    void add(const std::vector<Folder>& roots);

    Place& root() { return m_root; }
    Place& trash() { return m_trash; }
    bool knows(const Uuid& id) const { return m_places.contains(id); }
    /// Of the folders of a note the one that is first in the library's order; none when no id has a
    /// place.
    std::optional<Uuid> firstOf(const std::vector<Uuid>& ids) const;
    Place& place(const Uuid& id) { return m_places.at(id).place; }
    /// In order.
    std::vector<std::string> pathsOf(const std::vector<Uuid>& ids) const;
    /// Every folder that has a place, in order.
    const std::vector<LibraryManifest::FolderEntry>& entries() const { return m_entries; }

private:
    struct Numbered {
        std::size_t number;
        Place place;
    };

    void addOne(const Folder& folder);

    Place m_root;
    Place m_trash;
    std::unordered_map<Uuid, Numbered> m_places;
    std::vector<LibraryManifest::FolderEntry> m_entries;
};

}  // namespace corvel
