#include "app/editing/TextEdit.h"

#include "platform/Characters.h"

namespace corvel::editing {

TextRange lineAt(std::string_view text, std::size_t position) {
    const auto before = position == 0 ? text.npos : text.rfind('\n', position - 1);
    return {before == text.npos ? 0 : before + 1, std::min(text.find('\n', position), text.size())};
}

TextRange wordAt(std::string_view text, std::size_t position) {
    TextRange word{position, position};
    while (text::isWordCharacter(text::characterBefore(text, word.begin)))
        word.begin = text::previousPosition(text, word.begin);
    while (text::isWordCharacter(text::characterAt(text, word.end)))
        word.end = text::nextPosition(text, word.end);
    return word;
}

}  // namespace corvel::editing
