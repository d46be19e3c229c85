// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/CaseTable.h"

#include "core/Failure.h"
#include "core/Text.h"

#include <fstream>
#include <gtest/gtest.h>
#include <set>

namespace relay::test {

namespace {

std::string unescaped(std::string_view written) {
    const std::string field(written);
    std::string text;
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '{' && i + 2 < field.size() && field[i + 2] == '*') {
            std::size_t digits = 0;
            text.append(std::stoul(field.substr(i + 3), &digits), field[i + 1]);
            i += 3 + digits;
        } else if (field[i] != '\\') {
            text += field[i];
        } else if (field[++i] == 'x') {
            text += static_cast<char>(std::stoi(field.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            static const std::map<char, char> kMeant{
                {'s', ' '}, {'r', '\r'}, {'n', '\n'}, {'t', '\t'}, {'\\', '\\'}};
            text += kMeant.at(field[i]);
        }
    }
    return text;
}

// All inputs of a case.
std::vector<std::string> splitInputs(std::string_view given) {
    constexpr std::string_view kMark = " | ";
    std::vector<std::string> inputs;
    for (std::size_t at = given.find(kMark); at != npos; at = given.find(kMark)) {
        inputs.push_back(unescaped(trim(given.substr(0, at))));
        given.remove_prefix(at + kMark.size());
    }
    inputs.push_back(unescaped(trim(given)));
    return inputs;
}

std::string resultOf(const CaseFunction& function, const std::vector<std::string>& inputs) {
    try {
        return function(inputs);
    } catch (const Failure& failure) {
        return std::string("failure: ") + failure.what();
    }
}

}  // namespace

void playCases(const std::string& table, const std::map<std::string, CaseFunction>& functions) {
    std::ifstream lines(table, std::ios::binary);
    std::string section;
    std::set<std::string> played;
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || line.front() == '#') continue;
        const std::size_t result = line.find("=>");
        if (result == npos) {
            section = line.substr(1, line.size() - 2);
            continue;
        }
        SCOPED_TRACE(line);
        played.insert(section);
        const std::vector<std::string> inputs = splitInputs(std::string_view(line).substr(0, result));
        EXPECT_EQ(resultOf(functions.at(section), inputs),
                  unescaped(trim(std::string_view(line).substr(result + 2))));
    }
    EXPECT_EQ(played.size(), functions.size()) << "sections with cases in " << table;
}

std::string joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) all += (&text == &texts.front() ? "" : " | ") + text;
    return all;
}

}  // namespace relay::test
