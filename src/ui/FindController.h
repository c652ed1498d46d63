#pragma once

#include "app/editing/NoteSearch.h"
#include "platform/ScopedConnection.h"
#include "ui/FindBar.h"
#include "ui/SignalHandlers.h"

#include <gtkmm/textview.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// Finds and replaces in a text view for a find bar. The text is copied and searched in slices
/// while the program is idle; only matches in sight are marked. While the bar is open the match one
/// is at is marked rather than selected: what is selected in the bar's field would go.
class FindController {
public:
    FindController(Gtk::TextView& view, FindBar& bar, const Localisation& texts);
    FindController(const FindController&) = delete;
    FindController& operator=(const FindController&) = delete;
    ~FindController();

    /// Opens the bar, with the selection as what to look for when it lies in one line.
    void open(bool withReplacement);
    /// To the next or previous match, also while the bar is closed.
    void step(FindBar::Action direction);
    void relabel();

private:
    enum class Wrapped { no, atEnd, atStart };

    void followBuffer();
    void textChanged();
    void close();
    void perform(FindBar::Action action);
    void restart(bool movesCursor);
    bool work();
    bool gather();
    void finished();
    void goTo(std::size_t index, Wrapped wrapped);
    void goToNearest();
    void select(const editing::SearchMatch& match);
    void replaceCurrent();
    void replaceAll();
    void replaceRange(const editing::SearchMatch& range, const std::string& text);
    void scheduleMarks();
    void markVisible();
    void clearMarks();
    void showStatus(Wrapped wrapped);
    std::optional<std::size_t> current() const;
    editing::SearchMatch selection() const;
    editing::SearchMatch place() const;
    void leaveMatch();
    GtkTextIter iterAt(int offset) const;
    int firstVisible() const;
    void scrollTo(int offset);

    Gtk::TextView& m_view;
    FindBar& m_bar;
    const Localisation& m_texts;
    GtkTextBuffer* m_buffer = nullptr;
    std::unique_ptr<editing::NoteSearch> m_search;
    editing::SearchQuery m_query;
    int m_gathered = 0;                           ///< characters of the buffer that the search has
    int m_origin = 0;                             ///< where the first match is looked for
    std::optional<editing::SearchMatch> m_match;  ///< the one that is shown, while the bar is open
    bool m_isMoving = false;
    bool m_hasMarks = false;
    bool m_movesCursor = false;
    bool m_isReplacing = false;
    std::optional<FindBar::Action> m_pending;  ///< asked for before all matches were known
    SignalHandlers m_bufferSignals;
    ScopedConnection m_bufferChanged;
    ScopedConnection m_scrolled;
    ScopedConnection m_resized;
    ScopedConnection m_work;
    ScopedConnection m_marks;
    ScopedConnection m_late;
    std::vector<ScopedConnection> m_barSignals;
};

}  // namespace corvel
