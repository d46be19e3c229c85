// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/EngineCategories.h"
#include "core/IniFile.h"
#include "projects/WebsiteFields.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace relay {

class Prompts;

inline constexpr std::string_view kWebsiteSection = "Web Site Info";
inline constexpr std::string_view kUrlSection = "URL";
inline constexpr std::string_view kReportSection = "Report";
inline constexpr std::string_view kCustomCategorySection = "CustomEngineCategory";

// The table of custom engines, in the order of cboCustomEngines.
using CustomEngines = std::vector<EngineCategoryEntry>;
// Puts the two category lists on a website's saved category: takes what the file says, leaves in both texts
// what is selected afterwards.
using SelectCategory = std::function<void(std::string& mainCategory, std::string& category)>;

// What a save may write over.
enum class SaveOver { WhatWasSeen, Anything };

// Moves a website between its file (".kws", an INI file that only its owner can read) and the fields. Every
// operation reads the file once and writes it once, whole; a save keeps what it does not know, so keys that
// are no longer meant stay, out of reach behind the counts LastURL and LastReport.
class WebsiteFile final {
  public:
    explicit WebsiteFile(Prompts& prompts) : m_prompts(prompts) {}

    // An empty path does nothing. The category the user is choosing on the custom engines tab goes to the
    // table first. False when it failed, which was shown; the file is then as it was.
    bool saveWebsiteFile(const std::string& path, const WebsiteFields& fields, CustomEngines& customEngines);
    // The same, but throws Failure. False, with nothing written, when only what was seen may
    // be written over and the file holds other bytes than this object read from it or wrote to it last. A
    // file that has gone is written anew.
    bool save(const std::string& path, const WebsiteFields& fields, CustomEngines& customEngines,
              SaveOver over);
    // The fields hold no file from here on.
    void forget() { m_seen.reset(); }
    // A missing file reads as empty. False when it failed, which was shown; the fields are then loaded
    // as far as it had come (LastURL and LastReport beyond 16 bits overflow).
    bool loadWebsiteFile(const std::string& path, WebsiteFields& fields, CustomEngines& customEngines,
                         const SelectCategory& selectCategory);
    // Asks, then removes the highlighted report entries, their files, and their lines of the website file. A
    // file that does not lie in the folder of reports stays, and a message names it. Entries that came into
    // the file meanwhile join the list, those that went from it leave it. False when it failed, which was
    // shown.
    bool DeleteReportFile(const std::string& path, Rows& reports, const std::string& reportFolder);

  private:
    Prompts& m_prompts;
    std::optional<std::string> m_seen;  // the file's bytes as they were read or written last; none: no file
};

// The steps below throw Failure; the operations above are what a user sees of them.

// Each CR LF to one blank; a lone CR or LF stays.
std::string removeCrLf(std::string_view text);
// The website's fields into the document, keys of a new file in their settled order.
void writeWebsite(IniFile& file, const WebsiteFields& fields, const CustomEngines& customEngines);
// URL<i>, LocalFile<i> and LastURL. Throws Failure "Overflow", with nothing changed, beyond the 16 bits in
// which LastURL is read.
void writeUrls(IniFile& file, const Rows& urls);
// The file's URLs behind the rows that are there; duplicates and empty entries are passed over.
void readUrls(const IniFile& file, Rows& urls);
// The bytes of a website file after its report entries became `reports`. Its last line is never copied: the
// section Report, normally the last, is written anew behind the rest.
std::string replaceReports(std::string_view text, const Rows& reports);
// A website file's URL list alone: what the file holds behind the rows that are there, and back into the
// file.
void loadUrlList(const std::string& path, Rows& urls);
void SaveURL(const std::string& path, const Rows& urls);

}  // namespace relay
