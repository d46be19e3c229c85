// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "transport/HttpClient.h"

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace relay {

class BusyPointer;
class Failure;
struct Services;

// What a request brought.
struct FetchReply final {
    std::string URL;   // as requested
    std::string text;  // as far as it arrived; may be empty
    std::int32_t status = HttpClient::kNoStatus;
    // Why the reply is missing or incomplete, for the user; empty when the server ended it.
    std::string problem;

    // False when nothing came from a server (refused, unknown host, bad certificate, silence, not HTTP), and
    // for an error page (status 400 and up).
    bool isPage() const noexcept { return status < 400; }
};
// "URL: reason" for a reply that is missing, incomplete, empty, or an error page of the server (status 400
// and up); empty for a good one.
std::string fetchProblem(const FetchReply& reply);

// Who receives the replies of one purpose. Every request ends in exactly one of these, called on the event
// loop, except for `failed`, which is called before fetch returns. Functions may be empty.
struct FetchConsumer final {
    // The request ended. After a time-out the reply is what has arrived, possibly nothing.
    std::function<void(const FetchReply& reply)> reply;
    // The request could not start (bad address, no certificates); `problem` has the reason, which is also
    // logged.
    std::function<void(const FetchReply& reply)> failed;
    // Disconnect or Unload ended the request.
    std::function<void()> cancelled;
};

// The single fetcher of the interactive tools, a form without a window. One request at a time; there is no
// queue. The reply goes to the consumer of the request's purpose. The busy pointer shows while it runs.
class frmHTTP final : public QObject {
    Q_OBJECT
  public:
    enum class FormState : std::int16_t { Normal = -1, Closing = 0, Cancelled = 1 };

    explicit frmHTTP(const Services& services, QObject* parent = nullptr);
    ~frmHTTP() override;  // a running request ends without a call

    // Registers the consumer of a purpose ("GetSiteInfo"), without regard to case; replaces an earlier one.
    void setConsumer(std::string_view purpose, FetchConsumer consumer);
    void removeConsumer(std::string_view purpose);

    // The usual way: requests the URL for a purpose, as a POST if there is data. False, with nothing done,
    // while another request is running. A consumer may call this from its own functions.
    bool fetch(std::string_view purpose, const std::string& url, std::optional<std::string> postData = {});
    // From fetch until the consumer is called; with a purpose, only for a request of that purpose.
    bool isRunning() const noexcept { return m_running; }
    bool isRunning(std::string_view purpose) const noexcept;
    // The purpose of the running or last request.
    const std::string& ConnectType() const noexcept { return m_ConnectType; }
    // Cancels the running request, if any.
    void Disconnect();
    // Closes the fetcher. False while a request is being aborted; it then closes by itself.
    bool Unload();

    // The watchdog's interval in milliseconds from the time-out of the settings, 0 for none. Throws Failure
    // for a negative time-out.
    std::int32_t watchdogInterval() const;

    // Host and path of a URL by plain searches.
    static std::string GetHostFromURL(std::string_view url);
    static std::string GetFileFromURL(std::string_view url);
    // True for four decimal numbers from 0 to 255 with dots between, written without leading zeros; blanks
    // around are ignored.
    static bool IsDotAddress(std::string_view host);

  Q_SIGNALS:
    void runningChanged(bool running);

  private:
    void Connect1(const std::string& url, std::optional<std::string> postData);
    void fail(const Failure& failure);
    void finish();
    void timeOut();
    // The end of a request: nothing is running any more when the consumer is called.
    void end(void (*call)(const FetchConsumer& consumer, const FetchReply& reply), FetchReply reply);
    const FetchConsumer* consumer(std::string_view purpose) const;

    const Services& m_services;
    std::vector<std::pair<std::string, FetchConsumer>> m_consumers;
    HttpClient m_Http1;
    QTimer m_tmrHttpTimeout;
    std::unique_ptr<BusyPointer> m_pointer;
    std::string m_ConnectType;
    std::string m_URL;
    std::string m_Response;
    FormState m_FormState = FormState::Normal;
    bool m_running = false;
    bool m_timedOut = false;
};

}  // namespace relay
