#pragma once

#include <string_view>

namespace corvel {

/// Writes one line of plain text to standard output and flushes it.
void logLine(std::string_view line);

/// Prints `message` to standard output and standard error and ends the process with status 1. A
/// handler set with `onFatalStop` is called first, so that a window can show the message.
[[noreturn]] void fatalStop(std::string_view message);
void onFatalStop(void (*handler)(std::string_view message));

}  // namespace corvel
