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

namespace {

std::size_t lengthOf(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    }));
}

}  // namespace

void DraftJournal::add(const TextEdit& edit) {
    if (m_folder.empty() || m_wholeText) return;
    const std::size_t length = lengthOf(edit.inserted);
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
    std::string bytes;
    if (!m_file.isOpen()) {
        if (!open()) return logFailure();
        bytes = opening(noteID, base);
    } else if (m_size == 0) {
        bytes = opening(noteID, base);
    }
    bytes += pending(text);
    if (!append(bytes)) return logFailure();
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

std::string DraftJournal::opening(const Uuid& noteID, const std::string& base) const {
    const auto* id = reinterpret_cast<const char*>(noteID.bytes.data());
    std::string bytes(kDraftMark);
    appendRecord(bytes, {DraftRecord::Kind::note, {id, noteID.bytes.size()}});
    appendRecord(bytes, {DraftRecord::Kind::base, text::repaired(base)});
    return bytes;
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

bool DraftJournal::append(const std::string& bytes) {
    if (writeAll(m_file.get(), bytes)) {
        m_size += bytes.size();
        return true;
    }
    // What was begun goes, so that the next try does not stand behind a torn record.
    const int code = errno;
    const auto size = static_cast<off_t>(m_size);
    if (::ftruncate(m_file.get(), size) == 0) ::lseek(m_file.get(), size, SEEK_SET);
    errno = code;
    return false;
}

void DraftJournal::logFailure() {
    const int code = errno;
    if (std::exchange(m_hasFailed, true)) return;
    logLine("Error writing draft: " + m_path.string() + ": " + std::strerror(code));
}

}  // namespace corvel
