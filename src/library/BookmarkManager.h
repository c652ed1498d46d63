#pragma once

#include "library/Bookmark.h"
#include "library/LinkError.h"
#include "platform/WholeFile.h"

#include <cstddef>
#include <optional>
#include <string>

namespace corvel {

/// A linked file as it was read.
struct LinkedFile {
    WholeFile file;
    std::string text;  ///< as the note has it
};

/// Makes bookmarks and finds the files that they stand for.
class BookmarkManager {
public:
    /// The largest file that can be linked.
    static constexpr std::size_t kLargestFile = 64 * 1024 * 1024;

    enum class State {
        fresh,    ///< the same file at the same place
        stale,    ///< found, but another file at the place, or the file at another one
        missing,  ///< not at its place and not in its folder; MovedFileSearch may know more
    };
    struct Resolution {
        State state = State::missing;
        std::filesystem::path path;
    };

    /// Throws LinkError.
    LinkedFile read(const std::filesystem::path& path) const;
    /// Of a file at `path` that was read or written as `stamp` and `bytes`; `text` is the note's.
    Bookmark make(const std::filesystem::path& path,
                  const FileStamp& stamp,
                  std::string_view bytes,
                  std::string_view text) const;
    /// What lies at the bookmark's place is its file, whatever inode it has: most editors replace
    /// what they save. Only when nothing is there the file is looked for by its inode in the folder
    /// where it was. A stale bookmark is logged; whoever asked renews it.
    Resolution resolve(const Bookmark& bookmark) const;
};

}  // namespace corvel
