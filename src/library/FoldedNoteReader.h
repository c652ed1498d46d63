#pragma once

#include "library/FoldedNote.h"
#include "platform/Handle.h"

#include <sqlite3.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

class ViewContext;

/// Reads and folds every note outside the trash, newest modification first, in small steps. Notes
/// that change meanwhile may be given in their old or new state, or not at all: whoever reads is
/// told of changes anyway. Every member throws StoreError.
class FoldedNoteReader {
public:
    explicit FoldedNoteReader(ViewContext& context);  // must outlive the reader

    enum class Step { working, haveNote, finished };
    /// Reads at most a page of keys or a piece of a text.
    Step step();
    /// After `haveNote`: the note, until the next step.
    FoldedNote& note() { return m_note; }
    /// To be called before other work is let in: nothing of the store stays open then, but for a
    /// text of which a part is read.
    void pause();

private:
    enum class Stage { sameDate, older, undated, finished };
    struct Row {
        NoteKey key;
        std::string title;
    };

    void readPage();
    template <typename... Values>
    bool readRows(std::string_view sql, const Values&... values);
    bool openContent(RowId row);
    bool readPiece();

    ViewContext& m_context;
    Stage m_stage = Stage::sameDate;
    NoteKey m_cursor = NoteKey::first();
    std::vector<Row> m_page;
    std::size_t m_pagePosition = 0;
    Handle<sqlite3_blob, sqlite3_blob_close> m_blob;
    std::optional<std::size_t> m_read;  // bytes read of the open content
    std::string m_piece;
    FoldedNote m_note;
};

}  // namespace corvel
