#pragma once

#include "platform/Handle.h"
#include "support/MainLoop.h"

#include <gio/gio.h>
#include <gtest/gtest.h>
#include <gtkmm/window.h>

namespace corvel {

/// Types a key as somebody at the keyboard does, once the window has it.
inline void pressKey(const Gtk::Window& window, const char* key) {
    ASSERT_TRUE(turnUntil([&] { return window.is_active(); }));
    GError* error = nullptr;
    const GObjectHandle<GSubprocess> program(
        g_subprocess_new(G_SUBPROCESS_FLAGS_NONE, &error, "xdotool", "key", key, nullptr));
    const Handle<GError, g_error_free> failure(error);
    ASSERT_TRUE(program) << failure->message;
    ASSERT_TRUE(turnUntil([&] { return g_subprocess_get_identifier(program.get()) == nullptr; }))
        << key;
}

}  // namespace corvel
