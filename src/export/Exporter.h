#pragma once

#include "export/ExportError.h"
#include "export/ExportOptions.h"
#include "model/Note.h"
#include "themes/Theme.h"

#include <giomm/cancellable.h>

#include <functional>
#include <string>
#include <variant>

namespace corvel {

/// The complete file, or why there is none.
using ExportOutcome = std::variant<std::string, ExportError>;

/// Turns a note into one format. It returns bytes; writing them is its caller's.
class Exporter {
public:
    using Done = std::function<void(ExportOutcome)>;

    virtual ~Exporter() = default;

    virtual ExportFormat supportedFormat() const = 0;

    /// Calls `done` exactly once, on the main loop, never before this function returns; not at all
    /// once `cancellable` (never null) was cancelled, and what the export made on the way is then
    /// removed. The exporter must live until one of the two.
    virtual void exportNote(const Note& note,
                            const ExportOptions& options,
                            const Theme& theme,
                            const Glib::RefPtr<Gio::Cancellable>& cancellable,
                            Done done) = 0;
};

}  // namespace corvel
