// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/PracticePages.h"

#include "core/ScreenText.h"
#include "core/Text.h"

#include <array>
#include <map>

namespace relay {

namespace {

constexpr std::array<PracticePage, 11> kPages = {directoryPage, treePage,      receivedPage, enginePage,
                                                 updatePage,    sitemapPage,   sitePage,     searchPage,
                                                 wordPage,      optimizerPage, outcomePage};

constexpr std::string_view kStyle = R"(:root { color-scheme: light dark; }
body { font: 16px/1.5 system-ui, sans-serif; max-width: 72rem; margin: 2rem auto; padding: 0 1rem; }
table { border-collapse: collapse; width: 100%; }
th, td { text-align: left; vertical-align: top; padding: .4rem .8rem .4rem 0; border-bottom: 1px solid #8884; }
th { position: sticky; top: 0; background: Canvas; }
td { overflow-wrap: anywhere; }
td:first-child, td:nth-child(2) { white-space: nowrap; }
dl { display: grid; grid-template-columns: minmax(6rem, max-content) 1fr; gap: 0 .8rem; margin: 0; }
dt, .quiet { color: GrayText; }
dd { margin: 0; }
label { display: block; margin: .8rem 0 .2rem; }
input, textarea, select { font: inherit; width: 100%; max-width: 36rem; box-sizing: border-box; }
button { font: inherit; margin-top: 1rem; padding: .3rem 1rem; }
)";

}  // namespace

PracticeReply answer(const PracticeRequest& request, PracticeSite& site) {
    PracticeReply reply;
    if (request.method != "GET" && request.method != "POST" && request.method != "HEAD") {
        reply.status = 405;
        reply.body = htmlPage("Method not allowed", "<p>The practice web takes GET and POST.</p>\n");
        return reply;
    }
    for (const PracticePage page : kPages) {
        if (auto own = page(request, site)) return *std::move(own);
    }
    reply.status = 404;
    reply.body = htmlPage("No such page",
                          "<p>The practice web has no page here. <a href=\"/\">What it "
                          "received</a></p>\n");
    return reply;
}

std::string escapeHtml(std::string_view text) {
    static const std::map<char, std::string_view> kEscapes = {
        {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&#39;"}, {'\0', "\\x00"}};
    std::string escaped;
    for (const char c : toPrintableUtf8(text)) {
        const auto escape = kEscapes.find(c);
        escaped += escape == kEscapes.end() ? std::string_view(&c, 1) : escape->second;
    }
    return escaped;
}

std::string htmlPage(std::string_view title, std::string_view content) {
    std::string page = "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n";
    page += "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>";
    page += escapeHtml(title);
    page += "</title>\n<style>\n";
    page += kStyle;
    page += "</style>\n</head>\n<body>\n<h1>";
    page += escapeHtml(title);
    page += "</h1>\n";
    page += content;
    page += "</body>\n</html>\n";
    return page;
}

bool isOwnHost(std::string_view host) noexcept {
    if (host.empty()) return true;
    const std::string_view name = host.substr(0, host.rfind(':'));
    return name == "127.0.0.1" || equalsNoCase(name, "localhost");
}

std::string_view engineOf(std::string_view path) noexcept {
    constexpr std::string_view folder = "/engines/";
    if (!path.starts_with(folder)) return {};
    path.remove_prefix(folder.size());
    return path.substr(0, path.find('/'));
}

}  // namespace relay
