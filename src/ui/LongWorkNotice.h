#pragma once

#include "app/settings/Localisation.h"

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

namespace corvel {

/// Tells the desktop that long work has ended while the user was elsewhere. Made, or started
/// again, when the work begins; work that was short, or that the user watched, is not told of.
class LongWorkNotice {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::seconds kLong{4};

    explicit LongWorkNotice(const Localisation& texts) : m_texts(texts) {}

    void start() { m_begin = Clock::now(); }
    /// `place`, when there is one, can be shown in its folder from the notification.
    void ended(const std::string& title,
               const std::string& body,
               const std::optional<std::filesystem::path>& place = std::nullopt) const;

    /// For tests: work that began so long ago.
    void startedBefore(std::chrono::milliseconds past) { m_begin = Clock::now() - past; }

private:
    const Localisation& m_texts;
    Clock::time_point m_begin = Clock::now();
};

}  // namespace corvel
