#pragma once

#include <giomm/socketservice.h>
#include <giomm/tlscertificate.h>

#include <chrono>
#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace corvel {

/// A server on this machine that answers every request with the bytes it was given, on the main
/// loop. It speaks no HTTP of its own, so it can break off, stall or send nonsense anywhere.
class ScriptedServer {
public:
    /// How an answer is sent.
    struct Answer {
        std::string bytes;
        std::size_t chunk = 65536;  ///< bytes of each write
        std::size_t times = 1;      ///< how often `bytes` is sent, after `head`
        std::string head = {};
        bool closes = true;                 ///< afterwards; else the server falls silent
        std::chrono::milliseconds pace{0};  ///< between two writes
    };

    /// With a certificate it expects TLS.
    explicit ScriptedServer(Glib::RefPtr<Gio::TlsCertificate> certificate = {});
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;
    ~ScriptedServer();

    /// "http://127.0.0.1:1234"
    std::string url() const;
    void answer(Answer answer) { m_answer = std::move(answer); }
    /// A whole answer: status line, headers, body up to the end of the connection.
    void answer(int status, const std::string& body, const std::string& headers = {});
    /// The beginning of an answer with status 200 whose body comes in chunks.
    static std::string chunkedHead();
    static std::string chunkOf(const std::string& text);

    /// The requests as they came, head and body.
    const std::vector<std::string>& requests() const { return m_requests; }
    std::string body() const;
    std::size_t sentBytes() const { return m_sentBytes; }
    /// Connections that the other side has left.
    int leftConnections() const { return m_left; }

private:
    class Connection;

    bool accepted(const Glib::RefPtr<Gio::SocketConnection>& connection);

    Glib::RefPtr<Gio::SocketService> m_service;
    Glib::RefPtr<Gio::TlsCertificate> m_certificate;
    int m_port = 0;
    Answer m_answer;
    std::vector<std::string> m_requests;
    std::size_t m_sentBytes = 0;
    int m_left = 0;
    std::list<std::shared_ptr<Connection>> m_connections;
};

}  // namespace corvel
