#pragma once

#include "export/ExportOptions.h"

#include <set>
#include <string>

namespace corvel {

inline constexpr const char* kUntitledExport = "Untitled";

/// The name offered for one note: its title as it stands, or "Untitled", with the format's
/// extension.
std::string suggestedFileName(const std::string& title, ExportFormat format);

/// Names for several notes in one folder: what a file system refuses ("/" and NUL, names of dots
/// alone, names over 255 bytes) is replaced, and a number is added where a name was given before,
/// also when the names differ in case only.
class ExportFileNames {
public:
    explicit ExportFileNames(ExportFormat format) : m_format(format) {}

    std::string next(const std::string& title);

private:
    ExportFormat m_format;
    std::set<std::string> m_taken;  // case folded
};

}  // namespace corvel
