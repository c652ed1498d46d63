#pragma once

#include "app/settings/Localisation.h"
#include "app/texts/AssistantSettingsTexts.h"

namespace corvel::texts {

// The assistant's panel, beyond the texts of the assistant itself.
inline constexpr Text assistantPanel{"Asystent AI", "AI Assistant"};
inline constexpr Text assistantWidth{"Szerokość asystenta", "Assistant width"};
inline constexpr Text assistantChat{"Czat", "Chat"};
inline constexpr Text assistantActions{"Akcje", "Actions"};
inline constexpr Text assistantHide{"Ukryj asystenta", "Hide Assistant"};
inline constexpr Text assistantClear{"Wyczyść czat", "Clear Chat"};
inline constexpr Text assistantSend{"Wyślij", "Send"};
inline constexpr Text assistantStop{"Zatrzymaj", "Stop"};
inline constexpr Text assistantMessage{"Wiadomość do asystenta", "Message to the assistant"};
inline constexpr Text assistantMessages{"Rozmowa z asystentem", "Conversation with the assistant"};
inline constexpr Text assistantYou{"Ty", "You"};
inline constexpr Text assistantName{"Asystent", "Assistant"};
inline constexpr Text assistantWaiting{"Czekam na odpowiedź…", "Waiting for the reply…"};
inline constexpr Text assistantEmptyTitle{"Zapytaj o notatkę", "Ask about the note"};
inline constexpr Text assistantEmpty{
    "Asystent zna tytuł, treść i zaznaczenie otwartej notatki.",
    "The assistant knows the title, the text and the selection of the open note."};
inline constexpr Text assistantPickModel{"Dostawca i model: %1", "Provider and model: %1"};
inline constexpr Text assistantSelectionActions{"Akcje na zaznaczeniu", "Selection Actions"};
inline constexpr Text assistantSelectionNote{"Zaznacz tekst w edytorze",
                                             "Select text in the editor"};
inline constexpr Text assistantSelectionReady{"Akcje dotyczą zaznaczonego tekstu",
                                              "Actions apply to the selected text"};
inline constexpr Text assistantResult{"Wynik", "Result"};
inline constexpr Text assistantLastResult{"Ostatni wynik", "Last Result"};
inline constexpr Text assistantBack{"Wróć do akcji", "Back to Actions"};
inline constexpr Text assistantCopied{"Skopiowano", "Copied"};
inline constexpr Text assistantUnavailable{
    "Rozmowy nie można pokazać. Zamknij i otwórz program ponownie.",
    "The conversation cannot be shown. Close the program and open it again."};
inline constexpr Text assistantNoteChanged{"Zmieniono notatkę: %1", "Changed the note: %1"};
inline constexpr Text assistantNoteNotSaved{"Nie zmieniono notatki: %1",
                                            "The note was not changed: %1"};
inline constexpr Text assistantConfirm{"Zastąpić tekst notatki „%1”?", "Replace the text of “%1”?"};
inline constexpr Text assistantConfirmDetail{
    "Notatka zmieniła się po zadaniu pytania. Zmianę można cofnąć w edytorze.",
    "The note has changed since the reply was asked for. The change can be undone in the editor."};
inline constexpr Text assistantConfirmReplace{"Zastąp", "Replace"};

}  // namespace corvel::texts
