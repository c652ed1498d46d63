#pragma once

#include <string>
#include <string_view>

namespace corvel {

/// What a chat turn sends as its system prompt: the fixed text, then title, selection and content
/// of the note where there are any. The content is cut after 20,000 user-perceived characters.
std::string chatSystemPrompt(std::string_view title,
                             std::string_view selectedText,
                             std::string_view content);

}  // namespace corvel
