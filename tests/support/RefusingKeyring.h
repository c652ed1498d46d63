#pragma once

#include "platform/Handle.h"

#include <gio/gio.h>

#include <vector>

namespace corvel {

/// A password store on the session bus that is locked and has one item. Whenever it would have to
/// be opened it asks its user, who turns the question away.
class RefusingKeyring {
public:
    RefusingKeyring();
    RefusingKeyring(const RefusingKeyring&) = delete;
    RefusingKeyring& operator=(const RefusingKeyring&) = delete;
    ~RefusingKeyring();

    /// How often the user was asked.
    int refusals() const { return m_refusals; }

private:
    void publish(const char* path, GDBusInterfaceInfo* interface);
    void answer(const char* method, GVariant* arguments, GDBusMethodInvocation* invocation);
    void refuse(const char* prompt);

    static void called(GDBusConnection*,
                       const char* sender,
                       const char* path,
                       const char* interface,
                       const char* method,
                       GVariant* arguments,
                       GDBusMethodInvocation* invocation,
                       gpointer self);
    static GVariant* property(GDBusConnection*,
                              const char* sender,
                              const char* path,
                              const char* interface,
                              const char* name,
                              GError** error,
                              gpointer self);

    GObjectHandle<GDBusConnection> m_bus;
    Handle<GDBusNodeInfo, g_dbus_node_info_unref> m_info;
    std::vector<guint> m_objects;
    int m_refusals = 0;
};

}  // namespace corvel
