#pragma once

#include "library/BookmarkManager.h"
#include "library/NoteRepository.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

namespace corvel {

/// Brings the notes of a list of linked files up to date, a few at a time: takes over what others
/// wrote to their files and learns where renamed ones are. A file that is as its bookmark says is
/// not read. What only the user can decide, and what would have to be written to a file, waits
/// until the note is opened.
class LinkedFileScan {
public:
    explicit LinkedFileScan(NoteRepository& notes);  // must outlive the scan

    /// Works for about `budget`; false when all is done. The note that is open is left to its
    /// session. Throws StoreError; the scan then is over.
    bool work(std::chrono::milliseconds budget, const std::optional<Uuid>& openNote);

private:
    std::optional<Note> noteStill(const LinkedNote& linked) const;
    void look(const LinkedNote& linked);
    void renew(const LinkedNote& linked, const Bookmark& bookmark);
    void compare(const LinkedNote& linked, Bookmark bookmark);

    NoteRepository& m_notes;
    BookmarkManager m_bookmarks;
    std::vector<LinkedNote> m_linked;
    std::size_t m_next = 0;
    bool m_isStarted = false;
};

}  // namespace corvel
