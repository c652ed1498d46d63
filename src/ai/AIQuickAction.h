#pragma once

#include "app/settings/Localisation.h"

#include <array>

namespace corvel {

/// One-click work on the selected text. The order is that of the buttons.
enum class AIQuickAction {
    improveStyle,
    fixGrammar,
    shorten,
    expand,
    translateToEnglish,
    translateToPolish,
    simplify,
    makeProfessional,
};

inline constexpr std::array kAIQuickActions{AIQuickAction::improveStyle,
                                            AIQuickAction::fixGrammar,
                                            AIQuickAction::shorten,
                                            AIQuickAction::expand,
                                            AIQuickAction::translateToEnglish,
                                            AIQuickAction::translateToPolish,
                                            AIQuickAction::simplify,
                                            AIQuickAction::makeProfessional};

const char* rawValue(AIQuickAction action);
const Text& labelOf(AIQuickAction action);
/// What is sent as the system prompt.
const char* promptOf(AIQuickAction action);

}  // namespace corvel
