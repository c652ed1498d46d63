#include "app/assistant/MessageFeed.h"

#include "markdown/MarkdownParserService.h"
#include "platform/Handle.h"
#include "platform/Log.h"
#include "platform/Text.h"

#include <glib.h>
#include <glibmm/main.h>

#include <algorithm>
#include <array>
#include <utility>

namespace corvel {

namespace {

// Of what ended, for one push.
constexpr std::size_t kMostEnded = std::size_t{48} * 1024;
// Of what is open; the rest is shown when it has ended.
constexpr std::size_t kMostOpen = std::size_t{96} * 1024;
// Longer messages stay in the parts they came in.
constexpr std::size_t kMostWhole = std::size_t{256} * 1024;
// Of one message, shown at all; it can be copied whole.
constexpr std::size_t kMostShown = 2'000'000;
// The page rests this many times as long as it took.
constexpr int kRest = 2;
constexpr int kMostFailures = 3;

bool isForTheSystem(const std::string& url) {
    const Handle<gchar, g_free> scheme(g_uri_parse_scheme(url.c_str()));
    if (!scheme) return false;
    constexpr std::array kKnown{"http", "https", "mailto"};
    return std::ranges::any_of(
        kKnown, [&](const char* known) { return g_ascii_strcasecmp(scheme.get(), known) == 0; });
}

std::optional<MessageFeed::Verb> verbFrom(std::string_view name) {
    if (name == "copy") return MessageFeed::Verb::copy;
    if (name == "insert") return MessageFeed::Verb::insert;
    if (name == "replace") return MessageFeed::Verb::replace;
    return std::nullopt;
}

}  // namespace

MessageFeed::MessageFeed(WebView& view, Messages messages, bool hasActions)
    : m_view(view)
    , m_messages(std::move(messages))
    , m_hasActions(hasActions)
    , m_page(Gio::Cancellable::create()) {
    m_connections.emplace_back(
        view.signalLoaded().connect(sigc::mem_fun(*this, &MessageFeed::loaded)));
    m_connections.emplace_back(
        view.signalFailed().connect(sigc::mem_fun(*this, &MessageFeed::viewFailed)));
    m_connections.emplace_back(view.signalLinkActivated().connect([this](const std::string& url) {
        if (isForTheSystem(url)) m_linkOpened.emit(url);
    }));
}

MessageFeed::~MessageFeed() {
    m_page->cancel();
}

void MessageFeed::show(const std::string& stylesheet, const MessagePage::Labels& labels) {
    m_labels = labels;
    m_areLabelsStale = true;
    std::string page = MessagePage::html(stylesheet);
    if (page != m_html) {
        m_html = std::move(page);
        m_failures = 0;
        load();
    }
    advance();
}

// Everything is pushed again into the new page.
void MessageFeed::load() {
    m_page->cancel();
    m_page = Gio::Cancellable::create();
    m_isLoaded = false;
    m_isBusy = false;
    m_isCleared = false;
    m_areLabelsStale = true;
    m_isReplaceableStale = true;
    m_entries.clear();
    sync();
    m_view.loadPage(m_html);
}

void MessageFeed::loaded() {
    m_isLoaded = true;
    advance();
}

void MessageFeed::viewFailed() {
    m_waiting.disconnect();
    if (++m_failures >= kMostFailures) {
        m_page->cancel();
        m_isLoaded = false;
        m_unavailable.emit();
        return;
    }
    load();
}

const AIMessage* MessageFeed::messageOf(const Uuid& id) const {
    const auto& all = m_messages();
    const auto found = std::ranges::find(all, id, &AIMessage::id);
    return found == all.end() ? nullptr : &*found;
}

MessageFeed::Entry* MessageFeed::entryOf(const Uuid& id) {
    const auto found = std::ranges::find(m_entries, id, &Entry::id);
    return found == m_entries.end() ? nullptr : &*found;
}

void MessageFeed::sync() {
    const auto& all = m_messages();
    const bool continues = m_entries.size() <= all.size() &&
                           std::equal(m_entries.begin(), m_entries.end(), all.begin(),
                                      [](const Entry& entry, const AIMessage& message) {
                                          return entry.id == message.id;
                                      });
    if (!continues) {
        m_entries.clear();
        m_isCleared = true;
    }
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        if (m_entries[i].isStreaming && !all[i].isStreaming) {
            m_entries[i].isStreaming = false;
            m_entries[i].isStale = true;
        }
    }
    for (std::size_t i = m_entries.size(); i < all.size(); ++i)
        adopt(all[i]);
    advance();
}

void MessageFeed::adopt(const AIMessage& message) {
    Entry entry;
    entry.id = message.id;
    entry.isUser = message.role == AIMessage::Role::user;
    entry.isStreaming = message.isStreaming;
    // A reply that came in part before the page was there goes on from its parts.
    if (message.isStreaming) {
        entry.blocks.append(message.content);
        entry.hasGrown = !message.content.empty();
    }
    m_entries.push_back(std::move(entry));
}

void MessageFeed::append(std::string_view piece) {
    if (m_entries.empty() || !m_entries.back().isStreaming) return;
    m_entries.back().blocks.append(piece);
    m_entries.back().hasGrown = true;
    if (!m_isBusy && !m_timer.connected()) advanceSoon(kPause);
}

void MessageFeed::setReplaceable(const std::vector<Uuid>& ids) {
    if (ids == m_replaceable) return;
    m_replaceable = ids;
    m_isReplaceableStale = true;
    advance();
}

