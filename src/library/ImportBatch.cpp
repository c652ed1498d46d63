#include "library/ImportBatch.h"

#include "library/Library.h"
#include "model/PersistenceController.h"

#include <iterator>
#include <utility>

namespace corvel {

namespace {

constexpr std::size_t kMostBytes = 6 * 1024 * 1024;
constexpr std::size_t kMostNotes = 960;

}  // namespace

ImportBatch::ImportBatch(Library& library)
    : m_library(library), m_changes(library.controller.viewContext()) {}

ImportBatch::~ImportBatch() {
    if (!m_changes.isUnsaved()) return;
    for (const auto& unit : m_unsaved)
        removeFiles(*unit);
}

void ImportBatch::add(std::vector<Unit> units) {
    // Somebody else's save was ours, too.
    if (!m_changes.isUnsaved()) keepSaved();
    const auto begin = m_unsaved.size();
    for (const auto& unit : units)
        m_unsavedBytes += unit->size();
    std::move(units.begin(), units.end(), std::back_inserter(m_unsaved));
    try {
        apply(std::span(m_unsaved).subspan(begin));
    } catch (const StoreError&) {
        refuse();
    }
}

bool ImportBatch::isFull() const {
    return m_unsavedBytes >= kMostBytes || m_unsaved.size() >= kMostNotes;
}

void ImportBatch::save() {
    try {
        if (m_changes.isUnsaved()) m_library.controller.viewContext().save();
        keepSaved();
    } catch (const StoreError&) {
        refuse();
    }
}

std::optional<ImportBatch::Refusal> ImportBatch::retry() {
    const Unit unit = std::move(m_refused.front());
    m_refused.pop_front();
    try {
        apply(std::span(&unit, 1));
        m_library.controller.viewContext().save();
        m_saved.push_back(unit);
        return std::nullopt;
    } catch (const StoreError& error) {
        m_changes.takeBack();
        removeFiles(*unit);
        return Refusal{unit, error};
    }
}

ImportBatch::Unit ImportBatch::takeSaved() {
    Unit unit = std::move(m_saved.front());
    m_saved.pop_front();
    return unit;
}

void ImportBatch::apply(std::span<const Unit> units) {
    m_changes.apply([&] {
        m_library.notes.createUnsaved({units.begin(), units.end()});
        for (const auto& unit : units) {
            for (const auto& attachment : unit->attachments)
                m_library.attachments.createUnsaved(attachment, unit->note.id);
        }
    });
}

void ImportBatch::keepSaved() {
    std::move(m_unsaved.begin(), m_unsaved.end(), std::back_inserter(m_saved));
    m_unsaved.clear();
    m_unsavedBytes = 0;
}

void ImportBatch::refuse() {
    m_changes.takeBack();
    for (auto& unit : m_unsaved) {
        removeFiles(*unit);
        m_refused.push_back(std::move(unit));
    }
    m_unsaved.clear();
    m_unsavedBytes = 0;
}

void ImportBatch::removeFiles(const ImportUnit& unit) {
    for (const auto& attachment : unit.attachments)
        m_library.controller.attachmentFiles().remove(attachment.id);
}

}  // namespace corvel
