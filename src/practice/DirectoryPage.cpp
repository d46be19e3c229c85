// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Text.h"
#include "practice/PracticePages.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace relay {

namespace {

// The tree of both outside directories; a folder stands in front of what lies in it.
constexpr std::string_view kTree[] = {
    "Arts",
    "Arts/Humanities",
    "Arts/Humanities/History",
    "Arts/Humanities/Philosophy",
    "Arts/Visual_Arts",
    "Arts/Visual_Arts/Painting",
    "Arts/Visual_Arts/Photography",
    "Business_and_Economy",
    "Business_and_Economy/Shopping",
    "Business_and_Economy/Shopping/Books",
    "Business_and_Economy/Shopping/Stationery",
    "Business_and_Economy/Trade",
    "Business_and_Economy/Trade/Printing",
    "Recreation",
    "Recreation/Outdoors",
    "Recreation/Outdoors/Cycling",
    "Recreation/Travel",
    "Recreation/Travel/Lodging",
    "Society",
    "Society/Adult_Interest",
    "Society/Adult_Interest/Art",
    "Society/People",
    "Society/People/Biographies",
};
constexpr std::string_view kAddPath = "/cgi-bin/add.cgi";
constexpr int kMostFolders = 3;  // of the trees below an engine's own pages

std::string_view lastPart(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

std::string labelOf(std::string_view path) {
    return replaceAll(lastPart(path), "_", " ");
}

std::vector<std::string_view> childrenOf(std::string_view folder) {
    std::vector<std::string_view> children;
    const std::string start = folder.empty() ? std::string() : std::string(folder) + "/";
    for (const std::string_view path : kTree) {
        if (path.starts_with(start) && path.size() > start.size() && path.find('/', start.size()) == npos)
            children.push_back(path);
    }
    return children;
}

// A number for each category, the same at every start.
std::string numberOf(std::string_view category) {
    return std::to_string(4'000'000 + crc32(category) % 1'000'000);
}

std::string anchor(std::string_view target, std::string_view content) {
    return "<a href=\"" + std::string(target) + "\">" + std::string(content) + "</a>\n";
}

bool takesSites(std::string_view category) {
    return category.find('/') != npos;
}

// A category's name stands in a tag of its own, as the reading of such pages needs it. Absolute links and
// those with the directory's own name are no categories, nor are pictures.
std::string yahooPage(std::string_view category, const std::string& host) {
    std::string content = anchor("http://" + host + "/", "Yahoo!") + anchor("/help/", "Yahoo Help") +
                          anchor("/info/", "<img src=\"/logo.gif\" alt=\"\">") + "<ul>\n";
    for (const std::string_view child : childrenOf(category))
        content += "<li>" + anchor("/" + std::string(child) + "/", "<b>" + labelOf(child) + "</b>");
    // A category that lies elsewhere in the tree.
    if (category == "Arts") content += "<li>" + anchor("/Recreation/Travel/", "<b>Travel@</b>");
    content += "</ul>\n";
    if (takesSites(category))
        content += anchor("http://" + host + "/fast/add?space=" + numberOf(category), "Suggest a Site");
    return content;
}

std::string dmozPage(std::string_view category) {
    std::string content = anchor("/", "Top") + anchor("/Regional/", "Regional") + "<ul>\n";
    for (const std::string_view child : childrenOf(category))
        content += "<li>" + anchor("/" + std::string(child) + "/", "<b>" + labelOf(child) + "</b>");
    content += "</ul>\n";
    if (takesSites(category))
        content += anchor(std::string(kAddPath) + "?where=" + std::string(category), "add URL");
    return content;
}

std::string dmozAddPage(std::string_view query) {
    const std::string category(query.substr(query.find('=') + 1));
    return "<form action=\"" + std::string(kAddPath) +
           "\" method=\"post\">\n<input type=hidden name=index value=" + numberOf(category) +
           ">\n<label>URL <input name=url></label>\n</form>\n";
}

}  // namespace

std::optional<PracticeReply> directoryPage(const PracticeRequest& request, PracticeSite& site) {
    const std::string host(request.header("Host"));
    const std::string_view name = std::string_view(host).substr(0, host.rfind(':'));
    const bool isYahoo = equalsNoCase(name, "yahoo.localhost");
    if (!isYahoo && !equalsNoCase(name, "dmoz.localhost")) return std::nullopt;
    std::string_view category = request.path();
    while (category.starts_with('/')) category.remove_prefix(1);
    while (category.ends_with('/')) category.remove_suffix(1);
    const std::string title = category.empty() ? "The directory" : labelOf(category);
    PracticeReply reply;
    if (category.empty() || std::find(std::begin(kTree), std::end(kTree), category) != std::end(kTree)) {
        const std::string own =
            "yahoo.localhost" + site.address.substr(std::min(site.address.rfind(':'), site.address.size()));
        reply.body = htmlPage(title, isYahoo ? yahooPage(category, own) : dmozPage(category));
    } else if (!isYahoo && request.path() == kAddPath) {
        reply.body = htmlPage("Add a URL", dmozAddPage(request.query()));
    } else {
        reply.status = 404;
        reply.body = htmlPage("No such category", anchor("/", "Top"));
    }
    return reply;
}

std::optional<PracticeReply> treePage(const PracticeRequest& request, PracticeSite&) {
    static constexpr std::string_view kTreeFolder = "/tree";
    static constexpr std::string_view kFolders[] = {"General", "News", "Regional", "Services"};
    const std::string_view path = request.path();
    const std::size_t tree = path.find(kTreeFolder);
    if (engineOf(path).empty() || tree == npos) return std::nullopt;
    std::string_view folder = path.substr(tree + kTreeFolder.size());
    while (folder.ends_with('/')) folder.remove_suffix(1);
    std::string content = "<ul>\n";
    if (std::count(folder.begin(), folder.end(), '/') < kMostFolders)
        for (const std::string_view child : kFolders)
            content += "<li>" + anchor(toLower(child) + "/", "<b>" + std::string(child) + "</b>");
    PracticeReply reply;
    reply.body =
        htmlPage(folder.empty() ? "All categories" : escapeHtml(lastPart(folder)), content + "</ul>\n");
    return reply;
}

}  // namespace relay
