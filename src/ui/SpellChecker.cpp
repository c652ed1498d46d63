#include "ui/SpellChecker.h"

#include "app/editing/SpellSpans.h"
#include "ui/SourceStyle.h"

#include <glibmm/main.h>

#include <algorithm>
#include <chrono>

namespace corvel {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kSlice{3};
constexpr unsigned kRest = 120;        // after a key or a scroll
constexpr unsigned kFirstRest = 1200;  // the dictionaries are read when the window is long there
constexpr int kLinesAround = 20;       // of what is in sight, so that scrolling shows no change
constexpr int kLongestLine = 20'000;
constexpr std::size_t kMostSuggestions = 5;

SpellChecker* checker(gpointer self) {
    return static_cast<SpellChecker*>(self);
}

std::string textBetween(const GtkTextIter& begin, const GtkTextIter& end) {
    const Handle<char, g_free> text(gtk_text_iter_get_slice(&begin, &end));
    return text.get();
}

GtkTextIter lineEnd(GtkTextIter iter) {
    if (!gtk_text_iter_ends_line(&iter)) gtk_text_iter_forward_to_line_end(&iter);
    return iter;
}

}  // namespace

SpellChecker::SpellChecker(Gtk::TextView& view,
                           const Preferences& preferences,
                           StateOfLine stateOfLine)
    : m_view(view), m_preferences(preferences), m_stateOfLine(std::move(stateOfLine)) {
    m_bufferChanged = view.property_buffer().signal_changed().connect([this] { followBuffer(); });
    m_adjustmentChanged =
        view.property_vadjustment().signal_changed().connect([this] { followScrolling(); });
    m_preferenceChanged = preferences.signalChanged().connect([this](const std::string& key) {
        if (key == "spellChecking") checkAnew();
    });
    followScrolling();
    followBuffer();
}

SpellChecker::~SpellChecker() = default;

void SpellChecker::followScrolling() {
    const auto adjustment = m_view.get_vadjustment();
    m_scrolled = adjustment->signal_value_changed().connect([this] { schedule(); });
    m_resized = adjustment->signal_changed().connect([this] { schedule(); });
}

void SpellChecker::followBuffer() {
    m_buffer = gtk_text_view_get_buffer(m_view.gobj());
    m_isTyping = false;
    m_bufferSignals.follow(m_buffer);
    m_bufferSignals.connect(
        "insert-text",
        G_CALLBACK(
            +[](GtkTextBuffer*, GtkTextIter* end, const char* text, int length, gpointer self) {
                auto begin = *end;
                gtk_text_iter_backward_chars(&begin, static_cast<int>(g_utf8_strlen(text, length)));
                checker(self)->lineChanged(begin, *end);
            }),
        this, G_CONNECT_AFTER);
    m_bufferSignals.connect(
        "delete-range",
        G_CALLBACK(+[](GtkTextBuffer*, GtkTextIter* begin, GtkTextIter* end, gpointer self) {
            checker(self)->lineChanged(*begin, *end);
        }),
        this, G_CONNECT_AFTER);
    m_bufferSignals.connect(
        "mark-set",
        G_CALLBACK(+[](GtkTextBuffer* buffer, GtkTextIter*, GtkTextMark* mark, gpointer self) {
            if (mark == gtk_text_buffer_get_insert(buffer)) checker(self)->cursorMoved();
        }),
        this);
    checkAnew();
}

void SpellChecker::checkAnew() {
    GtkTextIter begin;
    GtkTextIter end;
    gtk_text_buffer_get_bounds(m_buffer, &begin, &end);
    m_unchecked.reset(gtk_source_region_new(m_buffer));
    gtk_text_buffer_remove_tag(m_buffer, tag(), &begin, &end);
    if (!m_preferences.spellChecking()) return m_work.disconnect();
    gtk_source_region_add_subregion(m_unchecked.get(), &begin, &end);
    schedule();
}

void SpellChecker::lineChanged(const GtkTextIter& begin, const GtkTextIter& end) {
    if (!m_preferences.spellChecking()) return;
    auto first = begin;
    gtk_text_iter_set_line_offset(&first, 0);
    auto last = lineEnd(end);
    gtk_text_iter_forward_line(&last);
    gtk_source_region_add_subregion(m_unchecked.get(), &first, &last);
    m_isTyping = true;
    schedule();
}

void SpellChecker::cursorMoved() {
    m_isTyping = false;
    if (!m_leftWordOut) return;
    m_leftWordOut = false;
    schedule();
}

void SpellChecker::schedule() {
    if (!m_preferences.spellChecking() || gtk_source_region_is_empty(m_unchecked.get()) != 0)
        return;
    const bool isFirst = !m_dictionaries && !m_loading.valid();
    m_work = Glib::signal_timeout().connect([this] { return work(); }, isFirst ? kFirstRest : kRest,
                                            Glib::PRIORITY_LOW);
}

// They cannot be read in slices: a thread does it, and shares nothing before it is done.
bool SpellChecker::hasDictionaries() {
    if (m_dictionaries) return true;
    if (!m_loading.valid())
        m_loading = std::async([] { return std::make_unique<SpellDictionaries>(); });
    if (m_loading.wait_for(Clock::duration::zero()) == std::future_status::timeout) return false;
    m_dictionaries = m_loading.get();
    return true;
}

