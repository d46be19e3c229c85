// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QTimer>

#include <memory>
#include <string_view>

namespace relay {

class EngineUpdate;
class Prompts;
struct UpdateState;

namespace Ui {
class frmUpdateEngines;
}

// The window of the engine data update.
class frmUpdateEngines final : public QDialog {
    Q_OBJECT
  public:
    // `prompt` stands in Label1 until the update starts; without it a short one does. The other arguments
    // outlive the form.
    frmUpdateEngines(EngineUpdate& update, Prompts& prompts, std::string_view prompt = {},
                     QWidget* parent = nullptr);
    ~frmUpdateEngines() override;

    // Ends a running update.
    void done(int result) override;

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void showState();
    void showTexts(const UpdateState& state);
    void showProgress(const UpdateState& state);
    void showLink();
    void fitHeight();

    std::unique_ptr<Ui::frmUpdateEngines> m_ui;
    EngineUpdate& m_update;
    QTimer m_hold;  // looks whether a run still uses the engines
    bool m_linkHovered = false;
};

}  // namespace relay
