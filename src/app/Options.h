// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <string>

namespace relay {

// What the window program was started with.
struct Options final {
    std::string home;         // --home, or empty
    std::string commandLine;  // all arguments joined by blanks: where "/D" and "/U" are looked for
    QString answer;           // the text of --help or --version, or of a wrong usage; empty: go on
    int exitCode = 0;         // with an answer
};

// `arguments` without the program's name, as toScreen gives them. "/D" and "/U" may stand anywhere and in
// either case.
Options readOptions(const QStringList& arguments);

}  // namespace relay
