#pragma once

#include "app/settings/Localisation.h"

namespace corvel::texts {

// Two texts with their differences marked.
inline constexpr Text differences{"Różnice", "Differences"};
inline constexpr Text noDifferences{"Bez zmian", "No changes"};
inline constexpr Text changeCount{"Zmiany: %1", "Changes: %1"};
inline constexpr Text changeOf{"Zmiana %1 z %2", "Change %1 of %2"};
inline constexpr Text removedText{"Usunięto: %1", "Removed: %1"};
inline constexpr Text addedText{"Dodano: %1", "Added: %1"};
inline constexpr Text previousChange{"Poprzednia zmiana", "Previous Change"};
inline constexpr Text nextChange{"Następna zmiana", "Next Change"};
inline constexpr Text showUnchangedLines{"Pokaż wiersze bez zmian: %1", "Show %1 unchanged lines"};

}  // namespace corvel::texts
