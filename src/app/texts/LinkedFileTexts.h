#pragma once

#include "app/settings/Localisation.h"

/// Notes that mirror files on disk.
namespace corvel::texts {

inline constexpr Text localFile{"Plik lokalny", "Local file"};
inline constexpr Text localFileAt{"Plik lokalny: %1", "Local file: %1"};

// Choosing files.
inline constexpr Text openFiles{"Otwórz pliki Markdown", "Open Markdown Files"};
inline constexpr Text openVerb{"Otwórz", "Open"};
inline constexpr Text locateFile{"Znajdź plik notatki", "Locate the Note's File"};
inline constexpr Text saveLocalFile{"Zapisz jako plik lokalny", "Save as Local File"};
inline constexpr Text saveVerb{"Zapisz", "Save"};

// What came of it.
inline constexpr Text savedToFile{"Zapisano w pliku \"%1\"", "Saved to \"%1\""};
inline constexpr Text trackingStopped{"Notatka nie jest już połączona z plikiem \"%1\"",
                                      "The note is no longer linked with \"%1\""};
inline constexpr Text cannotOpenFile{"Nie można otworzyć \"%1\": %2", "Cannot open \"%1\": %2"};
inline constexpr Text cannotOpenFiles{"Tych plików nie można otworzyć",
                                      "These files cannot be opened"};
inline constexpr Text cannotSaveFile{"Nie można zapisać \"%1\": %2", "Cannot save \"%1\": %2"};
inline constexpr Text faultMissing{"pliku ani folderu już nie ma", "it is not there any more"};
inline constexpr Text faultNoPermission{"brak uprawnień", "permission denied"};
inline constexpr Text faultReadOnly{"dysk jest tylko do odczytu", "the disk is read-only"};
inline constexpr Text faultDiskFull{"dysk jest pełny", "the disk is full"};
inline constexpr Text faultFolder{"to jest folder", "it is a folder"};
inline constexpr Text faultPipe{"to nie jest zwykły plik", "it is not an ordinary file"};
inline constexpr Text faultLinkLoop{"dowiązania prowadzą w kółko", "its links lead in a circle"};
inline constexpr Text faultTooLarge{"ma ponad 64 MB, można go tylko zaimportować",
                                    "it has more than 64 MB and can only be imported"};
inline constexpr Text faultChanged{"ktoś go właśnie zmienia", "somebody is changing it just now"};
inline constexpr Text faultNoAnswer{"dysk, na którym leży, nie odpowiada",
                                    "the disk it is on does not answer"};
inline constexpr Text faultSystem{"system zgłasza błąd", "the system reports an error"};
inline constexpr Text faultUtf16{"jest w UTF-16: zapisz go w UTF-8 albo zaimportuj",
                                 "it is UTF-16: save it as UTF-8, or import it"};
inline constexpr Text faultNotUtf8{"nie jest w UTF-8: zapisz go w UTF-8 albo zaimportuj",
                                   "it is not UTF-8: save it as UTF-8, or import it"};
inline constexpr Text faultAlreadyLinked{"należy już do notatki \"%1\"",
                                         "it already belongs to the note \"%1\""};

// The bar above a note that is not in step with its file.
inline constexpr Text fileConflict{"Notatka i plik \"%1\" zmieniły się niezależnie od siebie.",
                                   "The note and the file \"%1\" have both changed."};
inline constexpr Text compareVersions{"Porównaj…", "Compare…"};
inline constexpr Text fileVanished{"Pliku \"%1\" nie ma już na swoim miejscu.",
                                   "The file \"%1\" is no longer in its place."};
inline constexpr Text locate{"Znajdź…", "Locate…"};
inline constexpr Text saveAgain{"Zapisz ponownie", "Save Again"};
inline constexpr Text keepAsNote{"Zostaw jako notatkę", "Keep as Note"};
inline constexpr Text fileUnreadable{"Nie można odczytać pliku \"%1\": %2.",
                                     "The file \"%1\" cannot be read: %2."};
inline constexpr Text fileUnwritable{"Ostatnich zmian nie ma w pliku \"%1\": %2. Są w notatce.",
                                     "The last changes are not in the file \"%1\": %2. The note "
                                     "has them."};
inline constexpr Text tryAgain{"Spróbuj ponownie", "Try Again"};
inline constexpr Text saveElsewhere{"Zapisz gdzie indziej…", "Save Elsewhere…"};
inline constexpr Text leftUnwritten{"Ostatnich zmian nie ma w pliku \"%1\": %2",
                                    "The last changes are not in the file \"%1\": %2"};

// Two versions of one note.
inline constexpr Text ownVersionTitle{"%1 (moja wersja)", "%1 (my version)"};
inline constexpr Text whichVersion{"Którą wersję zachować?", "Which version do you want to keep?"};
inline constexpr Text whichVersionDetail{
    "Skreślone jest tylko w notatce, podkreślone tylko w pliku. Gdy zostaną obie, wersja z notatki "
    "będzie osobną notatką.",
    "Struck through is only in the note, underlined only in the file. If both are kept, the "
    "note's version becomes a note of its own."};
inline constexpr Text keepMine{"Zachowaj moją", "Keep Mine"};
inline constexpr Text takeTheirs{"Weź z pliku", "Take the File's"};
inline constexpr Text keepBoth{"Zachowaj obie", "Keep Both"};
inline constexpr Text changedAgain{"Plik zmienił się jeszcze raz. Porównaj wersje ponownie.",
                                   "The file has changed once more. Compare the versions again."};

// Deleting.
inline constexpr Text fileStays{"Plik na dysku pozostanie.", "The file on disk stays."};
inline constexpr Text filesStay{"Pliki na dysku pozostaną.", "The files on disk stay."};

}  // namespace corvel::texts
