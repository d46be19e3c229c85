// SPDX-License-Identifier: GPL-3.0-or-later
#include "extras/AddIns.h"

#include "core/FileSystem.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/clsPreference.h"

#include <algorithm>
#include <unistd.h>

namespace relay {

const std::array<AddIn, 3> kAddIns{{
    {"KRW", "Korvel Rank Watch 4.0",
     "Korvel Rank Watch 4.0 is a powerful web ranking tool that gives you full control on search engine "
     "placement tracking and rank monitoring. Check your web site position in all the major search engines "
     "for all the keywords for multiple URLs in one Click!",
     &clsPreference::KRWLocation},
    {"KLB", "Korvel Link Builder",
     "Most powerful link popularity builder tool that manages reciprocal link partners, tracks your link "
     "page, generates new link partners and send 'Personalized' invitation messages, creates link pages "
     "automatically and promotes them.",
     &clsPreference::KLBLocation},
    {"KBK", "Korvel Bid Keeper",
     "Manage your keywords and bids for ALL the major 'Pay-Per-Click' search engines, maintain your position "
     "at the lowest cost possible by fixing the bid GAPs, save money and time.",
     &clsPreference::KBKLocation},
}};

const std::string& AddIns::pathOf(std::size_t addIn) const {
    return m_services.preference.*kAddIns.at(addIn).path;
}

// Every code but that of the last tool brings its comma.
std::string AddIns::codesOf(const Flags& wanted) const {
    std::string codes;
    for (std::size_t i = 0; i < kAddIns.size(); ++i) {
        if (!wanted[i] || pathOf(i).empty()) continue;
        codes += kAddIns[i].code;
        if (i + 1 < kAddIns.size()) codes += ',';
    }
    return codes;
}

std::string AddIns::GetAddIns() const {
    return codesOf({true, true, true});
}

void AddIns::LoadAddIns(std::string_view list) {
    while (!list.empty()) {
        const std::size_t comma = std::min(list.find(','), list.size());
        for (std::size_t i = 0; i < kAddIns.size(); ++i)
            if (equalsNoCase(list.substr(0, comma), kAddIns[i].code)) m_shown[i] = true;
        list.remove_prefix(std::min(comma + 1, list.size()));
    }
    Q_EMIT shownChanged();
}

std::string AddIns::confirm(const Flags& ticked) {
    std::string missing;
    for (std::size_t i = 0; i < kAddIns.size(); ++i)
        if (ticked[i] && pathOf(i).empty()) missing.append(kAddIns[i].name).append("\r\n");
    if (!missing.empty() &&
        m_services.prompts.ask("Following the application(s) is not installed: \r\n\r\n" + missing +
                                   "\r\nDo you want to download and install these software(s) on your PC?",
                               "Add In Manager"))
        openPageOrTell(m_services.prompts, m_services.preference.UpdateURL, "Add In Manager");
    return codesOf(ticked);
}

void AddIns::run(std::size_t addIn) {
    constexpr std::string_view kTitle = "Run Add Ins";
    const std::string& path = pathOf(addIn);
    if (path.empty() || !fileExists(path)) {
        m_services.prompts.message(
            "File not found for '" + path + "'. Please re-install the program and try again", kTitle,
            Icon::Critical);
        return;
    }
    const bool isProgram = ::access(path.c_str(), X_OK) == 0;
    if (!isProgram || !m_services.prompts.startProgram(path)) openOrTell(m_services.prompts, path, kTitle);
}

}  // namespace relay
