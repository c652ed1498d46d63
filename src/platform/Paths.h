#pragma once

#include <filesystem>

namespace corvel {

/// The program's folders under the XDG base directories. Nothing here creates them.
namespace paths {

/// "qno Corvel" under the XDG data home: the store and what lies beside it.
std::filesystem::path applicationSupport();

/// The folder of the user's theme files.
std::filesystem::path themes();

/// The preference file under the XDG config home.
std::filesystem::path preferencesFile();

/// The folder of message files under the XDG cache home.
std::filesystem::path messages();

}  // namespace paths
}  // namespace corvel
