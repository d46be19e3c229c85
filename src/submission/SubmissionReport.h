// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/SubmissionRecords.h"

#include <QDateTime>

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

// The report of one URL: fixed text with the values pasted in raw.
namespace relay {

class IniFile;

// The names of the engines that failed in a run, as fail.eng takes them: one a line, CR LF behind each.
class FailEngines final {
  public:
    // Nothing happens when the text so far holds the name, also as a part of a longer one and in any case.
    void add(std::string_view name);
    void clear();
    const std::string& text() const noexcept { return m_text; }

  private:
    std::string m_text;
    std::unordered_set<std::string> m_names;  // spares the search of the whole text for a name added before
};

// The rows of the two engine tables.
struct SubmitResults final {
    std::string SuccessRows;
    std::string FailRows;
    int successCount = 0;
    int failCount = 0;
};
// One row an engine, in the order of selection; the names of all that did not succeed go to `failEngines`.
// `linkEngines` makes each name a link to the engine's AddURL.
SubmitResults buildResultRows(const std::vector<EngineResult>& engines, bool linkEngines,
                              FailEngines& failEngines);

// The maker's addresses in the report's foot.
struct ReportMaker final {
    std::string name;
    std::string supportAddress;
    std::string webAddress;
};

// The whole report without its last line end. The website's details come from `websiteFile`.
std::string buildReport(std::string_view URL, const IniFile& websiteFile, std::string_view date,
                        const SubmitResults& results, const ReportMaker& maker);

// "a.test_b_c(2002-Apr-01-1305).html": never a path, whatever the URL holds. Of a name over 200 bytes the
// first 180 stay, and "~" with the CRC-32 of all of it in hex digits keeps long URLs apart.
std::string reportFileName(std::string_view URL, const QDateTime& time);

// Notes a report in the website file: raises LastReport and writes URL, Date and ReportFile under the new
// number. One read, change and write under the folder's lock. Throws Failure.
void noteReport(const std::string& websiteFile, std::string_view URL, const QDateTime& time,
                std::string_view reportPath);

}  // namespace relay
