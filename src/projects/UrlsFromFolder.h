// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"

#include <string>
#include <string_view>
#include <vector>

namespace relay {

class Prompts;

// What the user chose in "Create URL from Local Folder".
struct FolderChoice final {
    std::string txtDomain = "www.";
    bool html = false;  // chkExtention(0)
    bool asp = false;   // chkExtention(1)
    bool cgi = false;   // chkExtention(2)
    bool chkSubDirectory = false;
    std::string folder;  // selected in Dir1, without a trailing separator
};

// ".htm,.html,.shtml", ",.asp" and ",.cgi" for the ticked boxes; empty when none is ticked.
std::string extensionList(const FolderChoice& choice);
// Adds a URL for each file of the folder whose last four characters occur anywhere in the extension list, or
// for every file when the list is empty. `domain` ends in a slash; `subFolder` is empty for the root.
void createURL(Rows& urls, std::string_view domain, std::string_view subFolder, std::string_view extensions,
               const std::string& folder, const std::vector<std::string>& files);
// "&Get": adds the files of the folder and, if chosen, of the folders directly below it, sorted by name and
// without hidden ones. False, after a message, when the domain is invalid; the form then stays open.
bool addURLFromFolder(Rows& urls, const FolderChoice& choice, Prompts& prompts);

}  // namespace relay
