// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/frmEnginePanel.h"

#include "catalogue/EngineLists.h"
#include "catalogue/EngineSelection.h"
#include "catalogue/ui_frmEnginePanel.h"
#include "core/ScreenText.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QAction>
#include <QScrollBar>

namespace relay {

namespace {
// Width of the column with types, adult sites and countries.
constexpr int kWaysCharacters = 38;
constexpr int kFindCharacters = 100;
constexpr int kCountriesInSight = 3;  // in the smallest window
constexpr int kRowPadding = 7;

// Alt with one of these letters opens a menu of the window. A shared key would work for neither.
QString withoutMenuKey(QString caption) {
    const qsizetype mark = caption.indexOf(QLatin1Char('&'));
    const bool shared = mark >= 0 && QStringLiteral("FETAH").contains(caption.mid(mark + 1, 1));
    return shared ? caption.remove(mark, 1) : caption;
}
}  // namespace

frmEnginePanel::frmEnginePanel(QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::frmEnginePanel>()) {
    m_ui->setupUi(this);
    const int waysWidth = fontMetrics().averageCharWidth() * kWaysCharacters;
    for (QWidget* way : {static_cast<QWidget*>(m_ui->scrWays), static_cast<QWidget*>(m_ui->lstCountry)})
        way->setMaximumWidth(waysWidth);
    m_ui->lstCountry->setMinimumHeight((fontMetrics().height() + kRowPadding) * kCountriesInSight);
    // The buttons do not limit the lists: they stack when the lists get narrow.
    for (QPushButton* push :
         {m_ui->cmdSelectEngine_0, m_ui->cmdSelectEngine_1, m_ui->cmdRemoveEngine_0, m_ui->cmdRemoveEngine_1})
        push->setMinimumWidth(1);
    for (std::size_t index = 0; index < EngineTypes.size(); ++index)
        typeBox(index)->setIcon(themedIcon(EngineTypes[index].icon));
    m_ui->txtFindEngines->addAction(themedIcon("Search"), QLineEdit::LeadingPosition)->setText(tr("Find"));
    m_ui->txtFindEngines->setMaximumWidth(fontMetrics().averageCharWidth() * kFindCharacters);
}

frmEnginePanel::~frmEnginePanel() {
    if (m_lists != nullptr) m_lists->typeBoxesChanged = nullptr;
}

QCheckBox* frmEnginePanel::typeBox(std::size_t index) const {
    QCheckBox* const boxes[] = {m_ui->chkType_0, m_ui->chkType_1, m_ui->chkType_2, m_ui->chkType_3,
                                m_ui->chkType_4, m_ui->chkType_5, m_ui->chkType_6};
    return boxes[index];
}

void frmEnginePanel::connectTo(EngineLists& lists, EngineSelection& selection, bool adultSites) {
    m_lists = &lists;
    m_selection = &selection;
    m_ui->optAdultSite_0->setVisible(adultSites);
    m_ui->optAdultSite_1->setVisible(adultSites);
    m_ui->fraAdult->setVisible(adultSites);
    connectTypeBoxes();
    connectLists();
    connectButtons();
}

void frmEnginePanel::connectTypeBoxes() {
    m_lists->typeBoxesChanged = [this] { showTypeBoxes(); };
    for (std::size_t index = 0; index < EngineTypes.size(); ++index) {
        connect(typeBox(index), &QCheckBox::clicked, this,
                [this, index](bool ticked) { m_selection->clickType(index, ticked); });
    }
    connect(m_ui->optAdultSite_0, &QRadioButton::clicked, this,
            [this] { m_selection->SelectByMode("AdultOnlySite"); });
    connect(m_ui->optAdultSite_1, &QRadioButton::clicked, this,
            [this] { m_selection->EngineSelectNoAdultSites(); });
    showTypeBoxes();
}

void frmEnginePanel::showTypeBoxes() {
    for (std::size_t index = 0; index < EngineTypes.size(); ++index) {
        typeBox(index)->setText(withoutMenuKey(toScreen(m_lists->chkType[index].caption)));
        typeBox(index)->setChecked(m_lists->chkType[index].checked);
    }
}

void frmEnginePanel::connectLists() {
    m_ui->lsvEngines->setRows(&m_lists->lsvEngines, {6, 7});
    m_ui->lsvSelectedEngines->setRows(&m_lists->lsvSelectedEngines, {6, 7});
    m_ui->lstCountry->setRows(&m_lists->lstCountry);
    const auto selectCountry = [this](int row) {
        m_selection->EngineSelectByCountry(m_lists->lstCountry.at(row).text);
    };
    connect(m_ui->lstCountry, &ListView::rowClicked, this, selectCountry);
    connect(m_ui->lstCountry, &ListView::rowActivated, this, selectCountry);
    connect(m_ui->lsvEngines, &ListView::rowActivated, this,
            [this](int row) { m_selection->EngineSingleSelect(m_lists->lsvEngines.at(row).key); });
    connect(m_ui->lsvEngines, &ListView::deletePressed, this, [this] { m_selection->deleteListedEngines(); });
    connect(m_ui->lsvSelectedEngines, &ListView::deletePressed, this,
            [this] { m_selection->EngineRemove(false); });
    connect(m_ui->txtFindEngines, &QLineEdit::returnPressed, this,
            [this] { m_selection->findEnginesByKeyword(fromScreen(m_ui->txtFindEngines->text())); });
}

void frmEnginePanel::connectButtons() {
    const auto button = [this](QPushButton* push, const char* icon, ListView* list,
                               void (EngineSelection::*operation)(bool), bool all) {
        connect(push, &QPushButton::clicked, this,
                [this, operation, all] { (m_selection->*operation)(all); });
        // The same command in the context menu of the list.
        auto* action = new QAction(themedIcon(icon), push->text(), this);
        connect(action, &QAction::triggered, push, &QPushButton::click);
        if (!all) connect(list, &ListView::rowsSelected, action, &QAction::setEnabled);
        list->addAction(action);
    };
    button(m_ui->cmdSelectEngine_0, "Select", m_ui->lsvEngines, &EngineSelection::EngineSelect, false);
    button(m_ui->cmdSelectEngine_1, "SelectAll", m_ui->lsvEngines, &EngineSelection::EngineSelect, true);
    button(m_ui->cmdRemoveEngine_0, "Unselect", m_ui->lsvSelectedEngines, &EngineSelection::EngineRemove,
           false);
    button(m_ui->cmdRemoveEngine_1, "UnselectAll", m_ui->lsvSelectedEngines, &EngineSelection::EngineRemove,
           true);
    auto* drop = new QAction(themedIcon("DeleteURL"), tr("Remove from this list\tDel"), this);
    connect(drop, &QAction::triggered, this, [this] { m_selection->deleteListedEngines(); });
    m_ui->lsvEngines->addAction(drop);
    connect(m_ui->lsvEngines, &ListView::rowsSelected, drop, &QAction::setEnabled);
    followSelections();
    offerPreview();
    offerHealth();
}

void frmEnginePanel::followSelections() {
    const QString reason = tr("Select engines in the list first.");
    needSelection(*m_ui->lsvEngines, *m_ui->cmdSelectEngine_0,
                  tr("Adds the engines that are selected in the list above"), reason);
    needSelection(*m_ui->lsvSelectedEngines, *m_ui->cmdRemoveEngine_0,
                  tr("Takes the engines that are selected in the list above out of the selection (Del)"),
                  reason);
}

void frmEnginePanel::showWarning(const QString& text) {
    m_ui->lblPasswordWarning->setText(text);
    m_ui->lblPasswordWarning->setVisible(!text.isEmpty());
}

void frmEnginePanel::setUpdateAction(QAction& update) {
    m_ui->lsvEngines->setEmptyAction(update);
}

void frmEnginePanel::focusEngines() {
    m_ui->lsvEngines->takeFocus();
}

void frmEnginePanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_ui->scrWays->setMinimumWidth(m_ui->scrWaysContents->minimumSizeHint().width() +
                                   m_ui->scrWays->verticalScrollBar()->sizeHint().width());
    stackButtons();
}

