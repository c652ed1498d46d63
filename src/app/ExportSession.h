#pragma once

#include "app/settings/Localisation.h"
#include "export/ExportError.h"
#include "export/ExportFileName.h"
#include "export/Exporter.h"
#include "platform/ScopedConnection.h"
#include "platform/Uuid.h"
#include "themes/ThemeManager.h"

#include <sigc++/signal.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvel {

/// What the export sheet shows and does, without its widgets: the options, and the running export
/// of one note or of several into a folder. One sheet, one session.
class ExportSession {
public:
    using ExporterMaker = std::function<std::unique_ptr<Exporter>(ExportFormat)>;
    using NoteSource = std::function<std::optional<Note>(const Uuid&)>;

    /// The managers must outlive the session. `noteIDs` must not be empty.
    ExportSession(ThemeManager& themes,
                  const Localisation& texts,
                  ExporterMaker makeExporter,
                  NoteSource notes,
                  std::vector<Uuid> noteIDs);
    ~ExportSession();

    ExportOptions options;

    bool hasSeveral() const { return m_noteIDs.size() > 1; }
    std::size_t count() const { return m_noteIDs.size(); }
    std::size_t doneCount() const { return m_next; }
    /// Title of the first note, as stored.
    const std::string& title() const { return m_title; }
    bool isExporting() const { return m_cancellable != nullptr; }
    const std::string& errorMessage() const { return m_errorMessage; }

    /// Exports the one note; `signalReady` or a message follows.
    void start();
    /// Exports all notes into `folder`, beside what is there; `signalFinished` or a message
    /// follows.
    void startInto(const std::filesystem::path& folder);
    /// Ends the running export without a message; files that were written whole stay.
    void cancel();

    /// The name to offer for the one note.
    std::string suggestedName() const { return suggestedFileName(m_title, options.format); }
    /// Writes what is ready, beside and renamed: a failure leaves what was there before, and sets
    /// the message.
    bool write(const std::filesystem::path& file);

    /// Exporting, progress or message changed.
    sigc::signal<void()>& signalChanged() { return m_changed; }
    /// The one note is exported and waits for a place.
    sigc::signal<void()>& signalReady() { return m_ready; }
    /// Everything is written.
    sigc::signal<void()>& signalFinished() { return m_finished; }

private:
    struct Failure {
        std::string title;
        std::string reason;
    };

    void begin();
    void exportNext();
    void exported(const std::string& title, const ExportOutcome& outcome);
    void writeIntoFolder(const std::string& title, const std::string& bytes);
    std::filesystem::path freePath(const std::string& title);
    void endAll();
    void fail(const std::string& message);
    /// None when the volume of `place` answers.
    std::optional<ExportError> silenceOf(const std::filesystem::path& place) const;
    /// None when they are written.
    std::optional<ExportError> writeBytes(const std::filesystem::path& file,
                                          const std::string& bytes) const;
    std::string failureText() const;

    ThemeManager& m_themes;
    const Localisation& m_texts;
    ExporterMaker m_makeExporter;
    NoteSource m_notes;
    std::vector<Uuid> m_noteIDs;
    std::string m_title;

    std::unique_ptr<Exporter> m_exporter;
    Glib::RefPtr<Gio::Cancellable> m_cancellable;  // of the running export
    std::size_t m_next = 0;
    std::optional<std::filesystem::path> m_folder;
    std::optional<ExportFileNames> m_names;
    std::vector<Failure> m_failures;
    std::string m_bytes;
    std::string m_errorMessage;
    ScopedConnection m_step;
    sigc::signal<void()> m_changed;
    sigc::signal<void()> m_ready;
    sigc::signal<void()> m_finished;
};

}  // namespace corvel
