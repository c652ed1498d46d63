#include "support/OnNewFile.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace corvel {

namespace {

std::function<void()> pendingAction;

// A signal that comes at the end of a call, not anywhere in the program: the action may do what
// ordinary code does there.
void act(int) {
    const int code = errno;
    if (const auto action = std::exchange(pendingAction, nullptr)) action();
    errno = code;
}

}  // namespace

OnNewFile::OnNewFile(const std::filesystem::path& folder, std::function<void()> action)
    : m_events(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    pendingAction = std::move(action);
    struct sigaction handler {};
    handler.sa_handler = act;
    handler.sa_flags = SA_RESTART;
    ::sigaction(SIGIO, &handler, &m_before);
    const f_owner_ex owner{F_OWNER_TID, ::gettid()};
    ::fcntl(m_events.get(), F_SETOWN_EX, &owner);
    ::fcntl(m_events.get(), F_SETFL, O_ASYNC | O_NONBLOCK);
    ::inotify_add_watch(m_events.get(), folder.c_str(), IN_CREATE);
}

OnNewFile::~OnNewFile() {
    m_events = FileDescriptor();
    pendingAction = nullptr;
    ::sigaction(SIGIO, &m_before, nullptr);
}

}  // namespace corvel
