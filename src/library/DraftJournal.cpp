#include "library/DraftJournal.h"

#include "library/DraftFile.h"
#include "library/DraftRecord.h"
#include "platform/FileBytes.h"
#include "platform/Log.h"
#include "platform/Text.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace corvel {

void DraftJournal::add(const TextEdit& edit) {
    if (m_folder.empty() || m_wholeText) return;
    const std::size_t length = text::characterCount(edit.inserted);
    const bool goesOn = !m_edits.empty() && edit.removed == 0 &&
                        edit.offset == m_edits.back().offset + m_lastLength;
    if (goesOn) {
        m_edits.back().inserted += edit.inserted;
        m_lastLength += length;
    } else {
        m_edits.push_back(edit);
        m_lastLength = length;
    }
}

void DraftJournal::addWholeText() {
    m_wholeText = true;
    m_edits.clear();
}

void DraftJournal::flush(const Uuid& noteID, const std::string& base, const TextSource& text) {
    if (m_folder.empty() || !hasPending()) return;
    if (!m_file.isOpen() && !open()) return logFailure();
    if (!(m_size == 0 ? begin(noteID, base, pending(text)) : append({pending(text)})))
        return logFailure();
    m_hasFailed = false;
    forgetPending();
}

void DraftJournal::discard() {
    forgetPending();
    if (!m_file.isOpen()) return;
    m_file = {};
    m_size = 0;
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
}

void DraftJournal::forgetPending() {
    m_edits.clear();
    m_title.reset();
    m_wholeText = false;
}

// The text goes to the file from where it lies: it may have ten megabytes, and a key waits.
bool DraftJournal::begin(const Uuid& noteID, const std::string& base, const std::string& edits) {
    const bool isClean = text::isValidUtf8(base) && base.find('\0') == std::string::npos;
    const std::string repaired = isClean ? std::string() : text::repaired(base);
    const DraftRecord record{DraftRecord::Kind::base, isClean ? base : repaired};
    const auto* id = reinterpret_cast<const char*>(noteID.bytes.data());
    std::string head(kDraftMark);
    appendRecord(head, {DraftRecord::Kind::note, {id, noteID.bytes.size()}});
    return append({head += headerOf(record), record.bytes, edits});
}

std::string DraftJournal::pending(const TextSource& text) const {
    std::string bytes;
    if (m_title) appendRecord(bytes, {DraftRecord::Kind::title, *m_title});
    if (m_wholeText) appendRecord(bytes, {DraftRecord::Kind::text, text()});
    for (const TextEdit& edit : m_edits) {
        std::string payload;
        appendNumber64(payload, edit.offset);
        appendNumber64(payload, edit.removed);
        appendRecord(bytes, {DraftRecord::Kind::edit, payload += edit.inserted});
    }
    return bytes;
}

// A name of its own: a draft that could not be recovered yet is never written over.
bool DraftJournal::open() {
    std::error_code ignored;
    std::filesystem::create_directories(m_folder, ignored);
    ::chmod(m_folder.c_str(), 0700);
    m_path = m_folder / (Uuid::random().toString() + kDraftSuffix);
    m_file = FileDescriptor(::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    m_size = 0;
    return m_file.isOpen();
}

bool DraftJournal::append(std::initializer_list<std::string_view> pieces) {
    std::size_t size = m_size;
    const bool isWritten = std::ranges::all_of(pieces, [&](std::string_view piece) {
        size += piece.size();
        return writeAll(m_file.get(), piece);
    });
    if (isWritten) {
        m_size = size;
        return true;
    }
    // What was begun goes, so that the next try does not stand behind a torn record.
    const int code = errno;
    const auto whole = static_cast<off_t>(m_size);
    if (::ftruncate(m_file.get(), whole) == 0) ::lseek(m_file.get(), whole, SEEK_SET);
    errno = code;
    return false;
}

void DraftJournal::logFailure() {
    const int code = errno;
    if (std::exchange(m_hasFailed, true)) return;
    logLine("Error writing draft: " + m_path.string() + ": " + std::strerror(code));
}

}  // namespace corvel
