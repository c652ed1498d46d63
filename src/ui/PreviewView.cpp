#include "ui/PreviewView.h"

#include "app/Texts.h"
#include "export/NoteBody.h"
#include "markdown/PreviewPage.h"
#include "platform/Text.h"
#include "themes/Color.h"
#include "themes/ScreenRules.h"
#include "themes/ThemeStylesheet.h"
#include "ui/Accessible.h"
#include "ui/ToolkitLanguage.h"

#include <giomm/appinfo.h>
#include <glibmm/main.h>
#include <gtkmm/scrolledwindow.h>

#include <utility>

namespace corvel {

namespace {

// Beyond this a page is slower than it is useful.
constexpr std::size_t kMostMarkdown = 4'000'000;
constexpr const char* kWebPage = "page";
constexpr const char* kPlainPage = "plain";

}  // namespace

std::function<std::filesystem::path()> folderOfOpenFile(const Session& session) {
    return [&editor = session.editor] {
        return editor.note() ? imageFolderOf(*editor.note()) : std::filesystem::path();
    };
}

PreviewView::PreviewView(Session& session, PreviewStyle style)
    : m_session(session)
    , m_style(std::move(style))
    , m_rendering(Gio::Cancellable::create())
    , m_plain(Gtk::Orientation::VERTICAL) {
    add_css_class("note-preview");
    m_notice.add_css_class("note-notice");
    m_notice.set_wrap(true);
    m_notice.set_xalign(0);
    m_plainText.set_editable(false);
    m_plainText.set_wrap_mode(Gtk::WrapMode::WORD_CHAR);
    m_plainText.set_left_margin(32);
    m_plainText.set_right_margin(32);
    m_plainText.set_top_margin(20);
    auto& scroller = *Gtk::make_managed<Gtk::ScrolledWindow>();
    scroller.set_child(m_plainText);
    scroller.set_expand(true);
    m_plain.append(m_notice);
    m_plain.append(scroller);
    m_stack.add(m_page, kWebPage);
    m_stack.add(m_plain, kPlainPage);
    m_stack.set_expand(true);
    append(m_stack);

    m_themeChanged = session.themes.signalCurrentChanged().connect([this] { applyColors(); });
    m_preferenceChanged =
        session.preferences.signalChanged().connect([this](const std::string& key) {
            if (key != "loadRemoteImages") return;
            m_isStale = true;
            refresh();
        });
    signal_map().connect([this] {
        if (m_view) {
            refresh();
            scrollSoon();
            return;
        }
        // After the frame that brings the window up: the view's process takes a moment to start.
        m_makingView = Glib::signal_idle().connect(
            [this] {
                makeWebView();
                return false;
            },
            Glib::PRIORITY_LOW);
    });
    relabel();
}

PreviewView::~PreviewView() {
    m_rendering->cancel();
    if (m_tick != 0) remove_tick_callback(m_tick);
    m_coordinator.reset();
    if (m_view) m_page.remove(m_view->widget());
}

void PreviewView::makeWebView() {
    if (m_view) return;
    m_room = std::make_unique<WebRoom>([this] { return m_session.preferences.loadRemoteImages(); });
    m_view = m_room->makeView(PreviewPage::scriptHash());
    m_view->widget().set_expand(true);
    m_page.append(m_view->widget());
    if (m_wantsFocus) focusPage();
    m_coordinator = PreviewCoordinator::create(*m_view);
    m_coordinator->signalShown().connect(sigc::mem_fun(*this, &PreviewView::showWebPage));
    m_coordinator->signalUnavailable().connect(sigc::mem_fun(*this, &PreviewView::showPlainText));
    m_coordinator->signalLinkOpened().connect(sigc::mem_fun(*this, &PreviewView::openLink));
    m_coordinator->signalScrollChanged().connect([this](double percent) {
        m_scroll.reset();
        if (onScrollChanged) onScrollChanged(percent);
    });
    relabel();
    applyColors();
}

void PreviewView::show(const std::string& markdown, std::optional<double> percent) {
    m_markdown = markdown;
    if (percent) {
        m_place = percent;
        m_scroll.reset();
    }
    m_isStale = true;
    refresh();
}

void PreviewView::setScroll(double percent, ScrollSource source) {
    if (source == ScrollSource::preview) return;
    m_scroll = percent;
    scrollSoon();
}

// However often the editor moves, the page is moved once a frame.
void PreviewView::scrollSoon() {
    if (!m_scroll || m_tick != 0 || !get_mapped()) return;
    m_tick = add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock>&) {
        m_tick = 0;
        if (m_scroll && m_coordinator)
            m_coordinator->setScrollPercent(*std::exchange(m_scroll, std::nullopt));
        return false;
    });
}

