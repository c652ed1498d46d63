#pragma once

#include "model/Hash.h"
#include "model/SyncStatus.h"
#include "model/Tag.h"
#include "platform/Date.h"
#include "platform/Uuid.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// One note as the rest of the program sees it: a plain value, owned by whoever received it.
struct Note {
    Uuid id;  ///< never changes
    std::string title;
    std::string content;  ///< Markdown, UTF-8
    Date createdAt;
    Date modifiedAt;
    bool isPinned = false;
    bool isArchived = false;
    bool isTrashed = false;
    std::optional<Date> trashedAt;
    std::int32_t wordCount = 0;
    std::vector<Tag> tags;  ///< order carries no meaning
    SyncStatus syncStatus = SyncStatus::pending;
    std::vector<Uuid> folderIDs;                ///< order carries no meaning
    std::optional<std::string> sourceFilePath;  ///< absolute path of the file it mirrors
    std::optional<std::vector<std::uint8_t>> bookmarkData;  ///< bookmark of that file

    bool operator==(const Note&) const = default;
};

}  // namespace corvel

template <>
struct std::hash<corvel::Note> {
    std::size_t operator()(const corvel::Note& note) const noexcept {
        std::size_t seed = std::hash<corvel::Uuid>{}(note.id);
        corvel::hashCombine(seed, note.modifiedAt.microseconds);
        corvel::hashCombine(seed, note.title);
        return seed;
    }
};
