#pragma once

namespace corvel {

inline constexpr const char* kMarkdownHelperOption = "--markdown-helper";

/// The program as a helper process: reads Markdown from standard input to its end and writes the
/// body's HTML to standard output. Limits its own memory and time, so that a text which would take
/// too much ends this process alone. Returns the exit status: 0 when all was written.
int runMarkdownHelper();

}  // namespace corvel
