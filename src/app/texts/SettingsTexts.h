#pragma once

#include "app/settings/Localisation.h"

/// Texts of the settings window. "%1" is the value a setting has.
namespace corvel::texts {

inline constexpr Text settings{"Ustawienia", "Settings"};
inline constexpr Text settingsPage{"Strona ustawień", "Settings page"};
inline constexpr Text pageGeneral{"Ogólne", "General"};
inline constexpr Text pageEditor{"Edytor", "Editor"};
inline constexpr Text pageAppearance{"Wygląd", "Appearance"};
inline constexpr Text pageSync{"Synchronizacja", "Sync"};
inline constexpr Text pageData{"Dane", "Data"};

// General.
inline constexpr Text groupInterface{"Interfejs", "Interface"};
inline constexpr Text groupSaving{"Zapisywanie", "Saving"};
inline constexpr Text autoSave{"Autozapis co: %1s", "Auto-save interval: %1s"};
inline constexpr Text autoSaveDetail{"Tyle czeka zapis po ostatniej zmianie w notatce.",
                                     "How long after the last change a note is saved."};

// Editor.
inline constexpr Text groupText{"Tekst", "Text"};
inline constexpr Text editorFontSize{"Rozmiar czcionki: %1", "Font size: %1"};
inline constexpr Text editorLineSpacing{"Interlinia: %1", "Line spacing: %1"};
inline constexpr Text groupWriting{"Pisanie", "Writing"};
inline constexpr Text autoCloseBrackets{"Automatyczne zamykanie nawiasów", "Auto-close brackets"};
inline constexpr Text spellChecking{"Sprawdzanie pisowni", "Check spelling"};
inline constexpr Text groupPreview{"Podgląd", "Preview"};
inline constexpr Text defaultEditorMode{"Domyślny tryb edytora", "Default editor mode"};
inline constexpr Text remoteImages{"Wczytuj obrazy z internetu", "Load images from the web"};
inline constexpr Text remoteImagesDetail{
    "Serwer, na którym leży obraz, dowiaduje się, że otwarto notatkę.",
    "The server an image lies on learns that the note was opened."};

// Appearance.
inline constexpr Text currentTheme{"Motyw", "Theme"};
inline constexpr Text chooseTheme{"Wybierz motyw...", "Choose Theme..."};

// Sync.
inline constexpr Text iCloudSync{"Synchronizacja iCloud", "iCloud Sync"};
inline constexpr Text syncStatus{"Status synchronizacji: %1", "Sync status: %1"};
inline constexpr Text syncOff{"wyłączona", "off"};
inline constexpr Text syncWaiting{"niezalogowano", "not signed in"};
inline constexpr Text syncOn{"włączona", "on"};
inline constexpr Text syncDisabled{"Synchronizacja iCloud jest w tej konfiguracji wyłączona.",
                                   "iCloud sync is disabled in this configuration."};
inline constexpr Text syncSignedOut{
    "Zaloguj się do iCloud w Ustawieniach systemowych, aby włączyć synchronizację między "
    "urządzeniami.",
    "Sign in to iCloud in System Settings to enable sync across your devices."};
inline constexpr Text syncActive{
    "Twoje notatki synchronizują się automatycznie na wszystkich urządzeniach przez iCloud.",
    "Your notes sync automatically across all your devices via iCloud."};

// Data.
inline constexpr Text groupTrash{"Kosz", "Trash"};
inline constexpr Text trashRetention{"Opróżniaj kosz po %1 dniach", "Empty trash after %1 days"};
inline constexpr Text trashRetentionDetail{
    "W tej wersji notatki czekają w koszu, aż usuniesz je samodzielnie.",
    "In this version notes wait in the trash until you delete them yourself."};
inline constexpr Text groupPlaces{"Gdzie leżą dane", "Where the data lies"};
inline constexpr Text placeLibrary{"Biblioteka notatek", "Library of notes"};
inline constexpr Text placeThemes{"Motywy", "Themes"};
inline constexpr Text placePreferences{"Ustawienia", "Settings"};
inline constexpr Text openFolder{"Otwórz folder", "Open Folder"};
inline constexpr Text openFolderOf{"Otwórz folder: %1", "Open folder: %1"};

}  // namespace corvel::texts
