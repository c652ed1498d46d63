#include "platform/gtk/WebLibrary.h"

#include "platform/Log.h"

#include <dlfcn.h>

#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <string>

// Each function of WebKit that the program calls (listed by the build, see cmake/WebCalls.cmake)
// becomes one that jumps to where its slot points, whatever its parameters.
#if defined(__x86_64__)
#define CORVEL_JUMP(index) "\tjmp *corvel_web_slots+8*" #index "(%rip)\n"
#elif defined(__aarch64__)
#define CORVEL_JUMP(index)                             \
    "\tadrp x16, corvel_web_slots+8*" #index           \
    "\n"                                               \
    "\tadd x16, x16, :lo12:corvel_web_slots+8*" #index \
    "\n"                                               \
    "\tldr x16, [x16]\n\tbr x16\n"
#else
#error "No jump for this processor: link the program to WebKit instead"
#endif
#define CORVEL_WEB_CALL(name, index)                                                       \
    __asm__(".text\n\t.p2align 4\n\t.globl " #name "\n\t.hidden " #name "\n\t.type " #name \
            ", %function\n" #name ":\n" CORVEL_JUMP(index));
#include CORVEL_WEB_CALLS
#undef CORVEL_WEB_CALL

namespace {

constexpr const char* kLibrary = "libwebkitgtk-6.0.so.4";

constexpr const char* kNames[] = {
#define CORVEL_WEB_CALL(name, index) #name,
#include CORVEL_WEB_CALLS
#undef CORVEL_WEB_CALL
    nullptr,
};
constexpr std::size_t kCount = std::size(kNames) - 1;

}  // namespace

extern "C" {
// The assembler above knows it by this name.
__attribute__((
    visibility("hidden"),
    used)) void* corvel_web_slots[std::size(kNames)];  // NOLINT(readability-identifier-naming)
}

namespace corvel::weblibrary {

namespace {

[[noreturn]] void fail() {
    logLine(std::string("WebKit cannot be loaded: ") + dlerror());
    std::abort();
}

bool fillSlots() {
    void* library = dlopen(kLibrary, RTLD_LAZY | RTLD_GLOBAL);
    if (library == nullptr) fail();
    for (std::size_t index = 0; index < kCount; ++index) {
        corvel_web_slots[index] = dlsym(library, kNames[index]);
        if (corvel_web_slots[index] == nullptr) fail();
    }
    return true;
}

}  // namespace

void load() {
    [[maybe_unused]] static const bool isLoaded = fillSlots();
}

}  // namespace corvel::weblibrary
