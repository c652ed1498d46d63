#include "library/AttachmentSweep.h"

#include "library/Library.h"
#include "model/PersistenceController.h"

#include <algorithm>
#include <cctype>

namespace corvel {

namespace {

constexpr std::string_view kScheme = "attachment://";
constexpr std::size_t kIdLength = 36;
constexpr int kTextsAtOnce = 50;

}  // namespace

AttachmentSweep::AttachmentSweep(Library& library)
    : m_library(library)
    , m_changes(library.notes.signalChanged().connect([this](const NoteChange& change) {
        if (change.note != nullptr) keepThoseIn(change.note->content);
    })) {}

bool AttachmentSweep::work(std::chrono::milliseconds budget) {
    const auto end = std::chrono::steady_clock::now() + budget;
    try {
        do {
            if (m_stage == Stage::candidates) {
                findCandidates();
                m_stage = m_candidates.empty() ? Stage::finished : Stage::texts;
            } else if (m_stage == Stage::texts) {
                if (!readSomeTexts()) m_stage = Stage::removal;
            } else if (!removeOne()) {
                m_stage = Stage::finished;
            }
        } while (m_stage != Stage::finished && std::chrono::steady_clock::now() < end);
    } catch (const StoreError&) {
        m_stage = Stage::finished;
        throw;
    }
    return m_stage != Stage::finished;
}

// Nearly every attachment is named by its own note: only the others are looked for in all notes.
void AttachmentSweep::findCandidates() {
    auto query = m_library.controller.viewContext().database().query(
        "SELECT attachment.id, content FROM attachment JOIN noteContent USING(notePk)"
        " ORDER BY notePk");
    std::unordered_map<std::string, Uuid> found;
    while (query.next()) {
        const Uuid id = query.uuid(0);
        m_candidates = {{id.toString(), id}};
        keepThoseIn(query.text(1));
        found.merge(m_candidates);
    }
    m_candidates = std::move(found);
}

bool AttachmentSweep::readSomeTexts() {
    auto query = m_library.controller.viewContext().database().query(
        "SELECT notePk, content FROM noteContent WHERE notePk>? ORDER BY notePk LIMIT ?");
    query.bind(m_lastRow, kTextsAtOnce);
    int count = 0;
    for (; query.next(); ++count) {
        m_lastRow = query.integer(0);
        keepThoseIn(query.text(1));
    }
    return count == kTextsAtOnce && !m_candidates.empty();
}

bool AttachmentSweep::removeOne() {
    if (m_candidates.empty()) return false;
    const Uuid id = m_candidates.begin()->second;
    m_candidates.erase(m_candidates.begin());
    m_library.attachments.deleteAttachment(id);
    return !m_candidates.empty();
}

void AttachmentSweep::keepThoseIn(std::string_view text) {
    for (auto at = text.find(kScheme); at != std::string_view::npos && !m_candidates.empty();
         at = text.find(kScheme, at + 1)) {
        std::string id(text.substr(at + kScheme.size(), kIdLength));
        std::ranges::transform(id, id.begin(),
                               [](unsigned char letter) { return std::toupper(letter); });
        m_candidates.erase(id);
    }
}

}  // namespace corvel
