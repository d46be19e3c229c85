// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/PracticeAddress.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/Paths.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/clsPreference.h"

#include <QTcpSocket>
#include <QUrl>

namespace relay {

namespace {

constexpr const char* kHowToStart = "Start one with: korvel-relay-cli practice";

bool answers(const QUrl& address) {
    constexpr int kPatience = 2000;  // milliseconds
    QTcpSocket socket;
    socket.connectToHost(address.host(), static_cast<quint16>(address.port(0)));
    return socket.waitForConnected(kPatience);
}

}  // namespace

std::string practiceAddressFile(const Paths& paths) {
    return paths.inApp("practice.addr");
}

std::string runningPracticeWeb(const Paths& paths) {
    const std::string file = practiceAddressFile(paths);
    if (!fileExists(file))
        throw Failure("No practice web is running for " + paths.AppPath + ". " + kHowToStart);
    const QUrl address(toScreen(firstLine(readFile(file, 4096))));
    if (address.host() != QStringLiteral("127.0.0.1") || !answers(address))
        throw Failure("The practice web that " + file + " names does not answer. " + kHowToStart);
    return "http://127.0.0.1:" + std::to_string(address.port());
}

DirectoryHosts directoryHosts(const Paths& paths, const clsPreference& preference) {
    std::string port;
    if (preference.YahooAdd.empty() || preference.Dmoz.empty()) {
        failureOf([&] {
            const std::string address(firstLine(readFile(practiceAddressFile(paths), 4096)));
            port = address.substr(address.rfind(':'));
            port = port.substr(0, port.find('/'));
        });
    }
    return {preference.YahooAdd.empty() ? "yahoo.localhost" + port : preference.YahooAdd,
            preference.Dmoz.empty() ? "http://dmoz.localhost" + port : preference.Dmoz};
}

PracticeAddress::PracticeAddress(const Paths& paths, const std::string& address)
    : m_file(practiceAddressFile(paths)), m_bytes(address + "\n") {
    writeFile(m_file, m_bytes);
}

PracticeAddress::~PracticeAddress() {
    try {
        if (readFile(m_file, 4096) == m_bytes) removeFile(m_file);
    } catch (const Failure&) {
        // The file is gone, or the home became unwritable: a stale address does no harm.
    }
}

}  // namespace relay
