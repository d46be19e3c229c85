// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/DoorwayCommand.h"

#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "cli/TerminalText.h"
#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/JsonLine.h"
#include "core/Text.h"
#include "pagetools/Doorway.h"

#include <algorithm>
#include <ostream>

namespace relay {

namespace {

std::string keyNames() {
    std::string names;
    for (const DoorwayKey& key : doorwayKeys()) names.append(names.empty() ? "" : ", ").append(key.key);
    return names;
}

}  // namespace

DoorwayCommand::DoorwayCommand(CLI::App& parent, CommandLineContext& context)
    : Command(parent, context, "doorway", "Write a landing page for each of up to eight keywords",
              "--home try doorway --set Title='Paper Shop' Keyword1=paper Keyword2=pens Keyword3=ink "
              "Description='Paper and pens' URL=shop.example Body='All you write with' Company='Paper Shop' "
              "--save paper\n"
              "--home try doorway --profile paper --set Keyword4='writing paper' --out pages") {
    app()
        .add_option("--set", m_values, "Set values. Keys, in any case: " + keyNames())
        ->type_name("KEY=VALUE");
    app().add_option("--profile", m_profile, "Begin with the values of a profile")->type_name("NAME");
    app()
        .add_option("--out", m_folder, "Write the pages into this folder, which must be there")
        ->type_name("DIR");
    app().add_option("--save", m_save, "Save the values as a profile")->type_name("NAME");
}

int DoorwayCommand::execute() {
    const Services& services = context().home().services;
    Doorway doorway(services);
    const DoorwayProfiles profiles(services);
    doorway.load();
    doorway.fields.txtFileLocation.clear();
    if (app().count("--profile") > 0) {
        if (!profiles.exists(m_profile))
            throw Failure("There is no doorway profile \"" + m_profile + "\".", 53);
        doorway.fields = profiles.load(m_profile);
    }
    setFields(doorway);
    checkFields(doorway);
    if (app().count("--save") > 0) {
        if (m_save.empty()) throw UsageError("--save: is empty");
        doorway.cboProfile = m_save;
        if (!doorway.saveProfile()) return kCouldNotRun;
        doorway.unload();
    }
    for (const DoorwayFile& file : doorway.writePages()) {
        if (context().json)
            JsonLine()
                .add("event", "page")
                .add("keyword", file.keyword)
                .add("path", file.path)
                .write(context().out());
        else
            context().out() << terminalText(file.path) << '\n';
    }
    return kSucceeded;
}

void DoorwayCommand::setFields(Doorway& doorway) const {
    const std::vector<DoorwayKey>& keys = doorwayKeys();
    for (const std::string& value : m_values) {
        const std::size_t sign = value.find('=');
        if (sign == npos) throw UsageError("--set: \"" + value + "\" is not KEY=VALUE");
        const std::string_view name = std::string_view(value).substr(0, sign);
        const auto same = [name](const DoorwayKey& key) { return equalsNoCase(key.key, name); };
        const auto key = std::find_if(keys.begin(), keys.end(), same);
        if (key == keys.end()) throw UsageError("--set: there is no key \"" + std::string(name) + "\"");
        key->field(doorway.fields) = value.substr(sign + 1);
    }
    if (m_folder.empty()) return;
    if (!folderExists(m_folder)) throw Failure(terminalText(m_folder) + ": there is no such folder", 76);
    doorway.fields.txtFileLocation = absolutePath(m_folder);
}

void DoorwayCommand::checkFields(const Doorway& doorway) const {
    if (const auto problem = doorway.missingField()) throw UsageError(std::string(problem->words));
}

}  // namespace relay
