#pragma once

#include "library/Library.h"
#include "library/LibraryManifest.h"
#include "library/MarkdownImporter.h"
#include "model/ViewContext.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <filesystem>
#include <functional>
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

    /// An exported library, empty for none, and a folder in it or in the folder that was chosen.
    using Place = std::pair<std::filesystem::path, std::filesystem::path>;

    /// From now on the folders of exported libraries are to be made, with their order and the
    /// empty ones.
    void begin(const std::vector<std::filesystem::path>& libraries);
    /// Where a note goes: by what its file tells, else by where it lies. From now on these folders
    /// are to be made.
    std::vector<Place> want(const Place& lies, const std::optional<std::vector<std::string>>& told);
    bool isBusy() const { return m_next < m_waiting.size() || !m_wanted.empty(); }
    /// Makes folders until `end`, as one commit.
    void work(std::chrono::steady_clock::time_point end);

    /// The folders at `places`, made now if `work` did not.
    std::vector<Uuid> foldersAt(const std::vector<Place>& places);

private:
    struct Waiting {
        std::filesystem::path library;
        LibraryManifest::FolderEntry entry;
    };
    using Siblings = std::pair<std::optional<Uuid>, std::string>;  // below a parent, of one name

    std::vector<Place> placesOf(const Place& lies,
                                const std::optional<std::vector<std::string>>& told) const;
    void makeWhole(const std::function<void()>& make);
    void makeNext();
    void makeListed(const Waiting& waiting);
    std::optional<Uuid> folderFor(const Place& place);
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
    std::deque<Place> m_wanted;
    std::map<Place, Uuid> m_folders;
    std::map<Siblings, std::vector<Uuid>> m_siblings;  // all the library's, as of m_seenChanges
    std::optional<std::size_t> m_seenChanges;
};

}  // namespace corvel
