// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace relay {

class HttpNetwork;
struct HttpTransfer;

// The HTTP client of one connection. Requests go out as HTTP/1.0 with this program's user agent, Host, and
// for a POST the form content type and length; no other header. http and https only, for redirects too, and
// from https only to https; certificates are checked; no proxy, no cookies, no credentials. A reply is cut at
// kReplyLimit bytes (as received) and then counts as complete. All calls and signals belong to the thread
// that made the network; the transfer itself runs on the network thread.
class HttpClient final : public QObject {
    Q_OBJECT
  public:
    static constexpr std::size_t kReplyLimit = 16u * 1024 * 1024;
    // ResponseCode when no status line was received: refused, unknown host, reset, TLS refused, invalid URL.
    // Equal to the pool's code for a failed start.
    static constexpr std::int32_t kNoStatus = 10100;

    explicit HttpClient(HttpNetwork& network, QObject* parent = nullptr);
    ~HttpClient() override;  // a running request ends without a signal

    // 0 when idle, non-zero while a request is running. An abort takes effect at once, so the client can take
    // its next request before the Done of the aborted one.
    std::int32_t State() const noexcept { return m_running ? 1 : 0; }
    // True while a transfer is active.
    bool Busy() const noexcept { return m_running; }
    // Ends the transfer. Done follows through the event loop with the text received so far, unless a new
    // request starts first; then the aborted one ends without a signal. Does nothing when idle.
    void Abort();

    void setFollowUp(bool on) noexcept { m_followUp = on; }  // follow redirects, at most 10
    // false: replies are limited and counted as usual, but their text is dropped and Response stays empty.
    // For owners that only read statuses and need not keep kReplyLimit bytes per connection.
    void setKeepReply(bool on) noexcept { m_keepReply = on; }
    void setURL(std::string url) { m_url = std::move(url); }
    void setBlocking(bool on);  // only false is supported; true throws Failure
    void setTimeout(std::int32_t milliseconds) noexcept { m_timeout = milliseconds; }  // 0: none

    // Start the request. Response is filled before Done and must live until then. Throw Failure when the
    // request cannot start: busy, a URL that wireUrl refuses (see RequestUrl.h), or https without
    // certificates.
    void Get(std::string& Response) { start(nullptr, Response); }
    void Post(std::string Data, std::string& Response) { start(&Data, Response); }

    // Status of the last reply, or kNoStatus. When a redirect could not be followed (more than 10, another
    // scheme, https to http, a dead target) it is the status of the redirect itself.
    std::int32_t ResponseCode() const noexcept { return m_code; }
    // The local reason why the last request failed (out of memory, no certificates), whatever its status;
    // else null. Failures of the other side do not count.
    const char* LocalFailure() const noexcept { return m_failure; }
    // Why the last request ended before the server ended its reply, or could not reach it; else "". A reply
    // cut at kReplyLimit is no problem.
    const char* Problem() const noexcept { return m_problem; }

  Q_SIGNALS:
    void Done();
    // Bytes of the reply so far; emitted at most once per turn of the network's loop.
    void Progress(qint32 bytes);

  private:
    friend class HttpNetwork;

    void start(std::string* body, std::string& Response);
    // Called by the network. The handlers of the signals may delete the client.
    void report(const std::shared_ptr<HttpTransfer>& transfer, qint32 bytes);
    void finish(const std::shared_ptr<HttpTransfer>& transfer);

    HttpNetwork& m_network;
    std::shared_ptr<HttpTransfer> m_transfer;  // of the running request, or kept for the next
    std::shared_ptr<HttpTransfer> m_aborted;   // its Done is still pending
    std::string* m_response = nullptr;
    std::string m_url;
    bool m_running = false;
    bool m_followUp = false;
    bool m_keepReply = true;
    std::int32_t m_timeout = 0;
    std::int32_t m_code = kNoStatus;
    const char* m_failure = nullptr;
    const char* m_problem = "";
    qint32 m_reported = 0;
};

}  // namespace relay
