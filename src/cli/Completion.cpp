// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Completion.h"

#include "core/Text.h"

#include <algorithm>
#include <functional>

namespace relay {

namespace {

// A command, its path ("" for the program, " website show") and every option that it takes.
struct Place final {
    std::string path;
    const CommandNode* command = nullptr;
    std::vector<const OptionNode*> options;
};

// The options of the program may stand behind every command.
void collect(const CommandNode& command, const std::string& path, const CommandNode& root,
             std::vector<Place>& places) {
    Place place{path, &command, {}};
    for (const OptionNode& option : command.options) place.options.push_back(&option);
    for (const OptionNode& option : root.options) {
        const bool own = std::any_of(command.options.begin(), command.options.end(),
                                     [&](const OptionNode& one) { return one.names == option.names; });
        if (!own && option.names != std::vector<std::string>{"--version"}) place.options.push_back(&option);
    }
    places.push_back(std::move(place));
    for (const CommandNode& child : command.commands) collect(child, path + " " + child.name, root, places);
}

std::vector<Place> placesOf(const CommandNode& root) {
    std::vector<Place> places;
    collect(root, "", root, places);
    return places;
}

using Words = std::vector<std::string>;

std::string joined(const Words& words, std::string_view between) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : std::string(between)) + word;
    return text;
}

// In single quotes.
std::string shellQuoted(std::string_view text) {
    return "'" + replaceAll(CleanLineBreaks(text), "'", "'\\''") + "'";
}
std::string fishQuoted(std::string_view text) {
    return "'" + replaceAll(replaceAll(CleanLineBreaks(text), "\\", "\\\\"), "'", "\\'") + "'";
}

Words optionNames(const Place& place, const std::function<bool(const OptionNode&)>& wanted) {
    Words names;
    for (const OptionNode* option : place.options)
        if (wanted(*option)) names.insert(names.end(), option->names.begin(), option->names.end());
    return names;
}
Words optionsOf(const Place& place, ValueKind kind) {
    return optionNames(place, [kind](const OptionNode& option) { return option.kind == kind; });
}
bool takes(const Place& place, ValueKind kind) {
    const std::vector<OptionNode>& arguments = place.command->arguments;
    return std::any_of(arguments.begin(), arguments.end(),
                       [kind](const OptionNode& argument) { return argument.kind == kind; });
}
Words choicesOf(const Place& place) {
    Words choices;
    for (const OptionNode& argument : place.command->arguments)
        choices.insert(choices.end(), argument.choices.begin(), argument.choices.end());
    return choices;
}

// " website" | " website show" | ...
std::string pathPattern(const std::vector<Place>& places, std::string_view between) {
    Words patterns;
    for (const Place& place : places)
        if (!place.path.empty()) patterns.push_back("'" + place.path + "'");
    return joined(patterns, between);
}
// The options with a value, of whatever command, whose value is no command.
std::string valuedPattern(const std::vector<Place>& places, std::string_view between) {
    Words names;
    for (const Place& place : places)
        for (const std::string& name :
             optionNames(place, [](const OptionNode& option) { return option.kind != ValueKind::None; }))
            if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    return joined(names, between);
}

constexpr std::string_view kMadeBy = "# Made by: korvel-relay-cli completion ";

}  // namespace

std::string bashCompletion(const CommandNode& root) {
    const std::vector<Place> places = placesOf(root);
    std::string text(kMadeBy);
    text += "bash\n";
    text +=
        "_korvel_relay_cli() {\n"
        "    local at= names= flags= files= folders= texts= argument= i\n"
        "    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}\n"
        "    # \"--home=x\" comes in three words.\n"
        "    if [[ $word == = ]]; then word=; elif [[ $before == = ]]; then before=${COMP_WORDS[COMP_CWORD - "
        "2]}; fi\n"
        "    for ((i = 1; i < COMP_CWORD; ++i)); do\n"
        "        case ${COMP_WORDS[i]} in\n            " +
        valuedPattern(places, " | ") +
        ")\n                ((++i))\n                continue\n                ;;\n        esac\n"
        "        case \"$at ${COMP_WORDS[i]}\" in\n            " +
        pathPattern(places, " | ") +
        ") at+=\" ${COMP_WORDS[i]}\" ;;\n        esac\n    done\n    case $at in\n";
    for (const Place& place : places) {
        Words names;
        for (const CommandNode& command : place.command->commands) names.push_back(command.name);
        for (const std::string& choice : choicesOf(place)) names.push_back(choice);
        const auto set = [&text](const char* name, const Words& words) {
            if (!words.empty())
                text += std::string("            ") + name + "=' " + joined(words, " ") + " '\n";
        };
        text += "        '" + place.path + "')\n";
        set("names", names);
        set("flags", optionNames(place, [](const OptionNode&) { return true; }));
        set("files", optionsOf(place, ValueKind::File));
        set("folders", optionsOf(place, ValueKind::Folder));
        set("texts", optionsOf(place, ValueKind::Text));
        if (takes(place, ValueKind::File)) text += "            argument=file\n";
        text += "            ;;\n";
    }
    text +=
        "    esac\n"
        "    COMPREPLY=()\n"
        "    if [[ $texts == *\" $before \"* ]]; then\n"
        "        return\n"
        "    elif [[ $folders == *\" $before \"* ]]; then\n"
        "        compopt -o filenames 2>/dev/null\n"
        "        mapfile -t COMPREPLY < <(compgen -d -- \"$word\")\n"
        "    elif [[ $files == *\" $before \"* ]] || [[ $argument && $word != -* ]]; then\n"
        "        compopt -o filenames 2>/dev/null\n"
        "        mapfile -t COMPREPLY < <(compgen -f -- \"$word\")\n"
        "    elif [[ $word == -* || ! $names ]]; then\n"
        "        mapfile -t COMPREPLY < <(compgen -W \"$flags\" -- \"$word\")\n"
        "    else\n"
        "        mapfile -t COMPREPLY < <(compgen -W \"$names\" -- \"$word\")\n"
        "    fi\n"
        "}\n"
        "complete -F _korvel_relay_cli korvel-relay-cli\n";
    return text;
}