void MessageFeed::receive(const std::string& message) {
    const auto space = message.find(' ');
    if (space == message.npos) return;
    const auto verb = verbFrom(std::string_view(message).substr(0, space));
    const auto id = Uuid::parse(message.substr(space + 1));
    if (!verb || !id) return;
    const auto* found = messageOf(*id);
    if (found == nullptr || found->isStreaming || found->role != AIMessage::Role::assistant) return;
    m_action.emit(*verb, *found);
}

// --- One push after the other.

void MessageFeed::advanceSoon(std::chrono::milliseconds delay) {
    m_timer = Glib::signal_timeout().connect(
        [this] {
            m_timer = {};
            advance();
            return false;
        },
        static_cast<unsigned>(delay.count()));
}

void MessageFeed::advance() {
    if (!m_isLoaded || m_isBusy) return;
    if (std::exchange(m_isCleared, false)) return push(MessagePage::clearScript());
    if (std::exchange(m_areLabelsStale, false)) return push(MessagePage::labelScript(m_labels));
    for (auto& entry : m_entries) {
        if (!entry.isInPage) return pushNew(entry);
        const bool isDue = entry.isStreaming && entry.hasGrown && !m_timer.connected();
        if (isDue && pushGrown(entry)) return;
        if (!entry.isStreaming && entry.isStale) return pushWhole(entry);
    }
    if (std::exchange(m_isReplaceableStale, false))
        return push(MessagePage::replaceableScript(m_replaceable));
    m_shown.emit();
}

void MessageFeed::pushNew(Entry& entry) {
    entry.isInPage = true;
    m_isReplaceableStale = true;
    const char* role = rawValue(entry.isUser ? AIMessage::Role::user : AIMessage::Role::assistant);
    std::string script = MessagePage::addScript(entry.id, role, m_hasActions && !entry.isUser);
    if (entry.isStreaming) script += MessagePage::stateScript(entry.id, true);
    push(script);
}

// False when the page is to stay as it is.
bool MessageFeed::pushGrown(Entry& entry) {
    std::string ended = entry.blocks.takeEnded(kMostEnded);
    const bool isSame = ended.empty() && entry.isOpenFull;
    const bool isEnough = entry.shownBytes > kMostShown;
    entry.hasGrown = entry.blocks.hasEnded() && !isEnough;
    if (isSame || isEnough) return false;
    m_isBusy = true;
    entry.isOpenFull = entry.blocks.open().size() > kMostOpen;
    std::string open(text::prefixByBytes(entry.blocks.open(), kMostOpen));
    render(ended, [this, id = entry.id, open = std::move(open)](std::string body) {
        render(open, [this, id, ended = std::move(body)](const std::string& tail) {
            if (auto* grown = entryOf(id)) grown->shownBytes += ended.size();
            push(MessagePage::growScript(id, ended, tail));
        });
    });
    return true;
}

// When a reply has ended it is rendered whole: a definition at its end may concern its beginning.
// What was right already is not touched.
void MessageFeed::pushWhole(Entry& entry) {
    const auto* message = messageOf(entry.id);
    if (message == nullptr) return;
    const bool wasGrowing = entry.shownBytes > 0;
    if (wasGrowing && message->content.size() > kMostWhole) {
        std::string rest = entry.blocks.takeEnded(kMostEnded);
        const bool isLast = rest.empty();
        if (isLast) rest = text::prefixByBytes(entry.blocks.open(), kMostShown);
        m_isBusy = true;
        entry.isStale = !isLast;
        return render(rest, [this, id = entry.id, isLast](const std::string& body) {
            push(MessagePage::growScript(id, body, {}) +
                 (isLast ? MessagePage::stateScript(id, false) : std::string()));
        });
    }
    m_isBusy = true;
    entry.isStale = false;
    entry.shownBytes = 0;
    const std::string shown(text::prefixByBytes(message->content, kMostShown));
    render(shown, [this, id = entry.id](const std::string& body) {
        push(MessagePage::wholeScript(id, body) + MessagePage::stateScript(id, false));
    });
}

void MessageFeed::render(const std::string& markdown, std::function<void(std::string html)> done) {
    if (markdown.empty()) return done({});
    const auto rendered = [request = m_page, done = std::move(done)](RenderOutcome outcome) {
        if (request->is_cancelled()) return;  // another page, or the feed is gone
        done(outcome.isPlainText ? "<pre>" + MarkdownParserService::escaped(outcome.html) + "</pre>"
                                 : std::move(outcome.html));
    };
    m_renderer.render(text::repaired(markdown), m_page, rendered);
}

void MessageFeed::push(const std::string& script) {
    m_isBusy = true;
    m_began = std::chrono::steady_clock::now();
    m_view.evaluate(script, [this, request = m_page](const std::optional<std::string>& error) {
        if (!request->is_cancelled()) pushed(error);
    });
    m_waiting = Glib::signal_timeout().connect(
        [this] {
            m_view.terminate();
            viewFailed();
            return false;
        },
        static_cast<unsigned>(kPatience.count()));
}

void MessageFeed::pushed(const std::optional<std::string>& error) {
    m_waiting.disconnect();
    m_isBusy = false;
    if (error) {
        logLine("Message page: " + *error);
        return viewFailed();
    }
    m_failures = 0;
    const auto taken = std::chrono::steady_clock::now() - m_began;
    m_taken = std::chrono::duration_cast<std::chrono::milliseconds>(taken);
    // A slow page gets fewer pushes, so that it still answers the reader.
    const bool isGrowing = !m_entries.empty() && m_entries.back().isStreaming;
    if (isGrowing) advanceSoon(std::max(kPause, m_taken * kRest));
    advance();
}

}  // namespace corvel
