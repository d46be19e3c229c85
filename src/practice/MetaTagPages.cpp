// SPDX-License-Identifier: GPL-3.0-or-later
#include "practice/PracticePages.h"

namespace relay {

namespace {

struct MetaTagPage final {
    std::string_view name;
    std::string_view text;
    std::string_view charset = "utf-8";
};

constexpr MetaTagPage kMetaTagPages[] = {
    {"none",
     "<html>\r\n<head>\r\n</head>\r\n<body>\r\n<p>A page without meta tags.</p>\r\n</body>\r\n</html>\r\n"},
    {"usual",
     "<html>\r\n<head>\r\n<title>Paper Shop</title>\r\n<meta name=\"keywords\" content=\"paper, pens, "
     "ink\">\r\n"
     "<meta name=\"description\" content=\"Paper and pens for everyone who writes.\">\r\n</head>\r\n"
     "<body>\r\n<h1>Paper Shop</h1>\r\n</body>\r\n</html>\r\n"},
    {"upper",
     "<HTML>\n<HEAD>\n<TITLE>PAPER SHOP</TITLE>\n<META NAME=\"KEYWORDS\" CONTENT=\"PAPER, PENS\">\n"
     "<META NAME=\"DESCRIPTION\" CONTENT=\"PAPER AND PENS.\">\n</HEAD>\n<BODY>\n<H1>PAPER "
     "SHOP</H1>\n</BODY>\n</HTML>\n"},
    {"single-quotes",
     "<html>\n<head>\n<title>Paper Shop</title>\n<meta name='keywords' content='paper, pens'>\n"
     "<meta name='description' content='Paper and pens.'>\n</head>\n<body>\n<h1>Paper "
     "Shop</h1>\n</body>\n</html>\n"},
    {"broken",
     "<html><head><title>Paper Shop<meta name=\"keywords\" content=\"paper, pens>\n<meta content=\"first\" "
     "name=\"description\"\n<meta name=description></title><script>document.write('<meta name=keywords>')\n"
     "<body><p>Paper < pens > ink"},
    {"latin1",
     "<html>\n<head>\n<title>Papeterie Andr\xe9</title>\n<meta name=\"keywords\" content=\"papier \xe0 "
     "lettres\">\n"
     "<meta name=\"description\" content=\"Tout pour \xe9"
     "crire.\">\n</head>\n<body>\n<p>D\xe9j\xe0 l\xe0</p>\n"
     "</body>\n</html>\n",
     "iso-8859-1"},
    {"utf8",
     "<html>\n<head>\n<title>Papeterie André ✎</title>\n<meta name=\"keywords\" content=\"papier à "
     "lettres\">\n"
     "<meta name=\"description\" content=\"Tout pour écrire.\">\n</head>\n<body>\n<p>Déjà "
     "là</p>\n</body>\n</html>\n"},
};

// Its head is 100 KB long and ends far behind the tags.
std::string longHead() {
    constexpr std::size_t kLength = 100 * 1024;
    std::string page =
        "<html>\n<head>\n<title>A long head</title>\n<meta name=\"keywords\" content=\"long, head\">\n"
        "<meta name=\"description\" content=\"A head of 100 KB.\">\n";
    for (int link = 1; page.size() < kLength; ++link)
        page += "<link rel=\"alternate\" href=\"/feeds/" + std::to_string(link) + ".xml\">\n";
    return page + "</head>\n<body>\n<h1>A long head</h1>\n</body>\n</html>\n";
}

}  // namespace

std::optional<PracticeReply> metaTagPage(std::string_view name) {
    constexpr std::string_view kFolder = "meta/";
    constexpr std::string_view kEnd = ".html";
    if (!name.starts_with(kFolder) || !name.ends_with(kEnd)) return std::nullopt;
    name.remove_prefix(kFolder.size());
    name.remove_suffix(kEnd.size());
    PracticeReply reply;
    if (name == "long-head") {
        reply.body = longHead();
        return reply;
    }
    for (const MetaTagPage& page : kMetaTagPages) {
        if (page.name != name) continue;
        reply.type = "text/html; charset=" + std::string(page.charset);
        reply.body = page.text;
        return reply;
    }
    return std::nullopt;
}

}  // namespace relay
