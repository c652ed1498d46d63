#include "ui/MailFlow.h"

#include "app/Texts.h"
#include "app/texts/MailTexts.h"
#include "platform/Log.h"
#include "platform/Paths.h"
#include "platform/Version.h"
#include "ui/ToolkitLanguage.h"

#include <giomm/appinfo.h>
#include <giomm/file.h>
#include <glibmm/error.h>
#include <glibmm/uriutils.h>

namespace corvel {

namespace {

constexpr const char* kMessageType = "message/rfc822";

void open(const std::filesystem::path& message, const Glib::RefPtr<Gio::AppInfo>& program) {
    try {
        program->launch(Gio::File::create_for_path(message.string()), sessionLaunchContext());
    } catch (const Glib::Error& error) {
        logLine(std::string("Error opening message: ") + error.what());
    }
}

std::string escaped(const std::string& text) {
    return Glib::uri_escape_string(text, {}, false);
}

}  // namespace

MailFlow::MailFlow(Session& session, Toasts& toasts)
    : m_session(session), m_toasts(toasts), m_draft(session.parser, paths::messages()) {
    m_draft.sweep();
}

void MailFlow::sendNote() {
    const auto note = m_session.editor.current();
    const auto program = Gio::AppInfo::get_default_for_type(kMessageType, false);
    if (!note || !program) return;
    const std::string subject =
        note->title.empty() ? std::string(m_session.texts(texts::untitled)) : note->title;
    m_draft.write(*note, subject, m_session.themes.currentTheme(),
                  [program](const std::optional<std::filesystem::path>& message) {
                      if (message) open(*message, program);
                  });
}

void MailFlow::reportProblem() {
    const auto& texts = m_session.texts;
    const std::string address = texts::supportAddress;
    const std::string body = texts.format(texts::problemBody, {version()});
    const std::string uri = "mailto:" + address +
                            "?subject=" + escaped(texts(texts::problemSubject)) +
                            "&body=" + escaped(body);
    try {
        if (Gio::AppInfo::launch_default_for_uri(uri, sessionLaunchContext())) return;
    } catch (const Glib::Error& error) {
        logLine(std::string("Error opening message: ") + error.what());
    }
    m_toasts.show(texts.format(texts::noMailProgram, {address}));
}

}  // namespace corvel
