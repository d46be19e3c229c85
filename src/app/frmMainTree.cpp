// SPDX-License-Identifier: GPL-3.0-or-later
// The tree of the main window.
#include "app/clsMain.h"
#include "app/frmMain.h"
#include "catalogue/Catalogue.h"
#include "core/Prompts.h"
#include "core/ScreenText.h"
#include "core/Services.h"
#include "core/Trap.h"
#include "ui_frmMain.h"
#include "widgets/IconTheme.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>

namespace relay {

namespace {
constexpr int kIconSize = 18;
constexpr const char* kPopupTrap = "Menupopup_Error: ";

constexpr auto kLabelEditor = "txtNodeLabel";

// Keys pressed in it end here: the tree below has a use of its own for Return, Delete and F5.
class NodeLabel final : public QLineEdit {
  public:
    using QLineEdit::QLineEdit;

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        QLineEdit::keyPressEvent(event);
        event->accept();
    }
};

class NodeDelegate final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QSize hint = QStyledItemDelegate::sizeHint(option, index);
        return {hint.width(), std::max(hint.height(), kIconSize + 8)};
    }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex&) const override {
        auto* const edit = new NodeLabel(parent);
        edit->setObjectName(QLatin1String(kLabelEditor));
        edit->setAccessibleName(tr("New name"));
        edit->setMaxLength(1 << 24);
        return edit;
    }

  protected:
    // Tab ends the edit as Return does; the toolkit would go on to edit the next node.
    bool eventFilter(QObject* editor, QEvent* event) override {
        const int key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event)->key() : 0;
        if (key != Qt::Key_Tab && key != Qt::Key_Backtab)
            return QStyledItemDelegate::eventFilter(editor, event);
        auto* const edit = qobject_cast<QWidget*>(editor);
        Q_EMIT commitData(edit);
        Q_EMIT closeEditor(edit);
        return true;
    }

    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->decorationSize = QSize(kIconSize, kIconSize);
        option->icon = themedIcon(fromScreen(index.data(ProjectTree::ImageRole).toString()));
    }
};
}  // namespace

void frmMain::connectTree() {
    QTreeView* const view = m_ui->TreeView1;
    ProjectDesk& desk = m_main.desk;
    // While a node goes, the view looks for another current row; where to go next is the desk's business.
    connect(&desk.tree(), &ProjectTree::rowsAboutToBeRemoved, this, [this] { m_showingNode = true; });
    view->setModel(&desk.tree());
    connect(&desk.tree(), &ProjectTree::rowsRemoved, this, [this] { m_showingNode = false; });
    view->setItemDelegate(new NodeDelegate(view));
    view->setIconSize(QSize(kIconSize, kIconSize));
    view->expandAll();
    view->installEventFilter(this);
    view->viewport()->installEventFilter(this);
    view->addAction(m_ui->mnuPopupItems_10);
    connect(view->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (m_showingNode || !current.isValid()) return;
                m_clickDone = true;
                nodeClicked(current);
            });
    connect(view, &QTreeView::clicked, this, [this](const QModelIndex& index) {
        if (!m_clickDone) nodeClicked(index);
    });
    // A press highlights what is under it at its very end, also where the click was refused, and with
    // Control held takes the highlight away.
    connect(view, &QTreeView::pressed, this, &frmMain::keepHighlight);
    connect(view, &QTreeView::collapsed, this, &frmMain::leaveHiddenNode);
    connect(view, &QTreeView::doubleClicked, this, &frmMain::sortCurrentNode);
    const QString keys =
        tr("Double click or F5 sorts what is under the current node, F2 renames it, Delete "
           "removes it.");
    view->setToolTip(keys);
    view->setAccessibleDescription(keys);
    connect(view, &QTreeView::customContextMenuRequested, this, [this](const QPoint& place) {
        trap(m_services.prompts, kPopupTrap, [&] { showTreePopup(place); });
    });
    connectCommand(m_ui->mnuPopupItems_10, kPopupTrap, [this] { editLabel(m_main.desk.currentNode()); });
    connect(&desk, &ProjectDesk::currentChanged, this, &frmMain::showCurrentNode);
    connect(&desk, &ProjectDesk::labelEditWanted, this, &frmMain::editLabel, Qt::QueuedConnection);
    // The editor must be gone before a rename asks or tells anything.
    connect(&desk.tree(), &ProjectTree::labelEdited, this,
            [this](ProjectNode* node, const std::string& text) {
                const QString key = toScreen(node->key);
                QMetaObject::invokeMethod(
                    this, [this, key, text] { renameFromEditor(key, text); }, Qt::QueuedConnection);
            });
}

