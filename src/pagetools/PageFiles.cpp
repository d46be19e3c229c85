// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/PageFiles.h"

#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/LoggedTrap.h"
#include "core/Trap.h"
#include "core/clsPreference.h"

namespace relay {

namespace {

bool change(const Services& services, std::string_view words, const std::string& fileName,
            const MetaTagChange& wanted) {
    if (fileName.empty() || !fileExists(fileName)) return true;
    return trapAndLog(services, words, [&] { changeFile(fileName, wanted); });
}

bool cut(const Services& services, std::string_view html, HtmlPart part, std::string& section) {
    std::string remark = "\r\nPlease report this error to '";
    remark.append(kSupportAddress).append("'");
    return trapAndLog(
        services, "Module: getHTMLSection\r\n", [&] { section = htmlSection(html, part); }, remark);
}

}  // namespace

void changeFile(const std::string& fileName, const MetaTagChange& change) {
    writeFile(fileName, changedPage(readFile(fileName), change));
}

bool insertMetaTag(const Services& services, const std::string& fileName, const MetaTags& tags) {
    return change(services, "Module: insertMetaTag\r\n", fileName, {tags, MetaTagChange::Way::Insert});
}

bool replaceMetaTag(const Services& services, const std::string& fileName, const MetaTags& tags,
                    bool titleOnTop) {
    return change(services, "Module: replaceMetaTag\r\n", fileName,
                  {tags, MetaTagChange::Way::Replace, titleOnTop});
}

bool readMetaTag(const Services& services, std::string_view html, PageTexts& page) {
    return trapAndLog(services, "Module: retrieveMetaTag\r\n", [&] { retrieveMetaTag(html, page); });
}

bool readPage(const Services& services, const std::string& fileName, std::string& html) {
    if (!failureOf([&] { html = readFile(fileName); })) return true;
    services.prompts.message(
        "Open HTML file error. Please make sure the file is not open by other program and try again.",
        "Error", Icon::Critical);
    return false;
}

bool cutHead(const Services& services, std::string_view html, std::string& head) {
    return cut(services, html, HtmlPart::Head, head);
}

std::string getHTMLSection(const Services& services, const std::string& fileName, HtmlPart part) {
    std::string html;
    std::string section;
    if (!fileName.empty() && readPage(services, fileName, html)) cut(services, html, part, section);
    return section;
}

}  // namespace relay
