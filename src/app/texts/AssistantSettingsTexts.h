#pragma once

#include "app/settings/Localisation.h"

/// Texts of the assistant's page of the settings.
namespace corvel::texts {

inline constexpr Text pageAssistant{"Asystent AI", "AI Assistant"};
inline constexpr Text assistantProvider{"Dostawca", "Provider"};
inline constexpr Text assistantModel{"Model", "Model"};
inline constexpr Text assistantModelOf{"Model: %1", "Model: %1"};

// The key. "%1" is the provider's name.
inline constexpr Text assistantKey{"Klucz API", "API Key"};
inline constexpr Text assistantNewKey{"Nowy klucz API", "New API Key"};
inline constexpr Text assistantKeyOf{"Klucz API: %1", "API key: %1"};
inline constexpr Text assistantShowKeyOf{"Pokaż lub ukryj klucz: %1", "Show or hide key: %1"};
inline constexpr Text assistantSaveKey{"Zapisz", "Save"};
inline constexpr Text assistantSaveKeyOf{"Zapisz klucz: %1", "Save key: %1"};
inline constexpr Text assistantDeleteKey{"Usuń", "Delete"};
inline constexpr Text assistantDeleteKeyOf{"Usuń klucz: %1", "Delete key: %1"};
inline constexpr Text assistantTest{"Sprawdź", "Test"};
inline constexpr Text assistantTestOf{"Sprawdź połączenie: %1", "Test connection: %1"};
inline constexpr Text assistantCancelTest{"Przerwij", "Stop"};
inline constexpr Text assistantCancelTestOf{"Przerwij sprawdzanie: %1", "Stop the test: %1"};

// What is known of the key.
inline constexpr Text assistantKeyLookedFor{"Szukanie klucza…", "Looking for the key…"};
inline constexpr Text assistantKeyStored{"Klucz jest zapisany", "The key is stored"};
inline constexpr Text assistantKeyNotStored{"Nie zapisano klucza", "No key is stored"};
inline constexpr Text assistantKeyNoStore{"Brak magazynu haseł", "No password store"};
inline constexpr Text assistantKeySaving{"Zapisywanie klucza…", "Saving the key…"};
inline constexpr Text assistantKeyDeleting{"Usuwanie klucza…", "Deleting the key…"};
inline constexpr Text assistantKeyTesting{"Czekam na odpowiedź usługi…",
                                          "Waiting for the service to answer…"};

// What came of it.
inline constexpr Text assistantKeySaved{"Zapisano.", "Saved."};
inline constexpr Text assistantKeyDeleted{"Usunięto.", "Deleted."};
inline constexpr Text assistantKeyStillThere{
    "Klucza nie udało się usunąć: magazyn haseł go nie wydał. Odblokuj go i spróbuj ponownie.",
    "The key could not be deleted: the password store did not let it go. Unlock it and try again."};
inline constexpr Text assistantKeyLocked{
    "Magazyn haseł jest zablokowany, więc niczego nie zapisano. Odblokuj go i zapisz klucz "
    "ponownie.",
    "The password store is locked, so nothing was saved. Unlock it and save the key again."};
inline constexpr Text assistantKeyEmpty{"Wpisz lub wklej klucz.", "Type or paste the key."};
inline constexpr Text assistantKeyInnerSpace{
    "Klucz zawiera odstęp lub koniec wiersza w środku. Skopiuj go jeszcze raz, w całości i bez "
    "sąsiedniego tekstu.",
    "The key has a space or a line end inside. Copy it again, whole and without what stands "
    "beside it."};
inline constexpr Text assistantKeyUnusual{
    "Klucz zawiera znaki, których nie można wysłać (na przykład litery z ogonkami). Skopiuj go "
    "jeszcze raz ze strony dostawcy.",
    "The key has characters that cannot be sent (accented letters, for example). Copy it again "
    "from the provider's page."};
inline constexpr Text assistantAnswered{"Usługa odpowiedziała: „%1”", "The service answered: “%1”"};
inline constexpr Text assistantAnsweredNothing{
    "Usługa przyjęła zapytanie, ale odpowiedziała bez tekstu.",
    "The service took the request but answered without any text."};
inline constexpr Text assistantKeyRefused{"Usługa nie przyjęła klucza. %1",
                                          "The service did not accept the key. %1"};
inline constexpr Text assistantTooMany{
    "Usługa przyjmuje teraz mniej zapytań niż dostaje lub wyczerpano limit. Spróbuj później. %1",
    "The service has more requests than it takes, or a limit is used up. Try again later. %1"};
inline constexpr Text assistantServiceFails{"Usługa ma teraz kłopoty. Spróbuj później. %1",
                                            "The service has trouble at the moment. Try later. %1"};
inline constexpr Text assistantCannotRead{
    "Nie udało się odczytać klucza: magazyn haseł jest zablokowany lub klucza już nie ma.",
    "The key could not be read: the password store is locked, or the key is gone."};

// Deleting asks.
inline constexpr Text assistantDeleteQuestion{"Usunąć klucz?", "Delete the key?"};
inline constexpr Text assistantDeleteBody{
    "Asystent nie połączy się z %1, dopóki nie wpiszesz klucza ponownie. Sam klucz pozostaje ważny "
    "u dostawcy.",
    "The assistant will not reach %1 until you enter a key again. The key itself stays valid at "
    "the provider."};

}  // namespace corvel::texts
