// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Transcript.h"

#include "core/FileStore.h"
#include "core/Text.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <utility>

namespace relay::test {

namespace {

Arguments splitArguments(const std::string& line) {
    Arguments arguments;
    bool quoted = false;
    bool inside = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == ' ' && !quoted) {
            inside = false;
            continue;
        }
        if (!inside) arguments.emplace_back();
        inside = true;
        if (line[i] == '"') {
            quoted = !quoted;
        } else if (line[i] == '\\' && line[i + 1] == 'x') {
            arguments.back() += static_cast<char>(std::stoi(line.substr(i + 2, 2), nullptr, 16));
            i += 3;
        } else if (line[i] == '\\') {
            ++i;
            arguments.back() += line[i] == 'n' ? '\n' : line[i] == 'r' ? '\r' : line[i];
        } else {
            arguments.back() += line[i];
        }
    }
    return arguments;
}

// Control bytes but the tab, and bytes that are no UTF-8, as "<1B>": not as the programs themselves escape
// them.
std::string visible(std::string_view line) {
    std::string text;
    while (!line.empty()) {
        const std::size_t length = firstUtf8Character(line).length;
        const bool hidden = length == 0 || (isControlByte(line.front()) && line.front() != '\t');
        if (hidden) {
            appendHex(text += '<', line.front());
            text += '>';
        } else {
            text += line.substr(0, length);
        }
        line.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return text;
}

std::string prefixed(const std::string& prefix, const std::string& text) {
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);) result += prefix + visible(line) + "\n";
    return result;
}

std::string withLineEnds(std::string_view text) {
    return replaceAll(text, "\r\n", "<CRLF>\n");
}

}  // namespace

Transcript::Transcript(const TestHome& home, ScriptedPrompts* prompts) : m_home(home), m_prompts(prompts) {
    on("cat", [&](auto& file) { out = withLineEnds(home.read(file.at(0))); });
    on("find", [&](auto& in) {
        std::istringstream lines(home.read(in.at(0)));
        for (std::string line; std::getline(lines, line);)
            if (line.find(in.at(1)) != npos) out += withLineEnds(line + "\n");
    });
    on("mode", [&](auto& file) {
        std::ostringstream octal;
        octal << std::oct << modeOf(home.path(file.at(0))) << '\n';
        out = octal.str();
    });
    on("list", [&](auto& folder) {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(home.path(folder.at(0))))
            names.insert(entry.path().filename().string() + (entry.is_directory() ? "/\n" : "\n"));
        for (const std::string& name : names) out += name;
    });
    on("write", [&](auto& file) { home.write(file.at(0), file.at(1)); });
    on("delete", [&](auto& file) { EXPECT_GT(std::filesystem::remove_all(home.path(file.at(0))), 0U); });
    on("fail-saves", [](auto&) { setSaveFault([](SaveStep) { return EROFS; }); });
    on("mend-saves", [](auto&) { setSaveFault({}); });
    if (prompts == nullptr) return;
    on("answer", [prompts](auto& answers) {
        for (const std::string& answer : answers) prompts->answers.push_back(answer == "yes");
    });
    on("input", [prompts](auto& inputs) {
        for (const std::string& input : inputs)
            prompts->inputs.push_back(input == "-" ? std::nullopt : std::optional(input));
    });
    on("choose", [prompts](auto& file) {
        prompts->files.push_back(file.at(0) == "-" ? FileChoice()
                                                   : FileChoice{file[0], std::stoi(file.at(1))});
    });
}

Transcript::~Transcript() {
    setSaveFault({});
}

void Transcript::play(const std::string& file) {
    const std::string home = m_home.paths().AppPath;
    const std::string transcript = readFile(file);
    ASSERT_NE(transcript.find("$ "), npos);
    std::istringstream lines(transcript);
    std::string played;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with('#')) played += line + "\n";
        if (!line.starts_with("$ ")) continue;
        const Said said = perform(splitArguments(replaceAll(line.substr(2), "HOME", home)));
        std::string text = prefixed("| ", said.out) + prefixed("! ", said.err + shown());
        if (settle) text = settle(text);
        played += line + "\n" + replaceAll(text, home, "HOME");
        if (said.code != 0) played += "= " + std::to_string(said.code) + "\n";
    }
    const bool allAsked = m_prompts == nullptr || (m_prompts->answers.empty() && m_prompts->inputs.empty() &&
                                                   m_prompts->files.empty());
    EXPECT_TRUE(allAsked) << "an answer that nobody asked for is left";
    if (std::getenv("RELAY_GOLDEN_UPDATE") != nullptr) {
        std::ofstream(file, std::ios::binary) << played;
        return;
    }
    EXPECT_EQ(played, transcript);
}

void Transcript::on(const std::string& name, std::function<void(const Arguments& arguments)> command) {
    m_commands[name] = std::move(command);
}

Said Transcript::perform(Arguments arguments) {
    const std::string name = arguments.at(0);
    if (otherwise && !m_commands.contains(name)) return otherwise(arguments);
    arguments.erase(arguments.begin());
    out.clear();
    m_commands.at(name)(arguments);
    return {out, {}, 0};
}

// What came up since the last command: boxes as "title: text", dialogs by their kind, then the status line.
std::string Transcript::shown() {
    std::string text;
    if (m_prompts == nullptr) return text;
    for (const auto& box : m_prompts->shown) {
        const bool isMessage = box.kind == "message";
        text += isMessage && box.icon == Icon::Critical ? "failure" : box.kind;
        text += (box.title.empty() ? "" : " " + box.title) +
                (box.text.empty() ? "" : ": " + withLineEnds(box.text)) + "\n";
    }
    for (const std::string& status : m_prompts->statuses)
        text += "status" + (status.empty() ? "" : ": " + withLineEnds(status)) + "\n";
    for (const std::string& notice : m_prompts->notices) text += "notice: " + withLineEnds(notice) + "\n";
    m_prompts->shown.clear();
    m_prompts->statuses.clear();
    m_prompts->notices.clear();
    EXPECT_EQ(m_prompts->busyDepth, 0);
    return text;
}

}  // namespace relay::test
