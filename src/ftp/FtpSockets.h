// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ftp/FtpHost.h"
#include "ftp/FtpWire.h"

#include <QAbstractSocket>
#include <QObject>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QString>

#include <string>
#include <string_view>
#include <vector>

class QSslSocket;
class QTcpSocket;

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
    // The control connection is gone: why, for the user; empty when the server closed it.
    void failed(const std::string& error);
    void sendFailed(const std::string& error);
    void dataMoved();  // bytes came or went

  private:
    class Listener;

    void controlFailed(const std::string& error);
    void accept(qintptr descriptor);
    void useSession();
    void useNewSocket();
    void dataUp();
    void readData();
    void dataEnded();
    void dataFailed();
    void dataGone();
    void dataLeft();
    void sendMore();
    void dropData();

    modFTP* m_ftp = nullptr;
    QString m_host;
    QSslConfiguration m_configuration;  // of data connections, with the session they resume
    QSslCertificate m_certificate;      // of the control connection
    QSslSocket* m_control = nullptr;    // dsSocket1
    Listener* m_listener = nullptr;     // dsSocket2(0)
    QTcpSocket* m_data = nullptr;       // dsSocket2(1)
    QSslSocket* m_encrypted = nullptr;  // the same, when it is to be encrypted
    std::vector<char> m_block;          // of what is read
    bool m_sending = false;
    bool m_moving = false;  // sendMore is running
    bool m_wasUp = false;   // the data connection was made ...
    bool m_gone = false;    // the server has ended it
    bool m_ready = false;   // ... and is encrypted, if it is to be
};

}  // namespace relay
