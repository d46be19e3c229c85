// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

#include <memory>
#include <string>

class QAbstractButton;
class QCheckBox;

namespace relay {

namespace Ui {
class frmEnginePanel;
}
class EngineSelection;
struct EngineLists;

// The engine screen, SSTab3: the engines that are loaded, those that are selected, and the ways from the one
// list to the other.
class frmEnginePanel final : public QWidget {
    Q_OBJECT
  public:
    explicit frmEnginePanel(QWidget* parent = nullptr);
    ~frmEnginePanel() override;

    // Shows the lists and drives the selection; both must outlive the panel. Without `adultSites` their two
    // options are hidden.
    void connectTo(EngineLists& lists, EngineSelection& selection, bool adultSites);
    // Brings captions and ticks of the type boxes up to date.
    void showTypeBoxes();
    // Puts the cursor into the find box.
    void focusFindBox();

  Q_SIGNALS:
    // The user wants to see what the engine would be sent.
    void previewWanted(const std::string& engine);

  private:
    QCheckBox* typeBox(std::size_t index) const;
    void connectTypeBoxes();
    void connectLists();
    void connectButtons();
    void offerPreview();

    std::unique_ptr<Ui::frmEnginePanel> m_ui;
    EngineLists* m_lists = nullptr;
    EngineSelection* m_selection = nullptr;
};

}  // namespace relay
