#include "markdown/MarkdownHelper.h"

#include "markdown/MarkdownParserService.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace corvel {

namespace {

constexpr rlim_t kMemoryLimit = rlim_t{4} * 1024 * 1024 * 1024;
// The program that started this one keeps the time; this ends a helper whose parent is gone.
constexpr rlim_t kProcessorSeconds = 60;
constexpr std::size_t kChunk = std::size_t{256} * 1024;

// A sanitizer reserves terabytes of addresses: the limit on them is left alone there.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kLimitsMemory = false;
#else
constexpr bool kLimitsMemory = true;
#endif

void limit(decltype(RLIMIT_AS) resource, rlim_t most) {
    const rlimit values{most, most};
    setrlimit(resource, &values);
}

bool readAll(std::string& text) {
    for (;;) {
        const std::size_t size = text.size();
        text.resize(size + kChunk);
        const ssize_t count = read(STDIN_FILENO, text.data() + size, kChunk);
        text.resize(size + static_cast<std::size_t>(count > 0 ? count : 0));
        if (count == 0) return true;
        if (count < 0 && errno != EINTR) return false;
    }
}

bool writeAll(std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = write(STDOUT_FILENO, text.data(), text.size());
        if (count < 0 && errno != EINTR) return false;
        if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

}  // namespace

int runMarkdownHelper() {
    if (kLimitsMemory) limit(RLIMIT_AS, kMemoryLimit);
    limit(RLIMIT_CPU, kProcessorSeconds);
    limit(RLIMIT_CORE, 0);
    std::string markdown;
    if (!readAll(markdown)) return 1;
    return writeAll(MarkdownParserService::renderBody(markdown)) ? 0 : 1;
}

}  // namespace corvel
