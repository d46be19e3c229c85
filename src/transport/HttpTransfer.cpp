// SPDX-License-Identifier: GPL-3.0-or-later
#include "transport/HttpTransfer.h"

#include "core/Failure.h"
#include "core/Text.h"
#include "transport/Authorities.h"
#include "transport/TransferQueue.h"

#include <algorithm>
#include <exception>

namespace relay {

namespace {

constexpr long kRedirectLimit = 10;
constexpr const char* kOutOfMemory = "Out of memory";

// Removes the one header that libcurl would add. Shared by all handles, read-only.
curl_slist* headers() {
    static curl_slist* const list = curl_slist_append(nullptr, "Accept:");
    return list;
}

template <typename Value>
void set(CURL* easy, CURLoption option, Value value) {
    if (curl_easy_setopt(easy, option, value) != CURLE_OK) throw Failure("The HTTP client cannot be set up");
}

}  // namespace

HttpTransfer::HttpTransfer(const Authorities& authorities) : easy(curl_easy_init()) {
    if (easy == nullptr) throw Failure("The HTTP client cannot be created");
    set(easy, CURLOPT_PRIVATE, this);
    set(easy, CURLOPT_NOSIGNAL, 1L);
    // An abort must not wait for a slow name server: the look-up is abandoned.
    set(easy, CURLOPT_QUICK_EXIT, 1L);
    set(easy, CURLOPT_PATH_AS_IS, 1L);  // the server resolves "a/../b"
    set(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    set(easy, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    set(easy, CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);  // for redirects; wireUrl refuses the rest
    set(easy, CURLOPT_PROXY, "");                     // not from the environment either
    set(easy, CURLOPT_NOPROXY, "*");
    set(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_0));
    set(easy, CURLOPT_HTTP09_ALLOWED, 0L);
    set(easy, CURLOPT_USERAGENT, "Dart Communications PowerTCP");
    set(easy, CURLOPT_HTTPHEADER, headers());
    set(easy, CURLOPT_MAXREDIRS, kRedirectLimit);
    // libcurl keeps a bundle it has read in memory only if there is no folder.
    set(easy, CURLOPT_CAINFO, authorities.file.empty() ? nullptr : authorities.file.c_str());
    set(easy, CURLOPT_CAPATH, authorities.folder.empty() ? nullptr : authorities.folder.c_str());
    set(easy, CURLOPT_SSL_VERIFYPEER, 1L);
    set(easy, CURLOPT_SSL_VERIFYHOST, 2L);
    // One request per connection, as HTTP/1.0 servers expect: if a kept connection died, libcurl would send a
    // request twice.
    set(easy, CURLOPT_FORBID_REUSE, 1L);
    set(easy, CURLOPT_WRITEFUNCTION, &HttpTransfer::takeBody);
    set(easy, CURLOPT_WRITEDATA, this);
    set(easy, CURLOPT_HEADERFUNCTION, &HttpTransfer::takeHeader);
    set(easy, CURLOPT_HEADERDATA, this);
}

HttpTransfer::~HttpTransfer() {
    curl_easy_cleanup(easy);
}

void HttpTransfer::prepare(const std::string& url, bool post, bool followRedirects,
                           std::int32_t timeoutMilliseconds) {
    emptyBuffer(text);
    received = 0;
    status = HttpClient::kNoStatus;
    failure = nullptr;
    problem = "";
    m_headerBytes = m_headerLines = 0;
    ended = reportedEnd = false;
    set(easy, CURLOPT_URL, url.c_str());
    redirectOnly(startsWithNoCase(url, "https:"));
    set(easy, CURLOPT_FOLLOWLOCATION, followRedirects ? 1L : 0L);
    set(easy, CURLOPT_TIMEOUT_MS, static_cast<long>(timeoutMilliseconds));
    if (post) {
        set(easy, CURLOPT_POST, 1L);
        set(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
        set(easy, CURLOPT_POSTFIELDS, body.c_str());
    } else {
        set(easy, CURLOPT_HTTPGET, 1L);
    }
}

void HttpTransfer::readStatus() noexcept {
    long code = 0;
    curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &code);
    // A connection that ended after an interim reply (1xx) never sent the real one.
    status = code < 200 ? HttpClient::kNoStatus : static_cast<std::int32_t>(code);
}

void HttpTransfer::readFailure(CURLcode result) noexcept {
    if (result != CURLE_OK && result != CURLE_WRITE_ERROR) problem = curl_easy_strerror(result);
    if (result == CURLE_UNSUPPORTED_PROTOCOL)
        problem = "The server does not speak HTTP, or redirects away from it";
    if (result == CURLE_OUT_OF_MEMORY) failure = kOutOfMemory;
    if (result == CURLE_SSL_CACERT_BADFILE) failure = "The certificates for https cannot be read";
}

void HttpTransfer::listNews() noexcept {
    if (!std::exchange(hasNews, true)) news->push(shared_from_this());
}

// Taking fewer bytes than offered ends the transfer.
std::size_t HttpTransfer::takeBody(char* bytes, std::size_t size, std::size_t count, void* owner) noexcept {
    auto& transfer = *static_cast<HttpTransfer*>(owner);
    const std::size_t offered = size * count;
    const std::size_t taken = std::min(offered, HttpClient::kReplyLimit - transfer.received);
    try {
        if (transfer.keepsText) transfer.text.append(bytes, taken);
    } catch (const std::exception&) {
        transfer.failure = kOutOfMemory;
        return 0;
    }
    transfer.received += taken;
    transfer.listNews();
    return taken;
}

// A request that was sent with TLS is not redirected to plain http.
void HttpTransfer::redirectOnly(bool secure) {
    if (secure == m_redirectsSecure) return;
    set(easy, CURLOPT_REDIR_PROTOCOLS_STR, secure ? "https" : "http,https");
    m_redirectsSecure = secure;
}

std::size_t HttpTransfer::takeHeader(char*, std::size_t size, std::size_t count, void* owner) noexcept {
    auto& transfer = *static_cast<HttpTransfer*>(owner);
    // A redirect may have led from http to https.
    const char* scheme = nullptr;
    curl_easy_getinfo(transfer.easy, CURLINFO_SCHEME, &scheme);
    try {
        if (scheme != nullptr && equalsNoCase(scheme, "https")) transfer.redirectOnly(true);
    } catch (const std::exception&) {
        transfer.failure = kOutOfMemory;
        return 0;
    }
    transfer.m_headerBytes += size * count;
    ++transfer.m_headerLines;
    const bool tooMuch = transfer.m_headerBytes > kHeaderLimit || transfer.m_headerLines > kHeaderLines;
    return tooMuch ? 0 : size * count;
}

void emptyBuffer(std::string& text) noexcept {
    if (text.capacity() > HttpTransfer::kKeptBuffer)
        std::string().swap(text);
    else
        text.clear();
}

}  // namespace relay
