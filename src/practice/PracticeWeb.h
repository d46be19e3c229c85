// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace relay {

// One submission as the practice web got it.
struct ReceivedSubmission final {
    QDateTime time;
    std::string engine;                                        // which practice engine, from the path
    std::string method;                                        // GET or POST
    std::string target;                                        // request target as it stood on the wire
    std::string body;                                          // as it stood on the wire
    std::vector<std::pair<std::string, std::string>> headers;  // names as they stood on the wire
    std::vector<std::pair<std::string, std::string>> fields;   // decoded
};

// The practice web: a loopback web that plays the engines of the practice catalogue, keeps what it received
// and shows it at "/". It listens on 127.0.0.1 only and serves from a thread of its own, so a test or a
// program may block while it answers. Paths that name an outcome play it: see docs/practice-web.md.
class PracticeWeb final {
  public:
    PracticeWeb();
    ~PracticeWeb();  // stops serving
    PracticeWeb(const PracticeWeb&) = delete;
    PracticeWeb& operator=(const PracticeWeb&) = delete;

    // Port 0: a free one. Throws Failure when it cannot listen.
    void start(std::uint16_t port = 0);
    // "http://127.0.0.1:PORT", without a trailing slash.
    std::string address() const;
    // The same for the plain socket server that plays what a web server cannot: half a reply, reset, no
    // answer, an endless body, statuses beyond 599, a lying length.
    std::string faultAddress() const;

    std::vector<ReceivedSubmission> received() const;
    void forgetReceived();

  private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

}  // namespace relay
