#include "support/RefusedAttributes.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

namespace {

bool attributesAreRefused = false;

}  // namespace

// Stands before the C library's.
extern "C" int fsetxattr(
    int file, const char* name, const void* value, std::size_t size, int flags) noexcept {
    if (!attributesAreRefused)
        return static_cast<int>(::syscall(SYS_fsetxattr, file, name, value, size, flags));
    errno = ENOTSUP;
    return -1;
}

namespace corvel {

RefusedAttributes::RefusedAttributes() {
    attributesAreRefused = true;
}

RefusedAttributes::~RefusedAttributes() {
    attributesAreRefused = false;
}

}  // namespace corvel
