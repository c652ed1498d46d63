#include "support/ScriptedServer.h"

#include <giomm/cancellable.h>
#include <giomm/inetaddress.h>
#include <giomm/inetsocketaddress.h>
#include <giomm/init.h>
#include <giomm/socketconnection.h>
#include <giomm/tcpconnection.h>
#include <giomm/tlsserverconnection.h>
#include <giomm/tlsserverconnectionimpl.h>
#include <glibmm/main.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <charconv>

namespace corvel {

namespace {

// Below that of the client on the same main loop: a server that sends without end would keep it
// from reading.
constexpr int kPriority = Glib::PRIORITY_LOW;

}  // namespace

/// Reads one request, sends the answer, and notices when the other side goes.
class ScriptedServer::Connection : public std::enable_shared_from_this<Connection> {
public:
    Connection(ScriptedServer& server, Glib::RefPtr<Gio::SocketConnection> socket)
        : m_server(server), m_socket(std::move(socket)), m_stream(m_socket) {
        const int on = 1;
        setsockopt(m_socket->get_socket()->get_fd(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }

    void start() {
        if (m_server.m_certificate) {
            m_stream = Gio::TlsServerConnection::create(m_socket, m_server.m_certificate);
        }
        read();
    }
    void drop() { m_cancellable->cancel(); }

private:
    void read() {
        m_stream->get_input_stream()->read_async(
            m_chunk.data(), m_chunk.size(),
            [self = shared_from_this()](Glib::RefPtr<Gio::AsyncResult>& result) {
                self->arrived(result);
            },
            m_cancellable);
    }

    void arrived(Glib::RefPtr<Gio::AsyncResult>& result) {
        gssize count = 0;
        try {
            count = m_stream->get_input_stream()->read_finish(result);
        } catch (const Glib::Error&) {
            count = 0;
        }
        if (m_cancellable->is_cancelled()) return;
        if (count <= 0) {
            ++m_server.m_left;
            return;
        }
        m_request.append(m_chunk.data(), static_cast<std::size_t>(count));
        if (!m_isAnswered && isWhole()) {
            m_isAnswered = true;
            m_server.m_requests.push_back(m_request);
            m_answer = m_server.m_answer;
            m_rest = m_answer.head + m_answer.bytes;
            write();
        }
        read();
    }

    bool isWhole() const {
        const auto head = m_request.find("\r\n\r\n");
        if (head == m_request.npos) return false;
        const std::string name = "Content-Length: ";
        const auto at = m_request.find(name);
        std::size_t length = 0;
        if (at < head) {
            const char* digits = m_request.data() + at + name.size();
            std::from_chars(digits, m_request.data() + head, length);
        }
        return m_request.size() >= head + 4 + length;
    }

    void write() {
        if (m_rest.empty() && m_answer.times > 1) {
            --m_answer.times;
            m_rest = m_answer.bytes;
        }
        if (m_rest.empty()) {
            if (m_answer.closes) m_socket->close();
            return;
        }
        m_stream->get_output_stream()->write_async(
            m_rest.data(), std::min(m_rest.size(), m_answer.chunk),
            [self = shared_from_this()](Glib::RefPtr<Gio::AsyncResult>& result) {
                self->written(result);
            },
            m_cancellable, kPriority);
    }

    void written(Glib::RefPtr<Gio::AsyncResult>& result) {
        try {
            const auto count = m_stream->get_output_stream()->write_finish(result);
            if (m_cancellable->is_cancelled()) return;
            m_server.m_sentBytes += static_cast<std::size_t>(count);
            m_rest.erase(0, static_cast<std::size_t>(count));
            if (m_answer.pace.count() == 0) return write();
            Glib::signal_timeout().connect_once(
                [self = shared_from_this()] {
                    if (!self->m_cancellable->is_cancelled()) self->write();
                },
                static_cast<unsigned>(m_answer.pace.count()));
        } catch (const Glib::Error&) {
            // The other side has gone, which reading tells as well.
        }
    }

    ScriptedServer& m_server;
    Glib::RefPtr<Gio::SocketConnection> m_socket;
    Glib::RefPtr<Gio::IOStream> m_stream;
    Glib::RefPtr<Gio::Cancellable> m_cancellable = Gio::Cancellable::create();
    std::array<char, 65536> m_chunk{};
    std::string m_request;
    bool m_isAnswered = false;
    Answer m_answer;
    std::string m_rest;
};

ScriptedServer::ScriptedServer(Glib::RefPtr<Gio::TlsCertificate> certificate)
    : m_certificate(std::move(certificate)) {
    Gio::init();
    m_service = Gio::SocketService::create();
    const auto loopback = Gio::InetAddress::create_loopback(Gio::SocketFamily::IPV4);
    Glib::RefPtr<Gio::SocketAddress> address;
    m_service->add_address(Gio::InetSocketAddress::create(loopback, 0), Gio::Socket::Type::STREAM,
                           Gio::Socket::Protocol::TCP, address);
    m_port = std::dynamic_pointer_cast<Gio::InetSocketAddress>(address)->get_port();
    m_service->signal_incoming().connect(
        [this](const Glib::RefPtr<Gio::SocketConnection>& connection,
               const Glib::RefPtr<Glib::Object>&) { return accepted(connection); },
        false);
    m_service->start();
}

ScriptedServer::~ScriptedServer() {
    m_service->stop();
    m_service->close();
    for (const auto& connection : m_connections) {
        connection->drop();
    }
}

std::string ScriptedServer::url() const {
    return (m_certificate ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(m_port);
}

void ScriptedServer::answer(int status, const std::string& body, const std::string& headers) {
    answer({"HTTP/1.1 " + std::to_string(status) + " Status\r\n" + headers +
            "Connection: close\r\n\r\n" + body});
}

std::string ScriptedServer::chunkedHead() {
    return "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
}

std::string ScriptedServer::chunkOf(const std::string& text) {
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), text.size(), 16);
    return std::string(digits.data(), end.ptr) + "\r\n" + text + "\r\n";
}

std::string ScriptedServer::body() const {
    if (m_requests.empty()) return {};
    const auto& request = m_requests.back();
    return request.substr(request.find("\r\n\r\n") + 4);
}

bool ScriptedServer::accepted(const Glib::RefPtr<Gio::SocketConnection>& connection) {
    m_connections.push_back(std::make_shared<Connection>(*this, connection));
    m_connections.back()->start();
    return true;
}

}  // namespace corvel
