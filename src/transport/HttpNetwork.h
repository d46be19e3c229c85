// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Paths.h"
#include "transport/Authorities.h"

#include <memory>

namespace relay {

struct HttpTransfer;

// The network thread: one libcurl multi_poll loop that serves every HttpClient made with it and hands results
// in batches to the event loop of the thread that made it. Make one per program; it must outlive its clients
// and must not be deleted in a handler of their signals. A request that runs out of memory fails; the thread
// keeps running.
class HttpNetwork final {
  public:
    explicit HttpNetwork(Authorities authorities = Authorities::fromEnvironment(environmentVariable));
    ~HttpNetwork();  // ends running transfers, joins the thread
    HttpNetwork(const HttpNetwork&) = delete;
    HttpNetwork& operator=(const HttpNetwork&) = delete;

    // Starts the thread unless it is running, as the first request also does. Throws Failure when the thread
    // or libcurl cannot start.
    void open();
    const Authorities& authorities() const noexcept { return m_authorities; }

    // For HttpClient. The transfer belongs to the network thread from here until it ends and is passed to the
    // client's finish.
    void start(std::shared_ptr<HttpTransfer> transfer);
    // Ends the transfer early; no effect if it has already ended.
    void abort(std::shared_ptr<HttpTransfer> transfer) noexcept;

  private:
    struct Data;
    const Authorities m_authorities;
    std::unique_ptr<Data> m_data;
};

}  // namespace relay
