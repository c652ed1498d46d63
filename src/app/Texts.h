#pragma once

#include "app/settings/Localisation.h"

/// The catalogue: every text of the interface, in both languages. Labels of commands stand in the
/// command table, labels of orders beside SortOption.
namespace corvel::texts {

// The program and its windows.
inline constexpr Text programName{"qno Corvel", "qno Corvel"};
inline constexpr Text untitled{"Bez tytułu", "Untitled"};
inline constexpr Text cancel{"Anuluj", "Cancel"};
inline constexpr Text close{"Zamknij", "Close"};
inline constexpr Text undo{"Cofnij", "Undo"};
inline constexpr Text mainMenu{"Menu główne", "Main Menu"};

// Editor and preview.
inline constexpr Text modeEditor{"Edytor", "Editor"};
inline constexpr Text modeSplit{"Podzielony", "Split"};
inline constexpr Text modePreview{"Podgląd", "Preview"};
inline constexpr Text exportButton{"Eksportuj", "Export"};
inline constexpr Text assistantButton{"Asystent", "Assistant"};
inline constexpr Text noteMenu{"Menu notatki", "Note Menu"};
inline constexpr Text noteTitle{"Tytuł notatki", "Note title"};
inline constexpr Text noteText{"Treść notatki", "Note text"};
inline constexpr Text editorAndPreview{"Edytor i podgląd", "Editor and preview"};
inline constexpr Text titlePlaceholder{"Tytuł", "Title"};
inline constexpr Text noNoteOpen{"Wybierz notatkę", "Select a note"};
inline constexpr Text noNoteOpenDetail{"Notatka wybrana z listy otworzy się tutaj.",
                                       "A note chosen from the list opens here."};
inline constexpr Text noNoteYet{"Tu otworzy się notatka", "Your note opens here"};
inline constexpr Text createNote{"Nowa notatka", "New Note"};
inline constexpr Text readingTime{"%1 min czytania", "%1 min read"};
inline constexpr Text noteIsTrashed{"Ta notatka jest w koszu.", "This note is in the trash."};
inline constexpr Text previewUnavailable{
    "Podglądu tej notatki nie można pokazać. Oto jej tekst.",
    "The preview of this note cannot be shown. This is its text."};
inline constexpr Text previewTooLarge{"Ta notatka jest za duża na podgląd.",
                                      "This note is too large for a preview."};
inline constexpr Text noteIsPartial{"Początek bardzo dużej notatki, do odczytu",
                                    "Beginning of a very large note, read-only"};
inline constexpr Text noteIsLarge{"Duża notatka: bez kolorów i zawijania wierszy",
                                  "Large note: no colours, no line wrapping"};
inline constexpr Text noteFolders{"Foldery notatki", "Folders of the note"};
inline constexpr Text saving{"Zapisywanie…", "Saving…"};
inline constexpr Text saved{"Zapisano", "Saved"};
inline constexpr Text savedAt{"Zapisano %1", "Saved %1"};
inline constexpr Text notSaved{"Niezapisane", "Not saved"};
inline constexpr Text notSavedBecause{"Niezapisane: %1", "Not saved: %1"};

// Sidebar.
inline constexpr Text allNotes{"Wszystkie notatki", "All Notes"};
inline constexpr Text unfiled{"Bez folderu", "Unfiled"};
inline constexpr Text localFiles{"Pliki lokalne", "Local Files"};
inline constexpr Text archive{"Archiwum", "Archive"};
inline constexpr Text trash{"Kosz", "Trash"};
inline constexpr Text folders{"Foldery", "Folders"};
inline constexpr Text tags{"Tagi", "Tags"};
inline constexpr Text newFolder{"Nowy folder", "New Folder"};
inline constexpr Text folderName{"Nazwa folderu", "Folder name"};
inline constexpr Text newSubfolder{"Nowy podfolder", "New Subfolder"};
inline constexpr Text newSubfolderIn{"Nowy podfolder w \"%1\"", "New Subfolder in \"%1\""};
inline constexpr Text subfolderName{"Nazwa podfolderu", "Subfolder name"};
inline constexpr Text rename{"Zmień nazwę", "Rename"};
inline constexpr Text renameFolder{"Zmień nazwę folderu", "Rename Folder"};
inline constexpr Text deleteFolder{"Usuń folder", "Delete Folder"};
inline constexpr Text deleteFolderQuestion{"Usunąć folder \"%1\"?", "Delete folder \"%1\"?"};
inline constexpr Text deleteFolderDetail{
    "Podfoldery zostaną usunięte razem z nim. Notatki pozostaną w bibliotece.",
    "Its subfolders go with it. Notes stay in the library."};
inline constexpr Text create{"Utwórz", "Create"};

// Notes dropped on a folder.
inline constexpr Text moveOrAdd{"Przenieść czy dodać do folderu?", "Move or add to folder?"};
inline constexpr Text moveOrAddSeveral{
    "Te notatki są już w folderach. Przenieść je czy dodać do tego folderu?",
    "These notes are already in folders. Do you want to move them or also add them to this "
    "folder?"};
inline constexpr Text moveOrAddOne{
    "Ta notatka jest już w folderze. Przenieść ją czy dodać do tego folderu?",
    "This note is already in a folder. Do you want to move it or also add it to this folder?"};
inline constexpr Text moveToThisFolder{"Przenieś (usuń z innych folderów)",
                                       "Move (remove from other folders)"};
inline constexpr Text addToThisFolder{"Dodaj (zachowaj w bieżących folderach)",
                                      "Add to this folder (keep in current folders)"};

// Notes.
inline constexpr Text addToFolder{"Dodaj do folderu", "Add to Folder"};
inline constexpr Text removeFromFolder{"Usuń z folderu", "Remove from Folder"};
inline constexpr Text removeFromAllFolders{"Usuń z wszystkich folderów", "Remove from All Folders"};
inline constexpr Text pin{"Przypnij", "Pin"};
inline constexpr Text unpin{"Odepnij", "Unpin"};
inline constexpr Text pinned{"Przypięta", "Pinned"};
inline constexpr Text toArchive{"Archiwizuj", "Archive"};
inline constexpr Text fromArchive{"Przywróć z archiwum", "Unarchive"};
inline constexpr Text moveToTrash{"Przenieś do kosza", "Move to Trash"};
inline constexpr Text restore{"Przywróć", "Restore"};
inline constexpr Text deletePermanently{"Usuń trwale", "Delete Permanently"};

// The main window.
inline constexpr Text hideSidebar{"Ukryj panel boczny", "Hide Sidebar"};
inline constexpr Text showSidebar{"Pokaż panel boczny", "Show Sidebar"};
inline constexpr Text sidebarPane{"Panel boczny", "Sidebar"};
inline constexpr Text sidebarWidth{"Szerokość panelu bocznego", "Sidebar width"};
inline constexpr Text listWidth{"Szerokość listy", "List width"};
inline constexpr Text language{"Język", "Language"};
inline constexpr Text polish{"Polski", "Polski"};
inline constexpr Text english{"English", "English"};
inline constexpr Text interfaceSize{"Rozmiar interfejsu", "Interface Size"};
inline constexpr Text sizeSmall{"Mały", "Small"};
inline constexpr Text sizeNormal{"Normalny", "Normal"};
inline constexpr Text sizeLarge{"Duży", "Large"};
inline constexpr Text notSavedQuestion{"Zamknąć mimo niezapisanych zmian?",
                                       "Close with unsaved changes?"};
inline constexpr Text notSavedDetail{
    "Biblioteka nie przyjęła ostatnich zmian notatki. Program spróbuje je odzyskać przy następnym "
    "uruchomieniu.",
    "The library refused the last changes of the note. The program will try to recover them at the "
    "next start."};
inline constexpr Text closeAnyway{"Zamknij mimo to", "Close Anyway"};
inline constexpr Text cannotStart{"Nie można otworzyć biblioteki", "The library cannot be opened"};
inline constexpr Text aboutComment{"Notatki w Markdownie, lokalnie i po Twojemu.",
                                   "Notes in Markdown, on your own machine."};
inline constexpr Text keyboardShortcuts{"Skróty klawiszowe", "Keyboard Shortcuts"};

// Menus and groups of commands.
inline constexpr Text groupFile{"Plik", "File"};
inline constexpr Text groupEdit{"Edycja", "Edit"};
inline constexpr Text groupFormat{"Formatowanie", "Format"};
inline constexpr Text groupView{"Widok", "View"};
inline constexpr Text groupNote{"Notatka", "Note"};
inline constexpr Text groupHelp{"Pomoc", "Help"};
inline constexpr Text groupApplication{"Program", "Application"};
inline constexpr Text groupLists{"Listy", "Lists"};
inline constexpr Text contextMenu{"Menu podręczne", "Context menu"};
inline constexpr Text leaveSearch{"Opuść wyszukiwanie", "Leave search"};
inline constexpr Text undoOfMessage{"\"Cofnij\" w powiadomieniu", "\"Undo\" in a message"};

// The note list.
inline constexpr Text noteList{"Lista notatek", "Note list"};
inline constexpr Text search{"Szukaj", "Search"};
inline constexpr Text searchResults{"Wyniki", "Results"};
inline constexpr Text sortBy{"Sortuj według", "Sort By"};
inline constexpr Text newNoteTooltip{"Nowa notatka (⌘N)", "New Note (⌘N)"};
inline constexpr Text importTooltip{"Importuj Markdown (⌘O)", "Import Markdown (⌘O)"};
inline constexpr Text newNote{"Nowa notatka", "New Note"};
inline constexpr Text importNotes{"Importuj Markdown", "Import Markdown"};
inline constexpr Text today{"dziś, %1", "today, %1"};
inline constexpr Text yesterday{"wczoraj", "yesterday"};
inline constexpr Text movedToTrash{"Przeniesiono do kosza: %1", "Moved to Trash: %1"};
inline constexpr Text deleteForGoodOne{"Usunąć trwale \"%1\"?", "Delete \"%1\" permanently?"};
inline constexpr Text deleteForGoodSeveral{"Usunąć trwale: %1?", "Permanently delete %1?"};
inline constexpr Text deleteForGoodDetail{"Tego nie można cofnąć.", "This cannot be undone."};

// Empty states: what the list shows instead of rows.
inline constexpr Text emptyLibrary{"Nie ma jeszcze notatek", "No notes yet"};
inline constexpr Text emptyLibraryDetail{"Napisz pierwszą albo zaimportuj pliki Markdown.",
                                         "Write the first one or import Markdown files."};
inline constexpr Text emptyFolder{"Folder jest pusty", "This folder is empty"};
inline constexpr Text emptyFolderDetail{"Przeciągnij tu notatki albo utwórz nową.",
                                        "Drag notes here or create a new one."};
inline constexpr Text emptyTag{"Brak notatek z tym tagiem", "No notes with this tag"};
inline constexpr Text emptyTagDetail{"Wpisz #%1 w tekście notatki, a pojawi się tutaj.",
                                     "Write #%1 in a note and it appears here."};
inline constexpr Text emptyTrash{"Kosz jest pusty", "Trash is empty"};
inline constexpr Text emptyTrashDetail{"Usunięte notatki czekają tu na przywrócenie.",
                                       "Deleted notes wait here to be restored."};
inline constexpr Text emptyArchive{"Archiwum jest puste", "Archive is empty"};
inline constexpr Text emptyArchiveDetail{"Zarchiwizowane notatki znikają z list, ale nie giną.",
                                         "Archived notes leave the lists, but are kept."};
inline constexpr Text emptyUnfiled{"Wszystko jest w folderach", "Everything is filed"};
inline constexpr Text emptyUnfiledDetail{"Notatki bez folderu pojawią się tutaj.",
                                         "Notes without a folder appear here."};
inline constexpr Text emptyLocalFiles{"Brak plików lokalnych", "No local files"};
inline constexpr Text emptyLocalFilesDetail{"Notatki połączone z plikami na dysku będą tutaj.",
                                            "Notes linked with files on disk appear here."};
inline constexpr Text noHits{"Nic nie znaleziono", "Nothing found"};
inline constexpr Text noHitsDetail{"Żadna notatka nie zawiera \"%1\".", "No note contains \"%1\"."};

// Import.
inline constexpr Text importFiles{"Importuj pliki Markdown", "Import Markdown Files"};
inline constexpr Text importFolderTitle{"Importuj folder", "Import Folder"};
inline constexpr Text importVerb{"Importuj", "Import"};
inline constexpr Text markdownFiles{"Pliki Markdown", "Markdown files"};
inline constexpr Text allFiles{"Wszystkie pliki", "All files"};
inline constexpr Text importFolderQuestion{"Zaimportować folder \"%1\"?",
                                           "Import the folder \"%1\"?"};
inline constexpr Text importFolderDetail{"Wszystkie pliki Markdown z tego folderu i podfolderów.",
                                         "Every Markdown file in it and in its subfolders."};
inline constexpr Text keepSubfolders{"Zachowaj podfoldery jako foldery",
                                     "Keep subfolders as folders"};
inline constexpr Text importing{"Importowanie: %1 z %2", "Importing: %1 of %2"};
inline constexpr Text imported{"Zaimportowano %1", "Imported %1"};
inline constexpr Text importBusy{"Trwa już inny import", "Another import is still running"};
inline constexpr Text details{"Szczegóły", "Details"};
inline constexpr Text importReport{"Przebieg importu", "Import Report"};
inline constexpr Text importSkipped{"Pominięte pliki", "Skipped files"};
inline constexpr Text importMissingImages{"Nieznalezione obrazy", "Images not found"};
inline constexpr Text faultUnreadable{"nie można odczytać", "cannot be read"};
inline constexpr Text faultNotText{"to nie jest tekst", "is not text"};
inline constexpr Text faultNotAFile{"to nie jest zwykły plik", "is not an ordinary file"};
inline constexpr Text faultStore{"biblioteka nie przyjęła notatki", "the library refused it"};

}  // namespace corvel::texts
