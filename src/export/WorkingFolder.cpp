#include "export/WorkingFolder.h"

#include "platform/Uuid.h"

namespace corvel {

WorkingFolder::WorkingFolder()
    : m_path(std::filesystem::temp_directory_path() / Uuid::random().toString()) {
    std::filesystem::create_directory(m_path);
    std::filesystem::permissions(m_path, std::filesystem::perms::owner_all);
}

WorkingFolder::~WorkingFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

}  // namespace corvel
