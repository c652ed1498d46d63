#pragma once

#include "app/settings/Localisation.h"

/// Texts of what the library is copied to: exports of all of it, and backups.
namespace corvel::texts {

// Export of the library.
inline constexpr Text exportLibraryTitle{"Gdzie umieścić folder ze wszystkimi notatkami",
                                         "Where to Put the Folder with All Notes"};
inline constexpr Text exportLibraryVerb{"Eksportuj tutaj", "Export Here"};
inline constexpr Text exportLibraryName{"Eksport biblioteki", "Export of the library"};
inline constexpr Text exportLibraryRunning{"Eksportowanie: %1 z %2", "Exporting: %1 of %2"};
inline constexpr Text exportLibraryBusy{"Trwa już eksport biblioteki",
                                        "The library is being exported already"};
inline constexpr Text exportLibraryDone{"Wyeksportowano %1 do folderu \"%2\"",
                                        "Exported %1 to the folder \"%2\""};
inline constexpr Text exportLibraryMissing{"Wyeksportowano %1; liczba załączników bez danych: %2",
                                           "Exported %1; attachments without data: %2"};
inline constexpr Text exportLibraryShow{"Pokaż folder", "Show Folder"};
inline constexpr Text exportLibraryTrash{"Kosz", "Trash"};
inline constexpr Text exportLibraryFailed{"Biblioteki nie wyeksportowano",
                                          "The Library Was Not Exported"};
inline constexpr Text exportLibraryAgain{"Wybierz inne miejsce…", "Choose Another Place…"};
inline constexpr Text exportFaultOccupied{"W tym miejscu już coś jest. Wybierz inne.",
                                          "Something is in that place already. Choose another."};
inline constexpr Text exportFaultGone{
    "Wybrane miejsce zniknęło. Sprawdź, czy dysk jest podłączony, i spróbuj jeszcze raz.",
    "The chosen place is gone. Check that the drive is connected, then try again."};
inline constexpr Text exportFaultSilent{
    "Dysk, na którym leży wybrane miejsce, nie odpowiada. Spróbuj jeszcze raz albo wybierz inne.",
    "The disk that the chosen place is on does not answer. Try again or choose another."};
inline constexpr Text exportFaultFull{
    "Na dysku zabrakło miejsca. Zwolnij je albo wybierz inny dysk.",
    "The disk is full. Free some space or choose another disk."};
inline constexpr Text exportFaultNotWritable{
    "W tym folderze nie wolno zapisywać. Wybierz inny.",
    "Nothing may be written to that folder. Choose another."};
inline constexpr Text exportFaultStore{
    "Nie udało się odczytać biblioteki. Twoje notatki są nienaruszone; uruchom program ponownie i "
    "spróbuj jeszcze raz.",
    "The library could not be read. Your notes are untouched; start the program again and retry."};
inline constexpr Text exportFaultOther{
    "Zapis się nie powiódł. Wybierz inne miejsce i spróbuj jeszcze raz.",
    "Writing failed. Choose another place and try again."};

// Import of an exported library.
inline constexpr Text importLibraryQuestion{"Zaimportować bibliotekę \"%1\"?",
                                            "Import the library \"%1\"?"};
inline constexpr Text importLibraryDetail{
    "W eksporcie: %1 z folderami, datami, tagami i załącznikami. Notatki, których nie zmieniono od "
    "eksportu, nie pojawią się drugi raz; żadna istniejąca notatka nie zostanie nadpisana.",
    "It brings back %1 with folders, dates, tags and attachments. Notes unchanged since the export "
    "do not come twice, and no present note is overwritten."};
inline constexpr Text importUnchanged{"Zaimportowano %1; bez zmian w bibliotece: %2",
                                      "Imported %1; unchanged in the library: %2"};

// Backups.
inline constexpr Text groupBackups{"Kopie zapasowe", "Backups"};
inline constexpr Text backupsDetail{
    "Kopia powstaje raz dziennie; zachowujemy siedem ostatnich. Leżą na tym samym dysku co "
    "biblioteka: na wypadek jego awarii eksportuj bibliotekę na inny dysk.",
    "A copy is made once a day, and the last seven are kept. They lie on the same disk as the "
    "library: in case it breaks, export the library to another disk."};
inline constexpr Text backUpNow{"Utwórz kopię teraz", "Back Up Now"};
inline constexpr Text backupRunning{"Tworzenie kopii zapasowej…", "Making a backup…"};
inline constexpr Text backupNone{"Nie ma jeszcze kopii zapasowych", "No backups yet"};
inline constexpr Text backupNoneDetail{
    "Pierwsza powstanie niedługo po uruchomieniu programu.",
    "The first one is made a little while after the program starts."};
inline constexpr Text backupDetail{"%1 · %2", "%1 · %2"};
inline constexpr Text backupDetailWithKind{"%1 · %2 · %3", "%1 · %2 · %3"};
inline constexpr Text backupByHand{"ręczna", "by hand"};
inline constexpr Text backupBeforeRestore{"sprzed przywrócenia", "before a restoration"};
inline constexpr Text backupFailed{"Ostatnia kopia zapasowa się nie udała",
                                   "The last backup failed"};
inline constexpr Text backupFaultFull{
    "Na dysku jest za mało miejsca. Zwolnij je; następna próba nastąpi sama.",
    "There is too little room on the disk. Free some; it is tried again by itself."};
inline constexpr Text backupFaultNotWritable{
    "W folderze danych nie wolno zapisywać. Sprawdź jego uprawnienia.",
    "Nothing may be written to the data folder. Check its permissions."};
inline constexpr Text backupFaultDamaged{
    "Kopia nie przeszła sprawdzenia i nie została zachowana. Wyeksportuj bibliotekę i sprawdź "
    "dysk.",
    "The copy did not pass its check and was not kept. Export the library and check the disk."};
inline constexpr Text backupFaultOther{"Zapis się nie powiódł. Następna próba nastąpi sama.",
                                       "Writing failed. It is tried again by itself."};

// Restoring.
inline constexpr Text restoreVerb{"Przywróć…", "Restore…"};
inline constexpr Text restoreOf{"Przywróć bibliotekę: %1", "Restore the library: %1"};
inline constexpr Text restoreQuestion{"Przywrócić bibliotekę z kopii: %1?",
                                      "Restore the library from the backup: %1?"};
inline constexpr Text restoreQuestionDetail{
    "Wszystko wróci do stanu z kopii (%1). Obecna biblioteka zostanie najpierw zachowana jako "
    "jeszcze jedna kopia, więc możesz do niej wrócić. Program uruchomi się ponownie.",
    "Everything becomes as it was then (%1). The present library is kept as one more backup first, "
    "so you can go back to it. The program starts again."};
inline constexpr Text restoreConfirm{"Przywróć", "Restore"};
inline constexpr Text restoreRunning{"Przywracanie biblioteki…", "Restoring the library…"};
inline constexpr Text restoreFailed{"Biblioteki nie przywrócono; nic się nie zmieniło",
                                    "The library was not restored; nothing has changed"};
inline constexpr Text restoreFaultDamaged{"Ta kopia jest uszkodzona. Wybierz inną.",
                                          "That backup is damaged. Choose another."};
inline constexpr Text restoreFaultNewer{
    "Tę kopię zapisała nowsza wersja programu. Zaktualizuj program, aby ją przywrócić.",
    "A newer version of the program made that backup. Update the program to restore it."};
inline constexpr Text restoreFaultGone{"Plików tej kopii już nie ma. Wybierz inną.",
                                       "The files of that backup are gone. Choose another."};
inline constexpr Text restoreFaultNotKept{
    "Nie udało się najpierw zachować obecnej biblioteki.",
    "The present library could not be kept as a backup first."};
inline constexpr Text restoreFaultChanged{
    "Biblioteka cały czas się zmieniała. Poczekaj, aż skończy się inna praca, i spróbuj ponownie.",
    "The library kept changing. Wait until other work has ended, then try again."};
inline constexpr Text restoreFaultNotSaved{
    "Otwartej notatki nie udało się zapisać. Zapisz ją i spróbuj ponownie.",
    "The open note could not be saved. Save it, then try again."};
inline constexpr Text restoreFaultOther{"Zapis się nie powiódł. Spróbuj ponownie.",
                                        "Writing failed. Try again."};
inline constexpr Text restored{"Przywrócono bibliotekę. Poprzednia jest wśród kopii zapasowych.",
                               "The library was restored. The previous one is among the backups."};

}  // namespace corvel::texts
