// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"
#include "pagetools/Findings.h"

#include <QObject>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

class RuleSettings;
struct Services;

struct OptimizerReportFile final {
    std::string path;
    std::string shown;  // by reportForWindow
};
// Writes the report on a page into the folder Optimizer. `address` is as it was typed. A page that can be
// read only in part gets a message. Throws Failure, with nothing written.
OptimizerReportFile writeOptimizerReport(const Services& services, std::string_view html,
                                         std::string_view address);

// The Web Site Optimizer: a report and today's findings on one page. Members are named after their controls.
class Optimizer final : public QObject {
    Q_OBJECT
  public:
    // Requests the page of a web address, which comes back by showPage; false while another request runs.
    using Connect = std::function<bool(const std::string& url)>;
    using Disconnect = std::function<void()>;

    Optimizer(const Services& services, Connect connect, Disconnect disconnect, QObject* parent = nullptr);

    std::string cboSiteURL;  // a web address or a local file
    Rows lsvFindings;        // of the last page: severity, line, rule, what was found
    const std::vector<std::string>& history() const noexcept { return m_history; }  // newest first
    void loadHistory();
    void saveHistory();

    // The button: requests or reads the page, or cancels the request.
    void cmdRenovator();
    // The command of the URL list: requests the page of the chosen URL. The screen need not be open.
    void optimizeURL(const std::string& url);
    // Ends a running request without its page.
    void cancel();
    // The picker's filter is for local pages; the chosen file becomes the address.
    void cmdFileLocation();
    // The end of a request: its page, or no page and why.
    void showPage(std::string_view html, const std::string& problem);
    // The request was cancelled.
    void cancelled();
    // Writes the report on the page of cboSiteURL, opens it, and looks for findings.
    void Renovator(std::string_view html);
    // The whole file; nothing after a message.
    std::optional<std::string> getFileData(const std::string& path) const;

    std::string caption() const { return m_fetching ? "&Cancel" : "&Optimizer"; }
    bool isFetching() const noexcept { return m_fetching; }
    bool isBusy() const noexcept { return m_busy; }  // both buttons are disabled
    const std::string& status() const noexcept { return m_status; }

    // Of the last page.
    const std::string& address() const noexcept { return m_address; }
    const OptimizerReportFile& report() const noexcept { return m_report; }  // empty if there is none
    void openReport() const;
    const std::string& source() const noexcept { return m_source; }  // the page as it came
    const std::vector<PageFinding>& findings() const noexcept { return m_findings; }
    // "2 errors, 1 warning and 3 notices"; empty before the first page.
    std::string summary() const;
    // Of a row of lsvFindings.
    std::size_t lineOf(int row) const;
    std::string explanation(int row) const;
    // Asks where, and saves the findings as CSV or, by the chosen filter, as SARIF.
    void saveFindings();

  Q_SIGNALS:
    void stateChanged();  // caption, buttons and status
    void finished();      // Renovator is through; also after a failure
    void findingsChanged();

  private:
    void setStatus(std::string text);
    void setFetching(bool fetching);
    bool request();
    void check(std::string_view html);
    void readRules(RuleSettings& settings) const;
    void showFindings();

    const Services& m_services;
    Connect m_connect;
    Disconnect m_disconnect;
    std::vector<std::string> m_history;
    std::vector<std::string> m_newAddresses;  // since the last save
    std::string m_status;
    std::string m_address;
    OptimizerReportFile m_report;
    std::string m_source;
    std::vector<PageFinding> m_findings;
    bool m_fetching = false;
    bool m_cancelling = false;  // the end of a cancelled request is still to come
    bool m_fromList = false;    // the request is that of the URL list's command
    bool m_busy = false;
};

}  // namespace relay