std::string zshCompletion(const CommandNode& root) {
    const std::vector<Place> places = placesOf(root);
    // A colon parts the name from its description.
    const auto described = [](const std::string& name, std::string_view description) {
        return " " + shellQuoted(name + ":" + std::string(description));
    };
    std::string text = "#compdef korvel-relay-cli\n";
    text.append(kMadeBy).append("zsh\n");
    text +=
        "_korvel_relay_cli() {\n"
        "  local at= files= folders= texts= argument= before=${words[CURRENT - 1]}\n"
        "  local -a names flags\n"
        "  local -i i\n"
        "  for ((i = 2; i < CURRENT; ++i)); do\n"
        "    case ${words[i]} in\n      (" +
        valuedPattern(places, "|") +
        ") ((++i)); continue ;;\n    esac\n    case \"$at ${words[i]}\" in\n      (" +
        pathPattern(places, "|") + ") at+=\" ${words[i]}\" ;;\n    esac\n  done\n  case $at in\n";
    for (const Place& place : places) {
        text += "    ('" + place.path + "')\n";
        std::string names;
        for (const CommandNode& command : place.command->commands)
            names += described(command.name, command.description);
        for (const std::string& choice : choicesOf(place)) names += " " + choice;
        if (!names.empty()) text += "      names=(" + names + " )\n";
        text += "      flags=(";
        for (const OptionNode* option : place.options)
            for (const std::string& name : option->names) text += described(name, option->description);
        text += " )\n";
        const auto set = [&text](const char* name, const Words& words) {
            if (!words.empty()) text += std::string("      ") + name + "=' " + joined(words, " ") + " '\n";
        };
        set("files", optionsOf(place, ValueKind::File));
        set("folders", optionsOf(place, ValueKind::Folder));
        set("texts", optionsOf(place, ValueKind::Text));
        if (takes(place, ValueKind::File)) text += "      argument=file\n";
        text += "      ;;\n";
    }
    text +=
        "  esac\n"
        "  if [[ $texts == *\" $before \"* ]]; then\n"
        "    _message 'value'\n"
        "  elif [[ $folders == *\" $before \"* ]]; then\n"
        "    _files -/\n"
        "  elif [[ $files == *\" $before \"* ]]; then\n"
        "    _files\n"
        "  else\n"
        "    (( $#names )) && _describe -t commands command names\n"
        "    [[ -n $argument && $PREFIX != -* ]] && _files\n"
        "    [[ $PREFIX == -* || ( -z $argument && $#names -eq 0 ) ]] && _describe -o -t options option "
        "flags\n"
        "  fi\n"
        "}\n"
        "if [[ $zsh_eval_context[-1] == loadautofunc ]]; then\n"
        "  _korvel_relay_cli \"$@\"\n"
        "else\n"
        "  compdef _korvel_relay_cli korvel-relay-cli\n"
        "fi\n";
    return text;
}

std::string fishCompletion(const CommandNode& root) {
    const std::vector<Place> places = placesOf(root);
    std::string text(kMadeBy);
    text += "fish\n";
    text +=
        "function __korvel_relay_cli_at\n"
        "    set -l at\n"
        "    set -l skip 0\n"
        "    for word in (commandline -opc)[2..]\n"
        "        if test $skip -eq 1\n"
        "            set skip 0\n"
        "            continue\n"
        "        end\n"
        "        switch $word\n            case " +
        valuedPattern(places, " ") +
        "\n                set skip 1\n                continue\n        end\n"
        "        switch \"$at $word\"\n            case " +
        pathPattern(places, " ") +
        "\n                set at \"$at $word\"\n        end\n    end\n    test \"$at\" = \"$argv[1]\"\nend\n"
        "complete -c korvel-relay-cli -f\n";
    for (const Place& place : places) {
        const std::string start =
            "complete -c korvel-relay-cli -n " + fishQuoted("__korvel_relay_cli_at \"" + place.path + "\"");
        for (const CommandNode& command : place.command->commands)
            text += start + " -a " + command.name + " -d " + fishQuoted(command.description) + "\n";
        for (const std::string& choice : choicesOf(place)) text += start + " -a " + choice + "\n";
        if (takes(place, ValueKind::File)) text += start + " -F\n";
        for (const OptionNode* option : place.options) {
            text += start;
            for (const std::string& name : option->names)
                text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
            if (option->kind == ValueKind::Text) text += " -x";
            if (option->kind == ValueKind::File) text += " -r -F";
            if (option->kind == ValueKind::Folder) text += " -x -a '(__fish_complete_directories)'";
            text += " -d " + fishQuoted(option->description) + "\n";
        }
    }
    return text;
}

}  // namespace relay
