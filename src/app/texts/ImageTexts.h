#pragma once

#include "app/settings/Localisation.h"

namespace corvel::texts {

// Images put into a note.
inline constexpr Text insertImages{"Wstaw obrazy", "Insert Images"};
inline constexpr Text insertVerb{"Wstaw", "Insert"};
inline constexpr Text imageFiles{"Obrazy", "Images"};
inline constexpr Text pastedImage{"obraz", "image"};
inline constexpr Text imageNotTaken{"Nie wstawiono \"%1\": %2", "\"%1\" was not inserted: %2"};
inline constexpr Text imagesNotTaken{"Obrazy, których nie wstawiono: %1",
                                     "Images that were not inserted: %1"};
inline constexpr Text imageUnreadable{"nie można odczytać", "it cannot be read"};
inline constexpr Text imageTooLarge{"ma ponad 64 MB", "it is larger than 64 MB"};
inline constexpr Text imageNotAnImage{"to nie jest obraz", "it is not an image"};
inline constexpr Text imageStoreRefused{"biblioteka go nie przyjęła", "the library refused it"};
inline constexpr Text noteIsReadOnly{"Tej notatki nie można teraz zmieniać",
                                     "This note cannot be changed now"};

}  // namespace corvel::texts
