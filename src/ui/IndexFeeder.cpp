#include "ui/IndexFeeder.h"

#include "platform/Log.h"
#include "platform/StoreError.h"

#include <glibmm/main.h>

#include <chrono>
#include <string>

namespace corvel {

namespace {

constexpr std::chrono::milliseconds kSlice{4};
constexpr std::chrono::seconds kRest{10};

}  // namespace

void IndexFeeder::start() {
    m_work = Glib::signal_idle().connect([this] { return workOnce(); }, Glib::PRIORITY_LOW);
}

bool IndexFeeder::workOnce() {
    try {
        if (m_index.work(kSlice) || m_palette.readAhead()) return true;
    } catch (const StoreError& error) {
        logLine(std::string("Error indexing notes: ") + error.what());
    }
    rest();
    return false;
}

void IndexFeeder::rest() {
    m_work = Glib::signal_timeout().connect_seconds(
        [this] {
            start();
            return false;
        },
        static_cast<unsigned>(kRest.count()));
}

}  // namespace corvel
