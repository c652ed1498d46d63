#pragma once

#include <string_view>

namespace corvel {

/// `text` without white space and line ends at its ends.
inline std::string_view withoutOuterSpace(std::string_view text) {
    constexpr std::string_view kSpace = " \t\r\n\v\f";
    const auto begin = text.find_first_not_of(kSpace);
    if (begin == text.npos) return {};
    return text.substr(begin, text.find_last_not_of(kSpace) - begin + 1);
}

}  // namespace corvel
