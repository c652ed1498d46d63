#pragma once

#include "platform/Uuid.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

inline constexpr std::string_view kDraftMark = "qno-corvel draft 1\n";
inline constexpr const char* kDraftSuffix = ".draft";

/// What a draft file tells: words of a note that the store may not have.
struct Draft {
    Uuid noteID;
    std::string base;                  ///< the note's text in the store when the draft began
    std::string text;                  ///< and with all edits that are intact
    std::optional<std::string> title;  ///< when the user typed one
    bool isDamaged = false;            ///< something behind what is told here could not be read
};

/// Reads the bytes of a draft file as far as they are intact; none when not even an edit is.
std::optional<Draft> parseDraft(std::string_view file);
std::optional<Draft> readDraft(const std::filesystem::path& path);

/// The draft files of a folder, the oldest first.
std::vector<std::filesystem::path> draftsIn(const std::filesystem::path& folder);

}  // namespace corvel
