#include "app/ExportSession.h"

#include "app/texts/DataTexts.h"
#include "export/ExportTexts.h"
#include "platform/DistantVolumes.h"
#include "platform/Handle.h"

#include <gio/gio.h>
#include <glibmm/main.h>

#include <utility>

namespace corvel {

namespace {

constexpr std::size_t kMostNamed = 5;  // failures that the message names

/// What to do about a file that could not be written.
const Text& adviceFor(const GError& error) {
    switch (error.code) {
        case G_FILE_ERROR_NOSPC:
            return texts::exportFaultFull;
        case G_FILE_ERROR_ACCES:
        case G_FILE_ERROR_PERM:
        case G_FILE_ERROR_ROFS:
            return texts::exportFaultNotWritable;
        case G_FILE_ERROR_NOENT:
        case G_FILE_ERROR_NOTDIR:
            return texts::exportFaultGone;
        default:
            return texts::exportFaultOther;
    }
}

}  // namespace

ExportSession::ExportSession(ThemeManager& themes,
                             const Localisation& texts,
                             ExporterMaker makeExporter,
                             NoteSource notes,
                             std::vector<Uuid> noteIDs)
    : m_themes(themes)
    , m_texts(texts)
    , m_makeExporter(std::move(makeExporter))
    , m_notes(std::move(notes))
    , m_noteIDs(std::move(noteIDs)) {
    if (const auto first = m_notes(m_noteIDs.front())) m_title = first->title;
}

ExportSession::~ExportSession() {
    if (m_cancellable) m_cancellable->cancel();
}

void ExportSession::start() {
    if (isExporting()) return;
    m_folder.reset();
    begin();
}

void ExportSession::startInto(const std::filesystem::path& folder) {
    if (isExporting()) return;
    m_folder = folder;
    m_names.emplace(options.format);
    begin();
}

void ExportSession::begin() {
    m_cancellable = Gio::Cancellable::create();
    m_exporter = m_makeExporter(options.format);
    m_errorMessage.clear();
    m_failures.clear();
    m_bytes.clear();
    m_next = 0;
    m_changed.emit();
    exportNext();
}

void ExportSession::cancel() {
    if (!isExporting()) return;
    std::exchange(m_cancellable, {})->cancel();
    m_step.disconnect();
    m_exporter.reset();
    m_next = 0;
    m_changed.emit();
}

void ExportSession::exportNext() {
    const auto note = m_notes(m_noteIDs[m_next]);
    if (!note) {
        // Deleted since the sheet was opened.
        exported({},
                 ExportError(ExportError::Kind::platformFailed, m_texts(texts::exportNoteIsGone)));
        return;
    }
    if (const auto error = m_folder ? silenceOf(*m_folder) : std::nullopt)
        return exported(note->title, *error);
    m_exporter->exportNote(
        *note, options, m_themes.currentTheme(), m_cancellable,
        [this, title = note->title](const ExportOutcome& outcome) { exported(title, outcome); });
}

void ExportSession::exported(const std::string& title, const ExportOutcome& outcome) {
    const auto* error = std::get_if<ExportError>(&outcome);
    if (!m_folder) {
        if (error != nullptr) return fail(error->description(m_texts));
        m_bytes = std::get<std::string>(outcome);
        m_cancellable.reset();
        m_changed.emit();
        m_ready.emit();
        return;
    }
    if (error != nullptr) {
        m_failures.push_back({title, error->description(m_texts)});
    } else {
        writeIntoFolder(title, std::get<std::string>(outcome));
    }
    ++m_next;
    m_changed.emit();
    // The exporter is still in its call.
    m_step = Glib::signal_idle().connect([this] {
        if (m_next < m_noteIDs.size()) {
            exportNext();
        } else {
            endAll();
        }
        return false;
    });
}

void ExportSession::writeIntoFolder(const std::string& title, const std::string& bytes) {
    if (const auto error = writeBytes(freePath(title), bytes))
        m_failures.push_back({title, error->description(m_texts)});
}

std::filesystem::path ExportSession::freePath(const std::string& title) {
    std::error_code ignored;
    std::filesystem::path path;
    do {
        path = *m_folder / m_names->next(title);
    } while (distantVolumes::answersFor(path) &&
             std::filesystem::exists(std::filesystem::symlink_status(path, ignored)));
    return path;
}

void ExportSession::endAll() {
    m_exporter.reset();
    if (!m_failures.empty()) return fail(failureText());
    m_cancellable.reset();
    m_changed.emit();
    m_finished.emit();
}

std::string ExportSession::failureText() const {
    std::string text = m_texts.format(
        texts::exportedSome,
        {std::to_string(m_noteIDs.size() - m_failures.size()), std::to_string(m_noteIDs.size())});
    for (std::size_t i = 0; i < m_failures.size() && i < kMostNamed; ++i) {
        const auto& failure = m_failures[i];
        const auto& title = failure.title.empty() ? kUntitledExport : failure.title;
        text += "\n" + title + ": " + failure.reason;
    }
    return m_failures.size() > kMostNamed ? text + "\n…" : text;
}

void ExportSession::fail(const std::string& message) {
    m_cancellable.reset();
    m_errorMessage = message;
    m_changed.emit();
}

bool ExportSession::write(const std::filesystem::path& file) {
    if (const auto error = writeBytes(file, m_bytes)) {
        fail(error->description(m_texts));
        return false;
    }
    m_bytes.clear();
    m_finished.emit();
    return true;
}

std::optional<ExportError> ExportSession::silenceOf(const std::filesystem::path& place) const {
    if (distantVolumes::answersFor(place)) return std::nullopt;
    return ExportError(ExportError::Kind::platformFailed, m_texts(texts::exportFaultSilent));
}

std::optional<ExportError> ExportSession::writeBytes(const std::filesystem::path& file,
                                                     const std::string& bytes) const {
    constexpr auto kBesideAndRename =
        static_cast<GFileSetContentsFlags>(G_FILE_SET_CONTENTS_CONSISTENT);
    if (auto silence = silenceOf(file)) return silence;
    GError* failure = nullptr;
    g_file_set_contents_full(file.c_str(), bytes.data(), static_cast<gssize>(bytes.size()),
                             kBesideAndRename, 0666, &failure);
    const Handle<GError, g_error_free> error(failure);
    if (!error) return std::nullopt;
    return ExportError(ExportError::Kind::fileWriteFailed, m_texts(adviceFor(*error)));
}

}  // namespace corvel
