#pragma once

#include "app/settings/Localisation.h"

/// Texts of the theme picker and the theme editor.
namespace corvel::texts {

inline constexpr Text themes{"Motywy", "Themes"};
inline constexpr Text editTheme{"Edytuj motyw", "Edit Theme"};
inline constexpr Text newTheme{"Nowy motyw", "New Theme"};
inline constexpr Text themeName{"Nazwa motywu", "Theme Name"};
inline constexpr Text name{"Nazwa", "Name"};
inline constexpr Text appearance{"Wygląd", "Appearance"};
inline constexpr Text light{"Jasny", "Light"};
inline constexpr Text dark{"Ciemny", "Dark"};
inline constexpr Text apply{"Zastosuj", "Apply"};
inline constexpr Text saveTheme{"Zapisz jako .qnotheme", "Save as .qnotheme"};
inline constexpr Text importTheme{"Importuj motyw...", "Import Theme..."};

// Colours, in the order of a theme's fields.
inline constexpr Text colors{"Kolory", "Colors"};
inline constexpr Text colorBackground{"Tło", "Background"};
inline constexpr Text colorForeground{"Tekst", "Text"};
inline constexpr Text colorAccent{"Akcent", "Accent"};
inline constexpr Text colorSidebar{"Panel boczny", "Sidebar"};
inline constexpr Text colorSidebarText{"Tekst panelu bocznego", "Sidebar Text"};
inline constexpr Text colorEditor{"Edytor", "Editor"};
inline constexpr Text colorEditorText{"Tekst edytora", "Editor Text"};
inline constexpr Text colorHeading{"Nagłówki", "Headings"};
inline constexpr Text colorLink{"Linki", "Links"};
inline constexpr Text colorCodeBackground{"Tło kodu i linie", "Code Background and Lines"};
inline constexpr Text colorCodeForeground{"Tekst kodu", "Code Text"};
inline constexpr Text colorBlockquoteBorder{"Obramowanie cytatu", "Blockquote Border"};
inline constexpr Text colorBlockquoteText{"Tekst cytatu", "Blockquote Text"};
inline constexpr Text colorSelection{"Zaznaczenie", "Selection"};
inline constexpr Text colorCursor{"Kursor", "Cursor"};
inline constexpr Text colorOf{"Kolor: %1", "Color: %1"};

inline constexpr Text typography{"Typografia", "Typography"};
inline constexpr Text fontFamily{"Rodzina czcionki", "Font Family"};
inline constexpr Text monoFont{"Czcionka mono", "Mono Font"};
inline constexpr Text fontSize{"Rozmiar czcionki", "Font Size"};
inline constexpr Text lineHeight{"Wysokość linii", "Line Height"};

// Cards.
inline constexpr Text builtIn{"Wbudowany", "Built-in"};
inline constexpr Text ownTheme{"Własny", "Your own"};
inline constexpr Text themeActions{"Działania: %1", "Actions: %1"};
inline constexpr Text edit{"Edytuj...", "Edit..."};
inline constexpr Text duplicate{"Duplikuj...", "Duplicate..."};
inline constexpr Text deleteTheme{"Usuń", "Delete"};
inline constexpr Text copyOf{"%1 (kopia)", "%1 (copy)"};
inline constexpr Text sampleHeading{"Nagłówek", "Heading"};
inline constexpr Text sampleText{"Zwykły tekst,", "Plain text,"};
inline constexpr Text sampleLink{"link", "link"};
inline constexpr Text sampleCode{"kod", "code"};
inline constexpr Text sampleSelection{"wybrane", "selected"};
inline constexpr Text sampleQuote{"Cytat", "Quote"};

// What happened.
inline constexpr Text themeDeleted{"Usunięto motyw: %1", "Theme deleted: %1"};
inline constexpr Text themeNotDeleted{
    "Motyw „%1” leży w pliku o innej nazwie; usuń go z folderu motywów.",
    "The theme “%1” lies in a file of another name; remove it from the themes folder."};
inline constexpr Text openThemesFolder{"Otwórz folder", "Open Folder"};
inline constexpr Text themeSaved{"Zapisano motyw: %1", "Theme saved: %1"};
inline constexpr Text themeNotSaved{"Nie udało się zapisać motywu", "The theme could not be saved"};
inline constexpr Text themeImported{"Zaimportowano motyw: %1", "Theme imported: %1"};
inline constexpr Text themeUnreadable{"W pliku „%1” nie ma motywu", "There is no theme in “%1”"};
inline constexpr Text replaceThemeQuestion{"Zastąpić istniejący motyw?",
                                           "Replace the existing theme?"};
inline constexpr Text replaceThemeDetail{
    "W folderze motywów jest już plik „%1” z innym motywem. Zostanie zastąpiony.",
    "The themes folder already has a file “%1” with another theme. It will be replaced."};
inline constexpr Text replace{"Zastąp", "Replace"};
inline constexpr Text discardThemeQuestion{"Odrzucić zmiany motywu?", "Discard the changes?"};
inline constexpr Text discardThemeDetail{"Zmiany motywu nie są zapisane.",
                                         "The changes of the theme are not saved."};
inline constexpr Text discard{"Odrzuć", "Discard"};
inline constexpr Text importThemeVerb{"Importuj", "Import"};
inline constexpr Text themeFiles{"Pliki motywów", "Theme files"};

inline constexpr Text themePreview{"Podgląd motywu", "Theme preview"};
inline constexpr Text themePreviewUnavailable{"Podglądu nie można pokazać.",
                                              "The preview cannot be shown."};
inline constexpr Text themeSampleNote{
    R"(# Wycieczka w góry

Wyruszamy **w sobotę o świcie**, więc *spakuj się wieczorem*. Trasę opisuje [przewodnik](https://example.org), a ślad jest w pliku `szlak.gpx`.

## Do zabrania

- [x] mapa i kompas
- [ ] termos z herbatą
- czołówka i zapasowe baterie

> Góry są cierpliwe. Zaczekają, aż pogoda się poprawi.

```
06:10  wyjście ze schroniska
08:30  szczyt
```

| Odcinek | Czas |
|---------|------|
| Przełęcz | 1 godz. |
| Szczyt | 2 godz. |

---

### Uwagi

Numer do ratowników zapisz w telefonie.
)",
    R"(# A Day in the Mountains

We leave **on Saturday at dawn**, so *pack in the evening*. The route is in the [guide book](https://example.org), its track in the file `trail.gpx`.

## To take along

- [x] map and compass
- [ ] flask of tea
- head torch and spare batteries

> Mountains are patient. They wait until the weather is better.

```
06:10  leave the hut
08:30  summit
```

| Leg | Time |
|-----|------|
| Saddle | 1 hour |
| Summit | 2 hours |

---

### Notes

Keep the number of the mountain rescue in your phone.
)"};

}  // namespace corvel::texts
