// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SettingsStore.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/Paths.h"
#include "core/ScreenText.h"

#include <QSettings>
#include <QStringList>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace relay {

namespace {

QString settingsKey(std::string_view application, std::string_view section, std::string_view key) {
    return toScreen(application) + u'/' + toScreen(section) + u'/' + toScreen(key);
}

// What the store is read from. Of a pipe or a device nothing is read, as that could wait for ever: a name
// below it can neither be opened nor made.
QString readableFile(const std::string& file) {
    struct stat status {};
    const bool special =
        ::stat(file.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode);
    return toScreen(special ? file + "/settings.ini" : file);
}

// The file holds passwords: it is there with the right mode before the first value is written. Failures show
// when the store is written.
void makePrivate(const std::string& file) {
    const int made = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (made >= 0) ::close(made);
    struct stat status {};
    if (::lstat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) && (status.st_mode & 077) != 0)
        ::chmod(file.c_str(), status.st_mode & 0700);
}

// QSettings would write through a link into the file that it leads to: a copy of that file takes its place.
void replaceLink(const std::string& file) {
    struct stat status {};
    if (::lstat(file.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return;
    try {
        const bool dangling = ::stat(file.c_str(), &status) != 0;
        if (dangling || fileExists(file))
            writeFile(file, dangling ? std::string() : readFile(file), Readable::OwnerOnly);
    } catch (const Failure&) {
        // sync() tells.
    }
}

void makeSettingsFolder(const std::string& file) {
    try {
        makeFolder(file.substr(0, file.rfind('/')), 0700);
    } catch (const Failure&) {
        // sync() tells.
    }
}

void prepareToWrite(const std::string& file) {
    makeSettingsFolder(file);
    replaceLink(file);
    makePrivate(file);
}

}  // namespace

struct SettingsStore::Data {
    explicit Data(const std::string& path) : file(path), settings(readableFile(path), QSettings::IniFormat) {}
    std::string file;
    QSettings settings;
    bool changed = false;
};

SettingsStore::SettingsStore(const std::string& file) {
    m_data = std::make_unique<Data>(file);
    if (fileExists(file)) makePrivate(file);
}

SettingsStore::~SettingsStore() {
    sync();
}

std::string SettingsStore::value(std::string_view application, std::string_view section, std::string_view key,
                                 std::string_view fallback) const {
    const QVariant found = m_data->settings.value(settingsKey(application, section, key));
    if (!found.isValid()) return std::string(fallback);
    if (found.metaType() == QMetaType::fromType<QByteArray>()) return found.toByteArray().toStdString();
    // A value with a comma that a person wrote without quotes arrives as a list.
    if (found.metaType() == QMetaType::fromType<QStringList>())
        return fromScreen(found.toStringList().join(u", "));
    return fromScreen(found.toString());
}

void SettingsStore::setValue(std::string_view application, std::string_view section, std::string_view key,
                             std::string_view value) {
    // QSettings may write by itself as soon as the event loop has its turn.
    if (!m_data->changed) prepareToWrite(m_data->file);
    const QByteArray bytes(value.data(), static_cast<qsizetype>(value.size()));
    const bool text = bytes.isValidUtf8() && !bytes.contains('\0');
    m_data->settings.setValue(settingsKey(application, section, key),
                              text ? QVariant(QString::fromUtf8(bytes)) : QVariant(bytes));
    m_data->changed = true;
}

bool SettingsStore::sync() {
    if (m_data->changed) prepareToWrite(m_data->file);
    m_data->settings.sync();
    if (m_data->settings.status() == QSettings::AccessError) return false;
    if (std::exchange(m_data->changed, false)) makePrivate(m_data->file);
    return true;
}

}  // namespace relay
