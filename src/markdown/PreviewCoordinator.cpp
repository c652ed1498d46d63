#include "markdown/PreviewCoordinator.h"

#include "markdown/PreviewPage.h"
#include "markdown/WeakScriptHandler.h"
#include "platform/Handle.h"
#include "platform/Log.h"
#include "platform/Text.h"

#include <glib.h>
#include <glibmm/main.h>

#include <utility>

namespace corvel {

namespace {

std::string percentDecoded(const std::string& text) {
    const Handle<gchar, g_free> decoded(g_uri_unescape_string(text.c_str(), nullptr));
    const char* bytes = decoded ? decoded.get() : text.c_str();
    const Handle<gchar, g_free> valid(g_utf8_make_valid(bytes, -1));
    return valid.get();
}

std::string fragmentOf(const std::string& url) {
    for (const std::string_view mark : {"#", "%23"}) {
        const auto position = url.find(mark);
        if (position != std::string::npos)
            return percentDecoded(url.substr(position + mark.size()));
    }
    return {};
}

bool isForTheSystem(const std::string& url) {
    const Handle<gchar, g_free> scheme(g_uri_parse_scheme(url.c_str()));
    if (!scheme) return false;
    for (const char* known : {"http", "https", "mailto"}) {
        if (g_ascii_strcasecmp(scheme.get(), known) == 0) return true;
    }
    return false;
}

}  // namespace

PreviewCoordinator::PreviewCoordinator(WebView& view, std::chrono::milliseconds patience)
    : m_view(view), m_patience(patience) {}

std::shared_ptr<PreviewCoordinator> PreviewCoordinator::create(WebView& view,
                                                               std::chrono::milliseconds patience) {
    std::shared_ptr<PreviewCoordinator> made(new PreviewCoordinator(view, patience));
    made->connect();
    return made;
}

void PreviewCoordinator::connect() {
    m_view.setScrollHandler(WeakScriptHandler{weak_from_this()});
    m_connections.emplace_back(
        m_view.signalLoaded().connect(sigc::mem_fun(*this, &PreviewCoordinator::loaded)));
    m_connections.emplace_back(
        m_view.signalFailed().connect(sigc::mem_fun(*this, &PreviewCoordinator::viewFailed)));
    m_connections.emplace_back(m_view.signalLinkActivated().connect(
        sigc::mem_fun(*this, &PreviewCoordinator::followLink)));
}

void PreviewCoordinator::show(std::string_view stylesheet,
                              std::string body,
                              std::optional<double> percent) {
    if (percent) {
        m_scrollPercent = *percent;
        m_scrollAfterPush = percent;
        m_pendingScrollPercent.reset();
    }
    // A web view takes a script that is no text for an empty one, and calls that a success.
    if (!text::isValidUtf8(body)) body = text::repaired(body);
    if (body == m_refusedBody) {
        m_pendingBody.reset();
        m_unavailable.emit();
        return;
    }
    std::string page = PreviewPage::html(stylesheet, {});
    if (page == m_lastFullHTML) {
        push(std::move(body));
        return;
    }
    m_lastFullHTML = std::move(page);
    m_pendingBody = std::move(body);
    m_isSecondTry = false;
    load();
}

void PreviewCoordinator::load() {
    ++m_page;
    m_initialLoadDone = false;
    m_isPushing = false;
    m_isShown = false;
    m_view.loadPage(m_lastFullHTML);
    startWaiting();
}

void PreviewCoordinator::loaded() {
    m_waiting.disconnect();
    m_initialLoadDone = true;
    m_view.evaluate(PreviewPage::placeScript(), {});
    if (m_pendingBody) {
        // The page is new: the reader is brought back to where the old one stood.
        if (!m_scrollAfterPush && m_scrollPercent > 0) m_scrollAfterPush = m_scrollPercent;
        push(*std::exchange(m_pendingBody, std::nullopt));
    } else if (m_pendingScrollPercent) {
        m_view.evaluate(PreviewPage::scrollScript(*m_pendingScrollPercent), {});
    }
    m_pendingScrollPercent.reset();
}

void PreviewCoordinator::push(std::string body) {
    if (!m_initialLoadDone || m_isPushing) {
        m_pendingBody = std::move(body);
        return;
    }
    if (m_isShown && body == m_lastBody) {
        restorePosition();
        m_shown.emit();
        return;
    }
    const std::string script = scriptFor(std::move(body));
    m_isPushing = true;
    m_isShown = false;
    const auto answer = [weak = weak_from_this(),
                         page = m_page](const std::optional<std::string>& error) {
        const auto self = weak.lock();
        if (self && self->m_page == page && self->m_isPushing) self->pushFinished(error);
    };
    m_view.evaluate(script, answer);
    startWaiting();
}

std::string PreviewCoordinator::scriptFor(std::string body) {
    const std::string before = std::exchange(m_lastBody, std::move(body));
    const bool isLong = m_lastBody.size() >= kLongBody;
    const BodyBlocks blocksBefore =
        std::exchange(m_lastBlocks, isLong ? BodyBlocks(m_lastBody) : BodyBlocks());
    if (isLong && m_isShown) {
        if (const auto run = changedBlocks(before, blocksBefore, m_lastBody, m_lastBlocks)) {
            const auto piece =
                std::string_view(m_lastBody).substr(run->begin, run->end - run->begin);
            return PreviewPage::replaceScript(run->firstNode, run->endNode, piece);
        }
    }
    return PreviewPage::updateScript(m_lastBody);
}

void PreviewCoordinator::pushFinished(const std::optional<std::string>& error) {
    m_waiting.disconnect();
    m_isPushing = false;
    if (!error) {
        pushSucceeded();
        return;
    }
    logLine("JS update failed: " + *error);
    tryAgainInFreshPage();
}

void PreviewCoordinator::pushSucceeded() {
    m_isSecondTry = false;
    m_isShown = true;
    m_refusedBody.reset();
    if (m_pendingBody) {
        push(*std::exchange(m_pendingBody, std::nullopt));
        return;
    }
    restorePosition();
    m_shown.emit();
}

void PreviewCoordinator::restorePosition() {
    if (!m_scrollAfterPush) return;
    m_view.evaluate(PreviewPage::scrollScript(*std::exchange(m_scrollAfterPush, std::nullopt)), {});
}

void PreviewCoordinator::tryAgainInFreshPage() {
    if (m_isSecondTry) {
        giveUp();
        return;
    }
    m_isSecondTry = true;
    if (!m_pendingBody) m_pendingBody = m_lastBody;
    load();
}

void PreviewCoordinator::viewFailed() {
    m_waiting.disconnect();
    // A body whose process ended after it was shown already is not shown a third time.
    if (m_isShown) m_isSecondTry = std::exchange(m_endedWith, m_lastBody) == m_lastBody;
    tryAgainInFreshPage();
}

void PreviewCoordinator::startWaiting() {
    m_waiting = Glib::signal_timeout().connect(
        [this] {
            patienceEnded();
            return false;
        },
        static_cast<unsigned>((m_isSecondTry ? 2 * m_patience : m_patience).count()));
}

// A busy machine keeps a harmless page waiting as well, so the reader gets the plain text for now
// and the page once more the time that it needs.
void PreviewCoordinator::patienceEnded() {
    logLine("JS update failed: the page does not answer");
    m_view.terminate();
    const bool isFirstTry = !m_isSecondTry;
    tryAgainInFreshPage();
    if (isFirstTry) m_unavailable.emit();
}

void PreviewCoordinator::giveUp() {
    m_waiting.disconnect();
    if (m_initialLoadDone) m_refusedBody = m_lastBody;
    const auto newer = std::exchange(m_pendingBody, std::nullopt);
    m_isPushing = false;
    m_isShown = false;
    m_isSecondTry = false;
    ++m_page;
    if (newer && m_initialLoadDone && newer != m_refusedBody) {
        m_pendingBody = newer;
        load();
        return;
    }
    m_initialLoadDone = false;
    m_lastFullHTML.clear();  // the next body gets a fresh page
    m_unavailable.emit();
}

void PreviewCoordinator::setScrollPercent(double percent) {
    m_scrollPercent = percent;
    if (!m_initialLoadDone) {
        m_pendingScrollPercent = percent;
        return;
    }
    m_view.evaluate(PreviewPage::scrollScript(percent), {});
}

void PreviewCoordinator::receiveScroll(double percent) {
    m_scrollPercent = percent;
    m_scrollChanged.emit(percent);
}

void PreviewCoordinator::followLink(const std::string& url) {
    const std::string fragment = fragmentOf(url);
    if (!fragment.empty()) {
        m_view.evaluate(PreviewPage::jumpScript(fragment), {});
    } else if (isForTheSystem(url)) {
        m_linkOpened.emit(url);
    }
}

}  // namespace corvel
