#pragma once

#include <filesystem>

namespace corvel {

/// A private folder below the temporary directory that goes with its owner. Making one throws
/// std::filesystem::filesystem_error.
class WorkingFolder {
public:
    WorkingFolder();
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;
    ~WorkingFolder();

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

}  // namespace corvel
