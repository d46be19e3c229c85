// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/RankingHistory.h"
#include "ranking/clsRanking.h"

#include <QDialog>

#include <memory>

namespace relay {

namespace Ui {
class frmRanking;
}

// "Web Ranking": a run and its report, the list of reports, and the history. Escape first stops a run, then
// closes the form.
class frmRanking final : public QDialog {
    Q_OBJECT
  public:
    // The services outlive the form.
    explicit frmRanking(const Services& services, QWidget* parent = nullptr);
    ~frmRanking() override;

    clsRanking& ranking() noexcept { return m_ranking; }
    RankingHistory& history() noexcept { return m_history; }

    // Stops a run.
    void done(int result) override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void drawIcons();
    void connectProfile();
    void connectSearch();
    void connectReports();
    void showState();
    void showProfiles();
    void showSetup();
    void showButtons();
    void showSelectAll();
    void showRefused(SetupField field);
    void showHistory();
    void addURL();
    void deleteURL();

    std::unique_ptr<Ui::frmRanking> m_ui;
    clsRanking m_ranking;
    RankingHistory m_history;
    std::string m_followed;  // the profile of the first page when the history was shown last
};

}  // namespace relay
