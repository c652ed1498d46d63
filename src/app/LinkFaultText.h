#pragma once

#include "app/settings/Localisation.h"
#include "library/LinkError.h"

#include <string>

namespace corvel {

/// Why a file cannot be linked, read or written: the words after "Cannot open "x": ".
std::string reasonOf(const LinkError& error, const Localisation& texts);

/// The file can still be imported: its text is readable, only not to be written back.
bool canBeImported(const LinkError& error);

}  // namespace corvel
