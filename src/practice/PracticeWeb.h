// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "practice/LoopbackServer.h"
#include "practice/PracticeUpdate.h"

#include <QDateTime>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace relay {

// One submission as the practice web received it.
struct ReceivedSubmission final {
    QDateTime time;
    std::string engine;                                        // which practice engine, from the path
    std::string method;                                        // GET or POST
    std::string target;                                        // request target as received
    std::string body;                                          // as received
    std::vector<std::pair<std::string, std::string>> headers;  // names as received
    std::vector<std::pair<std::string, std::string>> fields;   // of query and body, decoded
};

// Replaces the placeholders in the practice catalogue's text: http://@PRACTICE@ by the address of a running
// practice web, and @PRACTICE@ behind a name and a dot by "localhost" and its port.
std::string pointAtPracticeWeb(std::string_view catalogue, std::string_view address);

// The practice web: a loopback web server that plays the engines of the practice catalogue, stores what it
// receives (the newest 10,000) and shows it at "/". It is an update server too. Paths that name an outcome
// play it: see docs/practice-web.md.
class PracticeWeb final {
  public:
    explicit PracticeWeb(const PracticeLimits& limits = {});
    ~PracticeWeb();  // stops serving
    PracticeWeb(const PracticeWeb&) = delete;
    PracticeWeb& operator=(const PracticeWeb&) = delete;

    // Reads a krveng5.dat and its catkws.dat, so that the form page of each engine asks for what its record
    // sends; without them every form has the usual fields. Call before start().
    void describeEngines(std::string_view engines, std::string_view categories);
    // What it serves as an update server, by path ("/enginedata/krveng5.dat"); the placeholder in the files
    // is replaced by the address. Call before start().
    void publish(UpdateTexts files);
    // How the update file of this path is answered: a word of docs/practice-web.md, or empty for the file.
    // Throws Failure for any other word or path.
    void failUpdate(std::string_view path, std::string_view word);
    // Port 0 picks a free one. Throws Failure when it cannot listen.
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
