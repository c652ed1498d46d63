#pragma once

#include "app/settings/Localisation.h"

namespace corvel::texts {

// Words brought back after a crash, and two versions of one note.
inline constexpr Text recoveredTitle{"%1 (odzyskane)", "%1 (recovered)"};
inline constexpr Text recoveredText{"Odzyskano niezapisany tekst: %1",
                                    "Recovered unsaved text: %1"};
inline constexpr Text recoveredAsNote{"Odzyskano niezapisany tekst jako nową notatkę: %1",
                                      "Recovered unsaved text as a new note: %1"};
inline constexpr Text recoveredSeveral{"Odzyskano niezapisany tekst: %1",
                                       "Recovered unsaved text: %1"};
inline constexpr Text showNote{"Pokaż", "Show"};
inline constexpr Text otherVersionTitle{"%1 (druga wersja)", "%1 (other version)"};
inline constexpr Text otherVersionKept{
    "Notatka zmieniła się poza edytorem. Druga wersja została zachowana: %1",
    "The note was changed elsewhere. The other version was kept: %1"};

}  // namespace corvel::texts
