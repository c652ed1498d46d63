#include "ai/AIDocumentAction.h"

#include <utility>

namespace corvel {

namespace {

struct Row {
    const char* rawValue;
    Text label;
    const char* prompt;
};

// In the order of the cases.
constexpr std::array<Row, std::size(kAIDocumentActions)> kRows{{
    {"generateTOC",
     {"Spis treści", "Table of Contents"},
     "Analyze the following Markdown document and generate a table of contents based on its "
     "headings. Format it as a Markdown list with clickable links. Use this format:\n"
     "- [Heading Text](#heading-text)\n"
     "  - [Sub Heading](#sub-heading)\n"
     "Generate anchor links by lowercasing the heading, replacing spaces with hyphens, and "
     "removing special characters. For Polish characters: ą→a, ć→c, ę→e, ł→l, ń→n, ó→o, ś→s, "
     "ź→z, ż→z. Return ONLY the table of contents, nothing else."},
    {"spellCheck",
     {"Sprawdź pisownię", "Spell Check"},
     "Check the following text for spelling and grammar errors. For each error found, show the "
     "incorrect text, the correction, and a brief explanation. Format as a numbered list. Reply "
     "in the same language as the document."},
    {"summarize",
     {"Podsumuj", "Summarize"},
     "Summarize the following document concisely. Capture the key points and main ideas. Reply "
     "in the same language as the document. Return ONLY the summary, nothing else."},
    {"shortenDocument",
     {"Skróć dokument", "Shorten Document"},
     "Shorten the following document while preserving all key information and meaning. Keep the "
     "same language, style, and Markdown formatting. Return ONLY the shortened document, nothing "
     "else."},
    {"translateToEnglish",
     {"Przetłumacz na angielski", "Translate to English"},
     "Translate the following document to English. Preserve all Markdown formatting. Return ONLY "
     "the translated document, nothing else."},
    {"translateToPolish",
     {"Przetłumacz na polski", "Translate to Polish"},
     "Translate the following document to Polish. Preserve all Markdown formatting. Return ONLY "
     "the translated document, nothing else."},
    {"simplify",
     {"Uprość", "Simplify"},
     "Simplify the following document. Use shorter sentences and simpler vocabulary. Keep the "
     "same language and Markdown formatting. Return ONLY the simplified document, nothing else."},
    {"makeProfessional",
     {"Sformalizuj", "Make Professional"},
     "Rewrite the following document in a professional, formal tone. Keep the same language and "
     "Markdown formatting. Return ONLY the rewritten document, nothing else."},
}};

const Row& rowOf(AIDocumentAction action) {
    return kRows.at(static_cast<std::size_t>(action));
}

}  // namespace

const char* rawValue(AIDocumentAction action) {
    return rowOf(action).rawValue;
}

const Text& labelOf(AIDocumentAction action) {
    return rowOf(action).label;
}

const char* promptOf(AIDocumentAction action) {
    return rowOf(action).prompt;
}

const char* correctionsPrompt() {
    return "Fix all the spelling and grammar errors in the following document. Apply all "
           "corrections directly. Keep the same language, style, and Markdown formatting. Return "
           "ONLY the corrected document, nothing else.";
}

AIActionResultType resultTypeOf(AIDocumentAction action) {
    switch (action) {
        case AIDocumentAction::generateTOC:
            return AIActionResultType::insertAtTop;
        case AIDocumentAction::spellCheck:
            return AIActionResultType::review;
        case AIDocumentAction::summarize:
            return AIActionResultType::copyOnly;
        default:
            return AIActionResultType::replaceDocument;
    }
}

}  // namespace corvel
