#include "app/PaletteViewModel.h"

#include "app/Texts.h"
#include "model/PersistenceController.h"
#include "platform/Log.h"
#include "platform/Text.h"

#include <algorithm>
#include <array>
#include <unordered_set>
#include <utility>

namespace corvel {

PaletteViewModel::PaletteViewModel(Library& library,
                                   const Localisation& texts,
                                   AppState& state,
                                   AppCommands& commands,
                                   const RecentNotes& recent)
    : m_library(library)
    , m_texts(texts)
    , m_state(state)
    , m_commands(commands)
    , m_recent(recent)
    , m_titles(library.controller.viewContext(), library.notes) {}

void PaletteViewModel::open(Kind kind) {
    m_kind = kind;
    try {
        if (kind == Kind::notes) m_titles.refresh();
    } catch (const StoreError& error) {
        logLine(std::string("Error loading notes: ") + error.what());
    }
    setQuery({});
}

bool PaletteViewModel::readAhead() {
    return m_titles.readAhead();
}

void PaletteViewModel::setQuery(const std::string& text) {
    const FuzzyQuery query(text);
    m_items.clear();
    m_selected = 0;
    try {
        if (m_kind == Kind::commands) {
            listCommands(query);
        } else {
            listNotes(query);
        }
    } catch (const StoreError& error) {
        logLine(std::string("Error loading notes: ") + error.what());
    }
    m_itemsChanged.emit();
}

void PaletteViewModel::listCommands(const FuzzyQuery& query) {
    std::array<std::vector<PaletteItem>, kMatchRanks> ranked;
    for (const Command& command : AppCommands::table()) {
        if (command.id == CommandID::commandPalette) continue;
        const std::string label = m_texts(command.label);
        const auto rank =
            query.isEmpty() ? MatchRank::start : query.rank(text::foldedForSearch(label));
        if (!rank) continue;
        ranked[static_cast<std::size_t>(*rank)].push_back(
            {label, AppCommands::shortcutText(command.id), query.rangesIn(label),
             m_commands.isEnabled(command.id), command.id});
    }
    for (auto& items : ranked) {
        std::ranges::move(items, std::back_inserter(m_items));
    }
    // What cannot be done now is there to be found, but never in the way.
    std::stable_partition(m_items.begin(), m_items.end(),
                          [](const PaletteItem& item) { return item.isEnabled; });
}

void PaletteViewModel::listNotes(const FuzzyQuery& query) {
    if (query.isEmpty()) return listRecentNotes();
    for (const RowId row : m_titles.search(query, kMostRows)) {
        if (const auto note = m_library.listing.summary(row)) addNote(*note, query);
    }
}

// The open note stands behind the recent ones: the first row is the note before it.
void PaletteViewModel::listRecentNotes() {
    std::unordered_set<Uuid> listed;
    const auto& open = m_state.selectedNoteID.get();
    const FuzzyQuery everything("");
    const auto add = [&](const std::optional<NoteSummary>& note) {
        if (!note || note->isTrashed || m_items.size() >= kMostRows) return;
        if (listed.insert(note->id).second) addNote(*note, everything);
    };
    const auto addByID = [&](const Uuid& id) {
        if (const auto row = m_library.listing.rowOf(id)) add(m_library.listing.summary(*row));
    };
    for (const Uuid& id : m_recent.ids()) {
        if (id != open) addByID(id);
    }
    if (open) addByID(*open);
    for (const RowId row : m_titles.search(everything, kMostRows)) {
        add(m_library.listing.summary(row));
    }
}

void PaletteViewModel::addNote(const NoteSummary& note, const FuzzyQuery& query) {
    const std::string label = note.title.empty() ? m_texts(texts::untitled) : note.title;
    m_items.push_back({label, note.isArchived ? m_texts(texts::archive) : "",
                       query.rangesIn(note.title), true, note.id});
}

void PaletteViewModel::select(std::size_t position) {
    if (position >= m_items.size() || position == m_selected) return;
    m_selected = position;
    m_selectionChanged.emit();
}

void PaletteViewModel::moveBy(int rows) {
    if (m_items.empty()) return;
    const auto count = static_cast<int>(m_items.size());
    const int wanted = static_cast<int>(m_selected) + rows;
    const bool isStep = rows == 1 || rows == -1;
    const int position = isStep ? (wanted + count) % count : std::clamp(wanted, 0, count - 1);
    select(static_cast<std::size_t>(position));
}

std::optional<std::variant<CommandID, Uuid>> PaletteViewModel::chosen() const {
    if (m_selected >= m_items.size() || !m_items[m_selected].isEnabled) return std::nullopt;
    return m_items[m_selected].target;
}

}  // namespace corvel
