// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "transport/HttpClient.h"

#include <cstdint>
#include <curl/curl.h>
#include <memory>
#include <string>

namespace relay {

struct Authorities;
struct HttpTransfer;
template <std::shared_ptr<HttpTransfer> HttpTransfer::*kNext>
class TransferQueue;

// One libcurl handle with its request and its reply, used for one request after the other. Between the start
// and the end of a request it belongs to the network thread; otherwise to the thread of the clients. What
// stands outside this rule says so.
struct HttpTransfer final : std::enable_shared_from_this<HttpTransfer> {
    // Of all headers of a request's replies, redirects included: far more than servers send. libcurl keeps
    // each line until the request ends.
    static constexpr std::size_t kHeaderLimit = 128u * 1024;
    static constexpr std::size_t kHeaderLines = 1000;
    // A buffer beyond this is given back rather than kept for the next reply.
    static constexpr std::size_t kKeptBuffer = 256u * 1024;

    // Throws Failure when libcurl has no handle to give.
    explicit HttpTransfer(const Authorities& authorities);
    ~HttpTransfer();
    HttpTransfer(const HttpTransfer&) = delete;
    HttpTransfer& operator=(const HttpTransfer&) = delete;

    // Makes the handle ready for a request. `url` must have passed wireUrl. A POST sends `body`.
    void prepare(const std::string& url, bool post, bool followRedirects, std::int32_t timeoutMilliseconds);
    // Network thread, when the request ends: the reply's status, and why this machine could not go on.
    void readStatus() noexcept;
    void readFailure(CURLcode result) noexcept;

    CURL* const easy;
    std::string body;
    std::string text;
    bool keepsText = true;     // false: the reply is counted and let go
    std::size_t received = 0;  // bytes of the reply so far
    std::int32_t status = HttpClient::kNoStatus;
    const char* failure = nullptr;  // what this machine lacked; null for all that the other side did

    HttpClient* client = nullptr;  // clients' thread only; null: nobody waits for the end

    // Network thread: its place among the running transfers, which own themselves, and the list of those
    // with news.
    std::shared_ptr<HttpTransfer> self;
    HttpTransfer* nextActive = nullptr;
    HttpTransfer* previousActive = nullptr;
    std::shared_ptr<HttpTransfer> nextNews;
    TransferQueue<& HttpTransfer::nextNews>* news = nullptr;
    bool hasNews = false;
    bool ended = false;
    void listNews() noexcept;

    // Under the network's lock: what the clients ask for, and what they are told.
    std::shared_ptr<HttpTransfer> nextCommand;
    bool hasCommand = false;
    bool startWanted = false;
    bool endWanted = false;
    std::shared_ptr<HttpTransfer> nextReport;
    bool hasReport = false;
    bool reportedEnd = false;
    std::int32_t reportedBytes = 0;

  private:
    static std::size_t takeBody(char* bytes, std::size_t size, std::size_t count, void* owner) noexcept;
    static std::size_t takeHeader(char* bytes, std::size_t size, std::size_t count, void* owner) noexcept;

    std::size_t m_headerBytes = 0;
    std::size_t m_headerLines = 0;
    void redirectOnly(bool secure);

    bool m_redirectsSecure = false;  // redirects must go to https
};

// Empties the text and gives back the memory of an unusually large one.
void emptyBuffer(std::string& text) noexcept;

}  // namespace relay
