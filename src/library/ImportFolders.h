#pragma once

#include "library/Library.h"
#include "library/LibraryManifest.h"
#include "library/MarkdownImporter.h"
#include "model/ViewContext.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace corvel {

/// The folders of the library that the folders of an import become: one of the same name at the
/// same place is used again. Throws StoreError.
class ImportFolders {
public:
    ImportFolders(Library& library, ImportOptions options);  // the library must outlive this

    /// What places a note: by what its file tells of its folders, else by where the file lies.
    struct Place {
        std::filesystem::path library;  ///< the exported library of the file; empty for none
        std::filesystem::path folder;   ///< of the file, within the library or the chosen folder
        std::optional<std::vector<std::string>> told;
    };

    /// From now on the folders of exported libraries are to be made, with their order and the
    /// empty ones.
    void begin(const std::vector<std::filesystem::path>& libraries);
    /// From now on what `place` needs is to be made.
    void want(const Place& place);
    bool isBusy() const { return m_next < m_waiting.size() || !m_wanted.empty(); }
    /// Makes folders until `end`, as one commit.
    void work(std::chrono::steady_clock::time_point end);

    /// The folders of a note, made now if `work` did not.
    std::vector<Uuid> foldersAt(const Place& place);

private:
    struct Waiting {
        std::filesystem::path library;
        LibraryManifest::FolderEntry entry;
    };
    using Key = std::pair<std::filesystem::path, std::filesystem::path>;
    using Siblings = std::pair<std::optional<Uuid>, std::string>;  // below a parent, of one name

    std::vector<Key> keysOf(const Place& place) const;
    void makeNext();
    void makeListed(const Waiting& waiting);
    std::optional<Uuid> folderFor(const Key& key);
    Uuid childOf(const std::optional<Uuid>& parent,
                 const std::string& name,
                 const std::optional<Uuid>& wanted);
    const std::vector<Uuid>& siblings(const std::optional<Uuid>& parent, const std::string& name);
    void takeBack();

    Library& m_library;
    ViewContext::Batch m_changes;
    ImportOptions m_options;
    std::size_t m_librariesBegun = 0;
    std::vector<Waiting> m_waiting;
    std::size_t m_next = 0;
    std::map<Uuid, Uuid> m_made;      // by the id in the manifest
    std::unordered_set<Uuid> m_used;  // by entries of a manifest: names may be there twice
    std::deque<Key> m_wanted;
    std::map<Key, Uuid> m_folders;
    std::map<Siblings, std::vector<Uuid>> m_siblings;  // all the library's, as of m_seenChanges
    std::optional<std::size_t> m_seenChanges;
};

}  // namespace corvel
