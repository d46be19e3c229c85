// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/ProjectStore.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/FolderLock.h"
#include "core/IniFile.h"
#include "core/Text.h"

#include <algorithm>
#include <charconv>

namespace relay {

namespace {

// The number of a slot, or 0 for any other key.
int slotNumber(std::string_view key) {
    int number = 0;
    const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), number);
    const bool whole = error == std::errc() && end == key.data() + key.size();
    return whole && number > 0 && key.front() != '0' ? number : 0;
}

std::vector<WebsiteSlot> readSlots(const IniFile& index, const std::string& project) {
    const int last = leadingInteger(index.value(project, "Last"));
    std::vector<WebsiteSlot> slots;
    for (const std::string& key : index.keys(project)) {
        WebsiteSlot website;
        website.slot = slotNumber(key);
        if (website.slot < 1 || website.slot > last) continue;
        website.name = index.value(project, key);
        SplitAtPipe(website.name, website.file);
        if (!website.name.empty()) slots.push_back(std::move(website));
    }
    std::sort(slots.begin(), slots.end(),
              [](const WebsiteSlot& a, const WebsiteSlot& b) { return a.slot < b.slot; });
    return slots;
}

bool holds(const IniFile& index, std::string_view project) {
    const std::vector<std::string> sections = index.sections();
    return std::any_of(sections.begin(), sections.end(),
                       [project](const std::string& section) { return equalsNoCase(section, project); });
}

std::string slotValue(std::string_view website, std::string_view websiteFile) {
    return std::string(website) + "|" + std::string(websiteFile);
}

std::string readIndex(const std::string& file) {
    return fileExists(file) ? readFile(file) : std::string();
}

}  // namespace

std::vector<ProjectRecord> ProjectStore::loadProject() const {
    const std::string text = readIndex(m_file);
    const IniFile index = IniFile::parse(text);
    std::vector<ProjectRecord> projects;
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view line = firstLine(rest);
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (line.find('[') == npos || line.size() < 3) continue;
        ProjectRecord project;
        project.name = line.substr(1, line.size() - 2);
        project.description = index.value(project.name, "Description");
        project.websites = readSlots(index, project.name);
        projects.push_back(std::move(project));
    }
    return projects;
}

bool ProjectStore::holdsProject(std::string_view project) const {
    return holds(IniFile::load(m_file), project);
}

int ProjectStore::addNewProject(std::string_view project, std::string_view website,
                                std::string_view websiteFile) const {
    const FolderLock lock(m_file);
    IniFile index = IniFile::load(m_file);
    int slot = 0;
    if (website.empty()) {
        if (holds(index, project))
            throw Failure(m_file + " already has a project \"" + std::string(project) + "\".", 457);
        index.setValue(project, "Description", "");
        index.setValue(project, "Last", "0");
    } else {
        const int last = leadingInteger(index.value(project, "Last"));
        for (slot = 1; slot <= last; ++slot)
            if (index.value(project, std::to_string(slot)).empty()) break;
        index.setValue(project, std::to_string(slot), slotValue(website, websiteFile));
        if (slot > last) index.setValue(project, "Last", std::to_string(slot));
    }
    index.save(m_file);
    return slot;
}

void ProjectStore::setValue(std::string_view project, std::string_view key, std::string_view value) const {
    const FolderLock lock(m_file);
    IniFile index = IniFile::load(m_file);
    index.setValue(project, key, value);
    index.save(m_file);
}

void ProjectStore::setDescription(std::string_view project, std::string_view description) const {
    setValue(project, "Description", descriptionLine(description));
}

void ProjectStore::setSlot(std::string_view project, const WebsiteSlot& website) const {
    setValue(project, std::to_string(website.slot), slotValue(website.name, website.file));
}

void ProjectStore::clearSlot(std::string_view project, int slot) const {
    setValue(project, std::to_string(slot), "");
}

void ProjectStore::editProject(std::string_view oldName, std::string_view newName) const {
    const FolderLock lock(m_file);
    std::string text = readIndex(m_file);
    const std::string name(firstLine(newName));
    const std::size_t found = findNoCase(text, oldName);
    if (found == npos)
        text.insert(0, "[" + name + "]\r\n");
    else
        text.replace(found, oldName.size(), name);
    writeFile(m_file, text);
}

void ProjectStore::removeProject(std::string_view project) const {
    const FolderLock lock(m_file);
    const std::string text = readIndex(m_file);
    const std::string header = "[" + std::string(project) + "]";
    const std::size_t start = findNoCase(text, header);
    if (start == npos) return;
    const std::size_t next = text.find('[', start + header.size());
    writeFile(m_file, text.substr(0, start) + (next == npos ? std::string() : text.substr(next)) + "\r\n");
}

std::string descriptionLine(std::string_view description) {
    std::string line = replaceAll(description, "\r\n", " ");
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    return line;
}

}  // namespace relay
