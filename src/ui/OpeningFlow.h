#pragma once

#include "app/AppDelegate.h"
#include "app/Session.h"
#include "ui/ImportFlow.h"
#include "ui/Toasts.h"

#include <gtkmm/window.h>

#include <functional>
#include <string>
#include <vector>

namespace corvel {

/// Files from outside, whichever way they come: by the desktop or dropped on the window. Asks once
/// what is to be done with them, and tells in one place what was not opened, and why.
class OpeningFlow {
public:
    /// All must outlive the flow.
    OpeningFlow(Session& session, Gtk::Window& parent, Toasts& toasts, ImportFlow& import);

    /// A note that mirrors one of the files is shown.
    std::function<void()> onShown;

    /// `addresses` are of files that do not lie on this machine.
    void open(const AppDelegate::Paths& paths, const std::vector<std::string>& addresses = {}) {
        m_delegate.open(paths, addresses);
    }

private:
    void ask(const AppDelegate::Question& question);
    void finished(const AppDelegate::Report& report);
    void tellProblems(const std::vector<ExternalProblem>& problems);
    void showProblems(const std::vector<ExternalProblem>& problems);

    Session& m_session;
    Gtk::Window& m_parent;
    Toasts& m_toasts;
    AppDelegate m_delegate;
};

}  // namespace corvel
