#pragma once

#include "app/settings/Localisation.h"
#include "platform/Date.h"

#include <string>

namespace corvel {

/// `date` as a list shows it at the moment `now`, in the local time zone: "dziś, 12:04", "wczoraj",
/// "18.11", "18.11.2025"; "today, 12:04", "yesterday", "18 Nov", "18 Nov 2025".
std::string relativeDate(Date date, Date now, const Localisation& texts);

/// When `relativeDate` may read differently: the next local midnight.
Date nextMidnight(Date now);

}  // namespace corvel
