#pragma once

#include "app/settings/Localisation.h"

/// The texts of the export, in both languages.
namespace corvel::texts {

inline constexpr Text exportTooComplex{
    "Tej notatki nie można przetworzyć w rozsądnym czasie. Uprość jej tabele lub powtarzające się "
    "znaczniki i spróbuj ponownie.",
    "This note takes too long to process. Simplify its tables or repeated marks and try again."};

}  // namespace corvel::texts
