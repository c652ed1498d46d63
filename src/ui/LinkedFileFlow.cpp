#include "ui/LinkedFileFlow.h"

#include "app/LinkFaultText.h"
#include "app/Texts.h"
#include "app/texts/LinkedFileTexts.h"
#include "export/ExportFileName.h"
#include "ui/Dialogs.h"
#include "ui/DifferenceView.h"

#include <gtkmm/filefilter.h>

#include <array>
#include <utility>

namespace corvel {

namespace {

constexpr std::array kPatterns{"*.md", "*.markdown", "*.mdown", "*.mkd", "*.txt"};
constexpr int kDifferenceWidth = 640;
constexpr int kDifferenceHeight = 320;

// What a file system takes, whatever the title is.
std::string fileNameFor(const std::string& title) {
    const std::filesystem::path name = ExportFileNames(ExportFormat::txt).next(title);
    return std::filesystem::path(name).replace_extension(".md").string();
}

}  // namespace

LinkedFileFlow::LinkedFileFlow(Session& session, Gtk::Window& window, Toasts& toasts, Import import)
    : m_session(session), m_window(window), m_toasts(toasts), m_import(std::move(import)) {
    m_connections.emplace_back(
        session.list.signalLocalFileOpened().connect([this](const LinkOutcome& outcome) {
            if (outcome.refusal) report({*outcome.refusal});
            if (outcome.noteID) show(*outcome.noteID);
        }));
    m_connections.emplace_back(
        session.linkedFile.signalLeftUnwritten().connect([this](const LinkState& state) {
            m_toasts.show(m_session.texts.format(
                texts::leftUnwritten,
                {shownName(state.path), reasonOf(state.error.value(), m_session.texts)}));
        }));
}

void LinkedFileFlow::choose(const Text& title,
                            const Text& verb,
                            Gtk::FileChooser::Action action,
                            Chosen chosen) {
    const auto& say = m_session.texts;
    m_chooser =
        Gtk::FileChooserNative::create(say(title), m_window, action, say(verb), say(texts::cancel));
    m_chooser->set_modal(true);
    addFilters();
    m_chooser->signal_response().connect([this, chosen = std::move(chosen)](int response) {
        const auto held = std::exchange(m_chooser, {});
        held->hide();
        if (response == GTK_RESPONSE_ACCEPT) chosen(chosenFiles(*held));
    });
}

void LinkedFileFlow::addFilters() const {
    const auto markdown = Gtk::FileFilter::create();
    markdown->set_name(m_session.texts(texts::markdownFiles));
    for (const auto* pattern : kPatterns)
        markdown->add_pattern(pattern);
    const auto all = Gtk::FileFilter::create();
    all->set_name(m_session.texts(texts::allFiles));
    all->add_pattern("*");
    m_chooser->add_filter(markdown);
    m_chooser->add_filter(all);
}

void LinkedFileFlow::chooseFiles() {
    choose(texts::openFiles, texts::openVerb, Gtk::FileChooser::Action::OPEN,
           [this](const FilePaths& paths) { open(paths); });
    m_chooser->set_select_multiple(true);
    m_chooser->show();
}

void LinkedFileFlow::open(const FilePaths& paths) {
    std::vector<LinkError> refusals;
    std::optional<Uuid> last;
    for (const auto& path : paths) {
        auto outcome = m_session.list.findOrCreateLocalFileNote(path);
        if (outcome.noteID) last = outcome.noteID;
        if (outcome.refusal) refusals.push_back(*std::move(outcome.refusal));
    }
    if (last) show(*last);
    report(refusals);
}

void LinkedFileFlow::show(const Uuid& id) {
    m_session.reveal(id);
    if (onShown) onShown();
}

void LinkedFileFlow::report(const std::vector<LinkError>& refusals) {
    if (refusals.empty()) return;
    const auto& say = m_session.texts;
    FilePaths importable;
    std::string list;
    for (const auto& refusal : refusals) {
        if (canBeImported(refusal)) importable.push_back(refusal.path());
        list +=
            (list.empty() ? "" : "\n") + shownName(refusal.path()) + ": " + reasonOf(refusal, say);
    }
    Question question{say(texts::cannotOpenFiles), list, {{"close", say(texts::close)}}};
    if (refusals.size() == 1) {
        const auto& only = refusals.front();
        question.heading = say.format(texts::cannotOpenFile, {shownName(only.path()), ""});
        question.heading.erase(question.heading.find_last_not_of(": ") + 1);
        question.body = reasonOf(only, say);
    }
    if (!importable.empty()) {
        question.answers.push_back(
            {"import", say(texts::importVerb), DialogAnswer::Look::suggested});
    }
    ask(m_window, question, [this, importable](const std::string& answer) {
        if (answer == "import") m_import(importable);
    });
}

void LinkedFileFlow::saveAs() {
    const auto& id = m_session.state.selectedNoteID.get();
    if (!id || !m_session.editor.save()) return;
    choose(texts::saveLocalFile, texts::saveVerb, Gtk::FileChooser::Action::SAVE,
           [this, id = *id](const FilePaths& paths) {
               if (!paths.empty()) upgrade(id, paths.front());
           });
    m_chooser->set_current_name(fileNameFor(m_session.editor.title()));
    m_chooser->show();
}

void LinkedFileFlow::upgrade(const Uuid& id, const std::filesystem::path& path) {
    if (!m_session.editor.save()) return;
    const auto outcome = m_session.list.upgradeToLocalFile(id, path);
    reportUnsaved(outcome);
    if (outcome.noteID)
        m_toasts.show(m_session.texts.format(texts::savedToFile, {shownName(path)}));
}

void LinkedFileFlow::reportUnsaved(const LinkOutcome& outcome) {
    if (!outcome.refusal) return;
    const auto& say = m_session.texts;
    m_toasts.show(say.format(texts::cannotSaveFile, {shownName(outcome.refusal->path()),
                                                     reasonOf(*outcome.refusal, say)}));
}

void LinkedFileFlow::stopTracking() {
    const auto& note = m_session.editor.note();
    if (!note || !note->sourceFilePath || !m_session.editor.save()) return;
    const std::filesystem::path path = *note->sourceFilePath;
    const Uuid id = note->id;
    m_session.list.stopTracking({id});
    const auto& say = m_session.texts;
    m_toasts.show(say.format(texts::trackingStopped, {shownName(path)}), say(texts::undo),
                  [this, id, path] { reportUnsaved(m_session.list.relinkLocalFile(id, path)); });
}

void LinkedFileFlow::showInFolder() {
    const auto& note = m_session.editor.note();
    if (note && note->sourceFilePath) corvel::showInFolder(*note->sourceFilePath);
}

void LinkedFileFlow::compare() {
    const auto seen = m_session.linkedFile.versions();
    if (!seen) return;
    const auto& say = m_session.texts;
    auto& difference = *Gtk::make_managed<DifferenceView>(say);
    difference.set_size_request(kDifferenceWidth, kDifferenceHeight);
    difference.show(seen->mine, seen->theirs);
    ask(
        m_window,
        {say(texts::whichVersion),
         say(texts::whichVersionDetail),
         {{"cancel", say(texts::cancel)},
          {"mine", say(texts::keepMine)},
          {"theirs", say(texts::takeTheirs)},
          {"both", say(texts::keepBoth), DialogAnswer::Look::suggested}}},
        [this, seen = *seen](const std::string& answer) { decide(answer, seen); }, &difference);
}

void LinkedFileFlow::decide(const std::string& answer, const Versions& seen) {
    auto& file = m_session.linkedFile;
    const bool isDone = answer == "mine"     ? file.keepMine(seen)
                        : answer == "theirs" ? file.takeTheirs(seen)
                        : answer == "both"   ? file.keepBoth(seen)
                                             : true;
    if (!isDone && file.state().kind == LinkState::Kind::conflict)
        m_toasts.show(m_session.texts(texts::changedAgain));
}

void LinkedFileFlow::locate() {
    choose(texts::locateFile, texts::openVerb, Gtk::FileChooser::Action::OPEN,
           [this](const FilePaths& paths) {
               if (paths.empty()) return;
               const auto outcome = m_session.linkedFile.locate(paths.front());
               if (outcome.refusal) report({*outcome.refusal});
           });
    m_chooser->show();
}

void LinkedFileFlow::saveAgain() {
    reportUnsaved(m_session.linkedFile.writeAgain());
}

}  // namespace corvel
