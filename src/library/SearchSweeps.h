#pragma once

#include "library/FoldedNoteReader.h"
#include "library/IndexContent.h"
#include "library/SearchIndex.h"
#include "library/TermFinder.h"

#include <memory>
#include <string>

namespace corvel {

/// A sweep over the notes in memory. It keeps no more than how far it has come in the order of
/// results, so tidying does not disturb it.
class IndexSweep : public SearchIndex::Sweep {
public:
    IndexSweep(std::shared_ptr<const IndexContent> content, TermFinder finder);

    std::vector<RowId> next(std::size_t limit, std::chrono::milliseconds budget) override;
    bool isFinished() const override { return m_isFinished; }
    bool isStale() const override { return m_content->version() != m_version; }

private:
    class Run;
    std::shared_ptr<const IndexContent> m_content;
    TermFinder m_finder;
    std::uint64_t m_version;
    NoteKey m_frontier = NoteKey::first();
    bool m_isFinished = false;
};

/// A sweep that reads the store itself, for the time before the index is filled.
class StoreSweep : public SearchIndex::Sweep {
public:
    StoreSweep(ViewContext& context,
               std::shared_ptr<const IndexContent> content,
               TermFinder finder);

    std::vector<RowId> next(std::size_t limit, std::chrono::milliseconds budget) override;
    bool isFinished() const override { return m_isFinished; }
    bool isStale() const override { return m_content->version() != m_version; }

private:
    FoldedNoteReader m_reader;
    std::shared_ptr<const IndexContent> m_content;
    TermFinder m_finder;
    std::uint64_t m_version;
    bool m_isFinished = false;
};

}  // namespace corvel
