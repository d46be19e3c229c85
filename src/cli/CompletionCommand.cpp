// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CompletionCommand.h"

#include "cli/CommandLineContext.h"
#include "cli/Completion.h"
#include "cli/ExitCode.h"

#include <ostream>

namespace relay {

CompletionCommand::CompletionCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "completion", "Print a script that completes commands and options in a shell",
              "completion bash\ncompletion fish"),
      m_root(parent) {
    app().add_option("SHELL", m_shell, "The shell")->required()->type_name("bash|zsh|fish");
}

int CompletionCommand::execute() {
    const CommandNode root = commandTree(m_root);
    std::ostream& out = context().out();
    if (m_shell == "bash")
        out << bashCompletion(root);
    else if (m_shell == "zsh")
        out << zshCompletion(root);
    else if (m_shell == "fish")
        out << fishCompletion(root);
    else
        throw UsageError("\"" + m_shell + "\" is none of bash, zsh and fish.");
    return kSucceeded;
}

}  // namespace relay
