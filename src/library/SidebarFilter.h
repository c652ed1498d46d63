#pragma once

#include "platform/Uuid.h"

#include <string>
#include <string_view>

namespace corvel {

/// What the sidebar selects.
struct SidebarFilter {
    enum class Kind { tag, folder, allNotes, localFiles, archived, trash, unfiled };

    Kind kind = Kind::allNotes;
    std::string tagPath;  ///< for `tag`: the notes with a tag whose full path begins with it
    Uuid folderID;        ///< for `folder`: the notes directly in it

    static SidebarFilter tag(std::string path) { return {Kind::tag, std::move(path), {}}; }
    static SidebarFilter folder(const Uuid& id) { return {Kind::folder, {}, id}; }

    /// A text to remember the filter by, for example "allNotes" or "tag:work/plan".
    std::string toString() const;
    /// Reads it back; anything unknown gives all notes.
    static SidebarFilter fromString(std::string_view text);

    bool operator==(const SidebarFilter&) const = default;
};

}  // namespace corvel
