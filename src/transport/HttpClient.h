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

// One connection's HTTP client: the operations the pool and the fetcher need, and nothing else. Requests go
// out as HTTP/1.0 with this program's identification, Host, and for a POST the form content type and its
// length; no other header. http and https only, for redirects too, and from https to https only;
// certificates are checked; no proxy, no cookies, no credentials. A reply is bounded (kReplyLimit bytes as
// they arrive): beyond it the request ends as if the reply were complete. All calls and signals belong to the
// thread that made the network; the transfer itself runs on the network's thread.
class HttpClient final : public QObject {
    Q_OBJECT
  public:
    static constexpr std::size_t kReplyLimit = 16u * 1024 * 1024;
    // ResponseCode when no status line ever came: refused, unknown host, reset, TLS refused, a URL that
    // cannot be taken. Equal to the pool's code for a start that failed.
    static constexpr std::int32_t kNoStatus = 10100;

    explicit HttpClient(HttpNetwork& network, QObject* parent = nullptr);
    ~HttpClient() override;  // a running request ends without a word

    // 0 when idle; non-zero while a request is under way. An abort takes effect at once, so that the client
    // can take its next request before the Done of the aborted one.
    std::int32_t State() const noexcept { return m_running ? 1 : 0; }
    // True while a transfer is active.
    bool Busy() const noexcept { return m_running; }
    // Ends the transfer; Done follows through the event loop with the text that had come, unless a new
    // request is started before: then the aborted one ends without a word. Nothing when idle.
    void Abort();

    void setFollowUp(bool on) noexcept { m_followUp = on; }  // follow redirects, at most 10
    // false: replies are bounded and counted as ever, but their text is let go and Response stays empty. An
    // owner that reads statuses only need not hold kReplyLimit bytes for each connection.
    void setKeepReply(bool on) noexcept { m_keepReply = on; }
    void setURL(std::string url) { m_url = std::move(url); }
    void setBlocking(bool on);  // only false is supported; true throws Failure
    void setTimeout(std::int32_t milliseconds) noexcept { m_timeout = milliseconds; }  // 0: none

    // Start the request. Response is filled before Done; it must live until then. Throw Failure when the
    // request cannot start: busy, a URL that wireUrl refuses (see RequestUrl.h), or https without the
    // authorities' certificates.
    void Get(std::string& Response) { start(nullptr, Response); }
    void Post(std::string Data, std::string& Response) { start(&Data, Response); }

    // Status of the last reply, or kNoStatus. Where a redirect could not be followed (more than 10, another
    // scheme, https to http, a dead target) it is the status of the redirect itself.
    std::int32_t ResponseCode() const noexcept { return m_code; }
    // What this machine lacked to end the last request (memory, certificates), whatever its status; else
    // null. What the other side did is no such failure.
    const char* LocalFailure() const noexcept { return m_failure; }

  Q_SIGNALS:
    void Done();
    // Bytes of the reply so far. Reports are merged: at most one for each turn of the network's loop.
    void Progress(qint32 bytes);

  private:
    friend class HttpNetwork;

    void start(std::string* body, std::string& Response);
    // News from the network. The handlers that these call may delete the client.
    void report(const std::shared_ptr<HttpTransfer>& transfer, qint32 bytes);
    void finish(const std::shared_ptr<HttpTransfer>& transfer);

    HttpNetwork& m_network;
    std::shared_ptr<HttpTransfer> m_transfer;  // of the running request, or kept for the next
    std::shared_ptr<HttpTransfer> m_aborted;   // its Done is still to come
    std::string* m_response = nullptr;
    std::string m_url;
    bool m_running = false;
    bool m_followUp = false;
    bool m_keepReply = true;
    std::int32_t m_timeout = 0;
    std::int32_t m_code = kNoStatus;
    const char* m_failure = nullptr;
    qint32 m_reported = 0;
};

}  // namespace relay
