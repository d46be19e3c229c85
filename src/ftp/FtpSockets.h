// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ftp/FtpHost.h"
#include "ftp/FtpWire.h"

#include <QAbstractSocket>
#include <QObject>
#include <QSslConfiguration>

#include <functional>
#include <memory>

class QSslSocket;
class QTcpServer;

namespace relay {

class modFTP;

// The sockets under the protocol. Certificates are checked against SSL_CERT_FILE and SSL_CERT_DIR where they
// are set, else against the system's. Each data connection resumes the TLS session of the control connection,
// as servers of today demand.
class FtpSockets final : public QObject, public FtpWire {
    Q_OBJECT
  public:
    explicit FtpSockets(QObject* parent = nullptr);
    ~FtpSockets() override;

    // Call once, before anything else.
    void setProtocol(modFTP& protocol) noexcept { m_ftp = &protocol; }
    // Closes what is open and connects. `connected` or `failed` follows.
    void open(const FtpHost& host);
    // Breaks everything; no signal follows.
    void abort();
    bool isOpen() const;

    void sendControl(std::string_view line) override;
    void closeControl() override;
    void encryptControl() override;
    std::string serverAddress() const override;
    bool isIPv6() const override;
    FtpEndpoint listenData() override;
    void connectData(const FtpEndpoint& where) override;
    void beginSending() override;
    void closeData() override;
    void resetData() override;

  Q_SIGNALS:
    void connected();
    // The control connection failed or was refused; `error` is for the user.
    void failed(const std::string& error);
    void sendFailed(const std::string& error);
    void dataMoved();  // bytes came or went

  private:
    void useData(std::unique_ptr<QSslSocket> socket);
    void dataReady();
    void dataGone();
    void dataBroke();
    void readData();
    void sendMore();
    void dropData();
    std::unique_ptr<QSslSocket> newSocket() const;

    modFTP* m_ftp = nullptr;
    QSslConfiguration m_configuration;
    std::unique_ptr<QSslSocket> m_control;   // dsSocket1
    std::unique_ptr<QTcpServer> m_listener;  // dsSocket2(0)
    std::unique_ptr<QSslSocket> m_data;      // dsSocket2(1)
    FtpHost m_host;
    bool m_sending = false;
    bool m_ready = false;  // the data connection is up, TLS included
};

}  // namespace relay
