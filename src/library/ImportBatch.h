#pragma once

#include "library/ImportUnit.h"
#include "model/ViewContext.h"
#include "platform/StoreError.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace corvel {

class Library;

/// Stores the units of an import. Many are committed at once, for a commit writes the same pages of
/// the indexes for few notes as for many; the transaction is open for several turns of the main
/// loop. What the store refuses together is tried unit by unit, so that one spoils no other.
class ImportBatch {
public:
    using Unit = std::shared_ptr<const ImportUnit>;

    explicit ImportBatch(Library& library);  // must outlive this
    ImportBatch(const ImportBatch&) = delete;
    ImportBatch& operator=(const ImportBatch&) = delete;
    /// Gives up what is not saved.
    ~ImportBatch();

    /// Puts `units` into the store, unsaved.
    void add(std::vector<Unit> units);
    bool hasUnsaved() const { return !m_unsaved.empty(); }
    /// So much is unsaved that it is time to save.
    bool isFull() const;
    void save();

    std::size_t refusedCount() const { return m_refused.size(); }
    struct Refusal {
        Unit unit;
        StoreError reason;
    };
    /// Tries the first refused unit alone; none when the store takes it now.
    std::optional<Refusal> retry();

    bool hasSaved() const { return !m_saved.empty(); }
    /// The next unit that is in the store for good.
    Unit takeSaved();

private:
    void apply(std::span<const Unit> units);
    void keepSaved();
    void refuse();
    void removeFiles(const ImportUnit& unit);

    Library& m_library;
    ViewContext::Batch m_changes;
    std::vector<Unit> m_unsaved;
    std::size_t m_unsavedBytes = 0;
    std::deque<Unit> m_refused;
    std::deque<Unit> m_saved;
};

}  // namespace corvel
