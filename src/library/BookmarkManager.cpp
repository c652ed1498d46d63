#include "library/BookmarkManager.h"

#include "library/LinkedText.h"
#include "library/MovedFileSearch.h"
#include "platform/Log.h"
#include "platform/Text.h"

#include <utility>

namespace corvel {

namespace {

const char* wordsFor(LinkFault fault) {
    switch (fault) {
        case LinkFault::binary:
            return "is not text";
        case LinkFault::utf16:
            return "is UTF-16 or UTF-32";
        default:
            return "is not UTF-8";
    }
}

}  // namespace

LinkedFile BookmarkManager::read(const std::filesystem::path& path) const {
    try {
        LinkedFile linked{readWholeFile(path, kLargestFile), {}};
        if (const auto fault = linkedText::faultIn(linked.file.bytes))
            throw LinkError(*fault, path, wordsFor(*fault));
        linked.text = linkedText::decoded(linked.file.bytes);
        return linked;
    } catch (const FileError& error) {
        throw LinkError(path, error);
    }
}

Bookmark BookmarkManager::make(const std::filesystem::path& path,
                               const FileStamp& stamp,
                               std::string_view bytes,
                               std::string_view text) const {
    Bookmark bookmark{path, stamp, hashOf(bytes), {}};
    bookmark.noteHash = bytes == text ? bookmark.fileHash : hashOf(text);
    if (!stamp.isSettled(Date::now())) bookmark.stamp.changedAt = 0;
    return bookmark;
}

BookmarkManager::Resolution BookmarkManager::resolve(const Bookmark& bookmark) const {
    Resolution found{State::missing, bookmark.path};
    if (const auto stamp = stampOf(bookmark.path)) {
        const bool isSame = stamp->isSameFile(bookmark.stamp);
        found.state =
            isSame && stamp->device == bookmark.stamp.device ? State::fresh : State::stale;
    } else if (const auto moved = fileInFolder(bookmark.path.parent_path(), bookmark.stamp)) {
        found = {State::stale, *moved};
    }
    if (found.state == State::stale) {
        logLine("[BookmarkManager] Bookmark is stale for: " +
                text::repaired(bookmark.path.string()));
    }
    return found;
}

}  // namespace corvel
