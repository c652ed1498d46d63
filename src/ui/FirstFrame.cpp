#include "ui/FirstFrame.h"

#include "platform/Log.h"

#include <gdk/gdk.h>
#include <gtk/gtk.h>
#include <time.h>

#include <cstdlib>
#include <string>

namespace corvel {

namespace {

std::int64_t monotonicNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

void afterPaint(GdkFrameClock* clock, gpointer) {
    g_signal_handlers_disconnect_by_func(clock, reinterpret_cast<gpointer>(afterPaint), nullptr);
    logLine("first-frame " + std::to_string(monotonicNanoseconds()));
}

}  // namespace

void reportFirstFrame(Gtk::Window& window) {
    if (std::getenv("CORVEL_FIRST_FRAME") == nullptr) return;
    window.signal_map().connect([&window] {
        GdkFrameClock* clock = gtk_widget_get_frame_clock(GTK_WIDGET(window.gobj()));
        if (clock != nullptr)
            g_signal_connect(clock, "after-paint", G_CALLBACK(afterPaint), nullptr);
    });
}

}  // namespace corvel
