// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/RankingPages.h"

#include "core/FileNames.h"
#include "core/Paths.h"
#include "core/ReportFiles.h"
#include "core/Text.h"
#include "core/Url.h"

#include <algorithm>
#include <array>

namespace relay {

namespace {

// As in a search from the first character: nothing is found in an empty text, not even an empty marker.
std::size_t findMarker(std::string_view text, std::string_view marker) {
    return text.empty() ? npos : findNoCase(text, marker);
}

// The first marker that occurs wins, however far down it stands; later ones count only if not empty.
std::size_t findNextLink(const RankEngine& engine, std::string_view text) {
    std::size_t at = findMarker(text, engine.NextPage1);
    for (const std::string* marker : {&engine.NextPage2, &engine.NextPage3}) {
        if (at == npos && !marker->empty()) at = findMarker(text, *marker);
    }
    return at;
}

// The value of the nearest attribute before the words of the link.
std::string_view addressBefore(std::string_view text, std::string_view attribute) {
    const std::size_t at = rfindNoCase(text, attribute);
    if (at == npos) return {};
    std::string_view address = trim(text.substr(at + attribute.size()));
    address = address.substr(0, address.find('>'));
    if (address.starts_with('"')) address.remove_prefix(1);
    if (address.ends_with('"')) address.remove_suffix(1);
    return address;
}

// An address without "http://" in it belongs to the host or the folder of the page.
std::string fullAddress(const RankEngine& engine, std::string_view pageURL, std::string_view address) {
    if (containsNoCase(address, "http://")) return std::string(address);
    std::string full;
    if (!address.starts_with('/')) {
        full = GetURLDirectory(pageURL) + "/";
    } else {
        // The wrong way round, and kept: without an end slash in EngineURL the slash is doubled.
        full = GetURLHost(pageURL) + (engine.EngineURL.ends_with('/') ? "" : "/");
    }
    full.append(address);
    return startsWithNoCase(full, "http") ? full : "http://" + full;
}

std::string computedNextURL(const RankEngine& engine, int page, std::string_view keywords) {
    std::string URL = engine.NextPage1;
    URL.append(keywords).append(engine.NextPage2).append(std::to_string(page * engine.Start));
    URL.append(engine.NextPage3).append(std::to_string(engine.PerPage));
    return containsNoCase(URL, "http://") ? URL : engine.EngineURL + URL;
}

std::string scannedNextURL(const RankEngine& engine, const ResultPage& page) {
    std::string_view text = page.text;
    if (const std::size_t start = findMarker(text, engine.ResultStartString); start != npos)
        text.remove_prefix(start + 1);
    std::string_view address;
    if (const std::size_t at = findNextLink(engine, text); at != npos)
        address = addressBefore(text.substr(0, at), engine.nextPageAttribute());
    std::string URL = fullAddress(engine, page.URL, address);
    if (equalsNoCase(engine.EngineName, "go")) URL = CleanURL(URL, ":80");
    URL = replaceAllNoCase(URL, "&amp;", "&");
    std::erase_if(URL, [](char c) { return c == '\r' || c == '\n' || c == '\b' || c == '\t'; });
    return URL;
}

}  // namespace

std::string praseSpace(std::string_view phrase) {
    return replaceAll(replaceAll(phrase, " ", "+"), "\"", "%22");
}

std::string CleanURL(std::string_view url, std::string_view text) {
    std::string cleaned(url);
    if (const std::size_t at = findNoCase(url, text); at != npos) cleaned.erase(at, text.size());
    return cleaned;
}

std::string queryURL(const RankEngine& engine, std::string_view keywords) {
    return engine.EngineURL + queryData(engine, keywords);
}

std::string queryData(const RankEngine& engine, std::string_view keywords) {
    return engine.QueryKeyword1 + replaceAll(keywords, " ", "+") + engine.QueryKeyword2;
}

std::string getNextURL(const RankEngine& engine, const ResultPage& page, std::string_view keywords) {
    return engine.isButton() ? computedNextURL(engine, page.number, keywords) : scannedNextURL(engine, page);
}

std::string pageFileName(std::string_view EngineName, int page) {
    return distinctFileName(toLower(EngineName)) + std::to_string(page) + ".html";
}

std::string rankingReportsFolder(const Paths& paths) {
    return paths.inApp("Reports/Ranking");
}

std::string rankingFolder(const Paths& paths, std::string_view profile) {
    return rankingReportsFolder(paths) + "/" + safeFileName(profile);
}

}  // namespace relay
