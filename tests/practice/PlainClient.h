// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace relay::test {

// A blocking client with one connection that sends exactly the given bytes and returns what it receives.
class PlainClient final {
  public:
    enum class End { Closed, Reset, StillOpen };

    explicit PlainClient(const std::string& address);  // "http://127.0.0.1:PORT"
    ~PlainClient();
    PlainClient(const PlainClient&) = delete;
    PlainClient& operator=(const PlainClient&) = delete;

    // False when the server has closed.
    bool send(std::string_view bytes);
    // Reads until the server ends the connection, `most` bytes have arrived, or nothing arrives for a while.
    End read(std::string& bytes, std::size_t most = std::size_t{64} * 1024 * 1024,
             int silenceMilliseconds = 30000);

  private:
    int m_socket = -1;
};

// Sends one HTTP/1.0 request and returns the whole reply.
std::string sendRaw(const std::string& address, std::string_view request);
std::string get(const std::string& address, std::string_view target);
std::string post(const std::string& address, std::string_view target, std::string_view body);
// The text after the first empty line.
std::string bodyOf(const std::string& reply);

}  // namespace relay::test
