// SPDX-License-Identifier: GPL-3.0-or-later
// Regular expressions over bytes. <regex> is not used: with the sanitizers, GCC 12 warns inside it.
#pragma once

#include <QRegularExpression>
#include <QString>

#include <string>
#include <string_view>
#include <vector>

namespace relay::test {

inline QString latin1(std::string_view text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

// `after` refers to groups as \1.
inline std::string replacePattern(std::string_view text, const char* pattern, const char* after) {
    return latin1(text).replace(QRegularExpression(latin1(pattern)), latin1(after)).toLatin1().toStdString();
}

// Of every match, the given group; 0 is the whole match.
inline std::vector<std::string> findPattern(std::string_view text, const char* pattern, int group = 0) {
    std::vector<std::string> found;
    const QString all = latin1(text);
    for (const QRegularExpressionMatch& match : QRegularExpression(latin1(pattern)).globalMatch(all))
        found.push_back(match.captured(group).toLatin1().toStdString());
    return found;
}

}  // namespace relay::test
