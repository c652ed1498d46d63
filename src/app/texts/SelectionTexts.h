#pragma once

#include "app/settings/Localisation.h"

namespace corvel::texts {

// Several notes are selected.
inline constexpr Text severalSelected{"Wybrano: %1", "%1 selected"};
inline constexpr Text severalSelectedDetail{"Polecenia działają na wszystkie naraz.",
                                            "Commands act on all of them at once."};
inline constexpr Text exportSelected{"Eksportuj...", "Export..."};

}  // namespace corvel::texts
