// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/WebsiteFile.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/FolderLock.h"
#include "core/Prompts.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "projects/UrlList.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <system_error>

namespace relay {

namespace {

constexpr std::string_view kFileVersion = "6.0";

std::string numbered(std::string_view name, int number) {
    return std::string(name) + std::to_string(number);
}

int readCount(const IniFile& file, std::string_view key) {
    return toInt16(leadingNumber(file.value(kWebsiteSection, key)));
}

void writeCustomCategories(IniFile& file, const CustomEngines& customEngines, std::size_t& reached) {
    for (reached = 0; reached < customEngines.size(); ++reached) {
        const EngineCategoryEntry& engine = customEngines[reached];
        // A name that could not be read back must not prevent saving.
        if (!IniFile::takesKey(engine.EngineName)) continue;
        if (!engine.Data.empty()) file.setValue(kCustomCategorySection, engine.EngineName, engine.Data);
        if (!engine.SpaceID.empty())
            file.setValue(kCustomCategorySection, engine.EngineName + "SpaceID", engine.SpaceID);
    }
}

void writeInfo(IniFile& file, const WebsiteFields& fields) {
    const auto put = [&file](std::string_view key, std::string_view value) {
        file.setValue(kWebsiteSection, key, value);
    };
    for (const WebsiteKey& key : kWebsiteKeys) {
        if (key.field && key.kind == WebsiteKeyKind::OneLine) put(key.name, removeCrLf(fields.*key.field));
        if (key.field && key.kind == WebsiteKeyKind::Text) put(key.name, fields.*key.field);
        if (key.name == "Version") put(key.name, kFileVersion);
        if (key.name == "LastURL") writeUrls(file, fields.lsvSiteURLs);
        if (key.name == "BlockFFA") put(key.name, std::to_string(fields.chkBlockFFA));
    }
}

// Appends to the rows.
void readReports(const IniFile& file, Rows& reports) {
    const RowsBatch batch(reports);
    const int count = readCount(file, "LastReport");
    for (int i = 1; i <= count; ++i) {
        const std::string url = file.value(kReportSection, numbered("URL", i));
        const std::string reportFile = file.value(kReportSection, numbered("ReportFile", i));
        if (url.empty() || reportFile.empty()) continue;
        Row row;
        row.text = url;
        row.subItems = {file.value(kReportSection, numbered("Date", i))};
        row.icon = kUrlIcon;
        row.tag = reportFile;
        reports.add(std::move(row));
    }
}

void readLists(const IniFile& file, WebsiteFields& fields) {
    {
        const RowsBatch batch(fields.lsvSiteURLs);
        fields.lsvSiteURLs.clear();
        readUrls(file, fields.lsvSiteURLs);
    }
    fields.lsvReports.clear();
    readReports(file, fields.lsvReports);
    readSitemap(file, fields.sitemap);
}

// A count that overflows ends the reading, so the keys are read in order.
void readWebsite(const IniFile& file, WebsiteFields& fields, CustomEngines& customEngines,
                 const SelectCategory& selectCategory) {
    for (const WebsiteKey& key : kWebsiteKeys) {
        if (key.field) fields.*key.field = file.value(kWebsiteSection, key.name);
        if (key.name == "LastURL") readLists(file, fields);
        if (key.name == "Category" && selectCategory) selectCategory(fields.mainCategory, fields.category);
    }
    // Not the section that saving writes: the chosen category is read when the user picks its engine.
    for (EngineCategoryEntry& engine : customEngines) {
        engine.Data = file.value("CustomEngine", engine.EngineName);
        // The identifier belongs to this website, not to the one before it.
        engine.SpaceID = file.value(kCustomCategorySection, engine.EngineName + "SpaceID");
    }
    fields.clearCustomEngine();
    fields.chkBlockFFA = toInt16(leadingNumber(file.value(kWebsiteSection, "BlockFFA")));
    fields.txtURLFileLocation.clear();
    fields.clearWorkArea();
}

// The bytes of the file; none if it does not exist.
std::optional<std::string> bytesOf(const std::string& path) {
    try {
        return readFile(path, IniFile::kLargestFile);
    } catch (const Failure& failure) {
        if (failure.number() != 53) throw;
        return std::nullopt;
    }
}

// The lines of the text without their ends; CR, LF or both end a line.
std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::string_view line = firstLine(text);
        lines.push_back(line);
        std::size_t next = line.size();
        if (next < text.size()) next += text.substr(next, 2) == "\r\n" ? 2 : 1;
        text.remove_prefix(next);
    }
    return lines;
}

// Whether the file itself, wherever links lead, lies in the folder or below it.
bool liesIn(const std::string& path, const std::string& folder) {
    std::error_code error;
    const auto whole = std::filesystem::canonical(folder, error);
    if (error) return false;
    const auto above = std::filesystem::canonical(std::filesystem::path(path).parent_path(), error);
    if (error) return false;
    return std::mismatch(whole.begin(), whole.end(), above.begin(), above.end()).first == whole.end();
}

