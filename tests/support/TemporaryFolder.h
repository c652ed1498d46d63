#pragma once

#include <filesystem>
#include <string>

namespace corvel {

/// A folder of a test's own, removed with all it holds when the test ends.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& path() const { return m_path; }
    /// Writes `bytes` to a file in the folder, with the folders in between, and returns its path.
    std::filesystem::path write(const std::filesystem::path& name, const std::string& bytes) const;

private:
    std::filesystem::path m_path;
};

}  // namespace corvel
