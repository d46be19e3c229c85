// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/FaultServer.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <optional>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace relay::test {

namespace {

// A request with its body, or the start of a TLS greeting; nothing if the client leaves before it is
// complete.
std::optional<std::string> readRequest(int descriptor) {
    std::string text;
    char buffer[4096];
    std::size_t whole = std::string::npos;
    while (text.size() < whole) {
        const ssize_t count = ::recv(descriptor, buffer, sizeof buffer, 0);
        if (count <= 0) return std::nullopt;
        text.append(buffer, static_cast<std::size_t>(count));
        if (text.front() == '\x16') break;  // a TLS greeting
        const std::size_t end = text.find("\r\n\r\n");
        if (end == std::string::npos) continue;
        static constexpr std::string_view kLength = "\r\nContent-Length: ";
        const std::size_t length = text.find(kLength);
        whole = end + 4 + (length < end ? std::stoul(text.substr(length + kLength.size())) : 0);
    }
    return text;
}

}  // namespace

std::string FaultServer::Peer::path() const {
    const std::size_t start = request.find(' ') + 1;
    return request.substr(start, request.find(' ', start) - start);
}

bool FaultServer::Peer::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::send(m_descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void FaultServer::Peer::waitForClose() {
    char buffer[256];
    while (::recv(m_descriptor, buffer, sizeof buffer, 0) > 0) {
    }
}

void FaultServer::Peer::reset() {
    const linger abrupt{1, 0};
    ::setsockopt(m_descriptor, SOL_SOCKET, SO_LINGER, &abrupt, sizeof abrupt);
}

FaultServer::FaultServer(Script script) : m_script(std::move(script)) {
    m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (m_listener < 0 || ::bind(m_listener, generic, length) != 0 || ::listen(m_listener, 512) != 0 ||
        ::getsockname(m_listener, generic, &length) != 0)
        throw std::runtime_error(std::string("no server: ") + std::strerror(errno));
    m_port = ntohs(address.sin_port);
    m_acceptor = std::thread([this] { accept(); });
}

FaultServer::~FaultServer() {
    {
        const std::lock_guard guard(m_lock);
        m_stopping = true;
        for (const int descriptor : m_open) ::shutdown(descriptor, SHUT_RDWR);
    }
    ::shutdown(m_listener, SHUT_RDWR);
    m_acceptor.join();
    for (std::thread& thread : m_threads) thread.join();
    ::close(m_listener);
}

void FaultServer::accept() {
    while (true) {
        const int descriptor = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        const std::lock_guard guard(m_lock);
        if (m_stopping || descriptor < 0) {
            if (descriptor >= 0) ::close(descriptor);
            return;
        }
        ++m_connections;
        m_open.push_back(descriptor);
        m_threads.emplace_back([this, descriptor] { serve(descriptor); });
    }
}

void FaultServer::serve(int descriptor) {
    if (auto request = readRequest(descriptor)) {
        Peer peer(descriptor, *std::move(request));
        {
            const std::lock_guard guard(m_lock);
            m_requests.push_back(peer.request);
        }
        m_script(peer);
    }
    const std::lock_guard guard(m_lock);
    std::erase(m_open, descriptor);
    ::close(descriptor);
}

std::string FaultServer::url(std::string_view path) const {
    return "http://" + host() + std::string(path);
}

std::string FaultServer::host() const {
    return "127.0.0.1:" + std::to_string(m_port);
}

std::vector<std::string> FaultServer::requests() const {
    const std::lock_guard guard(m_lock);
    return m_requests;
}

std::string FaultServer::answer(int status, std::string_view body, std::string_view headers) {
    return "HTTP/1.0 " + std::to_string(status) + " Words\r\n" + std::string(headers) +
           "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + std::string(body);
}

}  // namespace relay::test
