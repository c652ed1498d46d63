#include "ui/PreviewPane.h"

#include "app/Texts.h"
#include "markdown/PreviewPage.h"
#include "platform/Text.h"
#include "themes/Color.h"
#include "themes/ThemeStylesheet.h"
#include "ui/Accessible.h"

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

PreviewPane::PreviewPane(const MarkdownParserService& parser,
                         ThemeManager& themes,
                         const Localisation& texts)
    : m_parser(parser)
    , m_themes(themes)
    , m_texts(texts)
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

    m_themeChanged = themes.signalCurrentChanged().connect([this] { applyColors(); });
    signal_map().connect([this] {
        if (m_view) {
            refresh();
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

PreviewPane::~PreviewPane() {
    m_rendering->cancel();
    m_coordinator.reset();
    if (m_view) m_page.remove(m_view->widget());
}

void PreviewPane::makeWebView() {
    if (m_view) return;
    m_room = std::make_unique<WebRoom>();
    m_view = m_room->makeView(PreviewPage::scriptHash());
    m_view->widget().set_expand(true);
    m_page.append(m_view->widget());
    m_coordinator = PreviewCoordinator::create(*m_view);
    m_coordinator->signalShown().connect(sigc::mem_fun(*this, &PreviewPane::showWebPage));
    m_coordinator->signalUnavailable().connect(sigc::mem_fun(*this, &PreviewPane::showPlainText));
    m_coordinator->signalLinkOpened().connect(sigc::ptr_fun(&PreviewPane::openLink));
    relabel();
    applyColors();
}

void PreviewPane::show(const std::string& markdown, PreviewCoordinator::Position position) {
    m_markdown = markdown;
    if (position == PreviewCoordinator::Position::top) m_position = position;
    m_isStale = true;
    refresh();
}

void PreviewPane::refresh() {
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

void PreviewPane::showRendered(RenderOutcome outcome) {
    if (outcome.isPlainText) {
        showPlainText();
        return;
    }
    m_coordinator->show(generateCSS(m_themes.currentTheme()),
                        m_parser.postProcessImages(std::move(outcome.html)),
                        std::exchange(m_position, PreviewCoordinator::Position::keep));
}

void PreviewPane::showWebPage() {
    m_stack.set_visible_child(kWebPage);
    m_plainText.get_buffer()->set_text("");
}

void PreviewPane::showPlainText() {
    const std::string text = m_markdown.size() > kMostMarkdown ? "" : text::repaired(m_markdown);
    m_plainText.get_buffer()->set_text(text);
    m_stack.set_visible_child(kPlainPage);
    relabel();
}

void PreviewPane::applyColors() {
    if (!m_view) return;
    Gdk::RGBA background;
    background.set(hexString(colorFromHex(m_themes.currentTheme().colors.background)));
    m_view->setBackground(background);
    m_isStale = true;
    refresh();
}

void PreviewPane::relabel() {
    const bool isTooLarge = m_markdown.size() > kMostMarkdown;
    m_notice.set_text(m_texts(isTooLarge ? texts::previewTooLarge : texts::previewUnavailable));
    setAccessibleLabel(m_plainText, m_texts(texts::modePreview));
    if (m_view) setAccessibleLabel(m_view->widget(), m_texts(texts::modePreview));
}

void PreviewPane::openLink(const std::string& url) {
    // What the desktop cannot open it says itself; the note stays as it is.
    Gio::AppInfo::launch_default_for_uri_async(url, Gio::SlotAsyncReady());
}

}  // namespace corvel
