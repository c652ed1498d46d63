#pragma once

#include <string>

namespace corvel {

/// `html` with the e-mail style of every element written into its start tag.
std::string withInlineStyles(std::string html, const std::string& codeFont);

}  // namespace corvel
