// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/NodeNames.h"

#include "core/Failure.h"
#include "core/Prompts.h"
#include "core/Text.h"
#include "projects/ProjectTree.h"

namespace relay {

namespace {
bool refuses(Prompts& prompts, std::string_view name, std::string_view forbidden) {
    if (name.find_first_of(forbidden) == npos) return false;
    prompts.message(
        "A WebProject or WebSite file name cannot contain any of the following characters:\r\n\r\n"
        "\\ / : * ? < > |",
        "New WebProject and WebSite", Icon::Critical);
    return true;
}
}  // namespace

bool refusesName(Prompts& prompts, std::string_view name) {
    return refuses(prompts, name, "\\/:*?\"<>|");
}

bool refusesFileName(Prompts& prompts, std::string_view name) {
    return refuses(prompts, name, "|");
}

void requireOneLine(std::string_view text) {
    if (hasControlByte(text)) throw Failure("A name cannot contain line breaks or other control characters.");
}

std::string askNewName(Prompts& prompts, NodeKind kind,
                       const std::function<bool(const std::string& name)>& isTaken) {
    const bool project = kind == NodeKind::Project;
    const auto ask = [&](std::string_view words) {
        return std::string(trim(prompts.input(words, project ? "New Project" : "New Web Site").value_or("")));
    };
    std::string name = ask(project ? "Please specify a name for your new project:"
                                   : "Please specify a name for your new web site:");
    if (refusesName(prompts, name)) return {};
    while (!name.empty() && isTaken(name)) {
        prompts.beep();
        name = ask("The name '" + name + "' is already exist, please choose a different name:");
    }
    requireOneLine(name);
    return name;
}

}  // namespace relay
