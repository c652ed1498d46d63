#pragma once

#include <chrono>
#include <filesystem>
#include <vector>

namespace corvel {

/// Removes a folder with all it holds, as far as that is possible, in slices. Links are removed,
/// not followed.
class FolderRemoval {
public:
    explicit FolderRemoval(std::filesystem::path folder) : m_open{std::move(folder)} {}

    /// Works until `end`; false when all is done.
    bool work(std::chrono::steady_clock::time_point end);

private:
    /// False when there is nothing left to remove in the innermost folder.
    bool emptySome(std::chrono::steady_clock::time_point end);

    std::vector<std::filesystem::path> m_open;  // each inside the one before
};

}  // namespace corvel
