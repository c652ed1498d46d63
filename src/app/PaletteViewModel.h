#pragma once

#include "app/AppCommands.h"
#include "app/RecentNotes.h"
#include "library/FuzzyQuery.h"
#include "library/Library.h"
#include "library/TitleIndex.h"

#include <sigc++/signal.h>

#include <string>
#include <variant>
#include <vector>

namespace corvel {

/// One row of a palette.
struct PaletteItem {
    std::string label;
    std::string detail;               ///< at the row's end: a shortcut, or where a note lies
    std::vector<MatchRange> matches;  ///< bytes of the label
    bool isEnabled = true;
    std::variant<CommandID, Uuid> target;
};

/// The command palette and the note switcher: what is listed for a query, and which row is chosen.
class PaletteViewModel {
public:
    enum class Kind { commands, notes };
    static constexpr std::size_t kMostRows = 50;

    PaletteViewModel(Library& library,
                     const Localisation& texts,
                     AppState& state,
                     AppCommands& commands,
                     const RecentNotes& recent);  // all must outlive the view model

    /// Lists everything anew, with an empty query.
    void open(Kind kind);
    /// Prepares the note switcher in idle time, a little at a time. True while more is left. Throws
    /// StoreError.
    bool readAhead();
    Kind kind() const { return m_kind; }
    void setQuery(const std::string& text);

    const std::vector<PaletteItem>& items() const { return m_items; }
    /// The chosen row; no meaning without items.
    std::size_t selected() const { return m_selected; }
    void select(std::size_t position);
    /// Moves by rows and stops at the ends; a single step at an end goes on at the other.
    void moveBy(int rows);

    /// The target of the chosen row; none when there is none or it is not enabled.
    std::optional<std::variant<CommandID, Uuid>> chosen() const;

    /// Other items; the first is chosen.
    sigc::signal<void()>& signalItemsChanged() { return m_itemsChanged; }
    sigc::signal<void()>& signalSelectionChanged() { return m_selectionChanged; }

private:
    void listCommands(const FuzzyQuery& query);
    void listNotes(const FuzzyQuery& query);
    void listRecentNotes();
    void addNote(const NoteSummary& note, const FuzzyQuery& query);

    Library& m_library;
    const Localisation& m_texts;
    AppState& m_state;
    AppCommands& m_commands;
    const RecentNotes& m_recent;
    TitleIndex m_titles;
    Kind m_kind = Kind::commands;
    std::vector<PaletteItem> m_items;
    std::size_t m_selected = 0;
    sigc::signal<void()> m_itemsChanged;
    sigc::signal<void()> m_selectionChanged;
};

}  // namespace corvel
