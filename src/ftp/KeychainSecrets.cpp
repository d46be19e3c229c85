// SPDX-License-Identifier: GPL-3.0-or-later
#include "ftp/KeychainSecrets.h"

#include "core/ScreenText.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <qt6keychain/keychain.h>

#include <utility>

namespace relay {

namespace {

const QString kService = QStringLiteral("Korvel Relay FTP");

// Whether the session bus has the service, or would start it.
bool hasService() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return false;
    const QString name = QStringLiteral("org.freedesktop.secrets");
    const QDBusReply<QStringList> started = bus.interface()->registeredServiceNames();
    const QDBusReply<QStringList> startable = bus.interface()->activatableServiceNames();
    return started.value().contains(name) || startable.value().contains(name);
}

std::string problemOf(const QKeychain::Job& job) {
    return job.error() == QKeychain::NoError || job.error() == QKeychain::EntryNotFound
               ? std::string()
               : fromScreen(job.errorString());
}

// The job deletes itself at its end.
template <typename Kind, typename Done>
void start(Kind* job, const std::string& name, Done done) {
    job->setInsecureFallback(false);
    job->setKey(toScreen(name));
    QObject::connect(job, &QKeychain::Job::finished, job, [job, done = std::move(done)] { done(*job); });
    job->start();
}

class Keychain final : public SecretStore {
  public:
    bool isAvailable() const override { return true; }

    void read(const std::string& name, std::function<void(std::string, std::string)> done) override {
        start(new QKeychain::ReadPasswordJob(kService), name,
              [done = std::move(done)](const QKeychain::ReadPasswordJob& job) {
                  done(fromScreen(job.textData()), problemOf(job));
              });
    }
    void write(const std::string& name, const std::string& secret,
               std::function<void(std::string)> done) override {
        auto* const job = new QKeychain::WritePasswordJob(kService);
        job->setTextData(toScreen(secret));
        start(job, name, [done = std::move(done)](const QKeychain::Job& ended) { done(problemOf(ended)); });
    }
    void remove(const std::string& name, std::function<void(std::string)> done) override {
        start(new QKeychain::DeletePasswordJob(kService), name,
              [done = std::move(done)](const QKeychain::Job& ended) { done(problemOf(ended)); });
    }
};

}  // namespace

std::unique_ptr<SecretStore> desktopSecrets() {
    return hasService() ? std::make_unique<Keychain>() : nullptr;
}

}  // namespace relay