// Both rows of buttons stack together.
void frmEnginePanel::stackButtons() {
    const int room = std::min(m_ui->lsvEngines->width(), m_ui->lsvSelectedEngines->width());
    const auto needed = [](const QBoxLayout* row, const QPushButton* one, const QPushButton* other) {
        return one->sizeHint().width() + row->spacing() + other->sizeHint().width();
    };
    const bool fits = room >= needed(m_ui->layoutSelect, m_ui->cmdSelectEngine_0, m_ui->cmdSelectEngine_1) &&
                      room >= needed(m_ui->layoutRemove, m_ui->cmdRemoveEngine_0, m_ui->cmdRemoveEngine_1);
    for (QBoxLayout* row : {m_ui->layoutSelect, m_ui->layoutRemove})
        row->setDirection(fits ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
}

void frmEnginePanel::offerPreview() {
    for (ListView* list : {m_ui->lsvEngines, m_ui->lsvSelectedEngines}) {
        auto* action = new QAction(themedIcon("Preview"), tr("Pre&view its Request ..."), this);
        action->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_P));
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, [this, list] {
            const int row = list->rows()->firstHighlighted();
            if (row >= 0) Q_EMIT previewWanted(std::string(list->rows()->at(row).key));
        });
        list->addAction(action);
    }
}

void frmEnginePanel::offerHealth() {
    m_healthAction = new QAction(themedIcon("Report"), tr("Show Engine &Health"), this);
    m_healthAction->setObjectName(QStringLiteral("mnuEngineHealth"));
    m_healthAction->setCheckable(true);
    m_healthAction->setToolTip(
        tr("When each engine last succeeded, and how often in a row it has failed since"));
    connect(m_healthAction, &QAction::triggered, this, &frmEnginePanel::healthWanted);
    m_ui->lsvEngines->addAction(m_healthAction);
    auto* const healthy = new QAction(themedIcon("Failed"), tr("Unselect &Failing Engines"), this);
    healthy->setObjectName(QStringLiteral("mnuHealthyEngines"));
    healthy->setToolTip(
        tr("Takes the engines that failed in each of their last three runs out of the selection"));
    connect(healthy, &QAction::triggered, this, &frmEnginePanel::healthyWanted);
    m_ui->lsvSelectedEngines->addAction(healthy);
}

void frmEnginePanel::showHealth(bool shown) {
    m_healthAction->setChecked(shown);
    m_ui->lsvEngines->setRows(&m_lists->lsvEngines,
                              shown ? std::vector<int>{6, 7, 16, 7} : std::vector<int>{6, 7});
}

void frmEnginePanel::focusFindBox() {
    m_ui->txtFindEngines->setFocus(Qt::ShortcutFocusReason);
    m_ui->txtFindEngines->selectAll();
}

}  // namespace relay
