#pragma once

#include "platform/Uuid.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// The file at the root of an exported library: its folders in their order, with the names that
/// the disk could not have, and the empty ones.
struct LibraryManifest {
    static constexpr const char* kFileName = "corvel-library.json";

    struct FolderEntry {
        Uuid id;
        std::string name;  ///< as the library calls it
        std::string path;  ///< in the export, with "/" between the names of folders
        std::optional<Uuid> parentID;
    };

    std::string exportedAt;
    std::size_t noteCount = 0;
    std::vector<FolderEntry> folders;  ///< a folder before its sub-folders, siblings in order
    std::string trashPath;             ///< the folder of the notes that are in the trash

    std::string json() const;
    /// None when `folder` has no such file or one that cannot be read.
    static std::optional<LibraryManifest> in(const std::filesystem::path& folder);
};

}  // namespace corvel
