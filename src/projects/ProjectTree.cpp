// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/ProjectTree.h"

#include "core/Failure.h"
#include "core/ScreenText.h"

#include <algorithm>

namespace relay {

namespace {
std::string childKey(const ProjectNode& parent, std::string_view text) {
    return parent.key + "\\" + std::string(text);
}
}  // namespace

std::string_view ProjectNode::image() const noexcept {
    if (isRoot()) return "RootProject";
    if (isWebsite()) return "WebFile";
    return inUse ? "ProjectFolderOpen" : "ProjectFolder";
}

ProjectTree::ProjectTree(QObject* parent)
    : QAbstractItemModel(parent), m_root(std::make_unique<ProjectNode>()) {
    m_root->key = "Root";
    m_root->text = "Web Project";
    m_places.emplace(m_root->key, m_root.get());
}

ProjectNode* ProjectTree::find(std::string_view key) const {
    const auto place = m_places.find(key);
    return place == m_places.end() ? nullptr : place->second;
}

bool ProjectTree::isTaken(const ProjectNode& parent, std::string_view name) const {
    return IsNodeExist(childKey(parent, name));
}

ProjectNode& ProjectTree::addProject(const std::string& name, std::string description) {
    ProjectNode& project = add(*m_root, NodeKind::Project, name);
    project.description = std::move(description);
    return project;
}

ProjectNode& ProjectTree::addWebsite(ProjectNode& project, const WebsiteSlot& website) {
    ProjectNode& node = add(project, NodeKind::Website, website.name);
    node.slot = website.slot;
    node.file = website.file;
    return node;
}

ProjectNode& ProjectTree::add(ProjectNode& parent, NodeKind kind, const std::string& text) {
    if (isTaken(parent, text)) throw Failure("Key is not unique in collection", 457);
    auto node = std::make_unique<ProjectNode>();
    node->kind = kind;
    node->key = childKey(parent, text);
    node->text = text;
    node->parent = &parent;
    ProjectNode& added = *node;
    const int row = static_cast<int>(parent.children.size());
    beginInsertRows(indexOf(parent), row, row);
    m_places.emplace(added.key, &added);
    parent.children.push_back(std::move(node));
    endInsertRows();
    return added;
}

void ProjectTree::forget(const ProjectNode& node) {
    for (const auto& child : node.children) forget(*child);
    m_places.erase(node.key);
}

void ProjectTree::remove(ProjectNode& node) {
    if (!node.parent) return;
    ProjectNode& parent = *node.parent;
    const std::size_t place = placeOf(node);
    beginRemoveRows(indexOf(parent), static_cast<int>(place), static_cast<int>(place));
    forget(node);
    parent.children.erase(parent.children.begin() + static_cast<std::ptrdiff_t>(place));
    endRemoveRows();
}

void ProjectTree::clear() {
    beginResetModel();
    m_root->children.clear();
    m_places.clear();
    m_places.emplace(m_root->key, m_root.get());
    endResetModel();
}

void ProjectTree::setInUse(ProjectNode& project, bool inUse) {
    project.inUse = inUse;
    changed(project);
}

void ProjectTree::rename(ProjectNode& node, const std::string& text) {
    if (!node.parent) return;
    const std::string key = childKey(*node.parent, text);
    if (const ProjectNode* const taken = find(key); taken && taken != &node)
        throw Failure("Key is not unique in collection", 457);
    forget(node);
    node.key = key;
    node.text = text;
    m_places.emplace(node.key, &node);
    for (const auto& child : node.children) {
        child->key = childKey(node, child->text);
        m_places.emplace(child->key, child.get());
    }
    changed(node);
}

void ProjectTree::sortChildren(ProjectNode& node) {
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    std::stable_sort(node.children.begin(), node.children.end(),
                     [](const auto& a, const auto& b) { return compareNoCase(a->text, b->text) < 0; });
    QModelIndexList after;
    for (const QModelIndex& index : before) after.append(indexOf(*nodeAt(index)));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged();
}

ProjectNode& ProjectTree::neighbour(const ProjectNode& node) const {
    const auto& siblings = node.parent->children;
    const std::size_t place = placeOf(node);
    if (place + 1 < siblings.size()) return *siblings[place + 1];
    return place > 0 ? *siblings[place - 1] : *node.parent;
}

std::size_t ProjectTree::placeOf(const ProjectNode& node) const {
    if (!node.parent) return 0;
    const auto& siblings = node.parent->children;
    const auto found = std::find_if(siblings.begin(), siblings.end(),
                                    [&node](const auto& child) { return child.get() == &node; });
    return static_cast<std::size_t>(found - siblings.begin());
}

void ProjectTree::changed(const ProjectNode& node) {
    const QModelIndex index = indexOf(node);
    Q_EMIT dataChanged(index, index);
}

QModelIndex ProjectTree::indexOf(const ProjectNode& node) const {
    return createIndex(static_cast<int>(placeOf(node)), 0, &node);
}

ProjectNode* ProjectTree::nodeAt(const QModelIndex& index) const {
    return index.isValid() ? static_cast<ProjectNode*>(index.internalPointer()) : nullptr;
}

QModelIndex ProjectTree::index(int row, int column, const QModelIndex& parent) const {
    if (column != 0 || row < 0 || row >= rowCount(parent)) return {};
    const ProjectNode* const above = nodeAt(parent);
    if (!above) return indexOf(*m_root);
    return createIndex(row, 0, above->children[static_cast<std::size_t>(row)].get());
}

QModelIndex ProjectTree::parent(const QModelIndex& index) const {
    const ProjectNode* const node = nodeAt(index);
    return node && node->parent ? indexOf(*node->parent) : QModelIndex();
}

int ProjectTree::rowCount(const QModelIndex& parent) const {
    const ProjectNode* const above = nodeAt(parent);
    return above ? static_cast<int>(above->children.size()) : 1;
}

int ProjectTree::columnCount(const QModelIndex&) const {
    return 1;
}

QVariant ProjectTree::data(const QModelIndex& index, int role) const {
    const ProjectNode* const node = nodeAt(index);
    if (!node) return {};
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            return toScreen(node->text);
        case ImageRole:
            return toScreen(node->image());
        default:
            return {};
    }
}

bool ProjectTree::setData(const QModelIndex& index, const QVariant& value, int role) {
    ProjectNode* const node = nodeAt(index);
    if (!node || role != Qt::EditRole) return false;
    Q_EMIT labelEdited(node, fromScreen(value.toString()));
    return true;
}

Qt::ItemFlags ProjectTree::flags(const QModelIndex& index) const {
    const ProjectNode* const node = nodeAt(index);
    if (!node) return {};
    const Qt::ItemFlags usual = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return node->parent ? usual | Qt::ItemIsEditable : usual;
}

}  // namespace relay
