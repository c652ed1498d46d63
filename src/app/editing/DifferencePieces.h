#pragma once

#include "app/editing/TextDifference.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace corvel::editing {

/// A piece of a text shown with what changes in it.
struct DifferencePiece {
    enum class Kind { kept, removed, added, folded };

    Kind kind = Kind::kept;
    std::string_view text;   ///< of one of the texts compared; whole lines when folded
    std::size_t lines = 0;   ///< of what is folded
    std::size_t change = 0;  ///< counted from 0; what was exchanged for another is one change
};

/// What is shown of `runs`: long stretches of kept lines are folded but for `context` lines beside
/// a change.
std::vector<DifferencePiece> piecesOf(std::string_view before,
                                      std::string_view after,
                                      const std::vector<DifferenceRun>& runs,
                                      std::size_t context = 2);

}  // namespace corvel::editing
