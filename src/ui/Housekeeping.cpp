#include "ui/Housekeeping.h"

#include "platform/Log.h"
#include "platform/StoreError.h"

#include <glibmm/main.h>

#include <chrono>
#include <string>

namespace corvel {

namespace {

constexpr std::chrono::milliseconds kSlice{4};

}  // namespace

// The first slice is done at once: what no text needs is decided before anything can be edited.
void Housekeeping::start() {
    if (!workOnce()) return;
    m_work = Glib::signal_idle().connect([this] { return workOnce(); }, Glib::PRIORITY_LOW);
}

bool Housekeeping::workOnce() {
    try {
        return m_attachments.work(kSlice);
    } catch (const StoreError& error) {
        logLine(std::string("Error sweeping attachments: ") + error.what());
        return false;
    }
}

}  // namespace corvel
