// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Options.h"

#include "core/ScreenText.h"

#include <QCommandLineParser>

namespace relay {

namespace {
constexpr int kWrongUsage = 2;
}

Options readOptions(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("A workbench for promoting web sites.\n\n"
                       "  /D  log what is sent and received\n"
                       "  /U  link report rows to the engines' submission pages"));
    const QCommandLineOption home(QStringLiteral("home"), QStringLiteral("Keep everything in <folder>."),
                                  QStringLiteral("folder"));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Show this help."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     QStringLiteral("Show the version."));
    parser.addOptions({home, help, version});
    Options options;
    options.commandLine = fromScreen(arguments.join(QLatin1Char(' ')));
    if (!parser.parse(QStringList{QStringLiteral("korvel-relay")} + arguments)) {
        options.answer = parser.errorText();
        options.exitCode = kWrongUsage;
    } else if (parser.isSet(home) && parser.value(home).isEmpty()) {
        options.answer = QStringLiteral("--home: is empty");
        options.exitCode = kWrongUsage;
    } else if (parser.isSet(version)) {
        options.answer = QStringLiteral("korvel-relay " RELAY_VERSION);
    } else if (parser.isSet(help)) {
        // The parser would print the path of the program, or a placeholder if there is no application yet.
        const QString text = parser.helpText();
        options.answer = QStringLiteral("Usage: korvel-relay [options] [/D] [/U]") +
                         text.mid(text.indexOf(QLatin1Char('\n')));
    }
    options.home = fromScreen(parser.value(home));
    return options;
}

}  // namespace relay
