#pragma once

#include "platform/Uuid.h"

#include <sigc++/signal.h>

#include <chrono>
#include <functional>
#include <list>
#include <optional>
#include <utility>

namespace corvel {

/// The side that scrolled last.
enum class ScrollSource { none, editor, preview };

/// Where the open note is scrolled to, as a share 0..1 of what can be scrolled. Each side follows
/// the other; what a side reports because it was moved is not taken for a move of its own.
class ScrollSync {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    /// How long a side that was moved is not listened to.
    static constexpr std::chrono::milliseconds kEcho{150};

    explicit ScrollSync(Clock clock = &std::chrono::steady_clock::now);

    /// Another note is open, or none: it stands where it was left, at its top the first time.
    void open(const std::optional<Uuid>& note);

    void editorScrolled(double percent) { scrolled(ScrollSource::editor, percent); }
    void previewScrolled(double percent) { scrolled(ScrollSource::preview, percent); }

    double scrollPercent() const { return m_percent; }
    ScrollSource scrollSource() const { return m_source; }

    /// One side moved: the other is to follow.
    sigc::signal<void()>& signalScrolled() { return m_scrolled; }

private:
    using Time = std::chrono::steady_clock::time_point;

    void scrolled(ScrollSource source, double percent);
    void remember();

    Clock m_clock;
    std::optional<Uuid> m_note;
    double m_percent = 0;
    ScrollSource m_source = ScrollSource::none;
    Time m_quietEditor;
    Time m_quietPreview;
    std::list<std::pair<Uuid, double>> m_left;  // the note left last first
    sigc::signal<void()> m_scrolled;
};

}  // namespace corvel
