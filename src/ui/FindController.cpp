#include "ui/FindController.h"

#include "app/texts/EditorTexts.h"
#include "platform/Handle.h"
#include "ui/SourceStyle.h"

#include <glibmm/main.h>

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

using Action = FindBar::Action;

constexpr std::chrono::milliseconds kSlice{5};
constexpr int kPiece = 100'000;  // characters copied at once
constexpr int kMostMarks = 2000;
constexpr unsigned kRest = 150;  // after an edit, before the matches are counted again
constexpr std::size_t kLongestPrefill = 200;
constexpr const char* kMatchStyle = "search-match";
constexpr const char* kCurrentStyle = "search-current";

FindController& controller(gpointer self) {
    return *static_cast<FindController*>(self);
}

}  // namespace

FindController::FindController(Gtk::TextView& view, FindBar& bar, const Localisation& texts)
    : m_view(view), m_bar(bar), m_texts(texts) {
    const auto keep = [this](const sigc::connection& connection) {
        m_barSignals.emplace_back(connection);
    };
    keep(bar.signalQueryChanged().connect([this] {
        // The field tells late of what was put into it when the bar was opened.
        if (m_bar.query() != m_query) restart(true);
    }));
    keep(bar.signalAction().connect([this](Action action) { perform(action); }));
    keep(bar.signalClosed().connect([this] { close(); }));
    m_bufferChanged = view.property_buffer().signal_changed().connect([this] { followBuffer(); });
    const auto follow = [this] {
        const auto adjustment = m_view.get_vadjustment();
        m_scrolled = adjustment->signal_value_changed().connect([this] { scheduleMarks(); });
        m_resized = adjustment->signal_changed().connect([this] { scheduleMarks(); });
    };
    keep(view.property_vadjustment().signal_changed().connect(follow));
    follow();
    followBuffer();
    relabel();
}

FindController::~FindController() = default;

void FindController::relabel() {
    m_bar.relabel(m_texts);
    if (m_search) showStatus(Wrapped::no);
}

void FindController::followBuffer() {
    clearMarks();
    m_buffer = gtk_text_view_get_buffer(m_view.gobj());
    m_bufferSignals.follow(m_buffer);
    m_bufferSignals.connect(
        "changed",
        G_CALLBACK(+[](GtkTextBuffer*, gpointer self) { controller(self).textChanged(); }), this);
    m_bufferSignals.connect(
        "mark-set",
        G_CALLBACK(+[](GtkTextBuffer* buffer, GtkTextIter*, GtkTextMark* mark, gpointer self) {
            if (mark == gtk_text_buffer_get_insert(buffer)) controller(self).leaveMatch();
        }),
        this);
    m_search.reset();
    m_match.reset();
    if (m_bar.isOpen()) restart(false);
}

// The user went elsewhere in the text.
void FindController::leaveMatch() {
    if (m_isMoving || !std::exchange(m_match, std::nullopt)) return;
    scheduleMarks();
    if (m_search && m_search->isFinished()) showStatus(Wrapped::no);
}

void FindController::textChanged() {
    if (!m_search || m_isReplacing) return;
    m_search.reset();
    m_match.reset();
    m_work.disconnect();
    if (!m_bar.isOpen()) return;
    m_late = Glib::signal_timeout().connect(
        [this] {
            restart(false);
            return false;
        },
        kRest);
}

void FindController::open(bool withReplacement) {
    GtkTextIter start;
    GtkTextIter end;
    std::string text;
    if (gtk_text_buffer_get_selection_bounds(m_buffer, &start, &end) != 0 &&
        gtk_text_iter_get_line(&start) == gtk_text_iter_get_line(&end)) {
        const Handle<char, g_free> selected(gtk_text_buffer_get_text(m_buffer, &start, &end, TRUE));
        text = selected.get();
        if (text.size() > kLongestPrefill) text.clear();
    }
    m_bar.setReadOnly(!m_view.get_editable());
    m_bar.open(withReplacement, text);
    m_origin = selection().begin;
    restart(true);
}

// The last match stays selected, with the cursor at it.
void FindController::close() {
    m_bar.close();
    m_search.reset();
    if (const auto match = std::exchange(m_match, std::nullopt)) select(*match);
    m_work.disconnect();
    m_late.disconnect();
    clearMarks();
    m_view.grab_focus();
    gtk_text_view_scroll_mark_onscreen(m_view.gobj(), gtk_text_buffer_get_insert(m_buffer));
}

void FindController::step(Action direction) {
    if (!m_bar.isOpen() && m_bar.query().text.empty()) return open(false);
    perform(direction);
}

