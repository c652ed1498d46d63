#include "library/SearchIndex.h"

#include "library/FoldedNoteReader.h"
#include "library/IndexContent.h"
#include "library/SearchSweeps.h"
#include "platform/MainThread.h"
#include "platform/Text.h"

#include <utility>

namespace corvel {

SearchIndex::SearchIndex(ViewContext& context)
    : m_context(context)
    , m_content(std::make_shared<IndexContent>())
    , m_reader(std::make_unique<FoldedNoteReader>(context)) {}

SearchIndex::~SearchIndex() = default;

bool SearchIndex::work(std::chrono::milliseconds budget) {
    checkMainThread();
    const auto deadline = std::chrono::steady_clock::now() + budget;
    do {
        if (!m_reader) {
            if (!m_content->tidySome()) return false;
            continue;
        }
        const auto step = m_reader->step();
        if (step == FoldedNoteReader::Step::haveNote) {
            m_content->append(std::move(m_reader->note()));
        } else if (step == FoldedNoteReader::Step::finished) {
            m_reader.reset();
        }
    } while (std::chrono::steady_clock::now() < deadline);
    if (m_reader) m_reader->pause();
    return true;
}

bool SearchIndex::isReady() const {
    return !m_reader;
}

void SearchIndex::noteChanged(RowId row,
                              std::string_view title,
                              std::string_view content,
                              Date modifiedAt) {
    m_content->put({{modifiedAt.microseconds, row}, FoldedNote::textOf(title, content)});
}

void SearchIndex::noteRemoved(RowId row) {
    m_content->remove(row);
}

std::unique_ptr<SearchIndex::Sweep> SearchIndex::search(std::string_view query) const {
    return sweep(TermFinder({text::foldedForSearch(query)}));
}

std::unique_ptr<SearchIndex::Sweep> SearchIndex::searchAll(
    const std::vector<std::string>& terms) const {
    std::vector<std::string> folded;
    folded.reserve(terms.size());
    for (const auto& term : terms) {
        folded.push_back(text::foldedForSearch(term));
    }
    return sweep(TermFinder(std::move(folded)));
}

std::unique_ptr<SearchIndex::Sweep> SearchIndex::storeScan(std::string_view query) const {
    return std::make_unique<StoreSweep>(m_context, m_content,
                                        TermFinder({text::foldedForSearch(query)}));
}

std::unique_ptr<SearchIndex::Sweep> SearchIndex::sweep(TermFinder finder) const {
    if (!isReady()) return std::make_unique<StoreSweep>(m_context, m_content, std::move(finder));
    return std::make_unique<IndexSweep>(m_content, std::move(finder));
}

std::size_t SearchIndex::memoryInBytes() const {
    return m_content->memoryInBytes();
}

}  // namespace corvel
