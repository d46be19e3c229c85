// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace relay::test {

// A web server on 127.0.0.1 and a random port, scripted by a test, faults included. Each complete request
// runs the script in a thread of its own.
class FaultServer final {
  public:
    // The server's end of one connection. The connection is closed when the script returns.
    class Peer final {
      public:
        // The request as received: head, empty line and body; or the start of a TLS greeting.
        const std::string request;
        std::string path() const;  // "/x?y" of the request line

        // False when the client has left or the server stops.
        bool send(std::string_view bytes);
        void waitForClose();  // until the client closes or the server stops
        void reset();         // ends with RST instead of FIN

      private:
        friend class FaultServer;
        Peer(int descriptor, std::string text) : request(std::move(text)), m_descriptor(descriptor) {}
        int m_descriptor;
    };
    using Script = std::function<void(Peer& peer)>;

    explicit FaultServer(Script script);
    ~FaultServer();  // cuts open connections
    FaultServer(const FaultServer&) = delete;
    FaultServer& operator=(const FaultServer&) = delete;

    std::string url(std::string_view path) const;  // "http://127.0.0.1:port" + path
    std::string host() const;                      // "127.0.0.1:port"
    // Every complete request so far, in order of completion.
    std::vector<std::string> requests() const;
    int connections() const noexcept { return m_connections; }

    // A reply with a length: "HTTP/1.0 status words", Content-Length, body.
    static std::string answer(int status, std::string_view body = "ok", std::string_view headers = {});

  private:
    void accept();
    void serve(int descriptor);

    Script m_script;
    int m_listener = -1;
    int m_port = 0;
    std::atomic<int> m_connections = 0;
    mutable std::mutex m_lock;
    bool m_stopping = false;
    std::vector<int> m_open;
    std::vector<std::string> m_requests;
    std::vector<std::thread> m_threads;
    std::thread m_acceptor;
};

}  // namespace relay::test
