// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace relay {

// The network thread: one libcurl multi_poll loop that serves every HttpClient made with it and hands results
// to the event loop of the thread that made it, in batches. Make one per program; it must outlive its
// clients.
class HttpNetwork final {
  public:
    HttpNetwork();
    ~HttpNetwork();  // ends running transfers, joins the thread
    HttpNetwork(const HttpNetwork&) = delete;
    HttpNetwork& operator=(const HttpNetwork&) = delete;

    struct Data;
    Data& data() noexcept { return *m_data; }

  private:
    std::unique_ptr<Data> m_data;
};

}  // namespace relay
