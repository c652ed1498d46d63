#pragma once

#include <sigc++/connection.h>

#include <utility>

namespace corvel {

/// A sigc++ connection that is cut when its owner dies. Movable, not copyable.
class ScopedConnection {
public:
    ScopedConnection() = default;
    ScopedConnection(const sigc::connection& connection) : m_connection(connection) {}
    ScopedConnection(ScopedConnection&& other) noexcept
        : m_connection(std::exchange(other.m_connection, {})) {}
    ScopedConnection& operator=(ScopedConnection&& other) noexcept {
        if (this != &other) {
            m_connection.disconnect();
            m_connection = std::exchange(other.m_connection, {});
        }
        return *this;
    }
    ScopedConnection(const ScopedConnection&) = delete;
    ScopedConnection& operator=(const ScopedConnection&) = delete;
    ~ScopedConnection() { m_connection.disconnect(); }

    void disconnect() { m_connection.disconnect(); }
    bool connected() const { return m_connection.connected(); }

private:
    sigc::connection m_connection;
};

}  // namespace corvel
