// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/frmProjectTree.h"

#include "core/Prompts.h"
#include "core/ScreenText.h"
#include "core/Trap.h"
#include "projects/Workspace.h"
#include "widgets/IconTheme.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>

namespace relay {

namespace {
constexpr int kIconSize = 18;
constexpr auto kLabelEditor = "txtNodeLabel";

// Hides its keys from the tree, which uses Return, Delete and F5 itself.
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
    // Tab ends the edit like Return; by default it would edit the next node.
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

void frmProjectTree::connectTo(Workspace& workspace, Prompts& prompts) {
    m_workspace = &workspace;
    m_prompts = &prompts;
    setItemDelegate(new NodeDelegate(this));
    setIconSize(QSize(kIconSize, kIconSize));
    connectWorkspace();
    expandAll();
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& current) {
        if (m_following || !current.isValid()) return;
        m_clickDone = true;
        clickNode(current);
    });
    connect(this, &QTreeView::clicked, this, [this](const QModelIndex& index) {
        if (!m_clickDone) clickNode(index);
    });
    // A press highlights its row even if the click is refused; with Control it removes the highlight.
    connect(this, &QTreeView::pressed, this, &frmProjectTree::keepHighlight);
    connect(this, &QTreeView::collapsed, this, &frmProjectTree::leaveHiddenNode);
    connect(this, &QTreeView::doubleClicked, this, &frmProjectTree::sortCurrentNode);
    connect(this, &QTreeView::customContextMenuRequested, this, [this](const QPoint& place) {
        trap(*m_prompts, "Menupopup_Error: ", [&] { showPopup(place); });
    });
    const QString keys =
        tr("Double-click or F5 sorts the contents of the current node, F2 renames it, Delete "
           "removes it. F6 leads here from everywhere, and back.");
    setToolTip(keys);
    setAccessibleDescription(keys);
}

void frmProjectTree::connectWorkspace() {
    ProjectTree& tree = m_workspace->tree();
    // When a node is removed, the view selects another row; the workspace decides which one.
    connect(&tree, &ProjectTree::rowsAboutToBeRemoved, this, [this] { m_following = true; });
    setModel(&tree);
    connect(&tree, &ProjectTree::rowsRemoved, this, [this] { m_following = false; });
    connect(m_workspace, &Workspace::currentChanged, this, &frmProjectTree::showCurrentNode);
    connect(m_workspace, &Workspace::labelEditWanted, this, &frmProjectTree::editLabel, Qt::QueuedConnection);
    // The editor must close before a rename asks or shows anything.
    connect(&tree, &ProjectTree::labelEdited, this, [this](ProjectNode* node, const std::string& text) {
        QMetaObject::invokeMethod(
            this, [this, key = node->key, text] { renameFromEditor(key, text); }, Qt::QueuedConnection);
    });
}

void frmProjectTree::addSeparator() {
    auto* const separator = new QAction(this);
    separator->setSeparator(true);
    addAction(separator);
}

void frmProjectTree::clickNode(const QModelIndex& index) {
    ProjectNode* const node = m_workspace->tree().nodeAt(index);
    if (node == nullptr || m_workspace->nodeClick(*node)) return;
    showCurrentNode();
    // A key also moves the highlight, after this handler.
    QMetaObject::invokeMethod(this, &frmProjectTree::keepHighlight, Qt::QueuedConnection);
}

void frmProjectTree::showCurrentNode() {
    const QScopedValueRollback<bool> following(m_following, true);
    const ProjectNode& node = *m_workspace->currentNode();
    const QModelIndex index = m_workspace->tree().indexOf(node);
    setCurrentIndex(index);
    expand(index.parent());
    if (node.isProject()) expand(index);
    scrollTo(index);
}

void frmProjectTree::editLabel(const ProjectNode* node) {
    if (node->isRoot()) {
        m_prompts->beep();
        return;
    }
    if (findChild<NodeLabel*>() != nullptr) return;
    // The node may not be the current one: a refused name is asked for again wherever the user has gone
    // since.
    const QModelIndex index = m_workspace->tree().indexOf(*node);
    scrollTo(index);
    setFocus(Qt::OtherFocusReason);
    edit(index);
}

void frmProjectTree::keepHighlight() {
    const QModelIndex index = m_workspace->tree().indexOf(*m_workspace->currentNode());
    if (!selectionModel()->isSelected(index)) showCurrentNode();
}

void frmProjectTree::leaveHiddenNode(const QModelIndex& closed) {
    QModelIndex above = currentIndex().parent();
    while (above.isValid() && above != closed) above = above.parent();
    if (!above.isValid()) return;
    setCurrentIndex(closed);
    if (currentIndex() == closed) collapse(closed);  // the click opened it again
}

void frmProjectTree::renameFromEditor(const std::string& key, const std::string& text) {
    ProjectNode* const node = m_workspace->tree().find(key);
    if (node != nullptr) m_workspace->rename(*node, text);
}

void frmProjectTree::removeCurrentNode() {
    m_workspace->removeSelectedNode(*m_workspace->currentNode());
}

void frmProjectTree::sortCurrentNode() {
    m_workspace->tree().sortChildren(*m_workspace->currentNode());
}

void frmProjectTree::showPopup(const QPoint& place) {
    // The menu key reports the current node, which may be scrolled out of sight.
    const QModelIndex current = currentIndex();
    if (indexAt(place) != current && !visualRect(current).contains(place)) return;
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("mnuPopupItems"));
    menu.addActions(actions());
    menu.exec(viewport()->mapToGlobal(place));
}

void frmProjectTree::mousePressEvent(QMouseEvent* event) {
    m_clickDone = false;
    QTreeView::mousePressEvent(event);
}

void frmProjectTree::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Delete:
            removeCurrentNode();
            break;
        case Qt::Key_F5:
            sortCurrentNode();
            break;
        case Qt::Key_F2:  // otherwise an action has this key, which is disabled at the root
            editLabel(m_workspace->currentNode());
            break;
        case Qt::Key_Return:  // like a click: leads from the engine screen back to the node's panel
        case Qt::Key_Enter:
            clickNode(currentIndex());
            break;
        default:
            QTreeView::keyPressEvent(event);
    }
}

}  // namespace relay
