#include "ui/GuideWindow.h"

#include "app/texts/PageTexts.h"
#include "ui/Accessible.h"
#include "ui/SourceStyle.h"

#include <giomm/resource.h>
#include <glibmm/main.h>
#include <gtksourceview/gtksource.h>

namespace corvel {

namespace {

constexpr int kMargin = 24;

std::string guideText(const std::string& language) {
    const auto bytes =
        Gio::Resource::lookup_data_global("/com/qno/corvel/guide/markdown." + language + ".md");
    gsize size = 0;
    const auto* data = static_cast<const char*>(bytes->get_data(size));
    return {data, size};
}

Gtk::TextView* makeSourceView() {
    sourcestyle::useOwnSchemesOnly();
    GtkSourceBuffer* buffer = gtk_source_buffer_new(nullptr);
    gtk_source_buffer_set_language(buffer, sourcestyle::language());
    gtk_source_buffer_set_highlight_matching_brackets(buffer, FALSE);
    auto* view = Gtk::manage(Glib::wrap(GTK_TEXT_VIEW(gtk_source_view_new_with_buffer(buffer))));
    g_object_unref(buffer);
    view->add_css_class("note-editor");
    view->set_editable(false);
    view->set_cursor_visible(false);
    view->set_monospace(true);
    view->set_wrap_mode(Gtk::WrapMode::WORD_CHAR);
    view->set_left_margin(kMargin);
    view->set_right_margin(kMargin);
    view->set_top_margin(20);
    view->set_bottom_margin(kMargin);
    view->set_pixels_inside_wrap(4);
    view->set_pixels_below_lines(4);
    return view;
}

}  // namespace

GuideWindow::GuideWindow(Session& session)
    : PageWindow(session, "guideWindow", {1100, 820})
    , m_panes(Gtk::Orientation::HORIZONTAL)
    , m_source(makeSourceView())
    , m_page(session) {
    build();
    followScrolling();
    m_themeChanged = session.themes.signalCurrentChanged().connect([this] { applyColors(); });
    applyColors();
    GuideWindow::relabel();
}

GuideWindow::~GuideWindow() {
    unset_child();
}

void GuideWindow::build() {
    m_panes.add_css_class("note-body");
    m_scroller.set_child(*m_source);
    m_scroller.set_size_request(160, -1);
    m_page.set_size_request(160, -1);
    m_panes.set_start_child(m_scroller);
    m_panes.set_end_child(m_page);
    m_panes.set_shrink_start_child(false);
    m_panes.set_shrink_end_child(false);
    m_panes.set_position(property_default_width() / 2);
    set_child(m_panes);
}

void GuideWindow::followScrolling() {
    m_sourceScroll.signalScrolled().connect(
        [this](double percent) { m_sync.editorScrolled(percent); });
    m_page.onScrollChanged = [this](double percent) { m_sync.previewScrolled(percent); };
    m_sync.signalScrolled().connect([this] {
        m_page.setScroll(m_sync.scrollPercent(), m_sync.scrollSource());
        if (m_sync.scrollSource() == ScrollSource::preview)
            m_sourceScroll.set(m_sync.scrollPercent());
    });
}

void GuideWindow::applyColors() {
    auto* scheme = sourcestyle::scheme(session().themes.currentTheme());
    if (scheme == nullptr) return;
    gtk_source_buffer_set_style_scheme(GTK_SOURCE_BUFFER(m_source->get_buffer()->gobj()), scheme);
}

void GuideWindow::open() {
    present();
    m_page.focusPage();
}

void GuideWindow::relabel() {
    const auto& texts = session().texts;
    set_title(texts(texts::guideTitle));
    m_page.relabel();
    m_page.setLabel(texts(texts::guidePage));
    setAccessibleLabel(*m_source, texts(texts::guideSource));
    setAccessibleLabel(m_panes, texts(texts::sourceAndPage));
    if (m_language == texts.languageCode()) return;
    m_language = texts.languageCode();
    const std::string text = guideText(m_language);
    m_source->get_buffer()->set_text(text);
    m_page.show(text, 0.0);
}

}  // namespace corvel