void frmMain::nodeClicked(const QModelIndex& index) {
    ProjectDesk& desk = m_main.desk;
    ProjectNode* const node = desk.tree().nodeAt(index);
    if (node == nullptr) return;
    if (desk.nodeClick(*node)) return;
    showCurrentNode(desk.currentNode());
    // A key, too, moves the highlight when it is done.
    QMetaObject::invokeMethod(this, &frmMain::keepHighlight, Qt::QueuedConnection);
}

void frmMain::showCurrentNode(ProjectNode* node) {
    if (node == nullptr) return;
    const QScopedValueRollback<bool> showing(m_showingNode, true);
    const QModelIndex index = m_main.desk.tree().indexOf(*node);
    m_ui->TreeView1->setCurrentIndex(index);
    m_ui->TreeView1->expand(index.parent());
    if (node->isProject()) m_ui->TreeView1->expand(index);
    m_ui->TreeView1->scrollTo(index);
}

void frmMain::editLabel(ProjectNode* node) {
    if (node == nullptr || node->parent == nullptr) {
        m_services.prompts.beep();
        return;
    }
    if (focusWidget() != nullptr && focusWidget()->objectName() == QLatin1String(kLabelEditor)) return;
    // The node need not be the current one: a name that will not do is asked for again wherever the user
    // went meanwhile.
    const QModelIndex index = m_main.desk.tree().indexOf(*node);
    m_ui->TreeView1->scrollTo(index);
    m_ui->TreeView1->setFocus(Qt::OtherFocusReason);
    m_ui->TreeView1->edit(index);
}

void frmMain::keepHighlight() {
    ProjectNode* const node = m_main.desk.currentNode();
    if (node == nullptr) return;
    const QModelIndex index = m_main.desk.tree().indexOf(*node);
    if (!m_ui->TreeView1->selectionModel()->isSelected(index)) showCurrentNode(node);
}

void frmMain::leaveHiddenNode(const QModelIndex& collapsed) {
    QTreeView& view = *m_ui->TreeView1;
    QModelIndex above = view.currentIndex().parent();
    while (above.isValid() && above != collapsed) above = above.parent();
    if (!above.isValid()) return;
    view.setCurrentIndex(collapsed);
    if (view.currentIndex() == collapsed) view.collapse(collapsed);  // the click has opened it again
}

void frmMain::renameFromEditor(const QString& key, const std::string& text) {
    ProjectNode* const node = m_main.desk.tree().find(fromScreen(key));
    if (node != nullptr) m_main.desk.rename(*node, text);
}

void frmMain::removeCurrentNode() {
    ProjectNode* const node = m_main.desk.currentNode();
    if (node == nullptr || node->parent == nullptr)
        m_services.prompts.beep();
    else
        m_main.desk.removeSelectedNode(*node);
}

void frmMain::sortCurrentNode() {
    ProjectNode* const node = m_main.desk.currentNode();
    if (node != nullptr) m_main.desk.tree().sortChildren(*node);
}

void frmMain::showTreePopup(const QPoint& place) {
    // The menu key asks at the current node, which may be scrolled out of sight.
    const QTreeView& view = *m_ui->TreeView1;
    const QModelIndex current = view.currentIndex();
    if (view.indexAt(place) != current && !view.visualRect(current).contains(place)) return;
    enableCommands();
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("mnuPopupItems"));
    menu.addActions({m_ui->mnuFileItems_0, m_ui->mnuFileItems_1});
    menu.addSeparator();
    menu.addActions({m_ui->mnuFileItems_3, m_ui->mnuFileItems_4});
    menu.addSeparator();
    menu.addActions({m_ui->mnuFileItems_6, m_ui->mnuFileItems_7, m_ui->mnuFileItems_8});
    menu.addSeparator();
    menu.addAction(m_ui->mnuPopupItems_10);
    menu.exec(m_ui->TreeView1->viewport()->mapToGlobal(place));
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_ui->TreeView1->viewport() && event->type() == QEvent::MouseButtonPress)
        m_clickDone = false;
    if (watched == m_ui->TreeView1 && event->type() == QEvent::KeyPress) {
        auto* const key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Delete) {
            removeCurrentNode();
            return true;
        }
        if (key->key() == Qt::Key_F5) {
            sortCurrentNode();
            return true;
        }
        // Elsewhere the key is the action's, which the root disables.
        if (key->key() == Qt::Key_F2) {
            editLabel(m_main.desk.currentNode());
            return true;
        }
        // Return is the keyboard's click: it leads from the engine screen back to the node's panel.
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            nodeClicked(m_ui->TreeView1->currentIndex());
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

}  // namespace relay
