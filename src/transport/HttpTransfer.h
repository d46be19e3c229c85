// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "transport/HttpClient.h"

#include <cstdint>
#include <curl/curl.h>
#include <memory>
#include <string>
#include <vector>

namespace relay {

// One libcurl handle with its request and its reply, used for one request after the other. Between the start
// and the end of a request it belongs to the network thread; otherwise to the thread of the clients. Only
// `client` and the outbox's own `outboxIndex` stand outside this rule.
struct HttpTransfer final : std::enable_shared_from_this<HttpTransfer> {
    static constexpr std::size_t kHeaderLimit = 256u * 1024;
    // A buffer beyond this is given back rather than kept for the next reply.
    static constexpr std::size_t kKeptBuffer = 256u * 1024;
    static constexpr std::size_t kNotListed = static_cast<std::size_t>(-1);

    HttpTransfer();  // throws Failure when libcurl has no handle to give
    ~HttpTransfer();
    HttpTransfer(const HttpTransfer&) = delete;
    HttpTransfer& operator=(const HttpTransfer&) = delete;

    // Makes the handle ready for a request. `url` must have passed wireUrl. A POST sends `body`.
    void prepare(const std::string& url, bool post, bool followRedirects, std::int32_t timeoutMilliseconds);
    // Network thread, when the request ends: the reply's status.
    void readStatus() noexcept;

    CURL* const easy;
    std::string body;
    std::string text;
    bool keepsText = true;     // false: the reply is counted and let go
    std::size_t received = 0;  // bytes of the reply so far
    std::int32_t status = HttpClient::kNoStatus;

    HttpClient* client = nullptr;  // clients' thread only; null: nobody waits for the end

    std::size_t outboxIndex = kNotListed;  // under the network's lock: place in the outbox
    std::size_t activeIndex = kNotListed;  // network thread: place among the running transfers
    // Network thread: the list of transfers with news, and whether this one stands in it.
    std::vector<std::shared_ptr<HttpTransfer>>* news = nullptr;
    bool hasNews = false;
    bool ended = false;
    void listNews() {
        if (!hasNews) news->push_back(shared_from_this());
        hasNews = true;
    }

  private:
    static std::size_t takeBody(char* bytes, std::size_t size, std::size_t count, void* self) noexcept;
    static std::size_t takeHeader(char* bytes, std::size_t size, std::size_t count, void* self) noexcept;

    std::size_t m_headerBytes = 0;
};

// Empties the text and gives back the memory of an unusually large one.
void emptyBuffer(std::string& text) noexcept;

}  // namespace relay
