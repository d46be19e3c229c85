// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/SubmissionRecords.h"

#include <QDateTime>

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

// The report of one URL: fixed text with unescaped values.
namespace relay {

class IniFile;

// The names of the engines that failed in a run, as in fail.eng: one per line, ended by CR LF.
class FailEngines final {
  public:
    // Does nothing if the text already contains the name, even within a longer one or in another case.
    void add(std::string_view name);
    void clear();
    const std::string& text() const noexcept { return m_text; }

  private:
    std::string m_text;
    std::unordered_set<std::string> m_names;  // avoids searching the text for a name added before
};

// The rows of the two engine tables.
struct SubmitResults final {
    std::string SuccessRows;
    std::string FailRows;
    int successCount = 0;
    int failCount = 0;
};
// One row per engine, in order of selection; adds the names of all that did not succeed to `failEngines`.
// `linkEngines` makes each name a link to the engine's AddURL.
SubmitResults buildResultRows(const std::vector<EngineResult>& engines, bool linkEngines,
                              FailEngines& failEngines);

// The maker's addresses at the end of the report.
struct ReportMaker final {
    std::string name;
    std::string supportAddress;
    std::string webAddress;
};

// The whole report without its last line end. `websiteFile` has the website's details.
std::string buildReport(std::string_view URL, const IniFile& websiteFile, std::string_view date,
                        const SubmitResults& results, const ReportMaker& maker);

// Lists a report in the website file: raises LastReport and writes URL, Date and ReportFile under the new
// number. Reads and writes under one lock of the folder. Throws Failure.
void noteReport(const std::string& websiteFile, std::string_view URL, const QDateTime& time,
                std::string_view reportPath);

}  // namespace relay
