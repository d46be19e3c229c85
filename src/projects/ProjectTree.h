// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Keys.h"
#include "projects/ProjectStore.h"

#include <QAbstractItemModel>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace relay {

enum class NodeKind { Root, Project, Website };

// A node of the project tree.
struct ProjectNode final {
    NodeKind kind = NodeKind::Root;
    std::string key;  // "Root", "Root\project" or "Root\project\website" on every platform
    std::string text;
    std::string description;  // of a project
    bool inUse = false;       // the project clicked last; its folder is drawn open
    int slot = 0;             // of a website, from 1: its slot in the project's section of the index
    std::string file;         // of a website; empty if it has none yet
    ProjectNode* parent = nullptr;
    std::vector<std::unique_ptr<ProjectNode>> children;

    bool isWebsite() const noexcept { return kind == NodeKind::Website; }
    bool isProject() const noexcept { return kind == NodeKind::Project; }
    bool isRoot() const noexcept { return kind == NodeKind::Root; }
    // The key of its icon.
    std::string_view image() const noexcept;
};

// The tree of projects and websites. It needs no Widgets; a view shows it as it is. Node keys are unique
// without regard to case. Nodes do not move in memory.
class ProjectTree final : public QAbstractItemModel {
    Q_OBJECT
  public:
    enum Role { ImageRole = Qt::UserRole + 1 };

    // Starts with the root node "Web Project" only.
    explicit ProjectTree(QObject* parent = nullptr);

    ProjectNode& root() noexcept { return *m_root; }
    // nullptr when there is none.
    ProjectNode* find(std::string_view key) const;
    bool IsNodeExist(std::string_view key) const { return find(key) != nullptr; }
    bool isTaken(const ProjectNode& parent, std::string_view name) const;
    // Includes the root.
    std::size_t count() const noexcept { return m_places.size(); }

    // Each adds a node after its siblings; throws Failure 457 when the name is taken.
    ProjectNode& addProject(const std::string& name, std::string description);
    ProjectNode& addWebsite(ProjectNode& project, const WebsiteSlot& website);
    // Removes the node and everything below it. The root stays.
    void remove(ProjectNode& node);
    void clear();
    void setInUse(ProjectNode& project, bool inUse);
    // Renames the node and updates the keys of its children. Throws Failure 457 when the key is taken.
    void rename(ProjectNode& node, const std::string& text);
    void sortChildren(ProjectNode& node);
    // The next sibling, else the previous one, else the parent. Not for the root.
    ProjectNode& neighbour(const ProjectNode& node) const;

    QModelIndex indexOf(const ProjectNode& node) const;
    ProjectNode* nodeAt(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    // A label edit in a view: only emits labelEdited.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

  Q_SIGNALS:
    void labelEdited(relay::ProjectNode* node, const std::string& text);

  private:
    ProjectNode& add(ProjectNode& parent, NodeKind kind, const std::string& text);
    std::size_t placeOf(const ProjectNode& node) const;
    void forget(const ProjectNode& node);
    void changed(const ProjectNode& node);

    std::unique_ptr<ProjectNode> m_root;
    std::unordered_map<std::string, ProjectNode*, KeyHash, KeyEqual> m_places;
};

}  // namespace relay
