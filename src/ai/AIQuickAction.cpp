#include "ai/AIQuickAction.h"

#include <utility>

namespace corvel {

namespace {

struct Row {
    const char* rawValue;
    Text label;
    const char* prompt;
};

// In the order of the cases.
constexpr std::array<Row, std::size(kAIQuickActions)> kRows{{
    {"improveStyle",
     {"Popraw styl", "Improve Style"},
     "Improve the writing style of the following text. Make it more clear, engaging, and "
     "well-structured. Keep the same language as the original. Return ONLY the improved text, "
     "nothing else."},
    {"fixGrammar",
     {"Popraw gramatykę", "Fix Grammar"},
     "Fix all grammar, spelling, and punctuation errors in the following text. Keep the same "
     "language and style. Return ONLY the corrected text, nothing else."},
    {"shorten",
     {"Skróć", "Shorten"},
     "Shorten the following text while keeping the key information and meaning. Keep the same "
     "language. Return ONLY the shortened text, nothing else."},
    {"expand",
     {"Rozwiń", "Expand"},
     "Expand the following text with more detail, examples, or explanations. Keep the same "
     "language and style. Return ONLY the expanded text, nothing else."},
    {"translateToEnglish",
     {"Przetłumacz na angielski", "Translate to English"},
     "Translate the following text to English. Return ONLY the translated text, nothing else."},
    {"translateToPolish",
     {"Przetłumacz na polski", "Translate to Polish"},
     "Translate the following text to Polish. Return ONLY the translated text, nothing else."},
    {"simplify",
     {"Uprość", "Simplify"},
     "Simplify the following text. Use shorter sentences and simpler vocabulary. Keep the same "
     "language. Return ONLY the simplified text, nothing else."},
    {"makeProfessional",
     {"Sformalizuj", "Make Professional"},
     "Rewrite the following text in a professional, formal tone. Keep the same language. Return "
     "ONLY the rewritten text, nothing else."},
}};

const Row& rowOf(AIQuickAction action) {
    return kRows.at(static_cast<std::size_t>(action));
}

}  // namespace

const char* rawValue(AIQuickAction action) {
    return rowOf(action).rawValue;
}

const Text& labelOf(AIQuickAction action) {
    return rowOf(action).label;
}

const char* promptOf(AIQuickAction action) {
    return rowOf(action).prompt;
}

}  // namespace corvel
