#pragma once

#include "markdown/BodyBlocks.h"
#include "platform/ScopedConnection.h"
#include "platform/WebView.h"

#include <sigc++/signal.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// Keeps one web view showing the newest body. The page is loaded once per stylesheet, always
/// empty; bodies are pushed by script, one at a time, and while one is under way only the newest
/// waits. Of a long body only the blocks that changed are pushed. A push that fails is tried once
/// more in a fresh page.
class PreviewCoordinator : public std::enable_shared_from_this<PreviewCoordinator> {
public:
    /// How long the page may take for one answer before its process is ended; twice as long when
    /// the body is tried for the second time.
    static constexpr std::chrono::milliseconds kPatience{8000};
    /// Bytes of body from which on only the changed blocks are pushed.
    static constexpr std::size_t kLongBody = std::size_t{64} * 1024;

    /// `view` must outlive the coordinator.
    static std::shared_ptr<PreviewCoordinator> create(
        WebView& view, std::chrono::milliseconds patience = kPatience);

    /// Shows `body` under `stylesheet`. `percent` says where the page stands afterwards; without it
    /// the page stays where it is.
    void show(std::string_view stylesheet,
              std::string body,
              std::optional<double> percent = std::nullopt);
    /// Scrolls the page without its reporting back.
    void setScrollPercent(double percent);
    /// The reader scrolled the page.
    void receiveScroll(double percent);

    /// The newest body is on display.
    sigc::signal<void()>& signalShown() { return m_shown; }
    /// The newest body cannot be shown, or not yet: `signalShown` may still follow.
    sigc::signal<void()>& signalUnavailable() { return m_unavailable; }
    sigc::signal<void(double)>& signalScrollChanged() { return m_scrollChanged; }
    /// A link that the system is to open: http, https or mailto.
    sigc::signal<void(const std::string&)>& signalLinkOpened() { return m_linkOpened; }

private:
    PreviewCoordinator(WebView& view, std::chrono::milliseconds patience);
    void connect();

    void load();
    void loaded();
    void push(std::string body);
    std::string scriptFor(std::string body);
    void pushFinished(const std::optional<std::string>& error);
    void pushSucceeded();
    void tryAgainInFreshPage();
    void viewFailed();
    void patienceEnded();
    void giveUp();
    void startWaiting();
    void restorePosition();
    void followLink(const std::string& url);

    WebView& m_view;
    std::chrono::milliseconds m_patience;
    std::string m_lastFullHTML;
    std::string m_lastBody;
    BodyBlocks m_lastBlocks;
    bool m_initialLoadDone = false;
    std::optional<std::string> m_pendingBody;
    std::optional<double> m_pendingScrollPercent;

    bool m_isPushing = false;
    bool m_isSecondTry = false;
    bool m_isShown = false;  ///< `m_lastBody` is what the page shows
    std::optional<std::string> m_refusedBody;
    std::optional<std::string> m_endedWith;  ///< shown when the page's process ended last
    double m_scrollPercent = 0;
    std::optional<double> m_scrollAfterPush;
    unsigned m_page = 0;  ///< counts loads, so that answers of an older page are told apart
    ScopedConnection m_waiting;
    std::vector<ScopedConnection> m_connections;

    sigc::signal<void()> m_shown;
    sigc::signal<void()> m_unavailable;
    sigc::signal<void(double)> m_scrollChanged;
    sigc::signal<void(const std::string&)> m_linkOpened;
};

}  // namespace corvel
