// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "pagetools/MetaTags.h"
#include "support/GoldenCases.h"

#include <gtest/gtest.h>

namespace relay::test {

namespace {

using Way = MetaTagChange::Way;

const MetaTags kNew{"Lantern Bicycle Repairs", "bicycles, repairs, wheels", "Mends bicycles while you wait"};
const MetaTagChange kInsert{kNew, Way::Insert};
const MetaTagChange kReplace{kNew, Way::Replace};
const MetaTagChange kOnTop{kNew, Way::Replace, true};

// Every folder has a page, before.html; what is read from it, found.txt; and the page after kInsert, kReplace
// and kOnTop: insert.html, replace.html, on-top.html.
class MetaTagsGoldenTest : public testing::TestWithParam<std::string> {
  protected:
    std::string file(const char* name) const {
        return readFile(TEST_FOLDER "/golden/" + GetParam() + "/" + name);
    }
};

std::string found(std::string_view html) {
    PageTexts page;
    retrieveMetaTag(html, page);
    return "title " + page.tags.title + "\nkeywords " + page.tags.keywords + "\ndescription " +
           page.tags.description + "\nbody " + page.body + "\n";
}

// "Overflow", or empty.
std::string problemOf(std::string_view html, const MetaTagChange& change) {
    return failureOf([&] { changedPage(html, change); }).value_or("");
}
std::string readingProblem(std::string_view html) {
    PageTexts page;
    return failureOf([&] { retrieveMetaTag(html, page); }).value_or("");
}

}  // namespace

TEST_P(MetaTagsGoldenTest, ReadsAndChangesToTheByte) {
    const std::string before = file("before.html");
    EXPECT_EQ(found(before), file("found.txt"));
    EXPECT_EQ(changedPage(before, kInsert), file("insert.html"));
    EXPECT_EQ(changedPage(before, kReplace), file("replace.html"));
    EXPECT_EQ(changedPage(before, kOnTop), file("on-top.html"));
}

// A page cut anywhere is read and changed without a failure; what follows the head survives.
TEST_P(MetaTagsGoldenTest, WorksOnAPageCutAtEveryByte) {
    const std::string before = file("before.html");
    for (std::size_t length = 0; length <= before.size(); ++length) {
        const std::string_view page = std::string_view(before).substr(0, length);
        ASSERT_EQ(readingProblem(page), "") << length;
        htmlSection(page, HtmlPart::Head);
        htmlSection(page, HtmlPart::Body);
        const std::size_t body = findNoCase(page, "<body>");
        const std::string_view rest = page.substr(std::min(body, page.size()));
        for (const MetaTagChange& change : {kInsert, kReplace, kOnTop})
            ASSERT_TRUE(changedPage(page, change).ends_with(std::string(rest) + "\r\n")) << length;
    }
}

INSTANTIATE_TEST_SUITE_P(Folders, MetaTagsGoldenTest, testing::ValuesIn(goldenCases(TEST_FOLDER "/golden")),
                         goldenName);

TEST(MetaTagsTest, ReadingOverflowsAtAGapOrATitleOnly) {
    const std::string gap(32766, 'x');
    struct Case {
        std::string html;
        const char* problem;
    };
    const Case cases[] = {
        {gap + "<", ""},
        {gap + "x<", "Overflow"},
        {"<a>" + gap.substr(3) + "<b>" + gap.substr(3) + "<c>", ""},
        {"<a>" + gap + "x<b>", "Overflow"},
        {"<" + gap.substr(1) + ">", ""},
        {"<" + gap + ">", "Overflow"},
        {"<script>" + gap.substr(8) + "</script>", ""},
        {"<script>" + gap.substr(7) + "</script>", "Overflow"},
        {"<script>" + gap + gap, ""},
        {gap.substr(10) + "<p>" + "<title>x", ""},
        {gap + "<p>" + "<title>", "Overflow"},
        {gap + "<p>" + "</title>", "Overflow"},
    };
    for (const Case& test : cases) EXPECT_EQ(readingProblem(test.html), test.problem) << &test - cases;

    PageTexts page{{"kept", "kept", "kept"}, "gone"};
    EXPECT_THROW(retrieveMetaTag("<meta name=keywords content=new><p>text<b>" + gap + "x<p>", page), Failure);
    EXPECT_EQ(page.tags.keywords, "new");
    EXPECT_EQ(page.tags.title + page.tags.description + page.body, "keptkept");
}

TEST(MetaTagsTest, ChangingOverflowsAtEveryMarkerBeyondTheLimit) {
    // The head, then a marker at a position, far behind it or not.
    const auto page = [](std::size_t position, std::string_view marker) {
        std::string html = "<html><head></head>";
        return html.append(position - 1 - html.size(), 'x').append(marker).append(100000, 'y');
    };
    EXPECT_EQ(problemOf(page(32767, "<title>"), kInsert), "");
    EXPECT_EQ(problemOf(page(40000, "</b>"), kInsert), "");
    for (const MetaTagChange& change : {kInsert, kReplace, kOnTop}) {
        EXPECT_EQ(problemOf(page(32768, "<title>"), change), "Overflow");
        EXPECT_EQ(problemOf(page(90000, "</title>"), change), "Overflow");
        // The markers of the head are found wherever they are; the rest of the page is never touched.
        EXPECT_EQ(problemOf(std::string(32768, 'x') + "<head>", change), "Overflow");
        const std::string rest(3000000, 'z');
        EXPECT_TRUE(changedPage("<html><head></head>" + rest, change).ends_with(rest + "\r\n"));
    }
    // What a change moves over the limit counts where it is then.
    EXPECT_EQ(problemOf("<html><head></head>" + std::string(32700, 'x') + "<title></title>", kReplace),
              "Overflow");
    // A page much larger than the limit whose tags shrink is read further and further.
    std::string tags = "<html><head>";
    for (int i = 0; i < 300; ++i) tags += "<meta name=keywords content=\"" + std::string(900, 'k') + "\">";
    const std::string shrunk = changedPage(tags + "</head>", kReplace);
    EXPECT_EQ(shrunk.find("kkk"), npos);
    EXPECT_TRUE(shrunk.ends_with("</head>\r\n"));
}

TEST(MetaTagsTest, TextsGoInOnOneLineAndAreWalkedOver) {
    const MetaTags wild{"a\r\nb", "c\nd", "e      f"};
    EXPECT_EQ(
        changedPage("<head></head>", {wild, Way::Insert}),
        "<head><meta name=\"keywords\" content=\"c d\">\r\n<meta name=\"description\" content=\"ef\">\r\n"
        "<title>a b</title></head>\r\n");
    // A text that is itself a tag is met again inside the new page, until the limit ends it.
    const MetaTags loop{"t", "<meta name=keywords content=\"x\">", "d"};
    const std::string page = "<html><head><meta name=keywords content=\"\"></head></html>";
    EXPECT_EQ(problemOf(page, {loop, Way::Insert}), "Overflow");
    EXPECT_EQ(problemOf(page, {loop, Way::Replace}), "Overflow");
    const std::string once = changedPage("<head>\r\n</head>", kInsert);
    const std::string twice = changedPage(once, kInsert);
    EXPECT_NE(twice.find("content=\"bicycles, repairs, wheelsbicycles, repairs, wheels\""), npos);
    EXPECT_TRUE(twice.ends_with("</head>\r\n\r\n"));
}

TEST(MetaTagsTest, CutsTheHeadAndTheBody) {
    const std::string page = "a<HEAD>b</head>c<Body class=x>d</BODY>e";
    EXPECT_EQ(htmlSection(page, HtmlPart::Whole), page);
    EXPECT_EQ(htmlSection(page, HtmlPart::Head), "<HEAD>b</head>");
    EXPECT_EQ(htmlSection(page, HtmlPart::Body), "<Body class=x>d</BODY>");
    for (const char* cut :
         {"", "<head>", "</head>", "</head><head>", "<head x></head>", "<body", "</body><body>"}) {
        EXPECT_EQ(htmlSection(cut, HtmlPart::Head), "") << cut;
        EXPECT_EQ(htmlSection(cut, HtmlPart::Body), "") << cut;
    }
    EXPECT_THROW(htmlSection("<head>" + std::string(40000, 'x') + "</head>", HtmlPart::Head), Failure);
}

}  // namespace relay::test
