#include "app/ScrollSync.h"

#include <algorithm>
#include <cmath>

namespace corvel {

namespace {

// Both sides round to whole pixels: less than this is no move.
constexpr double kStill = 0.001;
constexpr std::size_t kMostRemembered = 200;

}  // namespace

ScrollSync::ScrollSync(Clock clock) : m_clock(std::move(clock)) {}

void ScrollSync::open(const std::optional<Uuid>& note) {
    if (note == m_note) return;
    remember();
    m_note = note;
    m_percent = 0;
    m_source = ScrollSource::none;
    // Both sides are about to be laid out anew.
    m_quietEditor = m_quietPreview = m_clock() + kEcho;
    const auto left = std::ranges::find(
        m_left, note, [](const auto& entry) { return std::optional(entry.first); });
    if (left != m_left.end()) m_percent = left->second;
}

void ScrollSync::remember() {
    if (!m_note) return;
    m_left.remove_if([this](const auto& entry) { return entry.first == *m_note; });
    m_left.emplace_front(*m_note, m_percent);
    if (m_left.size() > kMostRemembered) m_left.pop_back();
}

void ScrollSync::scrolled(ScrollSource source, double percent) {
    const bool byEditor = source == ScrollSource::editor;
    const Time now = m_clock();
    if (now < (byEditor ? m_quietEditor : m_quietPreview)) return;
    const double place = std::clamp(percent, 0.0, 1.0);
    if (std::isnan(percent) || std::abs(place - m_percent) < kStill) return;
    m_percent = place;
    m_source = source;
    (byEditor ? m_quietPreview : m_quietEditor) = now + kEcho;
    m_scrolled.emit();
}

}  // namespace corvel
