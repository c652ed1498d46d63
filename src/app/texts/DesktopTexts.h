#pragma once

#include "app/settings/Localisation.h"

/// Texts of what the program says to the desktop around it, and of files that come from there.
namespace corvel::texts {

// Notifications.
inline constexpr Text showInFolder{"Pokaż w folderze", "Show in Folder"};
inline constexpr Text exportEnded{"Eksport zakończony", "Export finished"};
inline constexpr Text exportWaits{"Eksport gotowy do zapisania", "Export ready to be saved"};
inline constexpr Text exportWaitsDetail{"Wybierz miejsce dla pliku \"%1\".",
                                        "Choose a place for \"%1\"."};

// Files opened from outside.
inline constexpr Text openFileQuestion{"Jak otworzyć \"%1\"?", "How should \"%1\" be opened?"};
inline constexpr Text openFilesQuestion{"Jak otworzyć te pliki (%1)?",
                                        "How should these files be opened (%1)?"};
inline constexpr Text openFileDetail{
    "Import kopiuje tekst do notatek, a plik zostaje bez zmian. Połączona notatka pokazuje sam "
    "plik: to, co w niej napiszesz, trafi do pliku.",
    "Import copies the text into your notes and leaves the file alone. A linked note shows the "
    "file itself: what you write in it goes to the file."};
inline constexpr Text useImport{"Importuj", "Import"};
inline constexpr Text useLink{"Połącz", "Link"};
inline constexpr Text usePreview{"Tylko podgląd", "Preview Only"};
inline constexpr Text rememberUse{"Zapamiętaj wybór", "Remember my choice"};
inline constexpr Text rememberUseDetail{"Można go zmienić w Ustawieniach, na stronie Ogólne.",
                                        "It can be changed in Settings, on the page General."};
inline constexpr Text fileNotOpened{"Nie otwarto \"%1\": %2", "\"%1\" was not opened: %2"};
inline constexpr Text filesNotOpened{"Nie wszystkie pliki otwarto (pominięte: %1)",
                                     "Some files were not opened (skipped: %1)"};
inline constexpr Text filesNotOpenedTitle{"Pliki, których nie otwarto",
                                          "Files that were not opened"};

// Why a file was not opened.
inline constexpr Text openFaultNotMarkdown{"to nie jest plik Markdown", "it is no Markdown file"};
inline constexpr Text openFaultElsewhere{"nie leży na tym komputerze; skopiuj go najpierw tutaj",
                                         "it is not on this computer; copy it here first"};
inline constexpr Text openFaultMissing{"nie ma takiego pliku", "there is no such file"};
inline constexpr Text openFaultNoPermission{"brak prawa do odczytu", "you may not read it"};
inline constexpr Text openFaultPipe{"to nie jest zwykły plik", "it is not an ordinary file"};
inline constexpr Text openFaultLinkLoop{"dowiązanie prowadzi do samego siebie",
                                        "the link leads back to itself"};
inline constexpr Text openFaultSilent{"dysk, na którym leży, nie odpowiada",
                                      "the disk it is on does not answer"};
inline constexpr Text openFaultTooLarge{"jest za duży na notatkę", "it is too large for a note"};
inline constexpr Text openFaultNoText{"to nie jest tekst", "it is not text"};
inline constexpr Text openFaultNotUtf8{
    "połączyć można tylko plik w kodowaniu UTF-8; ten można zaimportować",
    "only a file in UTF-8 can be linked; this one can be imported"};
inline constexpr Text openFaultNotRead{"nie można go odczytać", "it cannot be read"};
inline constexpr Text openFaultNotStored{"biblioteka nie przyjęła notatki",
                                         "the library refused the note"};

// Settings.
inline constexpr Text groupExternalFiles{"Pliki spoza programu", "Files from outside"};
inline constexpr Text externalFiles{"Pliki Markdown", "Markdown files"};
inline constexpr Text externalAsk{"Pytaj", "Ask"};
inline constexpr Text externalPreview{"Podgląd", "Preview"};

}  // namespace corvel::texts
