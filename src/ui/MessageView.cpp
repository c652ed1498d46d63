#include "ui/MessageView.h"

#include "ai/AssistantTexts.h"
#include "app/texts/AssistantPanelTexts.h"
#include "themes/Color.h"
#include "themes/ThemeStylesheet.h"
#include "ui/Accessible.h"

#include <giomm/appinfo.h>
#include <glibmm/main.h>
#include <gtkmm/settings.h>
#include <pangomm/fontdescription.h>

#include <cmath>
#include <string_view>

namespace corvel {

namespace {

// Beside a note the conversation is set a little smaller than the windows' text.
constexpr double kTextScale = 0.95;

constexpr std::string_view kLayout = R"css(
html, body { background-color: var(--panel); color: var(--text); }
body { padding: 4px 12px 12px; line-height: 1.45; overflow-wrap: anywhere; }
article { margin: 0 0 12px; }
article.user {
    margin-left: 15%; width: fit-content; max-width: 85%; box-sizing: border-box; padding: 6px 12px;
    margin-left: auto; border-radius: 12px 12px 4px 12px; background: var(--bubble); color: #fff;
}
article.user p { white-space: pre-line; }
article.user a, article.user h1, article.user h2, article.user h3 { color: #fff; }
article.user code { background: rgba(255, 255, 255, 0.18); color: #fff; }
article.assistant {
    padding: 8px 12px 10px; border: 1px solid var(--line); border-radius: 12px 12px 12px 4px;
}
h1 { font-size: 1.35em; } h2 { font-size: 1.2em; } h3 { font-size: 1.1em; }
h1, h2 { border: none; padding: 0; }
pre { padding: 8px 10px; }
p, ul, ol, pre, table, blockquote, h1, h2, h3, h4, h5, h6 { margin: 0.5em 0; }
blockquote > :first-child { margin-top: 0; } blockquote > :last-child { margin-bottom: 0; }
ul, ol { padding-left: 1.5em; }
table { display: block; overflow-x: auto; }
.ended > div:first-child > :first-child, .open > div:first-child > :first-child { margin-top: 0; }
.ended > div:last-child > :last-child, .open > div:last-child > :last-child { margin-bottom: 0; }
.wait { opacity: 0.72; }
.image { border: 1px dashed var(--line); border-radius: 4px; padding: 0 4px; opacity: 0.8; }
.actions { display: flex; flex-wrap: wrap; gap: 6px; margin-top: 8px; }
.actions[hidden], .wait[hidden], article[hidden], button[hidden] { display: none; }
button {
    font: inherit; font-size: 0.88em; font-weight: 600; color: inherit; border: none; padding: 4px 10px;
    border-radius: 8px; background: var(--button);
}
button:hover { background: var(--hover); }
button:active { background: var(--line); }
button:focus-visible, a:focus-visible { outline: 2px solid var(--link); outline-offset: 1px; }
html.focused::after {
    content: ''; position: fixed; inset: 1px 3px; border: 2px solid var(--link); border-radius: 8px;
    pointer-events: none;
}
)css";

/// The toolkit's own text size, in pixels, as the desktop scales it.
double textPixels() {
    const auto settings = Gtk::Settings::get_default();
    const Pango::FontDescription font(settings->property_gtk_font_name().get_value());
    const double points = font.get_size() > 0 ? double(font.get_size()) / Pango::SCALE : 11;
    const int dpi = settings->property_gtk_xft_dpi();
    return points * (dpi > 0 ? dpi / 1024.0 : 96) / 72;
}

std::string variable(const char* name, const Color& color) {
    return std::string("--") + name + ": " + hexString(color) + ";";
}

}  // namespace

MessageView::MessageView(Session& session,
                         MessageFeed::Messages messages,
                         bool hasActions,
                         const Text& label)
    : Gtk::Box(Gtk::Orientation::VERTICAL)
    , m_session(session)
    , m_messages(std::move(messages))
    , m_hasActions(hasActions)
    , m_label(label) {
    m_notice.set_wrap(true);
    m_notice.set_visible(false);
    m_notice.add_css_class("note-notice");
    Gtk::Box::append(m_notice);
    m_connections.emplace_back(
        session.themes.signalCurrentChanged().connect([this] { showStyle(); }));
    m_connections.emplace_back(
        session.preferences.signalChanged().connect([this](const std::string& key) {
            if (key == "uiSize") showStyle();
        }));
    m_connections.emplace_back(
        Gtk::Settings::get_default()->property_gtk_xft_dpi().signal_changed().connect(
            [this] { showStyle(); }));
    signal_map().connect([this] {
        if (m_view) return;
        m_making = Glib::signal_idle().connect(
            [this] {
                makeWebView();
                return false;
            },
            Glib::PRIORITY_LOW);
    });
    relabel();
}

MessageView::~MessageView() {
    m_feed.reset();
    if (m_view) remove(m_view->widget());
}

void MessageView::makeWebView() {
    if (m_view) return;
    m_room = std::make_unique<WebRoom>();
    m_view = m_room->makeView(MessagePage::scriptHash());
    m_view->widget().set_expand(true);
    Gtk::Box::append(m_view->widget());
    m_feed = std::make_unique<MessageFeed>(*m_view, m_messages, m_hasActions);
    m_view->setMessageHandler(MessagePage::kHandler,
                              [this](const std::string& text) { m_feed->receive(text); });
    m_feed->signalAction().connect(
        [this](auto verb, const AIMessage& message) { m_action.emit(verb, message); });
    m_feed->signalLinkOpened().connect([](const std::string& url) {
        Gio::AppInfo::launch_default_for_uri_async(url, Gio::SlotAsyncReady());
    });
    m_feed->signalUnavailable().connect([this] {
        m_notice.set_visible(true);
        m_view->widget().set_visible(false);
    });
    m_feed->setReplaceable(m_replaceable);
    relabel();
    showStyle();
}

void MessageView::sync() {
    if (m_feed) m_feed->sync();
}

void MessageView::append(std::string_view piece) {
    if (m_feed) m_feed->append(piece);
}

void MessageView::setReplaceable(const std::vector<Uuid>& ids) {
    m_replaceable = ids;
    if (m_feed) m_feed->setReplaceable(ids);
}

void MessageView::showStyle() {
    if (!m_feed) return;
    const auto& colors = m_session.themes.currentTheme().colors;
    Gdk::RGBA background;
    background.set(
        hexString(mixed(colorFromHex(colors.editor), colorFromHex(colors.sidebar), 0.5)));
    m_view->setBackground(background);
    m_feed->show(stylesheet(), labels());
}

std::string MessageView::stylesheet() const {
    const Theme& theme = m_session.themes.currentTheme();
    const Color text = colorFromHex(theme.colors.editorText);
    const Color panel =
        mixed(colorFromHex(theme.colors.editor), colorFromHex(theme.colors.sidebar), 0.5);
    const double pixels = textPixels() * fontScale(m_session.preferences.uiSize()) * kTextScale;
    return generateCSS(theme) + ":root {" + variable("panel", panel) + variable("text", text) +
           variable("bubble", underWhiteText(colorFromHex(theme.colors.accent))) +
           variable("line", mixed(text, panel, 0.22)) +
           variable("button", mixed(text, panel, 0.1)) +
           variable("hover", mixed(text, panel, 0.16)) +
           "}\nbody { font-size: " + std::to_string(std::lround(pixels)) + "px; }" +
           std::string(kLayout);
}

MessagePage::Labels MessageView::labels() const {
    const auto& say = m_session.texts;
    return {say(texts::assistantYou),     say(texts::assistantName),
            say(texts::assistantWaiting), say(texts::assistantCopy),
            say(texts::assistantInsert),  say(texts::assistantReplaceSelection)};
}

void MessageView::relabel() {
    m_notice.set_text(m_session.texts(texts::assistantUnavailable));
    if (!m_view) return;
    setAccessibleLabel(m_view->widget(), m_session.texts(m_label));
    showStyle();
}

}  // namespace corvel
