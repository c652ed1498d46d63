#include "ai/ApiKey.h"

#include <algorithm>
#include <array>

namespace corvel {

namespace {

// ASCII space, and what pages and documents put around a copied word: no-break spaces, zero-width
// marks, line and paragraph separators, the byte-order mark.
constexpr std::array<std::string_view, 17> kSpaces{
    " ",      "\t",     "\n",     "\r",     "\v",     "\f",     "\u00A0", "\u00AD", "\u200B",
    "\u200C", "\u200D", "\u200E", "\u2028", "\u2029", "\u202F", "\u2060", "\uFEFF"};

bool isPrinted(char character) {
    return character > ' ' && character <= '~';
}

}  // namespace

std::string_view trimmedApiKey(std::string_view entered) {
    const auto startsWithSpace = [&](std::string_view space) { return entered.starts_with(space); };
    const auto endsWithSpace = [&](std::string_view space) { return entered.ends_with(space); };
    for (auto at = kSpaces.end();
         (at = std::ranges::find_if(kSpaces, startsWithSpace)) != kSpaces.end();) {
        entered.remove_prefix(at->size());
    }
    for (auto at = kSpaces.end();
         (at = std::ranges::find_if(kSpaces, endsWithSpace)) != kSpaces.end();) {
        entered.remove_suffix(at->size());
    }
    return entered;
}

std::optional<ApiKeyFault> faultOf(std::string_view key) {
    if (key.empty()) return ApiKeyFault::empty;
    if (std::ranges::all_of(key, isPrinted)) return std::nullopt;
    const bool hasSpace = std::ranges::any_of(
        kSpaces, [&](std::string_view space) { return key.find(space) != key.npos; });
    return hasSpace ? ApiKeyFault::innerSpace : ApiKeyFault::unusualCharacters;
}

}  // namespace corvel
