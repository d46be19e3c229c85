// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace relay {

// A website of a project as it stands in the index.
struct WebsiteSlot final {
    int slot = 0;  // from 1
    std::string name;
    std::string file;  // empty: not saved yet
};

struct ProjectRecord final {
    std::string name;
    std::string description;
    std::vector<WebsiteSlot> websites;
};

// The index of all projects and their websites, "project.kwj": an INI file with a section a project and
// numbered slots, of which an empty one is free. It only points at the websites' files. Every operation reads
// the file as it stands on disk and replaces it whole; all throw Failure.
class ProjectStore final {
  public:
    explicit ProjectStore(std::string file) : m_file(std::move(file)) {}

    const std::string& file() const noexcept { return m_file; }

    // In the order of the file. Any line that holds "[" is taken for a project's header. A slot number is
    // looked for among the keys that are there, so a wild "Last" costs nothing.
    std::vector<ProjectRecord> loadProject() const;
    // A section of that name, without regard to case, stands in the file.
    bool holdsProject(std::string_view project) const;
    // With an empty website name makes the project's section, unless one of that name stands (Failure 457),
    // and gives 0; otherwise puts the website into the first free slot, or a new one, and gives its number.
    int addNewProject(std::string_view project, std::string_view website, std::string_view websiteFile) const;
    // As its descriptionLine.
    void setDescription(std::string_view project, std::string_view description) const;
    void setSlot(std::string_view project, const WebsiteSlot& website) const;
    // The slot is free afterwards; "Last" stays.
    void clearSlot(std::string_view project, int slot) const;
    // Renames by replacing the first occurrence of the old name anywhere in the file, be it in a description
    // or within another name; a name that is nowhere becomes a new header before the whole text.
    void editProject(std::string_view oldName, std::string_view newName) const;
    // Cuts from the project's header up to the next "[", wherever that stands. An unknown project changes
    // nothing.
    void removeProject(std::string_view project) const;

  private:
    void setValue(std::string_view project, std::string_view key, std::string_view value) const;

    std::string m_file;
};

// The description as it stands on its one line of the index: each CR LF, lone CR or lone LF is one blank.
std::string descriptionLine(std::string_view description);

}  // namespace relay
