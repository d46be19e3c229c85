// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "submission/ResultList.h"
#include "submission/SubmissionController.h"

#include <QDialog>
#include <QTimer>

#include <memory>

class QLabel;
class QPushButton;

namespace relay {

namespace Ui {
class frmSubmit;
}

// The submission wizard: four pages over the controller, which has the rules and the run. During a run the
// screen is updated once per frame, however many requests end in between.
class frmSubmit final : public QDialog {
    Q_OBJECT
  public:
    // All arguments outlive the form.
    frmSubmit(const Services& services, const Catalogue& catalogue, SubmissionOptions options,
              QWidget* parent = nullptr);
    ~frmSubmit() override;

    SubmissionController& controller() noexcept { return m_controller; }
    // Closes, unless a run is active and the user does not confirm.
    void reject() override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void drawIcons();
    void connectLists();
    void connectButtons();
    void connectResults();
    void showState();
    void showPages();
    void takePage();
    void fitSummary();
    void showRunning();
    void showResults();
    void noteProblem(const UrlReport& report);
    void showProblems();
    void openAddURL(int row);
    void showPreview();

    std::unique_ptr<Ui::frmSubmit> m_ui;
    const Services& m_services;
    const Catalogue& m_catalogue;
    SubmissionController m_controller;
    ResultList m_results;
    QTimer m_frame;  // active during a run
    QLabel* m_clock;
    QLabel* m_notice;        // shown when the ledger cannot be written
    std::string m_problems;  // of the run's reports, a line each
    int m_problemCount = 0;
    int m_shownPage = -1;
    bool m_wasRunning = false;
};

}  // namespace relay
