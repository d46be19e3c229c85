// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Prompts.h"

#include "core/FileSystem.h"
#include "core/Text.h"

namespace relay {

namespace {
// ".kws" of the first pattern "*.kws"; empty for "*.*". Filters count from 1.
std::string_view extensionOf(std::string_view filters, int index) {
    for (int pipes = 2 * index - 1; pipes > 0; --pipes) {
        const std::size_t pipe = filters.find('|');
        if (pipe == npos) return {};
        filters.remove_prefix(pipe + 1);
    }
    const std::string_view pattern = filters.substr(0, filters.find_first_of("|;"));
    return pattern == "*.*" || !pattern.starts_with("*.") ? std::string_view() : pattern.substr(1);
}
}  // namespace

std::string cannotOpenText(std::string_view target) {
    return "This system has no program that opens\r\n" + std::string(target);
}

void openOrTell(Prompts& prompts, std::string_view target, std::string_view title) {
    if (!prompts.openWithSystem(target)) prompts.message(cannotOpenText(target), title, Icon::Critical);
}

void openPageOrTell(Prompts& prompts, std::string_view address, std::string_view title) {
    if (startsWithNoCase(address, "http://") || startsWithNoCase(address, "https://"))
        openOrTell(prompts, address, title);
    else
        prompts.message("This is not a web address:\r\n" + std::string(address), title, Icon::Critical);
}

std::string ShowFileDialog(Prompts& prompts, bool save, std::string_view filter, std::string_view folder,
                           std::string_view file, int& filterIndex, std::string_view title) {
    if (!save) return prompts.openFile(filter, folder).path;
    FileChoice choice = prompts.saveFile(filter, folder, file, title);
    if (!choice.path.empty()) filterIndex = choice.filterIndex;
    return choice.path;
}

std::string askWhereToSave(Prompts& prompts, const SaveQuestion& question, std::string_view folder) {
    int filter = 1;
    std::string file = ShowFileDialog(prompts, true, question.filter, folder, {}, filter);
    if (file.empty()) return {};
    const std::string_view extension = extensionOf(question.filter, filter);
    if (!endsWithNoCase(file, extension)) file += extension;
    const bool mayWrite = !fileExists(file) || prompts.ask(std::string(question.beforeName) + file +
                                                               std::string(question.behindName),
                                                           question.title);
    return mayWrite ? file : std::string();
}

}  // namespace relay
