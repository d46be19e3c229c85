// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Text.h"
#include "practice/PracticePages.h"

namespace relay {

namespace {

constexpr std::string_view kFolder = "/words/";

struct WordPage final {
    std::string_view name;
    std::string_view head;
    std::string_view body;
};

// The pages that the search engine of the keyword builder finds.
constexpr WordPage kPages[] = {
    {"paper",
     "<title>Paper</title>\n<meta name=\"keywords\" content=\"paper, writing paper , handmade paper\">\n",
     "<h1>Paper</h1>\n<p>Writing paper and handmade paper for letters. Handmade paper takes ink well.</p>"},
    {"pens", "<title>Pens</title>\n<meta name=\"keywords\" content=\"pens,, fountain pens,paper\">\n",
     "<h1>Pens</h1>\n<p>Fountain pens, and ink for fountain pens.</p>"},
    {"none", "<title>No keywords</title>\n", "<p>This page names no keywords.</p>"},
    {"upper", "<TITLE>INK</TITLE>\n<META NAME=\"KEYWORDS\" CONTENT=\"INK, Ink Bottles\">\n",
     "<P>Ink in bottles.</P>"}};

std::string pageText(const WordPage& page) {
    std::string html = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n";
    html.append(page.head).append("</head>\n<body>\n").append(page.body);
    return html.append("\n</body>\n</html>\n");
}

std::string resultPage(const std::string& phrase, const std::string& address) {
    std::string html = "<p><a href=" + address + "/words/find?q=help>Help</a></p>\n";
    if (phrase.empty() || containsNoCase(phrase, "nothing")) return html + "<p>NOTHING WAS FOUND.</p>\n";
    html += "<ul class=found>\n";
    for (const WordPage& page : kPages) {
        html += "<li><a href=" + address + "/words/" + std::string(page.name) + ".html>" +
                std::string(page.name) + "</a>\n";
        html += "<a href=" + address + "/words/find?like=" + std::string(page.name) + ">Similar</a>\n";
    }
    return html + "</ul>\n";
}

}  // namespace

std::optional<PracticeReply> wordPage(const PracticeRequest& request, PracticeSite& site) {
    std::string_view path = request.path();
    if (!path.starts_with(kFolder)) return std::nullopt;
    path.remove_prefix(kFolder.size());
    PracticeReply reply;
    if (path == "find") {
        std::string phrase;
        for (const auto& [name, value] : decodeForm(request.query()))
            if (name == "q") phrase = value;
        reply.body = htmlPage("Word Market: " + phrase, resultPage(phrase, site.address));
        return reply;
    }
    for (const WordPage& page : kPages) {
        if (path != std::string(page.name) + ".html") continue;
        reply.body = pageText(page);
        return reply;
    }
    return std::nullopt;
}

}  // namespace relay
