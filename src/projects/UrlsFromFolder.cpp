// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/UrlsFromFolder.h"

#include "core/Failure.h"
#include "core/FileSystem.h"
#include "core/Prompts.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "projects/UrlList.h"

namespace relay {

namespace {

FolderContent contentOf(const std::string& folder) {
    std::error_code error;
    FolderContent content = listFolder(folder, error);
    if (error) throw Failure(folder + ": " + error.message());
    return content;
}

bool acceptsDomain(std::string_view domain, Prompts& prompts) {
    std::string_view words;
    if (domain.empty())
        words = "Please enter a default domain name you want to combine with your local HTML file.";
    else if (domain.find('.') == npos)
        words = "In valid domain name. Please enter a correct domain name.";
    else
        return true;
    prompts.message(words, "Add URL From Local Folder", Icon::Information);
    return false;
}

std::string fullDomain(std::string_view domain) {
    std::string full(domain);
    if (!startsWithNoCase(full, "http")) full.insert(0, "http://");
    if (!full.ends_with('/')) full += '/';
    return full;
}

}  // namespace

std::string extensionList(const FolderChoice& choice) {
    std::string list;
    if (choice.html) list = ".htm,.html,.shtml";
    if (choice.asp) list += ",.asp";
    if (choice.cgi) list += ",.cgi";
    return list;
}

void createURL(Rows& urls, std::string_view domain, std::string_view subFolder, std::string_view extensions,
               const std::string& folder, const std::vector<std::string>& files) {
    for (const std::string& name : files) {
        const std::string_view ending = std::string_view(name).substr(name.size() < 4 ? 0 : name.size() - 4);
        if (!extensions.empty() && !containsNoCase(extensions, ending)) continue;
        std::string url(domain);
        if (!subFolder.empty()) url.append(subFolder).append("/");
        url += name;
        addNewItem(urls, url, folder + "/" + name);
    }
}

bool addURLFromFolder(Rows& urls, const FolderChoice& choice, Prompts& prompts) {
    if (!acceptsDomain(choice.txtDomain, prompts)) return false;
    return trap(prompts, "AddURL_Error: ", [&] {
        const std::string extensions = extensionList(choice);
        const std::string domain = fullDomain(choice.txtDomain);
        const RowsBatch batch(urls);
        const FolderContent root = contentOf(choice.folder);
        createURL(urls, domain, {}, extensions, choice.folder, root.files);
        if (!choice.chkSubDirectory) return;
        for (const std::string& name : root.folders) {
            const std::string folder = choice.folder + "/" + name;
            createURL(urls, domain, name, extensions, folder, contentOf(folder).files);
        }
    });
}

}  // namespace relay
