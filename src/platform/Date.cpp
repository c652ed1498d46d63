#include "platform/Date.h"

#include <chrono>

namespace corvel {

Date Date::now() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return {std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count()};
}

}  // namespace corvel
