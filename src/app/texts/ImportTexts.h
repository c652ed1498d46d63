#pragma once

#include "app/settings/Localisation.h"

/// Texts of an import that is under way or was cancelled.
namespace corvel::texts {

inline constexpr Text findingFiles{"Szukanie plików: %1", "Looking for files: %1"};
inline constexpr Text importCancelled{"Import przerwany, dodano %1", "Import cancelled, %1 added"};
inline constexpr Text importWithSkipped{"%1; pominięte pliki: %2", "%1; files skipped: %2"};
inline constexpr Text importNotReached{
    "Import przerwano; nieprzeczytane pliki: %1. To, co dodano, zostaje w bibliotece.",
    "The import was cancelled; files not read: %1. What was added stays in the library."};

}  // namespace corvel::texts
