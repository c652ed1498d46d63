#include "platform/Version.h"

namespace corvel {

const char* version() {
    return CORVEL_VERSION;
}

}  // namespace corvel
