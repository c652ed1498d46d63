#include "platform/MainThread.h"

#include "platform/Log.h"

#include <thread>

namespace corvel {

namespace {
std::thread::id mainThread;
}

void claimMainThread() {
    mainThread = std::this_thread::get_id();
}

void checkMainThread() {
    if (mainThread == std::thread::id{}) claimMainThread();
    if (mainThread != std::this_thread::get_id()) {
        fatalStop("The store was used outside the main thread");
    }
}

}  // namespace corvel
