#pragma once

#include <sigc++/signal.h>

#include <functional>
#include <optional>
#include <string>

namespace corvel {

/// A view that shows one page of the program's own and runs scripts in it. It shows nothing else:
/// it follows no link and fetches nothing. Every signal and answer comes on the main loop, none
/// before the call that causes it returns.
class WebView {
public:
    /// Called with the error's description, or with none.
    using Evaluated = std::function<void(const std::optional<std::string>& error)>;

    virtual ~WebView() = default;

    /// Replaces the page; `signalLoaded` follows. Only the page's own script of PreviewPage runs.
    virtual void loadPage(const std::string& html) = 0;
    /// Runs `script` in the page. `done` may be empty; it is called once unless the view dies
    /// before.
    virtual void evaluate(const std::string& script, Evaluated done) = 0;
    /// Ends the process that shows the page; the next `loadPage` starts another.
    virtual void terminate() = 0;
    /// Receives the number of each `scrollHandler` message, always within 0..1.
    virtual void setScrollHandler(std::function<void(double)> handler) = 0;

    virtual sigc::signal<void()>& signalLoaded() = 0;
    /// The reader activated a link; the view itself stays where it is. Carries the absolute URL.
    virtual sigc::signal<void(const std::string&)>& signalLinkActivated() = 0;
    /// The page's process ended by itself, or no page can be shown at all.
    virtual sigc::signal<void()>& signalFailed() = 0;
};

}  // namespace corvel
