// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/SelectionOptions.h"

#include "catalogue/Catalogue.h"
#include "cli/CommandLineContext.h"
#include "cli/ExitCode.h"
#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/Text.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace relay {

namespace {

constexpr const char* kGroup = "Choosing engines (in the order given)";

std::vector<std::string> typeCodes(const std::string& list) {
    std::vector<std::string> codes;
    std::istringstream items(list);
    for (std::string item; std::getline(items, item, ',');) {
        const std::string code = toUpper(trim(item));
        const bool known = std::any_of(EngineTypes.begin(), EngineTypes.end(),
                                       [&](const EngineTypeRow& type) { return type.code == code; });
        if (!known)
            throw UsageError("\"" + item +
                             "\" is not an engine type. The types are: ENG, DIR, FFA, NEWS, MALL, HOT, MIS");
        codes.push_back(code);
    }
    if (codes.empty()) throw UsageError("--type needs an engine type.");
    return codes;
}

std::string countryCode(const std::string& text) {
    const std::string code = toUpper(text);
    const bool letters = code.size() == 2 &&
                         std::all_of(code.begin(), code.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
    if (!letters && code != "ALL")
        throw UsageError("\"" + text + "\" is not a country code: two letters, or ALL for every country.");
    return code;
}

}  // namespace

void SelectionOptions::addFlag(CLI::App& app, const std::string& name, const std::string& about, Step step) {
    app.add_flag_callback(
           name, [this, step] { m_steps.push_back(step); }, about)
        ->trigger_on_parse()
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
        ->group(kGroup);
}

void SelectionOptions::addValue(CLI::App& app, const std::string& name, const std::string& value,
                                const std::string& about, std::function<Step(const std::string&)> makeStep) {
    app.add_option_function<std::string>(
           name, [this, makeStep](const std::string& text) { m_steps.push_back(makeStep(text)); }, about)
        ->trigger_on_parse()
        ->type_name(value)
        ->group(kGroup);
}

void SelectionOptions::addTo(CLI::App& app) {
    const auto byMode = [](const char* mode) {
        return [mode](Catalogue& catalogue) { catalogue.selection.SelectByMode(mode); };
    };
    addFlag(app, "--all", "Every engine",
            [](Catalogue& catalogue) { catalogue.selection.EngineSelect(true); });
    addValue(app, "--type", "CODE[,CODE]",
             "Types: ENG DIR FFA NEWS MALL HOT MIS; hot sites are always included",
             [](const std::string& list) -> Step {
                 return [codes = typeCodes(list)](Catalogue& catalogue) {
                     for (const std::string& code : codes) catalogue.selection.EngineSelectByType(code, true);
                 };
             });
    addValue(app, "--country", "CC", "Engines of a country, or ALL", [](const std::string& text) -> Step {
        return [code = countryCode(text)](Catalogue& catalogue) {
            catalogue.selection.EngineSelectByCountry(code);
        };
    });
    addFlag(app, "--major", "The major engines; replaces earlier choices", byMode("MajorSite"));
    addFlag(app, "--custom", "The customised engines; replaces earlier choices", byMode("CustomEngine"));
    addFlag(app, "--adult-only", "The engines for adult sites; replaces earlier choices",
            byMode("AdultOnlySite"));
    addFlag(app, "--no-adult", "Drop engines that refuse adult sites or take nothing else",
            [](Catalogue& catalogue) { catalogue.selection.EngineSelectNoAdultSites(); });
    addFlag(app, "--healthy", "Drop engines that failed in each of their last three runs",
            [](Catalogue& catalogue) { catalogue.dropFailingEngines(); });
    addValue(app, "--engine", "NAME", "One engine; may be repeated", [](const std::string& name) -> Step {
        return [name](Catalogue& catalogue) {
            catalogue.selection.EngineSingleSelect(catalogue.engine(name).name());
        };
    });
    addValue(app, "--engines", "FILE", "The engines named in a file, one per line",
             [](const std::string& file) -> Step {
                 return [file](Catalogue& catalogue) {
                     if (!fileExists(file)) throw Failure(file + ": there is no such engine file.");
                     if (!catalogue.selection.loadSelectedEngine(file))
                         throw Failure(file + ": the file was not read to its end.");
                 };
             });
    addFlag(app, "--failed", "The engines that failed in the last run",
            [](Catalogue& catalogue) { catalogue.selection.selectFailedEnginesOnce(); });
    app.add_option("--save-selection", m_saveTo, "Write the chosen engines to a file, replacing it")
        ->type_name("FILE")
        ->group(kGroup);
}

void SelectionOptions::apply(CommandLineContext& context, Catalogue& catalogue) const {
    for (const Step& step : m_steps) step(catalogue);
    if (m_saveTo.empty()) return;
    if (catalogue.lists.lsvSelectedEngines.empty())
        throw Failure("No engines have been selected. Please select the engines you would like to save.");
    catalogue.selection.saveSelectedEngine(m_saveTo);
    context.note("Engines saved to " + m_saveTo + ": " +
                 std::to_string(catalogue.lists.lsvSelectedEngines.count()));
}

}  // namespace relay
