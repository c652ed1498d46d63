#pragma once

#include "app/settings/Localisation.h"

#include <array>
#include <string_view>

namespace corvel {

enum class SortOption { modifiedDate, createdDate, title, wordCount };

inline constexpr std::array kSortOptions{SortOption::modifiedDate, SortOption::createdDate,
                                         SortOption::title, SortOption::wordCount};

/// The case's name, as it is stored.
const char* rawValue(SortOption option);
/// An unknown name gives `modifiedDate`.
SortOption sortOptionFrom(std::string_view text);
Text label(SortOption option);

}  // namespace corvel
