// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalogue/EngineCategories.h"
#include "core/IniFile.h"
#include "core/Keys.h"
#include "projects/WebsiteFields.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace relay {

class Prompts;

inline constexpr std::string_view kWebsiteSection = "Web Site Info";
inline constexpr std::string_view kUrlSection = "URL";
inline constexpr std::string_view kReportSection = "Report";
inline constexpr std::string_view kSitemapSection = "Sitemap";
// How many URLs a website file may have.
inline constexpr int kMostUrls = 32767;
inline constexpr std::string_view kCustomCategorySection = "CustomEngineCategory";

// The table of custom engines, in the order of cboCustomEngines.
using CustomEngines = std::vector<EngineCategoryEntry>;
// Selects a website's saved category in the two category lists; leaves in both texts what is selected
// afterwards.
using SelectCategory = std::function<void(std::string& mainCategory, std::string& category)>;

// What saving may overwrite.
enum class SaveOver { WhatWasSeen, Anything };

// Reads and writes a website file (".kws", an INI file that only its owner can read). Every operation reads
// the file once and writes it once, whole. Saving keeps unknown keys; old URL and report keys stay too,
// beyond the counts LastURL and LastReport.
class WebsiteFile final {
  public:
    explicit WebsiteFile(Prompts& prompts) : m_prompts(prompts) {}

    // An empty path does nothing. First copies the current choice on the custom engines tab to the table. On
    // failure shows it, returns false, and the file does not change.
    bool saveWebsiteFile(const std::string& path, const WebsiteFields& fields, CustomEngines& customEngines);
    // The same, but throws Failure. With SaveOver::WhatWasSeen, returns false and writes nothing when the
    // file has changed since this object last read or wrote it; a deleted file is written again.
    bool save(const std::string& path, const WebsiteFields& fields, CustomEngines& customEngines,
              SaveOver over);
    // From here on the fields belong to no file.
    void forget();
    // The fields belong to a file with these bytes, from which they were not loaded.
    void standFor(std::string bytes);
    // The path chosen for an engine, as the file was last read or written.
    std::string storedCategory(std::string_view engine) const;
    // A missing file counts as empty. On failure shows it and returns false, with the fields loaded as far as
    // possible (LastURL and LastReport beyond 16 bits overflow).
    bool loadWebsiteFile(const std::string& path, WebsiteFields& fields, CustomEngines& customEngines,
                         const SelectCategory& selectCategory);
    // Asks, then removes the highlighted report entries, their files, and their lines in the website file. A
    // file outside the folder of reports stays, and a message names it. The list then follows other changes
    // in the file. On failure shows it and returns false.
    bool DeleteReportFile(const std::string& path, Rows& reports, const std::string& reportFolder);

  private:
    Prompts& m_prompts;
    void noteCategories(const IniFile& file);

    std::optional<std::string> m_seen;  // the file when last read or written; none: no file
    std::unordered_map<std::string, std::string, KeyHash, KeyEqual> m_categories;  // in it, by engine
};

// The steps of these operations. They throw Failure.

// Replaces each CR LF by a blank; a lone CR or LF stays.
std::string removeCrLf(std::string_view text);
// Writes the fields into the document; keys of a new file are in their usual order.
void writeWebsite(IniFile& file, const WebsiteFields& fields, const CustomEngines& customEngines);
// Writes URL<i>, LocalFile<i> and LastURL. Throws Failure "Overflow", with nothing changed, if LastURL would
// exceed 16 bits.
void writeUrls(IniFile& file, const Rows& urls);
// Appends the file's URLs to the rows, without duplicates and empty entries.
void readUrls(const IniFile& file, Rows& urls);
// Write and read what is known of the sitemap: URL<i>, LastMod<i> and their number, Last. Nothing is written
// of a website without one.
void writeSitemap(IniFile& file, const SitemapDates& dates);
void readSitemap(const IniFile& file, SitemapDates& dates);
// The text of a website file with its report entries replaced by `reports`: the section Report, normally the
// last, is written again at the end. The last line of the old text is never copied.
std::string replaceReports(std::string_view text, const Rows& reports);
// Only the URL list of a website file: appends it to the rows, and writes it back.
void loadUrlList(const std::string& path, Rows& urls);
void SaveURL(const std::string& path, const Rows& urls);

}  // namespace relay
