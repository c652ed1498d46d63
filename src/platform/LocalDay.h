#pragma once

#include "platform/Date.h"

#include <string>

namespace corvel {

/// The day of a moment where the user is: "2026-05-17".
std::string localDay(Date date);

}  // namespace corvel
