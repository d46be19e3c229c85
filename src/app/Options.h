// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <string>

namespace relay {

// The command line of the window program.
struct Options final {
    std::string home;         // --home, or empty
    std::string commandLine;  // all arguments joined by blanks, to look for "/D" and "/U"
    QString answer;           // the text of --help, --version or a usage error; empty: start the program
    int exitCode = 0;         // with an answer
};

// `arguments` without the program's name, as toScreen gives them. "/D" and "/U" may be anywhere, in either
// case.
Options readOptions(const QStringList& arguments);

}  // namespace relay
