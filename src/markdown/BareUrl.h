#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace corvel {

struct TextSpan {
    std::size_t begin;
    std::size_t end;
    bool operator==(const TextSpan&) const = default;
};

/// The first match of "https?://[^\s<>\"']+" in `text` from `from` on.
std::optional<TextSpan> findBareUrl(std::string_view text, std::size_t from);

}  // namespace corvel
