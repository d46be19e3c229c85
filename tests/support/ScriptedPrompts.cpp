// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/ScriptedPrompts.h"

namespace relay::test {

namespace {
template <typename T>
T take(std::deque<T>& list, T fallback) {
    if (list.empty()) return fallback;
    T first = list.front();
    list.pop_front();
    return first;
}
}  // namespace

void ScriptedPrompts::message(std::string_view text, std::string_view title, Icon icon) {
    shown.push_back({"message", std::string(text), std::string(title), icon});
}

bool ScriptedPrompts::ask(std::string_view text, std::string_view title) {
    shown.push_back({"ask", std::string(text), std::string(title), Icon::Question});
    return take(answers, false);
}

std::optional<std::string> ScriptedPrompts::input(std::string_view text, std::string_view title,
                                                  std::string_view) {
    shown.push_back({"input", std::string(text), std::string(title), Icon::None});
    return take(inputs, std::optional<std::string>());
}

FileChoice ScriptedPrompts::openFile(std::string_view filter, std::string_view) {
    shown.push_back({"open", std::string(filter), {}, Icon::None});
    return take(files, FileChoice());
}

FileChoice ScriptedPrompts::saveFile(std::string_view filter, std::string_view, std::string_view,
                                     std::string_view title) {
    shown.push_back({"save", std::string(filter), std::string(title), Icon::None});
    return take(files, FileChoice());
}

std::optional<std::string> ScriptedPrompts::chooseFolder(std::string_view title, std::string_view folder) {
    shown.push_back({"folder", std::string(folder), std::string(title), Icon::None});
    const std::string chosen = take(files, FileChoice()).path;
    return chosen.empty() ? std::nullopt : std::optional(chosen);
}

bool ScriptedPrompts::openWithSystem(std::string_view target) {
    shown.push_back({"system", std::string(target), {}, Icon::None});
    return systemOpens;
}

bool ScriptedPrompts::viewText(std::string_view file) {
    shown.push_back({"view", std::string(file), {}, Icon::None});
    return systemOpens;
}

bool ScriptedPrompts::startProgram(std::string_view file) {
    shown.push_back({"start", std::string(file), {}, Icon::None});
    return systemOpens;
}

void ScriptedPrompts::beep() {
    shown.push_back({"beep", {}, {}, Icon::None});
}

void ScriptedPrompts::busy(bool on) {
    busyDepth += on ? 1 : -1;
}

void ScriptedPrompts::status(std::string_view text) {
    statuses.emplace_back(text);
}

void ScriptedPrompts::notice(std::string_view text) {
    notices.emplace_back(text);
}

const ScriptedPrompts::Shown& ScriptedPrompts::last() const {
    static const Shown nothing;
    return shown.empty() ? nothing : shown.back();
}

}  // namespace relay::test
