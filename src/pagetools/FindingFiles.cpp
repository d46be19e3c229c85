// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/FindingFiles.h"

#include "core/CsvCell.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "pagetools/FindingRules.h"

#include <nlohmann/json.hpp>

namespace relay {

namespace {

using Json = nlohmann::ordered_json;

// A path as SARIF wants it: a URI.
std::string uriOf(std::string_view address) {
    if (!address.starts_with('/')) return toPrintableUtf8(address);
    std::string uri = "file://";
    for (const char c : address) {
        const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                           std::string_view("/-._~").find(c) != npos;
        if (plain)
            uri += c;
        else
            appendHex(uri += '%', c);
    }
    return uri;
}

const char* levelOf(Severity severity) {
    if (severity == Severity::Error) return "error";
    return severity == Severity::Warning ? "warning" : "note";
}

Json rulesAsJson() {
    Json rules = Json::array();
    for (const auto& rule : findingRules()) {
        const FindingRule::About& about = rule->about();
        rules.push_back({{"id", about.name},
                         {"shortDescription", {{"text", about.why}}},
                         {"help", {{"text", about.what}}},
                         {"defaultConfiguration", {{"level", levelOf(about.severity)}}}});
    }
    return rules;
}

}  // namespace

std::string findingsAsCsv(const std::vector<FindingsOfPage>& pages) {
    std::string table = "address,line,severity,rule,found,what_to_do\r\n";
    for (const FindingsOfPage& page : pages) {
        for (const PageFinding& finding : page.findings) {
            const FindingRule* const rule = findRule(finding.rule);
            appendCsvCell(table, page.address);
            table.append(",").append(std::to_string(finding.line)).append(",");
            table.append(severityName(finding.severity)).append(",").append(finding.rule).append(",");
            appendCsvCell(table, finding.found);
            table += ',';
            appendCsvCell(table, rule == nullptr ? std::string_view() : rule->about().what);
            table += "\r\n";
        }
    }
    return table;
}

std::string findingsAsSarif(const std::vector<FindingsOfPage>& pages) {
    Json results = Json::array();
    for (const FindingsOfPage& page : pages) {
        const std::string uri = uriOf(page.address);
        for (const PageFinding& finding : page.findings)
            results.push_back(
                {{"ruleId", finding.rule},
                 {"level", levelOf(finding.severity)},
                 {"message", {{"text", toPrintableUtf8(finding.found)}}},
                 {"locations", Json::array({{{"physicalLocation",
                                              {{"artifactLocation", {{"uri", uri}}},
                                               {"region", {{"startLine", finding.line}}}}}}})}});
    }
    const Json run = {
        {"tool",
         {{"driver", {{"name", "Korvel Relay"}, {"version", RELAY_VERSION}, {"rules", rulesAsJson()}}}}},
        {"results", results}};
    const Json whole = {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                        {"version", "2.1.0"},
                        {"runs", Json::array({run})}};
    return whole.dump(2) + "\n";
}

}  // namespace relay
