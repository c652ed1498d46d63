#include "platform/FolderRemoval.h"

#include <system_error>

namespace corvel {

namespace fs = std::filesystem;

bool FolderRemoval::work(std::chrono::steady_clock::time_point end) {
    do {
        if (m_open.empty()) return false;
        if (emptySome(end)) continue;
        std::error_code error;
        fs::remove(m_open.back(), error);
        // What cannot be removed keeps all the folders around it.
        if (error) m_open.clear();
        if (!m_open.empty()) m_open.pop_back();
    } while (std::chrono::steady_clock::now() < end);
    return !m_open.empty();
}

bool FolderRemoval::emptySome(std::chrono::steady_clock::time_point end) {
    std::error_code error;
    // What cannot be removed is passed over here, and then keeps the folder.
    for (fs::directory_iterator entry(m_open.back(), error), none; !error && entry != none;
         entry.increment(error)) {
        std::error_code ignored;
        const auto path = entry->path();
        if (fs::is_directory(entry->symlink_status(ignored))) {
            m_open.push_back(path);
            return true;
        }
        fs::remove(path, ignored);
        if (std::chrono::steady_clock::now() >= end) return true;
    }
    return false;
}

}  // namespace corvel
