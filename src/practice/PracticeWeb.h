// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
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
    std::vector<std::pair<std::string, std::string>> fields;   // of query and body, decoded
};

// The practice catalogue's text with its placeholder http://@PRACTICE@ replaced by the address of a running
// practice web.
std::string pointAtPracticeWeb(std::string_view catalogue, std::string_view address);

// What one client may take of the practice web.
struct PracticeLimits final {
    int requestMilliseconds = 10000;  // until the whole request must be there
    int connections = 512;            // at a time; one more is closed at once
};

// The practice web: a loopback web that plays the engines of the practice catalogue, keeps what it received
// (the newest 10,000) and shows it at "/". It listens on 127.0.0.1 only and serves from a thread of its own,
// so a test or a program may block while it answers. Paths that name an outcome play it: see
// docs/practice-web.md. It is a plain socket server: Qt's own HTTP server re-spells the request target and
// leaves the connection of an HTTP/1.0 client open.
class PracticeWeb final {
  public:
    explicit PracticeWeb(const PracticeLimits& limits = {});
    ~PracticeWeb();  // stops serving
    PracticeWeb(const PracticeWeb&) = delete;
    PracticeWeb& operator=(const PracticeWeb&) = delete;

    // The texts of a krveng5.dat and its catkws.dat, so that each engine's form page asks for what its record
    // sends; without them every form has the usual fields. To be called before start().
    void describeEngines(std::string_view engines, std::string_view categories);
    // Port 0: a free one. Throws Failure when it cannot listen.
    void start(std::uint16_t port = 0);
    // "http://127.0.0.1:PORT", without a trailing slash.
    std::string address() const;

    std::vector<ReceivedSubmission> received() const;  // oldest first
    void forgetReceived();

  private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

}  // namespace relay
