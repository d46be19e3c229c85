// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlainClient.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace relay::test {

PlainClient::PlainClient(const std::string& address) : m_socket(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_port = htons(static_cast<std::uint16_t>(std::stoi(address.substr(address.rfind(':') + 1))));
    server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(m_socket, reinterpret_cast<const sockaddr*>(&server), sizeof server) != 0) {
        ::close(m_socket);
        m_socket = -1;
    }
}

PlainClient::~PlainClient() {
    if (m_socket >= 0) ::close(m_socket);
}

bool PlainClient::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

PlainClient::End PlainClient::read(std::string& bytes, std::size_t most, int silenceMilliseconds) {
    std::array<char, 65536> buffer;
    while (bytes.size() < most) {
        pollfd waiting{m_socket, POLLIN, 0};
        if (::poll(&waiting, 1, silenceMilliseconds) == 0) return End::StillOpen;
        const ssize_t count = ::recv(m_socket, buffer.data(), buffer.size(), 0);
        if (count == 0) return End::Closed;
        if (count < 0) return errno == ECONNRESET ? End::Reset : End::Closed;
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return End::StillOpen;
}

std::string sendRaw(const std::string& address, std::string_view request) {
    PlainClient client(address);
    client.send(request);
    std::string reply;
    client.read(reply);
    return reply;
}

std::string get(const std::string& address, std::string_view target) {
    return sendRaw(address, "GET " + std::string(target) + " HTTP/1.0\r\n\r\n");
}

std::string post(const std::string& address, std::string_view target, std::string_view body) {
    return sendRaw(address, "POST " + std::string(target) + " HTTP/1.0\r\nContent-Length: " +
                                std::to_string(body.size()) + "\r\n\r\n" + std::string(body));
}

std::string bodyOf(const std::string& reply) {
    const std::size_t end = reply.find("\r\n\r\n");
    return end == std::string::npos ? std::string() : reply.substr(end + 4);
}

}  // namespace relay::test
