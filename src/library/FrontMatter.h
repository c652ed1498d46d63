#pragma once

#include "platform/Date.h"
#include "platform/Uuid.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// What a Markdown file of an exported library says of its note, in YAML between two lines "---".
/// docs/library-export.md describes it.
struct FrontMatter {
    struct File {
        Uuid id;
        std::string path;         ///< from the Markdown file's folder, with "/" between names
        std::string name;         ///< as the library calls it; empty when it is the file's
        std::string type;         ///< MIME type
        bool isLinked = true;     ///< the text names the file where the note names the attachment
        bool isAnothers = false;  ///< belongs to another note, which only this text shows as well
    };

    std::optional<Uuid> id;
    std::optional<std::string> title;
    std::optional<Date> createdAt;
    std::optional<Date> modifiedAt;
    bool isPinned = false;
    bool isArchived = false;
    bool isTrashed = false;
    std::optional<Date> trashedAt;
    std::vector<std::string> tags;
    /// Every folder of the note, as paths in the export; absent when it is the one the file lies
    /// in.
    std::optional<std::vector<std::string>> folders;
    std::optional<std::string> source;  ///< the file on disk that the note mirrored
    std::vector<File> attachments;

    /// The block with both its lines; the text of the note follows at once.
    std::string block() const;
};

/// A block of YAML found at the start of a text.
struct FoundFrontMatter {
    FrontMatter values;
    /// Whether the program wrote it. Of somebody else's block only the title is taken.
    bool isOurs = false;
    /// Where the note's own text begins: 0 for a block that is somebody else's or was added to, so
    /// that no word of it is lost.
    std::size_t textBegin = 0;
};

/// None when the text does not begin with a block, or with one that cannot be read. Values of a
/// wrong kind count as absent.
std::optional<FoundFrontMatter> frontMatterOf(std::string_view text);

}  // namespace corvel
