// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Paths.h"
#include "transport/Authorities.h"

#include <memory>

namespace relay {

struct HttpTransfer;

// The network thread: one libcurl multi_poll loop that serves every HttpClient made with it and hands results
// to the event loop of the thread that made it, in batches. Make one per program; it must outlive its clients
// and is not to be deleted from inside one of their signals. For want of memory a request fails, and the
// thread goes on.
class HttpNetwork final {
  public:
    explicit HttpNetwork(Authorities authorities = Authorities::fromEnvironment(environmentVariable));
    ~HttpNetwork();  // ends running transfers, joins the thread
    HttpNetwork(const HttpNetwork&) = delete;
    HttpNetwork& operator=(const HttpNetwork&) = delete;

    // Starts the thread, once; the first request does so too. Throws Failure when the thread or libcurl
    // cannot start.
    void open();
    const Authorities& authorities() const noexcept { return m_authorities; }

    // For HttpClient. The transfer belongs to the network thread from here to its end, which comes back
    // through the client's finish.
    void start(std::shared_ptr<HttpTransfer> transfer);
    // Ends the transfer early; without effect on one that has ended by then.
    void abort(std::shared_ptr<HttpTransfer> transfer) noexcept;

  private:
    struct Data;
    const Authorities m_authorities;
    std::unique_ptr<Data> m_data;
};

}  // namespace relay
