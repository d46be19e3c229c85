// SPDX-License-Identifier: GPL-3.0-or-later
#include "transport/RunPool.h"

#include "core/Failure.h"
#include "core/Services.h"

namespace relay {

void RunPool::open(Options options) {
    // The previous run may have ended in a signal of its pool.
    if (m_frmHTTPMX) {
        m_frmHTTPMX->disconnect(this);
        m_frmHTTPMX.release()->deleteLater();
    }
    m_frmHTTPMX = std::make_unique<frmHTTPMX>(m_services.network, m_services.preference, m_services.log);
    m_frmHTTPMX->setLogMask(std::move(options.logMask));
    m_frmHTTPMX->setKeepReplies(options.keepReplies);
    m_frmHTTPMX->setConnections(options.connections);
    std::string failed;
    const auto loading =
        connect(m_frmHTTPMX.get(), &frmHTTPMX::Completed, this,
                [&failed](qint16, qint32, const std::string& Response) { failed = Response; });
    m_frmHTTPMX->Load();
    disconnect(loading);
    if (!failed.empty()) throw Failure(failed);
    connect(m_frmHTTPMX.get(), &frmHTTPMX::Completed, this, &RunPool::Completed);
    connect(m_frmHTTPMX.get(), &frmHTTPMX::Progress, this, &RunPool::Progress);
    connect(m_frmHTTPMX.get(), &frmHTTPMX::Cancelled, this, &RunPool::Cancelled);
}

}  // namespace relay
