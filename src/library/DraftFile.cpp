#include "library/DraftFile.h"

#include "library/DraftRecord.h"
#include "library/EditedText.h"
#include "platform/FileBytes.h"
#include "platform/FileDescriptor.h"

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

using Kind = DraftRecord::Kind;

std::optional<DraftRecord> takeOf(Kind kind, std::string_view& file) {
    const auto record = takeRecord(file);
    return record && record->kind == kind ? record : std::nullopt;
}

std::optional<TextEdit> editFrom(std::string_view bytes) {
    if (bytes.size() < 16) return std::nullopt;
    const std::uint64_t offset = takeNumber64(bytes);
    const std::uint64_t removed = takeNumber64(bytes);
    return TextEdit{offset, removed, std::string(bytes)};
}

/// The records behind the first two, until one is damaged or makes no sense.
class DraftReader {
public:
    explicit DraftReader(Draft& draft) : m_draft(draft), m_text(draft.base) {}

    /// False when there was nothing to read.
    bool readAll(std::string_view file) {
        std::size_t count = 0;
        while (!file.empty()) {
            const auto record = takeRecord(file);
            if (!record || !take(*record)) {
                m_draft.isDamaged = true;
                break;
            }
            ++count;
        }
        m_draft.text = m_text.text();
        return count > 0;
    }

private:
    bool take(const DraftRecord& record) {
        switch (record.kind) {
            case Kind::text:
                m_text = EditedText(std::string(record.bytes));
                return true;
            case Kind::title:
                m_draft.title = std::string(record.bytes);
                return true;
            case Kind::edit: {
                const auto edit = editFrom(record.bytes);
                return edit && m_text.apply(*edit);
            }
            default:
                return false;
        }
    }

    Draft& m_draft;
    EditedText m_text;
};

}  // namespace

std::optional<Draft> parseDraft(std::string_view file) {
    if (!file.starts_with(kDraftMark)) return std::nullopt;
    file.remove_prefix(kDraftMark.size());
    Draft draft;
    const auto note = takeOf(Kind::note, file);
    if (!note || note->bytes.size() != draft.noteID.bytes.size()) return std::nullopt;
    std::ranges::copy(note->bytes, draft.noteID.bytes.begin());
    const auto base = takeOf(Kind::base, file);
    if (!base) return std::nullopt;
    draft.base = std::string(base->bytes);
    if (!DraftReader(draft).readAll(file)) return std::nullopt;
    return draft;
}

// Where the disk is bad the file ends: what was read before it counts.
std::optional<Draft> readDraft(const std::filesystem::path& path) {
    const auto file = openForReading(path);
    std::string bytes;
    const bool isWhole = file.isOpen() && appendAll(file.get(), bytes);
    auto draft = parseDraft(bytes);
    if (draft && !isWhole) draft->isDamaged = true;
    return draft;
}

std::vector<std::filesystem::path> draftsIn(const std::filesystem::path& folder) {
    using Dated = std::pair<std::filesystem::file_time_type, std::filesystem::path>;
    std::vector<Dated> found;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        if (entry.path().extension() != kDraftSuffix || !entry.is_regular_file(error)) continue;
        found.emplace_back(entry.last_write_time(error), entry.path());
    }
    std::ranges::sort(found);
    std::vector<std::filesystem::path> paths;
    paths.reserve(found.size());
    for (auto& dated : found) {
        paths.push_back(std::move(dated.second));
    }
    return paths;
}

}  // namespace corvel
