// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ConsolePrompts.h"

#include "cli/Console.h"
#include "cli/ProgressLine.h"
#include "cli/TerminalText.h"
#include "core/ScreenText.h"
#include "core/Text.h"

#include <QProcess>
#include <QStandardPaths>

#include <istream>
#include <ostream>

namespace relay {

namespace {
std::string withTitle(std::string_view text, std::string_view title) {
    std::string line = terminalLines(text);
    if (title.empty()) return line;
    return terminalText(title) + ": " + line;
}
}  // namespace

ConsolePrompts::ConsolePrompts(Console& console, ProgressLine& progress)
    : m_console(console), m_progress(progress) {}

bool ConsolePrompts::someoneAnswers() const noexcept {
    return m_console.inIsTerminal && m_console.errIsTerminal;
}

void ConsolePrompts::write(const std::string& line) {
    m_progress.erase();
    m_console.err << line << std::flush;
}

void ConsolePrompts::showHeld() {
    for (const std::string& line : m_held) write(line);
    m_held.clear();
}

void ConsolePrompts::message(std::string_view text, std::string_view title, Icon icon) {
    ++m_count;
    std::string line = withTitle(text, title) + "\n";
    if (m_holding && icon != Icon::Critical) {
        m_held.push_back(std::move(line));
    } else {
        write(line);
    }
}

bool ConsolePrompts::ask(std::string_view text, std::string_view title) {
    ++m_count;
    const std::string question = withTitle(text, title);
    if (!someoneAnswers()) {
        write(question + " No.\n");
        return false;
    }
    write(question + " [y/N] ");
    std::string answer;
    std::getline(m_console.in, answer);
    const std::string_view given = trim(answer);
    return equalsNoCase(given, "y") || equalsNoCase(given, "yes");
}

std::optional<std::string> ConsolePrompts::input(std::string_view text, std::string_view title,
                                                 std::string_view preset) {
    ++m_count;
    if (!someoneAnswers()) return std::nullopt;
    write(withTitle(text, title) + " [" + terminalText(preset) + "] ");
    std::string answer;
    if (!std::getline(m_console.in, answer)) return std::nullopt;
    return answer.empty() ? std::string(preset) : answer;
}

FileChoice ConsolePrompts::openFile(std::string_view, std::string_view) {
    return {};
}

FileChoice ConsolePrompts::saveFile(std::string_view, std::string_view, std::string_view, std::string_view) {
    return {};
}

// The target is the handler's one argument; no shell reads it. A target that looks like an option is none.
bool ConsolePrompts::openWithSystem(std::string_view target) {
    if (target.empty() || target.front() == '-') return false;
    const QString folders = toScreen(m_console.environment("PATH").value_or(std::string()));
    if (folders.isEmpty()) return false;
    const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"), folders.split(u':'));
    if (opener.isEmpty()) return false;
    m_progress.erase();
    QProcess process;
    process.setProgram(opener);
    process.setArguments({toScreen(target)});
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    return process.startDetached();
}

bool ConsolePrompts::viewText(std::string_view) {
    return false;
}

bool ConsolePrompts::startProgram(std::string_view) {
    return false;
}

}  // namespace relay
