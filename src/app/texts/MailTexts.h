#pragma once

#include "app/settings/Localisation.h"

namespace corvel::texts {

// Messages to others and to the maker.
inline constexpr const char* supportAddress = "support@corvel.example";
inline constexpr Text problemSubject{"Problem z qno Corvel", "Problem with qno Corvel"};
inline constexpr Text problemBody{"Co się stało:\n\n\n\nWersja: qno Corvel %1\n",
                                  "What happened:\n\n\n\nVersion: qno Corvel %1\n"};
inline constexpr Text noMailProgram{"Nie znaleziono programu pocztowego. Adres: %1",
                                    "No mail program was found. Address: %1"};

}  // namespace corvel::texts
