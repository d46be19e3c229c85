// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/TextViewer.h"

#include "core/FileStore.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "core/Trap.h"

#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace relay {

namespace {

constexpr int kAnswerMilliseconds = 5000;

// The value of a key in the group "Desktop Entry".
std::string entryOf(std::string_view desktopFile, std::string_view key) {
    bool inGroup = false;
    while (!desktopFile.empty()) {
        const std::string_view line = firstLine(desktopFile);
        desktopFile.remove_prefix(std::min(line.size() + 1, desktopFile.size()));
        if (line.starts_with('[')) inGroup = line == "[Desktop Entry]";
        const std::size_t sign = line.find('=');
        if (inGroup && sign != npos && trim(line.substr(0, sign)) == key)
            return std::string(trim(line.substr(sign + 1)));
    }
    return {};
}

// Such as "org.kde.kate.desktop"; empty when the desktop has none.
QString textProgram() {
    QProcess query;
    query.start(QStringLiteral("xdg-mime"),
                {QStringLiteral("query"), QStringLiteral("default"), QStringLiteral("text/plain")});
    if (!query.waitForFinished(kAnswerMilliseconds)) return {};
    return QString::fromLocal8Bit(query.readAllStandardOutput()).trimmed();
}

}  // namespace

QStringList openingCommand(std::string_view desktopFile, const QString& file) {
    QStringList command;
    for (QString argument : QProcess::splitCommand(toScreen(entryOf(desktopFile, "Exec")))) {
        if (argument == QLatin1String("%f") || argument == QLatin1String("%F"))
            command << file;
        else if (argument == QLatin1String("%u") || argument == QLatin1String("%U"))
            command << QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded);
        else if (argument.size() != 2 || !argument.startsWith(QLatin1Char('%')))
            command << argument.replace(QStringLiteral("%%"), QStringLiteral("%"));
    }
    if (!command.isEmpty() && entryOf(desktopFile, "Terminal") == "true")
        command = QStringList{QStringLiteral("x-terminal-emulator"), QStringLiteral("-e")} + command;
    return command;
}

bool openAsText(const QString& file) {
    const QString program = textProgram();
    if (program.isEmpty()) return false;
    const QString entry =
        QStandardPaths::locate(QStandardPaths::ApplicationsLocation, program, QStandardPaths::LocateFile);
    std::string desktopFile;
    if (entry.isEmpty() || failureOf([&] { desktopFile = readFile(fromScreen(entry)); })) return false;
    QStringList command = openingCommand(desktopFile, file);
    if (command.isEmpty()) return false;
    const QString name = command.takeFirst();
    return QProcess::startDetached(name, command);
}

}  // namespace relay