// Deletes the files of the highlighted reports and removes their rows; gives the files that stay as they lie
// outside the folder. Where a file cannot be deleted, the rows before it are gone and the rest stays.
std::vector<std::string> deleteHighlightedReports(Rows& reports, const std::string& folder) {
    std::vector<std::string> kept;
    int deleted = 0;
    const auto removeRows = [&reports, &deleted] {
        int left = deleted;
        reports.removeIf([&left](const RowView& row) { return row.highlighted && left-- > 0; });
    };
    try {
        for (int i = 0; i < reports.count(); ++i) {
            const RowView row = reports.at(i);
            if (!row.highlighted) continue;
            std::string path(row.tag);
            if (fileExists(path)) {
                if (liesIn(path, folder))
                    removeFile(path);
                else
                    kept.push_back(std::move(path));
            }
            ++deleted;
        }
    } catch (const Failure&) {
        removeRows();
        throw;
    }
    removeRows();
    return kept;
}

std::string keptWords(const std::vector<std::string>& kept) {
    constexpr std::size_t kMostNamed = 10;
    std::string words = "Only files in the folder of reports are deleted. Left in place:";
    for (std::size_t i = 0; i < kept.size() && i < kMostNamed; ++i)
        words += "\r\n" + escapeControlCharacters(kept[i]);
    if (kept.size() > kMostNamed) words += "\r\nand " + std::to_string(kept.size() - kMostNamed) + " more";
    return words;
}

// How often a list contains each report entry.
using ReportCounts = std::map<std::vector<std::string>, int>;

std::vector<std::string> reportEntry(const RowView& row) {
    return {std::string(row.text), row.subItems.empty() ? std::string() : std::string(row.subItems[0]),
            std::string(row.tag)};
}

ReportCounts countReports(const Rows& reports) {
    ReportCounts counts;
    for (int i = 0; i < reports.count(); ++i) ++counts[reportEntry(reports.at(i))];
    return counts;
}

// Updates the list from the file: removes rows that are no longer in the file and adds entries that are new
// there. `before` counts the list before the user's rows were removed.
void followFile(Rows& reports, ReportCounts before, const Rows& inFile) {
    const RowsBatch batch(reports);
    ReportCounts left = countReports(inFile);
    reports.removeIf([&left](const RowView& row) { return left[reportEntry(row)]-- <= 0; });
    for (int i = 0; i < inFile.count(); ++i)
        if (before[reportEntry(inFile.at(i))]-- <= 0) reports.add(Row(inFile.at(i)));
}

}  // namespace

std::string removeCrLf(std::string_view text) {
    return replaceAll(text, "\r\n", " ");
}

void writeWebsite(IniFile& file, const WebsiteFields& fields, const CustomEngines& customEngines) {
    writeInfo(file, fields);
    std::size_t reached = 0;
    writeCustomCategories(file, customEngines, reached);
    writeSitemap(file, fields.sitemap);
}

void writeSitemap(IniFile& file, const SitemapDates& dates) {
    int count = 0;
    for (const SitemapEntry& entry : dates.entries()) {
        if (++count > kMostUrls) break;
        file.setValue(kSitemapSection, numbered("URL", count), entry.url);
        file.setValue(kSitemapSection, numbered("LastMod", count), entry.lastmod);
    }
    if (count > 0) file.setValue(kSitemapSection, "Last", std::to_string(std::min(count, kMostUrls)));
}

void readSitemap(const IniFile& file, SitemapDates& dates) {
    dates.clear();
    const int count = std::min(leadingInteger(file.value(kSitemapSection, "Last")), kMostUrls);
    for (int i = 1; i <= count; ++i) {
        const std::string url = file.value(kSitemapSection, numbered("URL", i));
        if (!url.empty()) dates.set({url, file.value(kSitemapSection, numbered("LastMod", i))});
    }
}

void writeUrls(IniFile& file, const Rows& urls) {
    toInt16(urls.count());
    for (int i = 1; i <= urls.count(); ++i) {
        const RowView row = urls.at(i - 1);
        file.setValue(kUrlSection, numbered("URL", i), row.text);
        file.setValue(kUrlSection, numbered("LocalFile", i), row.tag);
    }
    file.setValue(kWebsiteSection, "LastURL", std::to_string(urls.count()));
}

void readUrls(const IniFile& file, Rows& urls) {
    if (file.value(kWebsiteSection, "Version").empty()) {
        const std::string url = file.value(kWebsiteSection, "URL");
        if (!url.empty()) addNewItem(urls, url);
    }
    const int count = readCount(file, "LastURL");
    for (int i = 1; i <= count; ++i) {
        const std::string url = file.value(kUrlSection, numbered("URL", i));
        if (!url.empty()) addNewItem(urls, url, file.value(kUrlSection, numbered("LocalFile", i)));
    }
}

void WebsiteFile::forget() {
    m_seen.reset();
    m_categories.clear();
}

void WebsiteFile::standFor(std::string bytes) {
    noteCategories(IniFile::parse(bytes));
    m_seen = std::move(bytes);
}

