#pragma once

#include "app/settings/Localisation.h"

namespace corvel::texts {

// The command palette and the note switcher.
inline constexpr Text paletteCommands{"Szukaj polecenia", "Search commands"};
inline constexpr Text paletteNotes{"Szukaj notatki po tytule", "Search notes by title"};
inline constexpr Text paletteResults{"Wyniki", "Results"};
inline constexpr Text paletteNothing{"Nic nie pasuje", "Nothing matches"};
inline constexpr Text palettePosition{"%1 z %2", "%1 of %2"};
inline constexpr Text paletteUnavailable{"niedostępne", "not available"};

}  // namespace corvel::texts
