#pragma once

#include "app/settings/Localisation.h"

/// The texts of the writing assistant, in both languages.
namespace corvel::texts {

// The key.
inline constexpr Text assistantNoKey{
    "Brak klucza API dla tego dostawcy. Skonfiguruj go w Ustawieniach.",
    "No API key for this provider. Configure it in Settings."};
inline constexpr Text assistantConfigureKey{"Skonfiguruj klucz API w Ustawieniach → Asystent AI",
                                            "Configure API key in Settings → AI Assistant"};
inline constexpr Text assistantOpenSettings{"Otwórz ustawienia", "Open Settings"};
inline constexpr Text assistantKeyNote{"Klucz API jest przechowywany bezpiecznie w Keychain.",
                                       "API key is stored securely in Keychain."};
inline constexpr Text assistantNoSecretService{
    "Na tym komputerze nie działa magazyn haseł (Secret Service), więc klucza nie ma gdzie "
    "bezpiecznie zapisać. Uruchom lub zainstaluj na przykład gnome-keyring.",
    "No password store (Secret Service) is running on this computer, so there is no safe place "
    "for the key. Start or install one, for example gnome-keyring."};

// The panel.
inline constexpr Text assistantPlaceholder{"Napisz wiadomość...", "Type a message..."};
inline constexpr Text assistantContext{"Kontekst: bieżąca notatka", "Context: current note"};
inline constexpr Text assistantDocumentActions{"Akcje na dokumencie", "Document Actions"};
inline constexpr Text assistantDocumentNote{"Akcje dotyczą całego dokumentu",
                                            "Actions apply to the entire document"};
inline constexpr Text assistantOriginal{"Oryginalny tekst", "Original Text"};
inline constexpr Text assistantInsert{"Wstaw w edytorze", "Insert in Editor"};
inline constexpr Text assistantReplaceSelection{"Zastąp zaznaczenie", "Replace Selection"};
inline constexpr Text assistantReplaceDocument{"Zastosuj na dokument", "Apply to Document"};
inline constexpr Text assistantInsertAtTop{"Wstaw na początek", "Insert at Top"};
inline constexpr Text assistantApplyCorrections{"Wprowadź poprawki", "Apply Corrections"};
inline constexpr Text assistantCopy{"Kopiuj", "Copy"};

// What went wrong.
inline constexpr Text assistantBadRequest{
    "Nie można wysłać zapytania: adres usługi musi zaczynać się od https, a klucz API nie może "
    "zawierać znaków końca wiersza.",
    "The request cannot be sent: the address of the service has to begin with https, and the API "
    "key must not contain line ends."};
inline constexpr Text assistantUnreachable{"Nie można połączyć się z usługą: %1",
                                           "The service cannot be reached: %1"};
inline constexpr Text assistantCertificate{
    "Serwer nie potwierdził swojej tożsamości (certyfikat). Nic nie zostało wysłane.",
    "The server could not prove its identity (certificate). Nothing was sent."};
inline constexpr Text assistantRedirected{
    "Usługa odsyła na inny serwer. Klucz API nie został tam wysłany.",
    "The service redirects to another server. The API key was not sent there."};
inline constexpr Text assistantTimedOut{"Usługa nie odpowiada.", "The service does not answer."};
inline constexpr Text assistantLineTooLong{"Odpowiedź usługi jest za długa.",
                                           "The answer of the service is too long."};
inline constexpr Text assistantNoteIsGone{"Tej notatki już nie ma.", "This note is gone."};
inline constexpr Text assistantSelectionIsGone{
    "Zaznaczonego tekstu nie ma już w notatce. Wynik można skopiować.",
    "The selected text is no longer in the note. The result can be copied."};

}  // namespace corvel::texts
