// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace relay::test {

// A blocking client of one connection that sends exactly the bytes it is given and gives back what came.
class PlainClient final {
  public:
    enum class End { Closed, Reset, StillOpen };

    explicit PlainClient(const std::string& address);  // "http://127.0.0.1:PORT"
    ~PlainClient();
    PlainClient(const PlainClient&) = delete;
    PlainClient& operator=(const PlainClient&) = delete;

    // False when the server has gone.
    bool send(std::string_view bytes);
    // Reads until the server ends the connection, `most` bytes are there, or nothing came for a while.
    End read(std::string& bytes, std::size_t most = std::size_t{64} * 1024 * 1024,
             int silenceMilliseconds = 30000);

  private:
    int m_socket = -1;
};

// One HTTP/1.0 request; the whole reply.
std::string sendRaw(const std::string& address, std::string_view request);
std::string get(const std::string& address, std::string_view target);
std::string post(const std::string& address, std::string_view target, std::string_view body);
// The text behind the first empty line.
std::string bodyOf(const std::string& reply);

}  // namespace relay::test
