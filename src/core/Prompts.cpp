// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Prompts.h"

namespace relay {

std::string ShowFileDialog(Prompts& prompts, bool save, std::string_view filter, std::string_view folder,
                           std::string_view file, int& filterIndex) {
    if (!save) return prompts.openFile(filter, folder).path;
    FileChoice choice = prompts.saveFile(filter, folder, file);
    if (!choice.path.empty()) filterIndex = choice.filterIndex;
    return choice.path;
}

}  // namespace relay
