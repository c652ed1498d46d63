#include "ui/OpeningFlow.h"

#include "app/Texts.h"
#include "app/texts/DesktopTexts.h"
#include "ui/Dialogs.h"
#include "ui/FilePaths.h"
#include "ui/ReportView.h"

#include <gtkmm/checkbutton.h>

#include <string>
#include <utility>

namespace corvel {

namespace {

const Text& reason(ExternalFault fault) {
    switch (fault) {
        case ExternalFault::notMarkdown:
            return texts::openFaultNotMarkdown;
        case ExternalFault::elsewhere:
            return texts::openFaultElsewhere;
        case ExternalFault::missing:
            return texts::openFaultMissing;
        case ExternalFault::noPermission:
            return texts::openFaultNoPermission;
        case ExternalFault::notAFile:
            return texts::openFaultPipe;
        case ExternalFault::linkLoop:
            return texts::openFaultLinkLoop;
        case ExternalFault::tooLarge:
            return texts::openFaultTooLarge;
        case ExternalFault::noAnswer:
            return texts::openFaultSilent;
        case ExternalFault::notText:
            return texts::openFaultNoText;
        case ExternalFault::notUtf8:
            return texts::openFaultNotUtf8;
        case ExternalFault::storeFailed:
            return texts::openFaultNotStored;
        case ExternalFault::unreadable:
            break;
    }
    return texts::openFaultNotRead;
}

std::string lastPart(const std::string& name) {
    const auto slash = name.find_last_of('/', name.size() - 2);
    return slash == std::string::npos ? name : name.substr(slash + 1);
}

}  // namespace

OpeningFlow::OpeningFlow(Session& session, Gtk::Window& parent, Toasts& toasts, ImportFlow& import)
    : m_session(session)
    , m_parent(parent)
    , m_toasts(toasts)
    , m_delegate(session.library, session.list, session.preferences, session.notifications) {
    m_delegate.signalAsked().connect([this](const auto& question) { ask(question); });
    m_delegate.signalFolders().connect(
        [&import](const auto& folders) { import.importPaths(folders); });
    m_delegate.signalFinished().connect([this](const auto& report) { finished(report); });
}

void OpeningFlow::ask(const AppDelegate::Question& question) {
    const auto& say = m_session.texts;
    const auto heading =
        question.count == 1
            ? say.format(texts::openFileQuestion, {shownName(question.first)})
            : say.format(texts::openFilesQuestion, {std::to_string(question.count)});
    std::vector<DialogAnswer> answers{{rawValue(ExternalFileUse::ask), say(texts::cancel)}};
    if (question.canPreview)
        answers.push_back({rawValue(ExternalFileUse::preview), say(texts::usePreview)});
    answers.push_back({rawValue(ExternalFileUse::link), say(texts::useLink)});
    answers.push_back(
        {rawValue(ExternalFileUse::import), say(texts::useImport), DialogAnswer::Look::suggested});
    auto* remember = Gtk::make_managed<Gtk::CheckButton>(say(texts::rememberUse));
    remember->set_halign(Gtk::Align::CENTER);
    remember->set_tooltip_text(say(texts::rememberUseDetail));
    corvel::ask(
        m_parent,
        {heading, say(texts::openFileDetail), std::move(answers),
         rawValue(ExternalFileUse::import)},
        [this, remember](const std::string& id) {
            const auto use = externalFileUseFrom(id);
            if (use != ExternalFileUse::ask && remember->get_active())
                m_session.preferences.setOpenExternalFiles(use);
            m_delegate.answer(use);
        },
        remember);
}

void OpeningFlow::finished(const AppDelegate::Report& report) {
    if (report.lastNoteID) {
        m_session.reveal(*report.lastNoteID);
        if (onShown) onShown();
    }
    if (!report.problems.empty()) tellProblems(report.problems);
}

void OpeningFlow::tellProblems(const std::vector<ExternalProblem>& problems) {
    const auto& say = m_session.texts;
    const auto& first = problems.front();
    const auto news =
        problems.size() == 1
            ? say.format(texts::fileNotOpened, {lastPart(first.name), say(reason(first.fault))})
            : say.format(texts::filesNotOpened, {std::to_string(problems.size())});
    m_toasts.show(news, say(texts::details), [this, problems] { showProblems(problems); });
}

void OpeningFlow::showProblems(const std::vector<ExternalProblem>& problems) {
    const auto& say = m_session.texts;
    ReportSection section;
    for (const auto& problem : problems) {
        section.lines.push_back({problem.name, say(reason(problem.fault))});
    }
    corvel::ask(
        m_parent, {say(texts::filesNotOpenedTitle), {}, {{"close", say(texts::close)}}},
        [](const std::string&) {}, makeReportView({section}));
}

}  // namespace corvel
