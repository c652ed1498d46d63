#pragma once

#include "library/TextEdit.h"

#include <optional>
#include <string>

namespace corvel {

/// A text to which edits are applied one after the other. Neighbouring edits are cheap however
/// large the text is.
class EditedText {
public:
    /// `text` must be valid UTF-8.
    explicit EditedText(std::string text) : m_text(std::move(text)) {}

    const std::string& text() const { return m_text; }
    /// False, with the text unchanged, when the edit reaches beyond the text.
    bool apply(const TextEdit& edit);

private:
    struct Place {
        std::size_t characters = 0;
        std::size_t bytes = 0;
    };
    bool isStart(std::size_t byte) const;
    std::optional<Place> placeOf(std::size_t characters, Place from) const;

    std::string m_text;
    Place m_last;  // where the last edit was made
};

}  // namespace corvel
