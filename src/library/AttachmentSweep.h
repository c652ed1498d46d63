#pragma once

#include "library/NoteRepository.h"
#include "platform/ScopedConnection.h"

#include <chrono>
#include <string>
#include <unordered_map>

namespace corvel {

class Library;

/// Removes attachments that no text refers to any more, in idle slices after a start: then no undo
/// can bring a reference back. A reference in any note keeps an attachment, also one in the trash
/// and one written while the sweep is at work. Drafts of a crashed run must be in the store before.
class AttachmentSweep {
public:
    explicit AttachmentSweep(Library& library);  // must outlive the sweep

    /// Works for about `budget`; false when all is done. Throws StoreError; the sweep then is over.
    bool work(std::chrono::milliseconds budget);

private:
    enum class Stage { candidates, texts, removal, finished };

    void findCandidates();
    bool readSomeTexts();
    bool removeOne();
    void keepThoseIn(std::string_view text);

    Library& m_library;
    Stage m_stage = Stage::candidates;
    std::unordered_map<std::string, Uuid> m_candidates;  // by the id in capitals
    RowId m_lastRow = 0;
    ScopedConnection m_changes;
};

}  // namespace corvel
