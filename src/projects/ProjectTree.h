// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Keys.h"

#include <QAbstractItemModel>

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace relay {

inline constexpr std::string_view kRootProject = "RootProject";
inline constexpr std::string_view kProjectFolder = "ProjectFolder";
inline constexpr std::string_view kProjectFolderOpen = "ProjectFolderOpen";
inline constexpr std::string_view kWebFile = "WebFile";

// A node of the project tree. Its kind is the key of its image.
struct ProjectNode final {
    std::string key;  // "Root", "Root\project" or "Root\project\website", whatever the platform's separator
    std::string text;
    std::string image;
    std::string tag;  // of a project its description, of a website "slot|file"
    ProjectNode* parent = nullptr;
    std::vector<std::unique_ptr<ProjectNode>> children;

    bool isWebsite() const noexcept { return image == kWebFile; }
    bool isProject() const noexcept { return image == kProjectFolder || image == kProjectFolderOpen; }
};

// The tree of projects and websites. It needs no Widgets; a view shows it as it is. Node keys are unique
// without regard to case. Nodes stay where they are in memory until they are removed.
class ProjectTree final : public QAbstractItemModel {
    Q_OBJECT
  public:
    enum Role { ImageRole = Qt::UserRole + 1, KeyRole };

    // With the root node "Web Project" and nothing under it.
    explicit ProjectTree(QObject* parent = nullptr);

    ProjectNode& root() noexcept { return *m_root; }
    // nullptr when there is none.
    ProjectNode* find(std::string_view key) const;
    bool IsNodeExist(std::string_view key) const { return find(key) != nullptr; }
    // The root counts.
    std::size_t count() const noexcept { return m_places.size(); }

    // Adds a node behind the parent's other children. Throws Failure 457 when the key is taken.
    ProjectNode& add(ProjectNode& parent, std::string key, std::string text, std::string_view image,
                     std::string tag);
    // Removes the node and all under it. The root stays.
    void remove(ProjectNode& node);
    void clear();
    void setImage(ProjectNode& node, std::string_view image);
    // Renames the node; the keys of its children follow. Throws Failure 457 when the key is taken.
    void rename(ProjectNode& node, const std::string& text);
    void sortChildren(ProjectNode& node);
    // The next sibling, else the previous one, else the parent; nullptr for the root.
    ProjectNode* neighbour(const ProjectNode& node) const;

    QModelIndex indexOf(const ProjectNode& node) const;
    ProjectNode* nodeAt(const QModelIndex& index) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    // A label edit in a view: changes nothing here, raises labelEdited.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

  Q_SIGNALS:
    void labelEdited(relay::ProjectNode* node, const std::string& text);

  private:
    std::size_t placeOf(const ProjectNode& node) const;
    void forget(const ProjectNode& node);
    void changed(const ProjectNode& node);

    std::unique_ptr<ProjectNode> m_root;
    std::unordered_map<std::string, ProjectNode*, KeyHash, KeyEqual> m_places;
};

// A node's key: its parent's, a backslash, its text.
std::string childKey(const ProjectNode& parent, std::string_view text);

}  // namespace relay
