#pragma once

#include "platform/Date.h"
#include "platform/Uuid.h"

#include <cstdint>
#include <string>
#include <vector>

namespace corvel {

/// A note's integer key in the store: what lists hold. It never changes and is not used again.
using RowId = std::int64_t;

/// What a row of the note list shows, without the text.
struct NoteSummary {
    RowId row = 0;
    Uuid id;
    std::string title;  ///< as stored; empty is shown as "Untitled"
    std::string
        excerpt;  ///< first text of the note without Markdown's marks, at most 200 characters
    Date createdAt;
    Date modifiedAt;
    std::int32_t wordCount = 0;
    bool isPinned = false;
    bool isArchived = false;
    bool isTrashed = false;
    bool isLocalFile = false;
    std::vector<std::string> tagPaths;  ///< longest paths of the text, sorted, at most three

    bool operator==(const NoteSummary&) const = default;
};

/// The counts beside the sidebar's fixed entries.
struct NoteCounts {
    std::int64_t allNotes = 0;
    std::int64_t unfiled = 0;
    std::int64_t localFiles = 0;
    std::int64_t archived = 0;
    std::int64_t trash = 0;

    bool operator==(const NoteCounts&) const = default;
};

}  // namespace corvel
