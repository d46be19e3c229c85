// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QThread>

#include <atomic>
#include <functional>
#include <string>
#include <string_view>

class QSslServer;

namespace relay::test {

// A web server with TLS on 127.0.0.1 and a random port, in a thread of its own. It answers each request and
// closes.
class TlsServer final {
  public:
    using Answer = std::function<std::string(std::string_view path)>;

    // Takes two PEM files. `answer` runs in the server's thread.
    TlsServer(const std::string& certificateFile, const std::string& keyFile, Answer answer);
    ~TlsServer();
    TlsServer(const TlsServer&) = delete;
    TlsServer& operator=(const TlsServer&) = delete;

    std::string url(std::string_view path) const;  // "https://127.0.0.1:port" + path
    int requests() const noexcept { return m_requests; }

  private:
    void serve();

    Answer m_answer;
    QThread m_thread;
    QSslServer* m_server;  // lives in the thread and is deleted with it
    int m_port = 0;
    std::atomic<int> m_requests = 0;
};

}  // namespace relay::test
