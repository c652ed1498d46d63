#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvel {

/// What tells one service's answers from another's.
struct ReplyFormat {
    /// The text in the payload of one "data:" line, if there is one.
    std::optional<std::string> (*pieceOf)(std::string_view payload);

    // How the body of an answer with another status than 200 is read.
    std::string_view errorLineSeparator;
    bool (*isErrorComplete)(std::string_view body, std::size_t lineCount);
    std::optional<std::string> (*errorMessageOf)(std::string_view body);
};

/// The end of an error's body as most services have it: past 500 characters.
bool isPast500Characters(std::string_view body, std::size_t lineCount);
/// "error", in it "message".
std::optional<std::string> errorMessageIn(std::string_view body);

}  // namespace corvel
