#include "ui/EditorPane.h"

#include "platform/Text.h"
#include "ui/Accessible.h"
#include "ui/LongLines.h"
#include "ui/SourceStyle.h"

#include <gtksourceview/gtksource.h>
#include <pangomm/context.h>
#include <pangomm/fontmetrics.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace corvel {

namespace {

constexpr int kSideMargin = 32;
constexpr int kTopMargin = 20;
constexpr int kBottomMargin = 96;  // the last line need not be written at the window's edge
constexpr std::size_t kLargeText = 1'500'000;
// The toolkit takes seconds to lay out more than this; the note itself stays whole in the store.
constexpr std::size_t kMostEditable = 10'000'000;
constexpr std::size_t kShownOfMore = 200'000;

GtkSourceBuffer* sourceBuffer(const Glib::RefPtr<Gtk::TextBuffer>& buffer) {
    return GTK_SOURCE_BUFFER(buffer->gobj());
}

Gtk::TextView* makeView() {
    sourcestyle::useOwnSchemesOnly();
    auto* view = Glib::wrap(GTK_TEXT_VIEW(gtk_source_view_new()));
    view->add_css_class("note-editor");
    view->set_monospace(true);
    view->set_left_margin(kSideMargin);
    view->set_right_margin(kSideMargin);
    view->set_top_margin(kTopMargin);
    view->set_bottom_margin(kBottomMargin);
    auto* source = GTK_SOURCE_VIEW(view->gobj());
    gtk_source_view_set_auto_indent(source, TRUE);
    gtk_source_view_set_tab_width(source, 4);
    gtk_source_view_set_smart_backspace(source, TRUE);
    longlines::watchClipboard(view->gobj());
    return view;
}

}  // namespace

EditorPane::EditorPane(const Preferences& preferences, ThemeManager& themes)
    : m_preferences(preferences), m_themes(themes), m_view(makeView()) {
    set_child(*m_view);
    set_policy(Gtk::PolicyType::AUTOMATIC, Gtk::PolicyType::AUTOMATIC);
    set_expand(true);
    m_themeChanged = themes.signalCurrentChanged().connect([this] { applyColors(); });
    m_preferenceChanged = preferences.signalChanged().connect([this](const std::string& key) {
        if (key == "editorFontSize" || key == "editorLineSpacing") applySpacing();
    });
    applySpacing();
}

void EditorPane::open(const Uuid& id, const std::string& content) {
    m_isPartial = !canEdit(content);
    const std::string usable =
        text::repaired(m_isPartial ? text::prefixByBytes(content, kShownOfMore) : content);
    m_isLarge = usable.size() > kLargeText;
    m_edits.stop();
    m_noteID = id;
    showBuffer(m_buffers.bufferFor(id, usable));
    m_edits.follow(m_buffer);
}

bool EditorPane::canEdit(const std::string& content) {
    return content.size() <= kMostEditable;
}

void EditorPane::close() {
    m_edits.stop();
    m_noteID.reset();
    m_buffer.reset();
    m_view->set_buffer(NoteBuffers::emptyBuffer());
}

bool EditorPane::isInPieces() const {
    return m_buffer && longlines::areInPieces(m_buffer->gobj());
}

std::string EditorPane::text() const {
    return m_buffer ? NoteBuffers::textOf(*m_buffer) : std::string();
}

void EditorPane::showBuffer(const Glib::RefPtr<Gtk::TextBuffer>& buffer) {
    if (buffer == m_buffer) return;
    m_buffer = buffer;
    applySize();
    applyColors();
    m_view->set_buffer(buffer);
    get_vadjustment()->set_value(0);
    // Scrolling to the start would hide the margin above it.
    if (buffer->get_insert()->get_iter().is_start()) return;
    m_view->scroll_to(buffer->get_insert());
}

void EditorPane::applySize() {
    m_view->set_wrap_mode(m_isLarge ? Gtk::WrapMode::NONE : Gtk::WrapMode::WORD_CHAR);
    auto* buffer = sourceBuffer(m_buffer);
    gtk_source_buffer_set_highlight_matching_brackets(buffer, FALSE);
    gtk_source_buffer_set_highlight_syntax(buffer, !m_isLarge);
    if (m_view->get_mapped()) {
        applyLanguage();
    } else {
        applyLanguageSoon();
    }
}

void EditorPane::applyLanguage() {
    if (!m_buffer) return;
    gtk_source_buffer_set_language(sourceBuffer(m_buffer),
                                   m_isLarge ? nullptr : sourcestyle::language());
}

// Reading the language takes long, and the first frame would come without colours anyway: the
// toolkit finds them when idle. The second tick follows that frame.
void EditorPane::applyLanguageSoon() {
    if (std::exchange(m_isLanguageDue, true)) return;
    m_view->add_tick_callback([this, isFirst = true](const Glib::RefPtr<Gdk::FrameClock>&) mutable {
        if (std::exchange(isFirst, false)) return true;
        m_isLanguageDue = false;
        applyLanguage();
        return false;
    });
}

void EditorPane::applyColors() {
    if (!m_buffer) return;
    if (auto* scheme = sourcestyle::scheme(m_themes.currentTheme())) {
        gtk_source_buffer_set_style_scheme(sourceBuffer(m_buffer), scheme);
    }
}

void EditorPane::applySpacing() {
    // The style sheet sets the font; a line of it is about 1.17 times the size high.
    const double size = m_preferences.editorFontSize();
    const double factor = std::clamp(m_preferences.editorLineSpacing(), 1.0, 4.0);
    const int extra = std::max(0, static_cast<int>(std::lround(size * (factor - 1.17))));
    m_view->set_pixels_above_lines(extra / 2);
    m_view->set_pixels_below_lines(extra - extra / 2);
    m_view->set_pixels_inside_wrap(extra);
}

void EditorPane::setReadOnly(bool isReadOnly) {
    m_view->set_editable(!isReadOnly && !m_isPartial);
    m_view->set_cursor_visible(!isReadOnly && !m_isPartial);
}

void EditorPane::setLabel(const std::string& label) {
    setAccessibleLabel(*m_view, label);
}

}  // namespace corvel
