// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/PasswordKey.h"

#include "catalogue/EngineLists.h"
#include "core/Text.h"

namespace relay {

namespace {
constexpr int kMostNames = 3;

std::string warning(const std::string& names) {
    return "The website has no password, but " + names +
           " would be sent it. An IndexNow engine takes the password as the site's key and refuses an empty "
           "or "
           "invented one, and the report counts that refusal as a success.";
}
}  // namespace

const std::string_view kPasswordKeyNotice =
    "The IndexNow engines take the website's password as the site's key. Before you submit, set it to a key "
    "of 8 "
    "to 128 letters and digits, and put a file KEY.txt that contains the key into the root of the site. "
    "Engines "
    "refuse an empty or invented key, and the report counts that refusal as a success.";

bool sendsPassword(const clsEngines& engine) noexcept {
    return containsNoCase(engine.Query(), "<PASSWORD>");
}

std::string emptyPasswordWarning(const EngineLists& lists) {
    std::string names;
    int count = 0;
    for (int row = 0; row < lists.lsvSelectedEngines.count(); ++row) {
        const clsEngines* const engine = lists.engines.find(lists.lsvSelectedEngines.at(row).key);
        if (engine == nullptr || !sendsPassword(*engine) || ++count > kMostNames) continue;
        names.append(names.empty() ? "" : ", ").append(engine->name());
    }
    if (count > kMostNames) names += " and " + std::to_string(count - kMostNames) + " more";
    return count == 0 ? std::string() : warning(names);
}

std::string emptyPasswordWarning(const clsEngines& engine) {
    return sendsPassword(engine) ? warning(std::string(engine.name())) : std::string();
}

}  // namespace relay
