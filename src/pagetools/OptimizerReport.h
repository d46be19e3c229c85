// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pagetools/MetaTags.h"

#include <QDateTime>
#include <QLocale>

#include <string>
#include <string_view>

namespace relay {

class clsPreference;

// Everything an optimizer report shows. Values go into the HTML unescaped.
struct OptimizerInput final {
    std::string_view html;  // only its length and whether it has frames
    const PageTexts& page;
    std::string_view address;  // as optimizerAddress() makes it
    const clsPreference& preference;
    QDateTime time;
    QLocale locale;
};

// The whole report without its last line end; lines end with CR LF. The time grows with the page's length in
// a straight line, whatever the number of keywords.
std::string buildOptimizerReport(const OptimizerInput& input);

// What was typed, as the report shows it: "http://" in front, unless it begins with "http" or names a local
// file.
std::string optimizerAddress(std::string_view typed);
// The report as the program's own window shows it: the page's texts as plain text, cut when they are long,
// and nothing that a viewer would load. Empty when there are too many keywords for such a viewer.
std::string reportForWindow(const OptimizerInput& input);
// The report's name: made of host and path, or of the local file's name. Never a path.
std::string optimizerReportName(std::string_view address);

}  // namespace relay
