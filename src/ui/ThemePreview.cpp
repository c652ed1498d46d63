#include "ui/ThemePreview.h"

#include "app/texts/ThemeTexts.h"
#include "markdown/MarkdownParserService.h"
#include "markdown/PreviewPage.h"
#include "themes/Color.h"
#include "themes/ScreenRules.h"
#include "themes/ThemeStylesheet.h"
#include "ui/Accessible.h"

#include <glibmm/main.h>

namespace corvel {

ThemePreview::ThemePreview(const Localisation& texts) : m_texts(texts) {
    add(m_page);
    add(m_unavailable);
    m_unavailable.set_wrap(true);
    set_expand(true);
    // After the frame that brings the window up: the view's process takes a moment to start.
    signal_map().connect([this] {
        m_makingView = Glib::signal_idle().connect(
            [this] {
                makeWebView();
                return false;
            },
            Glib::PRIORITY_LOW);
    });
}

ThemePreview::~ThemePreview() {
    m_coordinator.reset();
    if (m_view) m_page.remove(m_view->widget());
}

void ThemePreview::makeWebView() {
    if (m_view) return;
    m_room = std::make_unique<WebRoom>();
    m_view = m_room->makeView(PreviewPage::scriptHash());
    m_view->widget().set_expand(true);
    m_page.append(m_view->widget());
    m_coordinator = PreviewCoordinator::create(*m_view);
    m_coordinator->signalShown().connect([this] { set_visible_child(m_page); });
    m_coordinator->signalUnavailable().connect([this] { set_visible_child(m_unavailable); });
    relabel();
}

void ThemePreview::show(const Theme& theme) {
    m_theme = theme;
    render();
}

void ThemePreview::relabel() {
    m_unavailable.set_text(m_texts(texts::themePreviewUnavailable));
    if (m_view) setAccessibleLabel(m_view->widget(), m_texts(texts::themePreview));
    render();
}

void ThemePreview::render() {
    if (!m_coordinator || !m_theme) return;
    Gdk::RGBA background;
    background.set(hexString(colorFromHex(m_theme->colors.background)));
    m_view->setBackground(background);
    m_coordinator->show(generateCSS(*m_theme) + screenRules(*m_theme),
                        MarkdownParserService::renderBody(m_texts(texts::themeSampleNote)));
}

}  // namespace corvel
