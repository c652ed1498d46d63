#include "platform/Log.h"

#include <cstdio>
#include <cstdlib>

namespace corvel {

namespace {

void (*fatalHandler)(std::string_view) = nullptr;

void writeLine(std::FILE* stream, std::string_view line) {
    std::fwrite(line.data(), 1, line.size(), stream);
    std::fputc('\n', stream);
    std::fflush(stream);
}

}  // namespace

void logLine(std::string_view line) {
    writeLine(stdout, line);
}

void fatalStop(std::string_view message) {
    writeLine(stdout, message);
    writeLine(stderr, message);
    if (fatalHandler != nullptr) fatalHandler(message);
    std::_Exit(EXIT_FAILURE);
}

void onFatalStop(void (*handler)(std::string_view message)) {
    fatalHandler = handler;
}

}  // namespace corvel
