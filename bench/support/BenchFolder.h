#pragma once

#include <filesystem>

namespace corvel {

/// A folder on the disk of the build (not in memory, as a temporary folder may be), removed at the
/// end.
class BenchFolder {
public:
    BenchFolder();
    BenchFolder(const BenchFolder&) = delete;
    BenchFolder& operator=(const BenchFolder&) = delete;
    ~BenchFolder();

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

}  // namespace corvel
