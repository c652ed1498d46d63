#pragma once

#include "app/settings/Localisation.h"

namespace corvel::texts {

// Find and replace.
inline constexpr Text findBar{"Znajdź w notatce", "Find in note"};
inline constexpr Text findText{"Znajdź", "Find"};
inline constexpr Text replaceText{"Zamień na", "Replace with"};
inline constexpr Text findNextMatch{"Następne", "Next"};
inline constexpr Text findPreviousMatch{"Poprzednie", "Previous"};
inline constexpr Text matchCase{"Uwzględniaj wielkość liter", "Match case"};
inline constexpr Text wholeWords{"Całe słowa", "Whole words"};
inline constexpr Text regularExpression{"Wyrażenie regularne", "Regular expression"};
inline constexpr Text closeFindBar{"Zamknij wyszukiwanie", "Close find bar"};
inline constexpr Text replaceOne{"Zamień", "Replace"};
inline constexpr Text replaceAll{"Zamień wszystkie", "Replace All"};
inline constexpr Text matchOf{"%1 z %2", "%1 of %2"};
inline constexpr Text matchCount{"Wyniki: %1", "Matches: %1"};
inline constexpr Text noMatches{"Brak wyników", "No matches"};
inline constexpr Text wentToStart{"%1, od początku", "%1, from the top"};
inline constexpr Text wentToEnd{"%1, od końca", "%1, from the end"};
inline constexpr Text findsInPart{"Przeszukiwany jest tylko pokazany początek notatki",
                                  "Only the beginning that is shown is searched"};
inline constexpr Text replacedCount{"Zamieniono: %1", "Replaced: %1"};
inline constexpr Text badExpression{"Błędne wyrażenie", "Invalid expression"};
inline constexpr Text slowExpression{"Wyrażenie zbyt złożone", "Expression too complex"};

// In the status line.
inline constexpr Text lineInPieces{"Bardzo długi wiersz pokazany w częściach",
                                   "Very long line shown in pieces"};

// The editor's context menu.
inline constexpr Text cut{"Wytnij", "Cut"};
inline constexpr Text copy{"Kopiuj", "Copy"};
inline constexpr Text paste{"Wklej", "Paste"};
inline constexpr Text deleteText{"Usuń", "Delete"};
inline constexpr Text undoEdit{"Cofnij", "Undo"};
inline constexpr Text redoEdit{"Ponów", "Redo"};
inline constexpr Text selectAll{"Zaznacz wszystko", "Select All"};
inline constexpr Text noSuggestions{"Brak propozycji", "No suggestions"};
inline constexpr Text addToDictionary{"Dodaj do słownika", "Add to Dictionary"};
inline constexpr Text ignoreWord{"Ignoruj", "Ignore"};

}  // namespace corvel::texts
