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

}  // namespace corvel::texts