void FindController::perform(Action action) {
    if (!m_search) restart(false);
    if (!m_search->isFinished()) {
        m_pending = action;
        return;
    }
    m_movesCursor = false;
    if (action == Action::replaceAll) return replaceAll();
    if (action == Action::replace && current()) return replaceCurrent();
    const auto at = place();
    const bool isBack = action == Action::previous;
    const auto index = isBack ? m_search->previousFrom(at.begin) : m_search->nextFrom(at.end);
    if (!index) return showStatus(Wrapped::no);
    const auto& match = m_search->matches()[*index];
    if (isBack) return goTo(*index, match.end > at.begin ? Wrapped::atStart : Wrapped::no);
    goTo(*index, match.begin < at.end ? Wrapped::atEnd : Wrapped::no);
}

void FindController::restart(bool movesCursor) {
    m_late.disconnect();
    m_pending.reset();
    m_movesCursor = movesCursor;
    m_gathered = 0;
    m_query = m_bar.query();
    m_search = std::make_unique<editing::NoteSearch>(m_query);
    if (m_search->isFinished()) return finished();
    m_work = Glib::signal_idle().connect([this] { return work(); }, Glib::PRIORITY_DEFAULT_IDLE);
}

bool FindController::work() {
    if (gather() || m_search->run(kSlice)) return true;
    finished();
    return false;
}

// False when the search has the whole text.
bool FindController::gather() {
    const int size = gtk_text_buffer_get_char_count(m_buffer);
    if (m_gathered >= size) return false;
    const auto start = iterAt(m_gathered);
    m_gathered = std::min(size, m_gathered + kPiece);
    const auto end = iterAt(m_gathered);
    const Handle<char, g_free> piece(gtk_text_buffer_get_slice(m_buffer, &start, &end, TRUE));
    m_search->append(piece.get());
    return true;
}

void FindController::finished() {
    clearMarks();
    scheduleMarks();
    if (const auto action = std::exchange(m_pending, std::nullopt)) return perform(*action);
    if (m_movesCursor) return goToNearest();
    showStatus(Wrapped::no);
}

// While the query is typed the match moves on from where the search was begun, not from match to
// match.
void FindController::goToNearest() {
    m_movesCursor = false;
    const auto index = m_search->nextFrom(m_origin);
    if (!index) return showStatus(Wrapped::no);
    const bool isWrapped = m_search->matches()[*index].begin < m_origin;
    goTo(*index, isWrapped ? Wrapped::atEnd : Wrapped::no);
}

void FindController::goTo(std::size_t index, Wrapped wrapped) {
    const auto& match = m_search->matches()[index];
    if (m_bar.isOpen()) {
        m_match = match;
        m_isMoving = true;
        const auto begin = iterAt(match.begin);
        gtk_text_buffer_place_cursor(m_buffer, &begin);
        m_isMoving = false;
        scheduleMarks();
    } else {
        select(match);
    }
    gtk_text_view_scroll_to_mark(m_view.gobj(), gtk_text_buffer_get_insert(m_buffer), 0.15, FALSE,
                                 0, 0);
    if (m_bar.isOpen()) m_origin = match.begin;
    showStatus(wrapped);
}

void FindController::select(const editing::SearchMatch& match) {
    const auto begin = iterAt(match.begin);
    const auto end = iterAt(match.end);
    gtk_text_buffer_select_range(m_buffer, &end, &begin);
}

// --- replacing

void FindController::replaceRange(const editing::SearchMatch& range, const std::string& text) {
    auto begin = iterAt(range.begin);
    auto end = iterAt(range.end);
    gtk_text_buffer_begin_user_action(m_buffer);
    gtk_text_buffer_delete(m_buffer, &begin, &end);
    gtk_text_buffer_insert(m_buffer, &begin, text.data(), static_cast<int>(text.size()));
    gtk_text_buffer_end_user_action(m_buffer);
}

void FindController::replaceCurrent() {
    if (!m_view.get_editable()) return;
    const auto index = *current();
    const auto match = m_search->matches()[index];
    const auto text = m_search->replacementFor(index, m_bar.replacement());
    replaceRange(match, text);
    m_origin = match.begin +
               static_cast<int>(g_utf8_strlen(text.data(), static_cast<gssize>(text.size())));
    const auto cursor = iterAt(m_origin);
    gtk_text_buffer_place_cursor(m_buffer, &cursor);
    restart(true);
}

// In one piece from the first match to the last: one step to undo, and soon done for any number.
void FindController::replaceAll() {
    const auto& matches = m_search->matches();
    if (!m_view.get_editable() || matches.empty()) return showStatus(Wrapped::no);
    const editing::SearchMatch range{matches.front().begin, matches.back().end};
    const auto count = std::to_string(matches.size());
    const auto replaced = m_search->allReplaced(m_bar.replacement());
    const int top = m_search->placeAfter(replaced, firstVisible());
    m_origin = m_search->placeAfter(replaced, place().begin);
    m_isReplacing = true;
    replaceRange(range, replaced.text);
    m_isReplacing = false;
    const auto cursor = iterAt(m_origin);
    gtk_text_buffer_place_cursor(m_buffer, &cursor);
    scrollTo(top);
    clearMarks();
    m_search.reset();
    m_bar.setStatus(m_texts.format(texts::replacedCount, {count}), FindBar::Mood::plain);
}