// One slice over what is in sight and a little around; the next follows when the program is idle
// again.
bool SpellChecker::work() {
    if (!hasDictionaries()) {
        schedule();
        return false;
    }
    if (!m_dictionaries->areAny() || !m_view.get_mapped()) return false;
    Gdk::Rectangle seen;
    m_view.get_visible_rect(seen);
    GtkTextIter line;
    GtkTextIter end;
    gtk_text_view_get_line_at_y(m_view.gobj(), &line, seen.get_y(), nullptr);
    gtk_text_view_get_line_at_y(m_view.gobj(), &end, seen.get_y() + seen.get_height(), nullptr);
    gtk_text_iter_backward_lines(&line, kLinesAround);
    gtk_text_iter_forward_lines(&end, kLinesAround);
    end = lineEnd(end);
    const auto deadline = Clock::now() + kSlice;
    while (checkNextLine(line, end)) {
        if (Clock::now() < deadline) continue;
        m_work = Glib::signal_idle().connect([this] { return work(); }, Glib::PRIORITY_LOW);
        return false;
    }
    return false;
}

// False when the lines up to `end` are done.
bool SpellChecker::checkNextLine(GtkTextIter& line, const GtkTextIter& end) {
    const GObjectHandle<GtkSourceRegion> open(
        gtk_source_region_intersect_subregion(m_unchecked.get(), &line, &end));
    GtkTextIter last;
    if (!open || gtk_source_region_get_bounds(open.get(), &line, &last) == 0) return false;
    gtk_text_iter_set_line_offset(&line, 0);
    auto behind = lineEnd(line);
    checkLine(line, behind);
    const bool goesOn =
        gtk_text_iter_forward_line(&behind) != 0 && gtk_text_iter_compare(&behind, &end) < 0;
    if (!m_leftWordOut || !isBeingTyped(line, behind)) {
        gtk_source_region_subtract_subregion(m_unchecked.get(), &line, &behind);
    }
    line = behind;
    return goesOn;
}

void SpellChecker::checkLine(const GtkTextIter& begin, const GtkTextIter& end) {
    gtk_text_buffer_remove_tag(m_buffer, tag(), &begin, &end);
    if (gtk_text_iter_get_line_index(&end) > kLongestLine) return;
    const std::string text = textBetween(begin, end);
    for (const auto& span :
         editing::spellSpansIn(text, m_stateOfLine(gtk_text_iter_get_line(&begin)))) {
        const auto word = std::string_view(text).substr(span.begin, span.end - span.begin);
        if (m_dictionaries->isRight(word)) continue;
        auto from = begin;
        auto to = begin;
        gtk_text_iter_set_line_index(&from, static_cast<int>(span.begin));
        gtk_text_iter_set_line_index(&to, static_cast<int>(span.end));
        if (isBeingTyped(from, to)) {
            m_leftWordOut = true;
        } else {
            gtk_text_buffer_apply_tag(m_buffer, tag(), &from, &to);
        }
    }
}

bool SpellChecker::isBeingTyped(const GtkTextIter& begin, const GtkTextIter& end) {
    GtkTextIter cursor;
    gtk_text_buffer_get_iter_at_mark(m_buffer, &cursor, gtk_text_buffer_get_insert(m_buffer));
    return m_isTyping && gtk_text_iter_compare(&begin, &cursor) <= 0 &&
           gtk_text_iter_compare(&cursor, &end) <= 0;
}

GtkTextTag* SpellChecker::tag() const {
    return sourcestyle::tag(m_buffer, "misspelled-word");
}

std::optional<SpellChecker::Mistake> SpellChecker::mistakeAt(const GtkTextIter& position) {
    auto begin = position;
    auto* mark = tag();
    if (!m_preferences.spellChecking() || !m_dictionaries) return std::nullopt;
    if (gtk_text_iter_has_tag(&begin, mark) == 0 && gtk_text_iter_ends_tag(&begin, mark) == 0)
        return std::nullopt;
    auto end = begin;
    if (gtk_text_iter_starts_tag(&begin, mark) == 0)
        gtk_text_iter_backward_to_tag_toggle(&begin, mark);
    if (gtk_text_iter_ends_tag(&end, mark) == 0) gtk_text_iter_forward_to_tag_toggle(&end, mark);
    Mistake mistake{gtk_text_iter_get_offset(&begin),
                    gtk_text_iter_get_offset(&end),
                    textBetween(begin, end),
                    {}};
    auto line = begin;
    gtk_text_iter_set_line_offset(&line, 0);
    const auto text = textBetween(line, lineEnd(begin));
    std::vector<std::string> context;
    for (const auto& span : editing::spellSpansIn(text, {}))
        context.push_back(text.substr(span.begin, span.end - span.begin));
    mistake.suggestions = m_dictionaries->suggestions(mistake.word, context, kMostSuggestions,
                                                      m_preferences.appLanguage());
    return mistake;
}

void SpellChecker::add(const std::string& word) {
    m_dictionaries->add(word);
    checkAnew();
}

void SpellChecker::ignore(const std::string& word) {
    m_dictionaries->ignore(word);
    checkAnew();
}

}  // namespace corvel
