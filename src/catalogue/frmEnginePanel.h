// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include <memory>
#include <string>

class QAbstractButton;
class QAction;
class QCheckBox;

namespace relay {

namespace Ui {
class frmEnginePanel;
}
class EngineSelection;
struct EngineLists;

// The engine screen, SSTab3: the loaded engines, the selected ones, and the commands that select and
// unselect.
class frmEnginePanel final : public QWidget {
    Q_OBJECT
  public:
    explicit frmEnginePanel(QWidget* parent = nullptr);
    ~frmEnginePanel() override;

    // Shows the lists and drives the selection; both must outlive the panel. Without `adultSites` the two
    // adult options are hidden.
    void connectTo(EngineLists& lists, EngineSelection& selection, bool adultSites);
    // Updates captions and ticks of the type boxes.
    void showTypeBoxes();
    // Shows the text below the lists; an empty text hides it.
    void showWarning(const QString& text);
    // The action of the button in the empty list of engines.
    void setUpdateAction(QAction& update);
    // Focuses the list of engines, or the button in the empty list.
    void focusEngines();
    // Puts the cursor into the find box.
    void focusFindBox();
    // Lays out the columns of the list of engines, with or without their health.
    void showHealth(bool shown);

  Q_SIGNALS:
    // The user wants to see what would be sent to the engine.
    void previewWanted(const std::string& engine);
    // The columns with the engines' health are to be shown or hidden.
    void healthWanted(bool shown);
    // The engines that failed in their last runs are to leave the selection.
    void healthyWanted();

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QCheckBox* typeBox(std::size_t index) const;
    void connectTypeBoxes();
    void connectLists();
    void connectButtons();
    void followSelections();
    void stackButtons();
    void offerPreview();
    void offerHealth();

    std::unique_ptr<Ui::frmEnginePanel> m_ui;
    EngineLists* m_lists = nullptr;
    EngineSelection* m_selection = nullptr;
    QAction* m_healthAction = nullptr;
};

}  // namespace relay
