#pragma once

#include "ai/AIActionResultType.h"
#include "app/settings/Localisation.h"

#include <array>

namespace corvel {

/// One-click work on the whole note. The order is that of the buttons.
enum class AIDocumentAction {
    generateTOC,
    spellCheck,
    summarize,
    shortenDocument,
    translateToEnglish,
    translateToPolish,
    simplify,
    makeProfessional,
};

inline constexpr std::array kAIDocumentActions{
    AIDocumentAction::generateTOC,        AIDocumentAction::spellCheck,
    AIDocumentAction::summarize,          AIDocumentAction::shortenDocument,
    AIDocumentAction::translateToEnglish, AIDocumentAction::translateToPolish,
    AIDocumentAction::simplify,           AIDocumentAction::makeProfessional};

const char* rawValue(AIDocumentAction action);
const Text& labelOf(AIDocumentAction action);
/// What is sent as the system prompt.
const char* promptOf(AIDocumentAction action);

/// Asks for the corrections that a spell check found.
const char* correctionsPrompt();
AIActionResultType resultTypeOf(AIDocumentAction action);

}  // namespace corvel
