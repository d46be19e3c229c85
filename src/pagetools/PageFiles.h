// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pagetools/MetaTags.h"

#include <string>

namespace relay {

struct Services;

// Changes the file. Throws Failure: it cannot be read or written, or a position overflows. The file is
// replaced whole or not at all. Where the path is a link, the link is replaced by the changed page and the
// file it points to stays as it is.
void changeFile(const std::string& fileName, const MetaTagChange& change);

// The user's operations on page files. Each shows and logs its failure and then returns false; an empty name
// and a missing file are passed over with true.
bool insertMetaTag(const Services& services, const std::string& fileName, const MetaTags& tags);
bool replaceMetaTag(const Services& services, const std::string& fileName, const MetaTags& tags,
                    bool titleOnTop);
// retrieveMetaTag with its trap; what was found before a failure stays in `page`.
bool readMetaTag(const Services& services, std::string_view html, PageTexts& page);
// Reads a page; false, after a message, when that fails.
bool readPage(const Services& services, const std::string& fileName, std::string& html);
// Cuts the head out of a page; false, after a message, when that fails.
bool cutHead(const Services& services, std::string_view html, std::string& head);
// The part of the file; empty for an empty name and, after a message, when it cannot be read or cut.
std::string getHTMLSection(const Services& services, const std::string& fileName, HtmlPart part);

}  // namespace relay
