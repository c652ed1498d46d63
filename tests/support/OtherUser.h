#pragma once

#include <sys/fsuid.h>
#include <unistd.h>

namespace corvel {

/// While one lives, files are used as an ordinary user would: root may do anything to any file. For
/// an ordinary user nothing changes.
class OtherUser {
public:
    OtherUser() : m_before(::setfsuid(::geteuid() == 0 ? kNobody : ::geteuid())) {}
    OtherUser(const OtherUser&) = delete;
    OtherUser& operator=(const OtherUser&) = delete;
    ~OtherUser() { ::setfsuid(static_cast<uid_t>(m_before)); }

private:
    static constexpr uid_t kNobody = 65534;
    int m_before;
};

}  // namespace corvel
