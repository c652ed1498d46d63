#include "platform/DistantVolumes.h"

#include "platform/Log.h"
#include "platform/MountTable.h"
#include "platform/Text.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

namespace corvel::distantVolumes {

namespace {

using Path = std::filesystem::path;

constexpr std::chrono::milliseconds kPatience{250};

/// One question to a volume. The thread that asks shares nothing else with the program: it may be
/// held by the system for as long as the volume is silent.
class Question {
public:
    static std::shared_ptr<Question> ask(const Path& path) {
        auto question = std::make_shared<Question>();
        std::thread([question, path] {
            struct statx ignored {};
            ::statx(AT_FDCWD, path.c_str(), AT_STATX_FORCE_SYNC, STATX_TYPE, &ignored);
            question->answer();
        }).detach();
        return question;
    }

    bool isAnsweredWithin(std::chrono::milliseconds limit) {
        std::unique_lock lock(m_mutex);
        return m_isAnswered.wait_for(lock, limit, [this] { return m_hasAnswer; });
    }

private:
    void answer() {
        const std::lock_guard lock(m_mutex);
        m_hasAnswer = true;
        m_isAnswered.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_isAnswered;
    bool m_hasAnswer = false;
};

/// Questions without an answer so far, by mount point.
std::map<Path, std::shared_ptr<Question>>& open() {
    static std::map<Path, std::shared_ptr<Question>> questions;
    return questions;
}

}  // namespace

bool answersFor(const Path& path) {
    static MountTable mounts;
    const auto volume = mounts.distantOnTheWayTo(path);
    if (!volume) return true;
    const auto known = open().find(*volume);
    if (known != open().end()) {
        if (!known->second->isAnsweredWithin(std::chrono::milliseconds(0))) return false;
        open().erase(known);
    }
    try {
        auto question = Question::ask(path);
        if (question->isAnsweredWithin(kPatience)) return true;
        open().emplace(*volume, std::move(question));
        logLine("Volume does not answer: " + text::repaired(volume->string()));
    } catch (const std::system_error&) {
        // No thread to ask by.
    }
    return false;
}

}  // namespace corvel::distantVolumes