void WebsiteFile::noteCategories(const IniFile& file) {
    m_categories.clear();
    for (const std::string& key : file.keys(kCustomCategorySection))
        m_categories.emplace(key, file.value(kCustomCategorySection, key));
}

std::string WebsiteFile::storedCategory(std::string_view engine) const {
    const auto stored = m_categories.find(engine);
    return stored == m_categories.end() ? std::string() : stored->second;
}

bool WebsiteFile::saveWebsiteFile(const std::string& path, const WebsiteFields& fields,
                                  CustomEngines& customEngines) {
    // The failure has its own text.
    return trap(m_prompts, {}, [&] { save(path, fields, customEngines, SaveOver::Anything); });
}

bool WebsiteFile::save(const std::string& path, const WebsiteFields& fields, CustomEngines& customEngines,
                       SaveOver over) {
    if (path.empty()) return true;
    const BusyPointer busy(m_prompts);
    std::size_t reached = 0;
    try {
        const FolderLock lock(path);
        const std::optional<std::string> found = bytesOf(path);
        if (over == SaveOver::WhatWasSeen && found && found != m_seen) return false;
        const auto chosen = static_cast<std::size_t>(std::max(fields.cboCustomEngines, 0));
        if (fields.cboCustomEngines >= 0 && chosen < customEngines.size())
            customEngines[chosen].Data = fields.txtCustomCategory;
        IniFile file = IniFile::parse(found.value_or(""));
        writeInfo(file, fields);
        writeCustomCategories(file, customEngines, reached);
        writeSitemap(file, fields.sitemap);
        std::string written = file.text();
        writeFile(path, written, Readable::OwnerOnly);
        m_seen = std::move(written);
        noteCategories(file);
        return true;
    } catch (const Failure& failure) {
        throw Failure(std::string("Module: saveWebsiteFile: ") + failure.what() +
                          "\r\nm_intNumOfCustEngines:" + std::to_string(customEngines.size()) +
                          "\r\ni: " + std::to_string(reached),
                      failure.number());
    }
}

bool WebsiteFile::loadWebsiteFile(const std::string& path, WebsiteFields& fields,
                                  CustomEngines& customEngines, const SelectCategory& selectCategory) {
    forget();
    return trap(m_prompts, "Module: loadWebsiteFile\r\n", [&] {
        m_seen = bytesOf(path);
        const IniFile file = IniFile::parse(m_seen.value_or(""));
        noteCategories(file);
        readWebsite(file, fields, customEngines, selectCategory);
    });
}

bool WebsiteFile::DeleteReportFile(const std::string& path, Rows& reports, const std::string& reportFolder) {
    if (!m_prompts.ask("Are you sure you want to delete selected report files?", "Delete Report File"))
        return true;
    std::vector<std::string> kept;
    const bool deleted = trap(m_prompts, "DeleteReportFile_Error: ", [&] {
        if (reports.firstHighlighted() < 0) return;
        const FolderLock lock(path);
        const std::string found = readFile(path, IniFile::kLargestFile);
        Rows inFile;
        readReports(IniFile::parse(found), inFile);
        const ReportCounts before = countReports(reports);
        kept = deleteHighlightedReports(reports, reportFolder);
        followFile(reports, before, inFile);
        std::string written = replaceReports(found, reports);
        writeFile(path, written, Readable::OwnerOnly);
        // Other programs' changes outside the reports have not been seen.
        if (found == m_seen) m_seen = std::move(written);
    });
    if (!kept.empty()) m_prompts.message(keptWords(kept), "Delete Report File", Icon::Information);
    return deleted;
}

std::string replaceReports(std::string_view text, const Rows& reports) {
    std::vector<std::string_view> lines = splitLines(text);
    if (!lines.empty()) lines.pop_back();
    std::string result;
    bool inside = false;
    for (const std::string_view line : lines) {
        if (equalsNoCase(line, "[Report]")) {
            inside = true;
            continue;
        }
        if (inside && !line.starts_with('[')) continue;
        inside = false;
        if (startsWithNoCase(line, "LastReport"))
            result += "LastReport=" + std::to_string(reports.count());
        else
            result += line;
        result += "\r\n";
    }
    result += "[Report]\r\n";
    const auto put = [&result](std::string_view key, int number, std::string_view value) {
        result += numbered(key, number) + "=";
        result += firstLine(value);
        result += "\r\n";
    };
    for (int i = 1; i <= reports.count(); ++i) {
        const RowView row = reports.at(i - 1);
        put("URL", i, row.text);
        put("Date", i, row.subItems.empty() ? std::string_view() : row.subItems[0]);
        put("ReportFile", i, row.tag);
    }
    return result;
}

void loadUrlList(const std::string& path, Rows& urls) {
    readUrls(IniFile::load(path), urls);
}

void SaveURL(const std::string& path, const Rows& urls) {
    const FolderLock lock(path);
    IniFile file = IniFile::load(path);
    writeUrls(file, urls);
    file.save(path, Readable::OwnerOnly);
}

}  // namespace relay
