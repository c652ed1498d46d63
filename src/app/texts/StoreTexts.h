#pragma once

#include "app/settings/Localisation.h"

/// Why the store did not do what it was asked, and what to do about it.
namespace corvel::texts {

inline constexpr Text storeDiskFull{"brak miejsca na dysku", "the disk is full"};
inline constexpr Text storeReadOnly{"w folderze biblioteki nie można zapisywać",
                                    "the library's folder cannot be written to"};
inline constexpr Text storeLocked{"biblioteki używa inny program",
                                  "another program is using the library"};
inline constexpr Text cannotStartDetail{
    "Folder biblioteki: %1\nSprawdź, czy można w nim zapisywać, czy na dysku jest miejsce i czy "
    "biblioteki nie używa inny program.",
    "Folder of the library: %1\nCheck that it can be written to, that the disk has room and that "
    "no other program is using the library."};
inline constexpr Text upgrading{"Dostosowywanie biblioteki do tej wersji programu…",
                                "Bringing the library up to this version of the program…"};
inline constexpr Text upgraded{"%1 z %2", "%1 of %2"};
inline constexpr Text notSavedNorKept{
    "Biblioteka nie przyjęła ostatnich zmian i nie udało się zachować ich obok niej. Po zamknięciu "
    "przepadną: najpierw zwolnij miejsce na dysku albo skopiuj tekst.",
    "The library refused the last changes, and they could not be kept beside it. Closing loses "
    "them: make room on the disk or copy the text first."};

}  // namespace corvel::texts