int FindController::firstVisible() const {
    Gdk::Rectangle seen;
    m_view.get_visible_rect(seen);
    GtkTextIter first;
    gtk_text_view_get_iter_at_location(m_view.gobj(), &first, seen.get_x(), seen.get_y());
    return gtk_text_iter_get_offset(&first);
}

// The view keeps its place by marks, which the replaced text has taken along.
void FindController::scrollTo(int offset) {
    const auto at = iterAt(offset);
    auto* mark = gtk_text_buffer_create_mark(m_buffer, nullptr, &at, TRUE);
    gtk_text_view_scroll_to_mark(m_view.gobj(), mark, 0, TRUE, 0, 0);
    gtk_text_buffer_delete_mark(m_buffer, mark);
}

// --- marks

void FindController::clearMarks() {
    m_marks.disconnect();
    if (m_buffer == nullptr || !std::exchange(m_hasMarks, false)) return;
    GtkTextIter begin;
    GtkTextIter end;
    gtk_text_buffer_get_bounds(m_buffer, &begin, &end);
    for (const char* style : {kMatchStyle, kCurrentStyle})
        gtk_text_buffer_remove_tag(m_buffer, sourcestyle::tag(m_buffer, style), &begin, &end);
}

void FindController::scheduleMarks() {
    if (!m_search || !m_bar.isOpen() || m_marks.connected()) return;
    m_marks = Glib::signal_idle().connect(
        [this] {
            markVisible();
            return false;
        },
        Glib::PRIORITY_HIGH_IDLE);
}

void FindController::markVisible() {
    if (!m_search || !m_search->isFinished()) return;
    Gdk::Rectangle seen;
    m_view.get_visible_rect(seen);
    GtkTextIter begin;
    GtkTextIter end;
    gtk_text_view_get_iter_at_location(m_view.gobj(), &begin, seen.get_x(), seen.get_y());
    gtk_text_view_get_line_at_y(m_view.gobj(), &end, seen.get_y() + seen.get_height(), nullptr);
    if (!gtk_text_iter_ends_line(&end)) gtk_text_iter_forward_to_line_end(&end);
    clearMarks();
    const int first = gtk_text_iter_get_offset(&begin);
    const int last = gtk_text_iter_get_offset(&end);
    auto* plain = sourcestyle::tag(m_buffer, kMatchStyle);
    auto* current = sourcestyle::tag(m_buffer, kCurrentStyle);
    m_hasMarks = true;
    const auto& matches = m_search->matches();
    auto match = std::ranges::upper_bound(matches, first, {}, &editing::SearchMatch::end);
    for (int marked = 0; match != matches.end() && match->begin < last && marked < kMostMarks;
         ++match, ++marked) {
        const auto from = iterAt(std::max(match->begin, first));
        const auto to = iterAt(std::min(match->end, last));
        gtk_text_buffer_apply_tag(m_buffer, match[0] == m_match ? current : plain, &from, &to);
    }
}

// --- what is told

void FindController::showStatus(Wrapped wrapped) {
    using Mood = FindBar::Mood;
    const auto fault = m_search->fault();
    if (fault == editing::SearchFault::badPattern)
        return m_bar.setStatus(m_texts(texts::badExpression), Mood::faulty);
    if (fault == editing::SearchFault::tooSlow)
        return m_bar.setStatus(m_texts(texts::slowExpression), Mood::faulty);
    if (m_search->query().text.empty()) return m_bar.setStatus("", Mood::plain);
    const auto count = std::to_string(m_search->matches().size());
    if (m_search->matches().empty())
        return m_bar.setStatus(m_texts(texts::noMatches), Mood::nothingFound);
    const auto index = current();
    auto text = index ? m_texts.format(texts::matchOf, {std::to_string(*index + 1), count})
                      : m_texts.format(texts::matchCount, {count});
    if (wrapped == Wrapped::atEnd) text = m_texts.format(texts::wentToStart, {text});
    if (wrapped == Wrapped::atStart) text = m_texts.format(texts::wentToEnd, {text});
    m_bar.setStatus(text, Mood::plain);
}

std::optional<std::size_t> FindController::current() const {
    return m_search ? m_search->indexOf(place()) : std::nullopt;
}

editing::SearchMatch FindController::place() const {
    return m_match.value_or(selection());
}

editing::SearchMatch FindController::selection() const {
    GtkTextIter start;
    GtkTextIter end;
    gtk_text_buffer_get_selection_bounds(m_buffer, &start, &end);
    return {gtk_text_iter_get_offset(&start), gtk_text_iter_get_offset(&end)};
}

GtkTextIter FindController::iterAt(int offset) const {
    GtkTextIter iter;
    gtk_text_buffer_get_iter_at_offset(m_buffer, &iter, offset);
    return iter;
}

}  // namespace corvel
