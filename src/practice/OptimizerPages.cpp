// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/PracticePages.h"

namespace relay {

namespace {

constexpr std::string_view kFolder = "/pages/";

struct HeadLine final {
    std::string_view name;
    std::string_view line;
};

// The head of a page with which nothing is wrong.
constexpr HeadLine kHead[] = {
    {"title", "<title>Paper Shop: paper, pens and ink</title>\n"},
    {"description",
     "<meta name=\"description\" content=\"Paper, pens and ink for everyone who writes, sent the same "
     "day.\">\n"},
    {"keywords", "<meta name=\"keywords\" content=\"paper, pens, ink\">\n"},
    {"canonical", "<link rel=\"canonical\" href=\"https://paper.example/\">\n"},
    {"viewport", "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"},
    {"social",
     "<meta property=\"og:title\" content=\"Paper Shop\">\n<meta property=\"og:type\" content=\"website\">\n"
     "<meta property=\"og:image\" content=\"https://paper.example/shop.png\">\n"
     "<meta property=\"og:url\" content=\"https://paper.example/\">\n"},
    {"data",
     "<script type=\"application/ld+json\">\n{\"@context\": \"https://schema.org\", \"@type\": \"Store\",\n"
     "\"name\": \"Paper Shop\"}\n</script>\n"},
};
constexpr std::string_view kBody =
    "<h1>Paper Shop</h1>\n<p>Paper, pens and ink for everyone who writes.</p>\n";

// A page that differs from the good one.
struct ChangedPage final {
    std::string_view name;
    std::string_view shows;    // for the index
    std::string_view without;  // names of lines of the head
    std::string_view more;     // in the head
    std::string_view body = kBody;
    std::string_view htmlTag = "<html lang=\"en\">";
};

constexpr ChangedPage kChanged[] = {
    {"good", "nothing to find", "", ""},
    {"no-title", "no title", "title", ""},
    {"empty-title", "a title without words", "title", "<title> </title>\n"},
    {"two-titles", "two titles", "", "<title>Welcome to our site</title>\n"},
    {"short-title", "a title of one word", "title", "<title>Home</title>\n"},
    {"long-title", "a title too long and too wide for search results", "title",
     "<title>Paper Shop: handmade paper, writing paper, fountain pens, ballpoint pens, ink in all "
     "colours</title>\n"},
    {"no-description", "no description", "description", ""},
    {"short-description", "a description of two words", "description",
     "<meta name=\"description\" content=\"Paper shop\">\n"},
    {"long-description", "a description too long and too wide for search results", "description",
     "<meta name=\"description\" content=\"Welcome to our paper shop, where you find handmade paper, writing "
     "paper, drawing paper, fountain pens, ballpoint pens, pencils, ink in all colours, envelopes, sealing "
     "wax and much more for everyone who writes.\">\n"},
    {"no-canonical", "no canonical link", "canonical", ""},
    {"two-canonicals", "two canonical links", "",
     "<link rel=\"canonical\" href=\"https://www.paper.example/\">\n"},
    {"relative-canonical", "a canonical link without a host", "canonical",
     "<link rel=\"canonical\" href=\"/\">\n"},
    {"noindex", "a robots tag that forbids the listing", "",
     "<meta name=\"robots\" content=\"noindex, follow\">\n"},
    {"no-viewport", "no viewport tag", "viewport", ""},
    {"no-zoom", "a viewport tag that forbids enlarging", "viewport",
     "<meta name=\"viewport\" content=\"width=device-width, user-scalable=no\">\n"},
    {"no-lang", "no language", "", "", kBody, "<html>"},
    {"duplicate-meta", "two descriptions", "",
     "<meta name=\"Description\" content=\"Everything for everyone who writes letters, and more.\">\n"},
    {"no-open-graph", "no Open Graph tags", "social", ""},
    {"no-json-ld", "no JSON-LD", "data", ""},
    {"broken-json-ld", "JSON-LD with a comma too many", "data",
     "<script type=\"application/ld+json\">\n{\"@type\": \"Store\",\n\"name\": \"Paper Shop\",}\n"
     "</script>\n"},
    {"languages", "language versions with every mistake", "",
     "<link rel=\"alternate\" hreflang=\"english\" href=\"https://paper.example/en/\">\n"
     "<link rel=\"alternate\" hreflang=\"de\" href=\"https://paper.example/de/\">\n"
     "<link rel=\"alternate\" hreflang=\"de\" href=\"https://papier.example/\">\n"
     "<link rel=\"alternate\" hreflang=\"fr\" href=\"/fr/\">\n"},
    {"no-h1", "no h1 heading", "", "", "<p>Paper, pens and ink.</p>\n"},
    {"several-h1", "three h1 headings", "", "",
     "<h1>Paper</h1>\n<p>For letters.</p>\n<h1>Pens</h1>\n<p>For signing them.</p>\n<h1>Ink</h1>\n"},
    {"empty-h1", "an h1 heading with an image that has no words", "", "",
     "<h1><img src=\"shop.png\" alt=\"\"></h1>\n<p>Paper, pens and ink.</p>\n"},
    {"no-alt", "images without alt text", "", "",
     "<h1>Paper Shop</h1>\n<img src=\"paper.png\">\n<img src=\"line.png\" alt=\"\">\n<img "
     "src=\"pens.png\">\n"},
    {"mixed-content", "a page for https that loads over http", "",
     "<link rel=\"stylesheet\" href=\"http://paper.example/shop.css\">\n",
     "<h1>Paper Shop</h1>\n<script src=\"http://paper.example/shop.js\"></script>\n"
     "<img src=\"http://paper.example/pens.png\" alt=\"Pens\">\n"},
};

std::string pageText(const ChangedPage& page) {
    std::string html = "<!DOCTYPE html>\n";
    html.append(page.htmlTag).append("\n<head>\n<meta charset=\"utf-8\">\n");
    for (const HeadLine& line : kHead)
        if (page.without != line.name) html += line.line;
    return html.append(page.more).append("</head>\n<body>\n").append(page.body).append("</body>\n</html>\n");
}

// The good page with so many bytes of the piece in its body.
std::string bigPage(std::string_view piece) {
    constexpr std::size_t kLength = 10 * 1000 * 1000;
    std::string body(kBody);
    body.reserve(kLength + piece.size());
    while (body.size() < kLength) body += piece;
    ChangedPage page = kChanged[0];
    page.body = body;
    return pageText(page);
}

// A page of another shape altogether.
struct WholePage final {
    std::string_view name;
    std::string_view shows;
    std::string (*text)();
    std::string_view type = "text/html; charset=utf-8";
};

constexpr WholePage kWhole[] = {
    {"frames", "frames, as pages had them long ago",
     [] {
         return std::string(
             "<HTML>\r\n<HEAD><TITLE>Paper Shop</TITLE></HEAD>\r\n<FRAMESET COLS=\"20%,*\">\r\n<FRAME "
             "SRC=\"menu.html\">\r\n<FRAME SRC=\"main.html\">\r\n<NOFRAMES>Your browser shows no "
             "frames.</NOFRAMES>\r\n</FRAMESET>\r\n</HTML>\r\n");
     }},
    {"old", "a page as it was written long ago",
     [] {
         return std::string(
             "<HTML><HEAD><TITLE>Welcome to the PAPER SHOP!!!</TITLE>\n<META NAME=KEYWORDS CONTENT=\"paper, "
             "paper shop, pens\">\n</HEAD>\n<BODY BGCOLOR=#FFFFFF><CENTER><FONT SIZE=7>PAPER "
             "SHOP</FONT><P>\n<IMG SRC=shop.gif><BR><MARQUEE>Paper, pens, paper, ink and paper!</MARQUEE>\n"
             "</CENTER></BODY></HTML>\n");
     }},
    {"no-head", "words without a head", [] { return std::string("Paper, pens and ink for everyone.\n"); }},
    {"empty", "nothing at all", [] { return std::string(); }},
    {"latin1", "a page in Latin-1",
     [] {
         return std::string(
             "<html lang=fr>\n<head>\n<title>Papeterie Andr\xe9, \xe0 Orl\xe9"
             "ans</title>\n</head>\n<body>\n<h1>D\xe9j\xe0 l\xe0</h1>\n</body>\n</html>\n");
     },
     "text/html; charset=iso-8859-1"},
    {"shift-jis", "a page in Shift JIS",
     [] {
         return std::string(
             "<html lang=ja>\n<head>\n<title>\x8e\x86\x82\xcc\x93X</title>\n</head>\n<body>\n"
             "<h1>\x8e\x86\x82\xc6\x83y\x83\x93</h1>\n</body>\n</html>\n");
     },
     "text/html; charset=shift_jis"},
    {"binary", "a picture that is sent as a page",
     [] {
         std::string bytes = "\x89PNG\r\n\x1a\n";
         for (int i = 0; i < 4096; ++i) bytes += static_cast<char>((i * 37 + i / 256) % 256);
         return bytes;
     }},
    {"deep", "elements that nest without end",
     [] {
         std::string html = "<html><body>\n";
         for (int i = 0; i < 20000; ++i) html += "<div>";
         return html;
     }},
    {"big", "10 MB of paragraphs", [] { return bigPage("<p>Paper, pens and ink.</p>\n"); }},
    {"one-line", "10 MB in one line", [] { return bigPage("<b>Paper, pens and ink.</b> "); }},
};

std::string indexPage() {
    std::string list = "<p>Pages of every shape. The optimizer says what is wrong with each.</p>\n<ul>\n";
    const auto add = [&list](std::string_view name, std::string_view shows) {
        list.append("<li><a href=\"").append(name).append(".html\">").append(name).append("</a>: ");
        list.append(escapeHtml(shows)).append("</li>\n");
    };
    for (const ChangedPage& page : kChanged) add(page.name, page.shows);
    for (const WholePage& page : kWhole) add(page.name, page.shows);
    return htmlPage("Pages for the optimizer", list + "</ul>\n");
}

}  // namespace

std::optional<PracticeReply> optimizerPage(const PracticeRequest& request, PracticeSite&) {
    constexpr std::string_view kEnd = ".html";
    std::string_view name = request.path();
    if (!name.starts_with(kFolder)) return std::nullopt;
    name.remove_prefix(kFolder.size());
    PracticeReply reply;
    if (name.empty()) {
        reply.body = indexPage();
        return reply;
    }
    if (!name.ends_with(kEnd)) return std::nullopt;
    name.remove_suffix(kEnd.size());
    for (const ChangedPage& page : kChanged) {
        if (page.name != name) continue;
        reply.body = pageText(page);
        return reply;
    }
    for (const WholePage& page : kWhole) {
        if (page.name != name) continue;
        reply.type = page.type;
        reply.body = page.text();
        return reply;
    }
    return std::nullopt;
}

}  // namespace relay
