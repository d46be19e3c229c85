// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace relay {

// A website of a project in the index.
struct WebsiteSlot final {
    int slot = 0;  // from 1
    std::string name;
    std::string file;  // empty if not saved yet
};

struct ProjectRecord final {
    std::string name;
    std::string description;
    std::vector<WebsiteSlot> websites;
};

// The index of all projects and their websites, "project.kwj": an INI file with a section per project and
// numbered slots; an empty slot is free. It only refers to the websites' files. Every operation reads the
// current file and replaces it whole; all throw Failure.
class ProjectStore final {
  public:
    explicit ProjectStore(std::string file) : m_file(std::move(file)) {}

    const std::string& file() const noexcept { return m_file; }

    // In file order. Any line with "[" counts as a project's header. Only slots that exist are read, however
    // large "Last" is.
    std::vector<ProjectRecord> loadProject() const;
    // True if the file has a section of that name, without regard to case.
    bool holdsProject(std::string_view project) const;
    // With an empty website name, makes the project's section and returns 0; Failure 457 if there is one of
    // that name. Otherwise puts the website into the first free slot, or a new one, and returns its number.
    int addNewProject(std::string_view project, std::string_view website, std::string_view websiteFile) const;
    // Stores the descriptionLine.
    void setDescription(std::string_view project, std::string_view description) const;
    void setSlot(std::string_view project, const WebsiteSlot& website) const;
    // Frees the slot; "Last" does not change.
    void clearSlot(std::string_view project, int slot) const;
    // Renames by replacing the first occurrence of the old name anywhere in the file, even in a description
    // or another name; if there is none, adds a new header at the start of the file.
    void editProject(std::string_view oldName, std::string_view newName) const;
    // Removes everything from the project's header to the next "[", wherever that is. An unknown project
    // changes nothing.
    void removeProject(std::string_view project) const;

  private:
    void setValue(std::string_view project, std::string_view key, std::string_view value) const;

    std::string m_file;
};

// The description on one line, as in the index: each CR LF, lone CR or lone LF becomes a blank.
std::string descriptionLine(std::string_view description);

}  // namespace relay
