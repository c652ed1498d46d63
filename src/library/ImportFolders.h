#pragma once

#include "library/Library.h"
#include "library/LibraryManifest.h"
#include "library/MarkdownImporter.h"

#include <chrono>
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
    ImportFolders(Library& library, ImportOptions options)
        : m_library(library), m_options(options) {}

    /// From now on the folders of exported libraries are to be made, with their order and the
    /// empty ones.
    void begin(const std::vector<std::filesystem::path>& libraries);
    bool isBusy() const { return m_next < m_waiting.size(); }
    void work(std::chrono::steady_clock::time_point end);

    /// The folders of one note: by what its file tells, else by where it lies.
    std::vector<Uuid> foldersOf(const std::filesystem::path& library,
                                const std::filesystem::path& folder,
                                const std::optional<std::vector<std::string>>& told);

private:
    struct Waiting {
        std::filesystem::path library;
        LibraryManifest::FolderEntry entry;
    };
    using Key = std::pair<std::filesystem::path, std::filesystem::path>;

    void makeOne(const Waiting& waiting);
    std::optional<Uuid> folderFor(const std::filesystem::path& library,
                                  const std::filesystem::path& folder);
    Uuid childOf(const std::optional<Uuid>& parent,
                 const std::string& name,
                 const std::optional<Uuid>& wanted);

    Library& m_library;
    ImportOptions m_options;
    std::size_t m_librariesBegun = 0;
    std::vector<Waiting> m_waiting;
    std::size_t m_next = 0;
    std::map<Uuid, Uuid> m_made;      // by the id in the manifest
    std::unordered_set<Uuid> m_used;  // by entries of a manifest: names may be there twice
    std::map<Key, Uuid> m_folders;
};

}  // namespace corvel
