// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Text.h"
#include "practice/PracticePages.h"

#include <zlib.h>

namespace relay {

namespace {

constexpr std::string_view kFolder = "/site/sitemap";

constexpr std::string_view kPages = R"xml(<?xml version="1.0" encoding="UTF-8"?>
<urlset xmlns="http://www.sitemaps.org/schemas/sitemap/0.9"
        xmlns:image="http://schemas.example/image">
<url>
<loc>WEB/site/index.html</loc>
<lastmod>2026-11-02</lastmod>
<image:image><image:loc>WEB/site/shop.png</image:loc></image:image>
</url>
<url><loc>WEB/site/pens.html?colour=blue&amp;size=2</loc><lastmod>2026-10-14T09:30:00+01:00</lastmod></url>
<url><loc>WEB/site/paper.html</loc></url>
<url><loc>/site/relative.html</loc></url>
</urlset>
)xml";
constexpr std::string_view kMorePages = R"xml(<urlset xmlns="http://www.sitemaps.org/schemas/sitemap/0.9">
<url><loc>WEB/site/ink.html</loc><lastmod>2024</lastmod></url>
<url><loc>WEB/site/PAPER.html</loc></url>
</urlset>
)xml";
// Names itself, too.
constexpr std::string_view kIndex = R"xml(<sitemapindex xmlns="http://www.sitemaps.org/schemas/sitemap/0.9">
<sitemap><loc>WEB/site/sitemap.xml</loc></sitemap>
<sitemap><loc>WEB/site/sitemap-index.xml</loc></sitemap>
<sitemap><loc>WEB/site/sitemap-more.xml.gz</loc></sitemap>
<sitemap><loc>WEB/site/sitemap-missing.xml</loc></sitemap>
</sitemapindex>
)xml";

// Each entity is ten of the one before.
std::string nestedEntities() {
    std::string text = "<?xml version=\"1.0\"?>\n<!DOCTYPE urlset [\n<!ENTITY e0 \"http://bomb.example/\">\n";
    for (char digit = '1'; digit <= '9'; ++digit) {
        text += std::string("<!ENTITY e") + digit + " \"";
        for (int i = 0; i < 10; ++i) text += std::string("&e") + static_cast<char>(digit - 1) + ";";
        text += "\">\n";
    }
    return text + "]>\n<urlset><url><loc>&e9;</loc></url></urlset>\n";
}

std::string packed(const std::string& text, std::size_t blanks) {
    z_stream stream{};
    constexpr int kGzip = 15 + 16;
    ::deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, kGzip, 8, Z_DEFAULT_STRATEGY);
    std::string bytes;
    const auto feed = [&](std::string piece, int flush) {
        stream.next_in = reinterpret_cast<Bytef*>(piece.data());
        stream.avail_in = static_cast<uInt>(piece.size());
        do {
            char out[4096];
            stream.next_out = reinterpret_cast<Bytef*>(out);
            stream.avail_out = sizeof out;
            ::deflate(&stream, flush);
            bytes.append(out, sizeof out - stream.avail_out);
        } while (stream.avail_out == 0);
    };
    feed(text, Z_NO_FLUSH);
    constexpr std::size_t kPiece = std::size_t{1024} * 1024;
    for (; blanks > 0; blanks -= std::min(blanks, kPiece))
        feed(std::string(std::min(blanks, kPiece), ' '), Z_NO_FLUSH);
    feed({}, Z_FINISH);
    ::deflateEnd(&stream);
    return bytes;
}

}  // namespace

std::optional<PracticeReply> sitemapPage(const PracticeRequest& request, PracticeSite& site) {
    std::string_view name = request.path();
    if (!name.starts_with(kFolder)) return std::nullopt;
    name.remove_prefix(kFolder.size());
    constexpr std::size_t kBomb = std::size_t{100} * 1024 * 1024;
    const auto text = [&site](std::string_view page) { return replaceAll(page, "WEB", site.address); };
    PracticeReply reply;
    reply.type = name.ends_with(".gz") ? "application/gzip" : "application/xml";
    if (name == ".xml")
        reply.body = text(kPages);
    else if (name == "-index.xml")
        reply.body = text(kIndex);
    else if (name == "-more.xml.gz")
        reply.body = packed(text(kMorePages), 0);
    else if (name == "-entities.xml")
        reply.body = nestedEntities();
    else if (name == "-bomb.xml.gz")
        reply.body = packed("<urlset>", kBomb);
    else
        return std::nullopt;
    return reply;
}

}  // namespace relay
