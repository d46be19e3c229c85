// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Text.h"
#include "practice/PracticePages.h"

namespace relay {

namespace {

constexpr std::string_view kFolder = "/site/";

// One link of every shape, each with what stands in its tag. The page is written as people wrote pages: tags
// in any case, attributes with and without quotes, on one line or more.
constexpr std::string_view kLinks = R"html(<html>
<head>
<title>Paper Shop: all our pages</title>
<link rel=stylesheet href="shop.css">
</head>
<body>
<ul>
<li><a href="pens.html">Pens</a>
<li><a href=ink.html>Ink</a>
<li><a href='paper.html'>Paper</a>
<li><A HREF="PENS.html">Pens again</A>
<li><a class=new href="cards.html" target=_top>Cards</a>
<li><a href=gifts.html
 target=_top>Gifts</a>
<li><a href=" news.html ">News</a>
<li><a href="rooms/one.html">The first room</a>
<li><a href="/about.html">About us</a>
<li><a href="./contact.html">Contact</a>
<li><a href="../index.html">Up</a>
<li><a href="../../top.html">Top</a>
<li><a href="../shop/../map.html">Map</a>
<li><a href="http://partner.example/">Partner</a>
<li><a href="HTTPS://partner.example/secure">Partner, by TLS</a>
<li><a href="//partner.example/short">Partner, scheme left out</a>
<li><a href="search.cgi?q=pens&amp;page=1">Search</a>
<li><a href="#top">Top of the page</a>
<li><a href="">This page</a>
<li><a href="javascript:history.back()">Back</a>
<li><a href="private/accounts.html">Accounts</a>
<li><a href="mailto:shop@paper.example">Write to us</a>
<li><a href=>Nothing</a>
</ul>
</body>
</html>
)html";

constexpr std::string_view kHome = R"html(<html>
<head>
<title>Paper Shop:
all you write with</title>
<meta name="keywords" content="paper, pens, ink">
<meta name="description" content="Paper, pens and ink for everyone who writes.">
</head>
<body>
<h1>Paper Shop</h1>
<p><a href="shop/links.html">All our pages</a></p>
</body>
</html>
)html";

}  // namespace

std::optional<PracticeReply> sitePage(const PracticeRequest& request, PracticeSite&) {
    const std::string_view path = request.path();
    if (!path.starts_with(kFolder)) return std::nullopt;
    const std::string_view page = path.substr(kFolder.size());
    PracticeReply reply;
    if (page.empty() || page == "index.html")
        reply.body = kHome;
    else if (page == "shop/links.html")
        reply.body = kLinks;
    else if (page == "plain.html")
        reply.body = htmlPage("No meta tags", "<p>This page has a title only.</p>\n");
    else
        return metaTagPage(page);
    return reply;
}

}  // namespace relay
