#pragma once

#include "platform/Uuid.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace corvel {

/// The note as the editor shows it.
struct AIContext {
    std::optional<Uuid> noteID;  ///< none when no note is open
    std::string noteTitle;
    std::string noteContent;
    std::string selectedText;
    std::size_t selectionOffset = 0;  ///< bytes from the start of the content
};

/// What a reply was asked for: a note, and the selection in it, as they were then.
class AITarget {
public:
    AITarget() = default;
    explicit AITarget(const AIContext& context);
    /// The whole of a note with this content.
    AITarget(std::optional<Uuid> noteID, std::string title, std::string_view content);

    const std::optional<Uuid>& noteID() const { return m_noteID; }
    const std::string& noteTitle() const { return m_noteTitle; }
    const std::string& selectedText() const { return m_selectedText; }

    /// Whether the note has this content still.
    bool isContent(std::string_view content) const;
    /// Where the selection stands in `content`, which may have changed: the place nearest to the
    /// old one. None when the selected text is not there.
    std::optional<std::size_t> placeOfSelection(std::string_view content) const;

private:
    std::optional<Uuid> m_noteID;
    std::string m_noteTitle;
    std::string m_selectedText;
    std::size_t m_selectionOffset = 0;
    std::size_t m_contentSize = 0;
    std::size_t m_contentHash = 0;  // kept in place of the content: a chat has many targets
};

/// A change to a note that the user asked for.
struct AIEdit {
    std::optional<Uuid> noteID;  ///< the note to change; none: the one that is open
    std::string text;            ///< what to put in
    std::size_t offset = 0;      ///< of a replaced selection: bytes from the start of the content
    std::size_t length = 0;      ///< bytes
};

}  // namespace corvel
