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

// The submission wizard: its four pages over the controller, which carries the rules and the run. During a
// run the screen follows the state once a frame, however much happens in between.
class frmSubmit final : public QDialog {
    Q_OBJECT
  public:
    // Everything that is handed in outlives the form.
    frmSubmit(const Services& services, const Catalogue& catalogue, SubmissionOptions options,
              QWidget* parent = nullptr);
    ~frmSubmit() override;

    SubmissionController& controller() noexcept { return m_controller; }
    // Closes, unless a run is under way and the user wants to stay.
    void reject() override;

  private:
    void drawIcons();
    void connectLists();
    void connectButtons();
    void connectResults();
    void showState();
    void showPages();
    void takePage();
    void showRunning();
    void showResults();
    void openAddURL(int row);
    void showPreview();

    std::unique_ptr<Ui::frmSubmit> m_ui;
    const Services& m_services;
    const Catalogue& m_catalogue;
    SubmissionController m_controller;
    ResultList m_results;
    QTimer m_frame;  // while a run is under way
    QLabel* m_clock;
    QLabel* m_notice;  // that the run could not go on after a crash
    int m_shownPage = -1;
    bool m_wasRunning = false;
};

}  // namespace relay
