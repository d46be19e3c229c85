// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "transport/frmHTTPMX.h"

#include <QObject>

namespace relay {

struct Services;

// The connection pool of a run. A loaded pool cannot change its size, so each run opens a new one; that ends
// the requests of the previous one, without signals.
class RunPool final : public QObject {
    Q_OBJECT
  public:
    struct Options final {
        std::int16_t connections = 0;
        bool keepReplies = true;
        std::function<std::string(std::string_view)> logMask;
    };

    explicit RunPool(const Services& services) : m_services(services) {}

    // Throws Failure when the pool cannot be loaded: with half a pool a run would never end.
    void open(Options options);
    // As in frmHTTPMX. Connect needs an open pool.
    void Connect(std::int16_t Index, const std::string& URL, const std::string& Method,
                 const std::string& PostData) {
        m_frmHTTPMX->Connect(Index, URL, Method, PostData);
    }
    void Disconnect() {
        if (m_frmHTTPMX) m_frmHTTPMX->Disconnect();
    }

  Q_SIGNALS:
    void Completed(qint16 Index, qint32 Code, const std::string& Response);
    void Progress(qint16 Index, qint32 Bytes);
    void Cancelled();

  private:
    const Services& m_services;
    std::unique_ptr<frmHTTPMX> m_frmHTTPMX;
};

}  // namespace relay