void PreviewView::refresh() {
    if (!m_isStale || !m_coordinator || !get_mapped()) return;
    m_isStale = false;
    m_rendering->cancel();
    if (m_markdown.size() > kMostMarkdown) {
        showPlainText();
        return;
    }
    m_rendering = Gio::Cancellable::create();
    m_renderer.render(m_markdown, m_rendering,
                      [this, request = m_rendering](RenderOutcome outcome) {
                          if (request->is_cancelled())
                              return;  // a newer text asked again, or the pane is gone
                          showRendered(std::move(outcome));
                      });
}

void PreviewView::showRendered(RenderOutcome outcome) {
    if (outcome.isPlainText) {
        showPlainText();
        return;
    }
    const auto folder = m_style.imageFolder ? m_style.imageFolder() : std::filesystem::path();
    std::string body = m_session.parser.postProcessImages(std::move(outcome.html), folder);
    if (m_session.preferences.loadRemoteImages()) {
        body = MarkdownParserService::markRemoteImages(std::move(body), m_room->imageKey());
    }
    const Theme& theme = m_session.themes.currentTheme();
    m_coordinator->show(generateCSS(theme) + screenRules(theme) + m_style.extraCss, std::move(body),
                        std::exchange(m_place, std::nullopt));
}

void PreviewView::showWebPage() {
    m_stack.set_visible_child(kWebPage);
    m_plainText.get_buffer()->set_text("");
}

void PreviewView::showPlainText() {
    const std::string text = m_markdown.size() > kMostMarkdown ? "" : text::repaired(m_markdown);
    // What is being read stays where it is.
    auto& buffer = *m_plainText.get_buffer();
    if (buffer.get_text().raw() != text) buffer.set_text(text);
    m_stack.set_visible_child(kPlainPage);
    relabel();
}

void PreviewView::applyColors() {
    if (!m_view) return;
    Gdk::RGBA background;
    background.set(hexString(colorFromHex(m_session.themes.currentTheme().colors.background)));
    m_view->setBackground(background);
    m_isStale = true;
    refresh();
}

void PreviewView::relabel() {
    const bool isTooLarge = m_markdown.size() > kMostMarkdown;
    m_notice.set_text(
        m_session.texts(isTooLarge ? texts::previewTooLarge : texts::previewUnavailable));
    const std::string label = m_label.empty() ? m_session.texts(texts::modePreview) : m_label;
    setAccessibleLabel(m_plainText, label);
    if (m_view) setAccessibleLabel(m_view->widget(), label);
}

void PreviewView::setLabel(const std::string& label) {
    m_label = label;
    relabel();
}

void PreviewView::focusPage() {
    if (m_stack.get_visible_child() == &m_plain) {
        m_plainText.grab_focus();
    } else if (m_view) {
        m_view->widget().grab_focus();
    }
    m_wantsFocus = !m_view;
}

void PreviewView::openLink(const std::string& url) {
    // What the desktop cannot open it says itself; the note stays as it is.
    Gio::AppInfo::launch_default_for_uri_async(url, sessionLaunchContext(), Gio::SlotAsyncReady());
}

}  // namespace corvel
