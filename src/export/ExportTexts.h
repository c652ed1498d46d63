#pragma once

#include "app/settings/Localisation.h"

/// The texts of the export, in both languages.
namespace corvel::texts {

inline constexpr Text exportTooComplex{
    "Tej notatki nie można przetworzyć w rozsądnym czasie. Uprość jej tabele lub powtarzające się "
    "znaczniki i spróbuj ponownie.",
    "This note takes too long to process. Simplify its tables or repeated marks and try again."};
inline constexpr Text exportNoteIsGone{"Tej notatki już nie ma.", "This note is gone."};
inline constexpr Text exportedSome{"Wyeksportowano %1 z %2.", "Exported %1 of %2."};

inline constexpr Text exportNote{"Eksport notatki", "Export Note"};
inline constexpr Text exportNotes{"Eksport: %1", "Export %1"};
inline constexpr Text exportTooltip{"Eksport (⇧⌘E)", "Export (⇧⌘E)"};
inline constexpr Text exportFormat{"Format", "Format"};
inline constexpr Text exportGeneral{"Opcje", "Options"};
inline constexpr Text exportPdfOptions{"Opcje PDF", "PDF Options"};
inline constexpr Text exportPageSize{"Rozmiar strony", "Page Size"};
inline constexpr Text exportHeaderFooter{"Nagłówek i stopka", "Include header/footer"};
inline constexpr Text exportApplyTheme{"Zastosuj bieżący motyw", "Apply current theme"};
inline constexpr Text exportEmbedImages{"Osadź obrazy", "Embed images"};
inline constexpr Text exportVerb{"Eksportuj", "Export"};
inline constexpr Text exportSave{"Zapisz", "Save"};
inline constexpr Text exportChooseFolder{"Wybierz folder", "Choose Folder"};
inline constexpr Text exportRunning{"Eksportowanie…", "Exporting…"};
inline constexpr Text exportProgress{"Eksportowanie: %1 z %2", "Exporting: %1 of %2"};
inline constexpr Text exportDone{"Wyeksportowano: %1", "Exported: %1"};

}  // namespace corvel::texts
