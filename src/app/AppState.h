#pragma once

#include "app/settings/Preferences.h"
#include "library/SidebarFilter.h"
#include "library/SortOption.h"
#include "model/Note.h"

#include <sigc++/signal.h>

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace corvel {

/// A field that tells its observers when its value changes. Setting an equal value tells nobody.
template <typename T>
class Observable {
public:
    explicit Observable(T value = {}) : m_value(std::move(value)) {}

    const T& get() const { return m_value; }
    void set(T value) {
        if (value == m_value) return;
        m_value = std::move(value);
        m_changed.emit();
    }
    sigc::signal<void()>& signalChanged() { return m_changed; }

private:
    T m_value;
    sigc::signal<void()> m_changed;
};

/// What the main window shows. Commands change it; views and view models follow.
struct AppState {
    Observable<std::optional<Uuid>> selectedNoteID;
    Observable<SidebarFilter> sidebarFilter;
    Observable<EditorMode> editorMode{EditorMode::split};
    Observable<SortOption> sortOption{SortOption::modifiedDate};
    Observable<std::string> searchQuery;
    Observable<bool> isSearchActive{false};
    Observable<bool> isExportSheetPresented{false};
    Observable<bool> isAIAssistantVisible{false};
    Observable<std::optional<Note>> selectedNote;
    /// How many rows of the list are selected.
    Observable<std::size_t> selectedCount;

    bool hasSeveralSelected() const { return !selectedNoteID.get() && selectedCount.get() > 1; }
};

}  // namespace corvel
