// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/UrlList.h"

#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/ItemReader.h"
#include "core/Prompts.h"
#include "core/Text.h"
#include "core/Trap.h"

namespace relay {

namespace {
constexpr std::string_view kTextFilter = "Text files (*.txt)|*.txt|All Files (*.*)|*.*|";
constexpr std::string_view kInvalidFile = "Invalid file name or path, please try again";
}  // namespace

bool addNewItem(Rows& list, std::string_view url, std::string_view localFile) {
    Row row;
    row.key = url;
    row.text = url;
    row.icon = kUrlIcon;
    row.tag = localFile;
    return list.tryAdd(row);
}

std::string getFirstSelectedItem(const Rows& list) {
    const int row = list.firstHighlighted();
    return row < 0 ? std::string() : std::string(list.at(row).text);
}

void UrlList::addTypedURL() {
    const auto answer = m_prompts.input("Please enter the URL you want to add:", "Insert URL", "http://www.");
    if (answer && !answer->empty()) addNewItem(m_list, *answer);
}

void UrlList::DeleteURL() {
    if (!m_prompts.ask("Are you sure you want to delete the selected URL?", "Delete URL")) return;
    m_list.removeIf([](const RowView& row) { return row.highlighted; });
}

bool UrlList::loadURLFromFile(const std::string& file) {
    if (!fileExists(file)) {
        m_prompts.message(kInvalidFile, "Load URL List", Icon::Information);
        return false;
    }
    return trap(m_prompts, "loadURLList_Error: ", [&] {
        const std::string text = readFile(file);
        ItemReader items(text);
        const int before = m_list.count();
        {
            const RowsBatch batch(m_list);
            for (std::string_view field; items.next(field);)
                if (startsWithNoCase(field, "http") && field.find('.') != npos) addNewItem(m_list, field);
        }
        m_prompts.notice("URLs loaded from " + file + ": " + std::to_string(m_list.count() - before));
    });
}

bool UrlList::loadURLs() {
    int filter = 1;
    const std::string file = ShowFileDialog(m_prompts, false, kTextFilter, {}, {}, filter);
    return !file.empty() && fileExists(file) && loadURLFromFile(file);
}

bool UrlList::saveURLToFile(const std::string& file) {
    std::string text;
    for (int i = 0; i < m_list.count(); ++i) {
        text += firstLine(m_list.at(i).text);
        text += "\r\n";
    }
    if (!failureOf([&] { writeFile(file, text); })) {
        m_prompts.notice("URLs saved to " + file + ": " + std::to_string(m_list.count()));
        return true;
    }
    // The same message for every reason.
    m_prompts.message(kInvalidFile, "Save URL List", Icon::Information);
    return false;
}

bool UrlList::saveURLs() {
    const std::string file = askWhereToSave(
        m_prompts, {kTextFilter, "The file ", " already exists, do you want to replace it?", "Save URL"});
    return !file.empty() && saveURLToFile(file);
}

}  // namespace relay
