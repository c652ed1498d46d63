#pragma once

#include "platform/HelperProcess.h"

#include <glibmm/refptr.h>

#include <functional>
#include <string>

namespace Gio {
class Cancellable;
}

namespace corvel {

struct RenderOutcome {
    std::string html;
    bool isPlainText = false;  ///< the text was too much for the parser: `html` is its plain text
};

/// Renders bodies without ever holding up the main loop: what could take long is rendered by this
/// program as a helper process, which is ended when it takes too long.
class GuardedRenderer {
public:
    using Done = std::function<void(RenderOutcome)>;

    /// `executable` must answer `--markdown-helper`.
    explicit GuardedRenderer(std::string executable = kThisProgram);

    /// Calls `done` exactly once, on the main loop, never before this function returns, and also
    /// when `cancellable` (which may be null) was cancelled: the outcome then has no use. The
    /// renderer may be gone by then.
    void render(std::string markdown,
                const Glib::RefPtr<Gio::Cancellable>& cancellable,
                Done done) const;

private:
    std::string m_executable;
};

}  // namespace corvel
