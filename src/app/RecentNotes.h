#pragma once

#include "platform/UserDefaults.h"
#include "platform/Uuid.h"

#include <vector>

namespace corvel {

/// The notes that were opened last, the newest first; kept over runs.
class RecentNotes {
public:
    static constexpr std::size_t kMost = 30;

    explicit RecentNotes(const UserDefaults& defaults);

    void opened(const Uuid& id);
    const std::vector<Uuid>& ids() const { return m_ids; }
    void remember(UserDefaults& defaults) const;

private:
    std::vector<Uuid> m_ids;
};

}  // namespace corvel
