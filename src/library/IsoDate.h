#pragma once

#include "platform/Date.h"

#include <optional>
#include <string>

namespace corvel {

/// "2026-05-17T08:30:00.000250Z"; none outside the years 1 to 9999.
std::optional<std::string> isoDate(Date date);

/// Reads ISO 8601 with a date and a time of day; without a zone it is UTC. Digits beyond the
/// microsecond are dropped.
std::optional<Date> dateFromIso(std::string text);

}  // namespace corvel
