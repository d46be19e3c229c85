// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PasswordFile.h"

#include "cli/CommandLineContext.h"
#include "core/FileStore.h"
#include "core/Text.h"

#include <filesystem>
#include <fstream>
#include <istream>
#include <termios.h>
#include <unistd.h>

namespace relay {

namespace {

constexpr std::size_t kLongestPassword = 4096;  // bytes read from a pipe

// Hides what is typed at the terminal while this object lives.
class HiddenInput final {
  public:
    explicit HiddenInput(bool isTerminal)
        : m_hidden(isTerminal && ::tcgetattr(STDIN_FILENO, &m_before) == 0) {
        termios silent = m_before;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        if (m_hidden) ::tcsetattr(STDIN_FILENO, TCSADRAIN, &silent);
    }
    ~HiddenInput() {
        if (m_hidden) ::tcsetattr(STDIN_FILENO, TCSADRAIN, &m_before);
    }
    HiddenInput(const HiddenInput&) = delete;
    HiddenInput& operator=(const HiddenInput&) = delete;

  private:
    termios m_before{};
    bool m_hidden;
};

}  // namespace

std::string passwordFromFile(CommandLineContext& context, const std::string& file) {
    std::string text;
    if (file == "-") {
        const HiddenInput hidden(context.console().inIsTerminal);
        if (context.console().inIsTerminal) context.warn("Password:");
        std::getline(context.console().in, text);
    } else if (std::filesystem::is_fifo(file)) {
        // A shell passes another program's output as a pipe.
        std::ifstream pipe(file, std::ios::binary);
        text.resize(kLongestPassword);
        pipe.read(text.data(), kLongestPassword);
        text.resize(static_cast<std::size_t>(pipe.gcount()));
    } else {
        text = readFile(file);
    }
    return std::string(firstLine(text));
}

}  // namespace relay
