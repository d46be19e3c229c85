// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QLocale>

#include <string>

namespace relay {

// The current time, passed in so that tests can set it.
class Clock {
  public:
    virtual ~Clock() = default;
    virtual QDateTime now() const = 0;
};

class SystemClock final : public Clock {
  public:
    QDateTime now() const override { return QDateTime::currentDateTime(); }
};

// "Apr 01, 2002 13:05", with English month names.
std::string reportDate(const QDateTime& time);
// "2002-Apr-01-1305", for file names.
std::string fileDate(const QDateTime& time);
// The long date of the system's locale ("Monday, April 1, 2002" in en_US).
std::string longDate(const QDateTime& time, const QLocale& locale);
// The short date of the locale, and that with the time: "4/1/02", "4/1/02 13:05" in en_US.
std::string shortDate(const QDateTime& time, const QLocale& locale);
std::string shortDateWithTime(const QDateTime& time, const QLocale& locale);
// The short date and time of the system's locale, for the banner of the log.
std::string shortDateTime(const QDateTime& time, const QLocale& locale);

}  // namespace relay
