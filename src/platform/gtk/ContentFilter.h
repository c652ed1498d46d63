#pragma once

#include <sigc++/signal.h>
#include <webkit/webkit.h>

#include <memory>

namespace corvel {

/// The compiled filter that blocks every address with a network or file scheme. It is compiled
/// asynchronously; no page may be loaded before it is there.
class ContentFilter {
public:
    enum class State { compiling, ready, failed };

    /// Begins the compilation.
    static std::shared_ptr<ContentFilter> compile();
    ContentFilter(const ContentFilter&) = delete;
    ContentFilter& operator=(const ContentFilter&) = delete;
    ~ContentFilter();

    State state() const { return m_state; }
    void addTo(WebKitUserContentManager* manager) const;
    /// The state is another than `compiling`.
    sigc::signal<void()>& signalSettled() { return m_settled; }

private:
    ContentFilter() = default;
    static void compiled(GObject* store, GAsyncResult* result, gpointer weak);
    void settle(WebKitUserContentFilter* filter);

    WebKitUserContentFilter* m_filter = nullptr;
    State m_state = State::compiling;
    sigc::signal<void()> m_settled;
};

}  // namespace corvel
