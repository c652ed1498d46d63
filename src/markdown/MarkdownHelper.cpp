#include "markdown/MarkdownHelper.h"

#include "markdown/MarkdownParserService.h"
#include "platform/FileBytes.h"

#include <sys/resource.h>
#include <unistd.h>

namespace corvel {

namespace {

constexpr rlim_t kMemoryLimit = rlim_t{4} * 1024 * 1024 * 1024;
// The program that started this one keeps the time; this ends a helper whose parent is gone.
constexpr rlim_t kProcessorSeconds = 60;

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

}  // namespace

int runMarkdownHelper() {
    if (kLimitsMemory) limit(RLIMIT_AS, kMemoryLimit);
    limit(RLIMIT_CPU, kProcessorSeconds);
    limit(RLIMIT_CORE, 0);
    const auto markdown = readToEnd(STDIN_FILENO);
    if (!markdown) return 1;
    return writeAll(STDOUT_FILENO, MarkdownParserService::renderBody(*markdown)) ? 0 : 1;
}

}  // namespace corvel
