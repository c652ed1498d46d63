#pragma once

#include "library/NoteKey.h"
#include "platform/Text.h"

#include <string>
#include <string_view>

namespace corvel {

/// A note as search sees it: the folded title and the folded content, each closed by a byte that no
/// text has, so that nothing found reaches from one into the other.
struct FoldedNote {
    static constexpr char kEnd = '\xFF';

    NoteKey key;
    std::string text;

    static std::string textOf(std::string_view title, std::string_view content) {
        std::string folded;
        text::foldForSearch(title, folded);
        folded.push_back(kEnd);
        text::foldForSearch(content, folded);
        folded.push_back(kEnd);
        return folded;
    }
};

}  // namespace corvel
