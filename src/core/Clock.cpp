// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Clock.h"

#include "core/ScreenText.h"

namespace relay {

std::string reportDate(const QDateTime& time) {
    return fromScreen(QLocale::c().toString(time, u"MMM dd, yyyy HH:mm"));
}

std::string fileDate(const QDateTime& time) {
    return fromScreen(QLocale::c().toString(time, u"yyyy-MMM-dd-HHmm"));
}

std::string longDate(const QDateTime& time, const QLocale& locale) {
    return fromScreen(locale.toString(time.date(), QLocale::LongFormat));
}

std::string shortDate(const QDateTime& time, const QLocale& locale) {
    return fromScreen(locale.toString(time.date(), QLocale::ShortFormat));
}

std::string shortDateWithTime(const QDateTime& time, const QLocale& locale) {
    return shortDate(time, locale) + " " + fromScreen(QLocale::c().toString(time.time(), u"H:mm"));
}

std::string shortDateTime(const QDateTime& time, const QLocale& locale) {
    return fromScreen(locale.toString(time, QLocale::ShortFormat));
}

}  // namespace relay
