#pragma once

#include <string_view>

namespace corvel {

enum class MarkdownRisk {
    ordinary,  // parsed in time in proportion to its length
    large,     // ordinary, but too long to be parsed between two frames
    risky,     // may take the parser time that grows with the square of the length, or more
};

/// A quick look, in time in proportion to the length, at what `markdown` would cost the parser. It
/// knows the shapes of text for which the packaged parser is quadratic, and errs to the safe side.
MarkdownRisk riskOf(std::string_view markdown);

}  // namespace corvel
