#pragma once

/// Names in the folder of a library, and in the folder of a backup.
namespace corvel::storeFiles {

inline constexpr const char* kStore = "qnoCorvel.sqlite";
inline constexpr const char* kAttachments = "qnoCorvel_files";
inline constexpr const char* kDrafts = "qnoCorvel_drafts";
inline constexpr const char* kBackups = "Backups";

}  // namespace corvel::storeFiles
