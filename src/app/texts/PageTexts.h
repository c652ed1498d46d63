#pragma once

#include "app/settings/Localisation.h"

/// Texts of the windows that show a rendered page: reader, guide, preview of a file.
namespace corvel::texts {

inline constexpr Text readerTitle{"Czytnik", "Reader"};
inline constexpr Text guideTitle{"Przewodnik Markdown", "Markdown Guide"};
inline constexpr Text guideSource{"Tekst źródłowy przewodnika", "Source text of the guide"};
inline constexpr Text guidePage{"Przewodnik", "Guide"};
inline constexpr Text sourceAndPage{"Tekst źródłowy i strona", "Source text and page"};
inline constexpr Text choosePreviewFile{"Podgląd pliku Markdown", "Preview Markdown File"};
inline constexpr Text preview{"Podgląd", "Preview"};
inline constexpr Text markdownOnly{"Pliki Markdown", "Markdown files"};
inline constexpr Text importThisFile{"Importuj", "Import"};
inline constexpr Text importThisFileTooltip{"Dodaj ten plik do notatek",
                                            "Add this file to your notes"};
inline constexpr Text fileIsMissing{"Nie ma takiego pliku", "There is no such file"};
inline constexpr Text fileIsMissingDetail{
    "%1 został usunięty albo przeniesiony. Gdy wróci, podgląd też wróci.",
    "%1 was deleted or moved. When it comes back, so does the preview."};
inline constexpr Text fileIsTooLarge{"Plik jest za duży na podgląd",
                                     "The file is too large for a preview"};
inline constexpr Text fileIsTooLargeDetail{
    "%1 ma więcej niż 4 MB. Można go zaimportować jako notatkę.",
    "%1 has more than 4 MB. It can be imported as a note."};
inline constexpr Text fileIsNotText{"To nie jest plik tekstowy", "This is not a text file"};
inline constexpr Text fileIsNotTextDetail{"%1 nie zawiera tekstu.", "%1 contains no text."};
inline constexpr Text fileIsUnreadable{"Nie można odczytać pliku", "The file cannot be read"};
inline constexpr Text fileIsUnreadableDetail{"Sprawdź uprawnienia do pliku %1.",
                                             "Check the permissions of %1."};

}  // namespace corvel::texts
