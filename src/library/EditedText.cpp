#include "library/EditedText.h"

namespace corvel {

// The byte behind the text counts as the start of a character.
bool EditedText::isStart(std::size_t byte) const {
    return byte >= m_text.size() || (static_cast<unsigned char>(m_text[byte]) & 0xC0U) != 0x80U;
}

std::optional<EditedText::Place> EditedText::placeOf(std::size_t characters, Place from) const {
    while (from.characters < characters) {
        if (from.bytes >= m_text.size()) return std::nullopt;
        do {
            ++from.bytes;
        } while (!isStart(from.bytes));
        ++from.characters;
    }
    while (from.characters > characters) {
        do {
            --from.bytes;
        } while (!isStart(from.bytes));
        --from.characters;
    }
    return from;
}

bool EditedText::apply(const TextEdit& edit) {
    const auto begin = placeOf(edit.offset, m_last);
    if (!begin) return false;
    const auto end = placeOf(edit.offset + edit.removed, *begin);
    if (!end || end->bytes < begin->bytes) return false;
    m_text.replace(begin->bytes, end->bytes - begin->bytes, edit.inserted);
    m_last = *begin;
    return true;
}

}  // namespace corvel
