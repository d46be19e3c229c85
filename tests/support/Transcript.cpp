// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/Transcript.h"

#include "core/FileStore.h"
#include "core/Text.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

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

std::string prefixed(const std::string& prefix, const std::string& text) {
    std::istringstream lines(text);
    std::string result;
    for (std::string line; std::getline(lines, line);) result += prefix + line + "\n";
    return result;
}

std::string withLineEnds(std::string_view text) {
    return replaceAll(text, "\r\n", "<CRLF>\n");
}

}  // namespace

Transcript::Transcript(const TestHome& home, ScriptedPrompts* prompts) : m_home(home), m_prompts(prompts) {
    commands["cat"] = [&](const Arguments& file) { return withLineEnds(home.read(file.at(0))); };
    commands["mode"] = [&](const Arguments& file) {
        std::ostringstream octal;
        octal << std::oct << modeOf(home.path(file.at(0))) << '\n';
        return octal.str();
    };
    commands["write"] = [&](const Arguments& file) {
        home.write(file.at(0), file.at(1));
        return std::string();
    };
    commands["delete"] = [&](const Arguments& file) {
        EXPECT_GT(std::filesystem::remove_all(home.path(file.at(0))), 0U);
        return std::string();
    };
    commands["fail-saves"] = [](const Arguments&) {
        setSaveFault([](SaveStep) { return EROFS; });
        return std::string();
    };
    commands["mend-saves"] = [](const Arguments&) {
        setSaveFault({});
        return std::string();
    };
    if (prompts == nullptr) return;
    commands["answer"] = [prompts](const Arguments& answers) {
        for (const std::string& answer : answers) prompts->answers.push_back(answer == "yes");
        return std::string();
    };
    commands["input"] = [prompts](const Arguments& inputs) {
        for (const std::string& input : inputs)
            prompts->inputs.push_back(input == "-" ? std::nullopt : std::optional(input));
        return std::string();
    };
    commands["choose"] = [prompts](const Arguments& file) {
        prompts->files.push_back(file.at(0) == "-" ? FileChoice()
                                                   : FileChoice{file[0], std::stoi(file.at(1))});
        return std::string();
    };
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
    if (std::getenv("RELAY_GOLDEN_UPDATE") != nullptr) {
        std::ofstream(file, std::ios::binary) << played;
        return;
    }
    EXPECT_EQ(played, transcript);
}

Said Transcript::perform(Arguments arguments) {
    const auto known = commands.find(arguments.at(0));
    if (known == commands.end() && otherwise) return otherwise(arguments);
    arguments.erase(arguments.begin());
    return {known->second(arguments), {}, 0};
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
    m_prompts->shown.clear();
    m_prompts->statuses.clear();
    EXPECT_EQ(m_prompts->busyDepth, 0);
    return text;
}

}  // namespace relay::test
