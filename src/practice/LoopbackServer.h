// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "practice/PracticeReply.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace relay {

// Limits for the clients of a loopback server.
struct PracticeLimits final {
    int requestMilliseconds = 10000;  // time for a whole request
    int connections = 512;            // at a time; any more are closed at once
};

// A web server on 127.0.0.1 with a thread of its own, so a test or a program may block while it replies. It
// uses plain sockets because Qt's HTTP server rewrites the request target and leaves the connection of an
// HTTP/1.0 client open.
class LoopbackServer final {
  public:
    using Answer = std::function<PracticeReply(const PracticeRequest& request)>;

    // `answer` runs in the server's thread. `name`: of the thread, and of the server in messages.
    LoopbackServer(std::string name, Answer answer, const PracticeLimits& limits = {});
    ~LoopbackServer();  // stops serving
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    // Opens the port; 0 picks a free one. Throws Failure when it cannot listen.
    void listen(std::uint16_t port = 0);
    // "http://127.0.0.1:PORT" of the open port.
    const std::string& address() const noexcept;
    // Begins to answer.
    void serve();

  private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

}  // namespace relay
