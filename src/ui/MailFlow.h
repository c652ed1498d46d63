#pragma once

#include "app/EmailDraft.h"
#include "app/Session.h"
#include "ui/Toasts.h"

#include <gtkmm/window.h>

namespace corvel {

/// Hands messages to the user's mail program.
class MailFlow {
public:
    MailFlow(Session& session, Toasts& toasts);  // must outlive the flow

    /// The open note as a new message. Does nothing where no program takes messages.
    void sendNote();
    /// A message to the maker with the program's version.
    void reportProblem();

private:
    Session& m_session;
    Toasts& m_toasts;
    EmailDraft m_draft;
};

}  // namespace corvel
