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

// One libcurl handle with its request and reply, reused for one request after another. While a request runs
// it belongs to the network thread, otherwise to the clients' thread; exceptions are noted.
struct HttpTransfer final : std::enable_shared_from_this<HttpTransfer> {
    // Limits for all headers of a request, redirects included: far more than servers send. libcurl keeps each
    // line until the request ends.
    static constexpr std::size_t kHeaderLimit = 128u * 1024;
    static constexpr std::size_t kHeaderLines = 1000;
    // A larger buffer is freed, not kept for the next reply.
    static constexpr std::size_t kKeptBuffer = 256u * 1024;

    // Throws Failure when libcurl cannot make a handle.
    explicit HttpTransfer(const Authorities& authorities);
    ~HttpTransfer();
    HttpTransfer(const HttpTransfer&) = delete;
    HttpTransfer& operator=(const HttpTransfer&) = delete;

    // Prepares the handle for a request. `url` must have passed wireUrl. A POST sends `body`.
    void prepare(const std::string& url, bool post, bool followRedirects, std::int32_t timeoutMilliseconds);
    // Network thread, when the request ends: the status of the reply, and any local failure.
    void readStatus() noexcept;
    void readFailure(CURLcode result) noexcept;

    CURL* const easy;
    std::string body;
    std::string text;
    bool keepsText = true;     // false: the reply is counted and dropped
    std::size_t received = 0;  // bytes of the reply so far
    std::int32_t status = HttpClient::kNoStatus;
    const char* failure = nullptr;  // local reason; null for failures of the other side
    const char* problem = "";       // any reason but the reply's limit

    HttpClient* client = nullptr;  // clients' thread only; null when no client waits for the end

    // Network thread: links in the list of running transfers, which own themselves, and in the list of those
    // with something to report.
    std::shared_ptr<HttpTransfer> self;
    HttpTransfer* nextActive = nullptr;
    HttpTransfer* previousActive = nullptr;
    std::shared_ptr<HttpTransfer> nextNews;
    TransferQueue<& HttpTransfer::nextNews>* news = nullptr;
    bool hasNews = false;
    bool ended = false;
    void listNews() noexcept;

    // Under the network's lock: requests from the clients and reports to them.
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

// Empties the text and frees an unusually large buffer.
void emptyBuffer(std::string& text) noexcept;

}  // namespace relay
