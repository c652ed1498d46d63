#include "ai/AITarget.h"

#include <functional>
#include <utility>

namespace corvel {

namespace {

std::size_t hashOf(std::string_view content) {
    return std::hash<std::string_view>{}(content);
}

}  // namespace

AITarget::AITarget(const AIContext& context)
    : AITarget(context.noteID, context.noteTitle, context.noteContent) {
    m_selectedText = context.selectedText;
    m_selectionOffset = context.selectionOffset;
}

AITarget::AITarget(std::optional<Uuid> noteID, std::string title, std::string_view content)
    : m_noteID(noteID)
    , m_noteTitle(std::move(title))
    , m_contentSize(content.size())
    , m_contentHash(hashOf(content)) {}

bool AITarget::isContent(std::string_view content) const {
    return content.size() == m_contentSize && hashOf(content) == m_contentHash;
}

std::optional<std::size_t> AITarget::placeOfSelection(std::string_view content) const {
    const auto after = content.find(m_selectedText, m_selectionOffset);
    const auto before = content.rfind(m_selectedText, m_selectionOffset);
    if (after == content.npos && before == content.npos) return std::nullopt;
    if (after == content.npos) return before;
    if (before == content.npos) return after;
    return after - m_selectionOffset <= m_selectionOffset - before ? after : before;
}

}  // namespace corvel
