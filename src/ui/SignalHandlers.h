#pragma once

#include <glib-object.h>

#include <vector>

namespace corvel {

/// Handlers of one GObject's signals that are taken off when this dies or another object is
/// followed. The object is kept alive meanwhile.
class SignalHandlers {
public:
    SignalHandlers() = default;
    SignalHandlers(const SignalHandlers&) = delete;
    SignalHandlers& operator=(const SignalHandlers&) = delete;
    ~SignalHandlers() { clear(); }

    /// Follows `object` from now on, and nothing else.
    void follow(gpointer object) {
        clear();
        m_object = g_object_ref(object);
    }
    void connect(const char* signal, GCallback handler, gpointer data, GConnectFlags flags = {}) {
        m_ids.push_back(g_signal_connect_data(m_object, signal, handler, data, nullptr, flags));
    }
    void clear() {
        if (m_object == nullptr) return;
        for (const auto id : m_ids)
            g_signal_handler_disconnect(m_object, id);
        m_ids.clear();
        g_clear_object(&m_object);
    }

private:
    gpointer m_object = nullptr;
    std::vector<gulong> m_ids;
};

}  // namespace corvel
