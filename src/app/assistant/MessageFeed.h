#pragma once

#include "ai/AIMessage.h"
#include "app/assistant/MessagePage.h"
#include "app/assistant/ReplyBlocks.h"
#include "markdown/GuardedRenderer.h"
#include "platform/ScopedConnection.h"
#include "platform/WebView.h"

#include <giomm/cancellable.h>
#include <sigc++/signal.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// Keeps one web view showing a list of messages, the last of which may be growing. One push is
/// under way at a time, and no more than one a frame; what comes meanwhile goes with the next. Of a
/// growing message only the end that is still open is rendered again.
class MessageFeed {
public:
    using Messages = std::function<const std::vector<AIMessage>&()>;
    enum class Verb { copy, insert, replace };

    /// Between two pushes of a growing message; more when the page is slower.
    static constexpr std::chrono::milliseconds kPause{16};
    /// How long the page may take for one answer before its process is ended.
    static constexpr std::chrono::milliseconds kPatience{8000};

    /// `view` must outlive the feed. `messages` gives all there are now.
    MessageFeed(WebView& view, Messages messages, bool hasActions);
    MessageFeed(const MessageFeed&) = delete;
    MessageFeed& operator=(const MessageFeed&) = delete;
    ~MessageFeed();

    /// Loads the page anew when the stylesheet is another.
    void show(const std::string& stylesheet, const MessagePage::Labels& labels);
    /// Messages were added or removed, or a reply ended.
    void sync();
    /// The last message grew.
    void append(std::string_view piece);
    void setReplaceable(const std::vector<Uuid>& ids);
    /// What the page posted. Anything else than a verb and a message that is there is ignored.
    void receive(const std::string& message);

    sigc::signal<void(Verb, const AIMessage&)>& signalAction() { return m_action; }
    /// A link that the system is to open: http, https or mailto.
    sigc::signal<void(const std::string&)>& signalLinkOpened() { return m_linkOpened; }
    /// The page cannot be shown.
    sigc::signal<void()>& signalUnavailable() { return m_unavailable; }
    /// All there is is on display.
    sigc::signal<void()>& signalShown() { return m_shown; }

private:
    struct Entry {
        Uuid id;
        bool isUser = false;
        bool isInPage = false;
        bool isStreaming = false;  // as of the last sync
        bool isStale = true;       // its whole text has to be pushed
        bool hasGrown = false;
        ReplyBlocks blocks;
        std::size_t shownBytes = 0;  // of the body of what has ended, while it grows
        bool isOpenFull = false;     // as much of the open block is shown as ever will be
    };

    void load();
    void loaded();
    void viewFailed();
    void adopt(const AIMessage& message);
    void advance();
    void advanceSoon(std::chrono::milliseconds delay);
    void pushNew(Entry& entry);
    bool pushGrown(Entry& entry);
    void pushWhole(Entry& entry);
    void render(const std::string& markdown, std::function<void(std::string html)> done);
    void push(const std::string& script);
    void pushed(const std::optional<std::string>& error);
    const AIMessage* messageOf(const Uuid& id) const;
    Entry* entryOf(const Uuid& id);

    WebView& m_view;
    Messages m_messages;
    bool m_hasActions;
    GuardedRenderer m_renderer;
    Glib::RefPtr<Gio::Cancellable> m_page;  // of what is asked for the present page
    std::string m_html;
    MessagePage::Labels m_labels;
    std::vector<Uuid> m_replaceable;
    std::vector<Entry> m_entries;
    bool m_isLoaded = false;
    bool m_isBusy = false;
    bool m_isCleared = false;
    bool m_areLabelsStale = true;
    bool m_isReplaceableStale = true;
    int m_failures = 0;  // in a row
    std::chrono::steady_clock::time_point m_began;
    std::chrono::milliseconds m_taken{0};  // by the last push
    ScopedConnection m_timer;
    ScopedConnection m_waiting;
    std::vector<ScopedConnection> m_connections;
    sigc::signal<void(Verb, const AIMessage&)> m_action;
    sigc::signal<void(const std::string&)> m_linkOpened;
    sigc::signal<void()> m_unavailable;
    sigc::signal<void()> m_shown;
};

}  // namespace corvel
