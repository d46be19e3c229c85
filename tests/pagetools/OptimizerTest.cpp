// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/IniFile.h"
#include "core/Text.h"
#include "pagetools/FindingFiles.h"
#include "pagetools/FindingRules.h"
#include "pagetools/KeywordCounter.h"
#include "pagetools/Optimizer.h"
#include "pagetools/OptimizerReport.h"
#include "pagetools/TextWidth.h"
#include "practice/PracticePages.h"
#include "support/CaseTable.h"
#include "support/GoldenCases.h"
#include "support/SessionFixture.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <random>
#include <set>

namespace relay::test {

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

// Every folder has a page, page.html; an address, a date and settings, settings.ini; and what they come to:
// the report, report.html, its name and the findings, findings.txt. With RELAY_GOLDEN_UPDATE set these are
// written instead of compared.
class OptimizerGoldenTest : public testing::TestWithParam<std::string>, public SessionFixture {
  protected:
    OptimizerGoldenTest() {
        const IniFile settings = IniFile::load(file("settings.ini"));
        const auto value = [&](std::string_view key) { return settings.value("Page", key); };
        address = optimizerAddress(value("Address"));
        time = QDateTime::fromString(QString::fromStdString(value("Date")), Qt::ISODate);
        for (const auto& [key, field] :
             {std::pair("Company", &preference.Company), std::pair("SiteURL", &preference.SiteURL),
              std::pair("Email", &preference.Email), std::pair("Name", &preference.name),
              std::pair("LogoURL", &preference.LogoURL), std::pair("TipsURL", &preference.TipsURL),
              std::pair("TutorialPage", &preference.TutorialPage)})
            *field = value(key);
        preference.LogoPosition = toInt16(leadingNumber(value("LogoPosition")));
    }

    std::string file(const char* name) const { return TEST_FOLDER "/optimizer/" + GetParam() + "/" + name; }
    std::string report(std::string_view html) {
        PageTexts page;
        retrieveMetaTag(html, page);
        return buildOptimizerReport({html, page, address, preference, time,
                                     QLocale(QLocale::English, QLocale::UnitedStates)}) +
               "\r\n";
    }
    std::string findings(std::string_view html) const {
        std::string text = "report " + optimizerReportName(address) + "\n";
        for (const PageFinding& finding : checkPage(html, address, RuleSettings()))
            text.append(std::to_string(finding.line))
                .append(" ")
                .append(severityName(finding.severity))
                .append(" ")
                .append(finding.rule)
                .append(": ")
                .append(finding.found)
                .append("\n");
        return text;
    }
    void expectFile(const char* name, const std::string& text) const {
        if (std::getenv("RELAY_GOLDEN_UPDATE") != nullptr)
            writeFile(file(name), text);
        else
            EXPECT_EQ(text, readFile(file(name))) << name;
    }

    std::string address;
    QDateTime time;
};

// A page of `words` words by the report's count, with the given tags.
std::string pageOf(int words, const std::string& head) {
    std::string page = "<html><head>" + head + "</head><body><p>word";
    for (int word = 3; word <= words; ++word) page += word % 900 == 0 ? "<b> word</b>" : " word";
    return page + "</p><p></body></html>";
}

std::string textOf(std::size_t length, char letter = 'x') {
    return std::string(length, letter);
}

std::string description(const std::string& text) {
    return "<meta name=description content=\"" + text + "\">";
}

std::string keywords(const std::string& text) {
    return "<meta name=keywords content=\"" + text + "\">";
}

std::int64_t plainCount(std::string_view text, std::string_view keyword) {
    std::int64_t count = 0;
    if (keyword.empty()) return 0;
    for (std::size_t at = findNoCase(text, keyword); at != npos;
         at = findNoCase(text, keyword, at + keyword.size()))
        ++count;
    return count;
}

std::vector<std::string> rulesOf(const std::vector<PageFinding>& findings) {
    std::vector<std::string> rules;
    for (const PageFinding& finding : findings) rules.emplace_back(finding.rule);
    return rules;
}

}  // namespace

TEST_P(OptimizerGoldenTest, WritesTheReportToTheByteAndFindsWhatIsThere) {
    const std::string html = readFile(file("page.html"));
    expectFile("report.html", report(html));
    expectFile("findings.txt", findings(html));
}

TEST_P(OptimizerGoldenTest, WorksOnAPageCutAtEveryByte) {
    const std::string html = readFile(file("page.html"));
    for (std::size_t length = 0; length <= html.size(); ++length) {
        const std::string_view page = std::string_view(html).substr(0, length);
        ASSERT_THAT(report(page), EndsWith("</body></html>\r\n")) << length;
        for (const PageFinding& finding : checkPage(page, address, RuleSettings()))
            ASSERT_GE(finding.line, 1U);
    }
}

INSTANTIATE_TEST_SUITE_P(Folders, OptimizerGoldenTest,
                         testing::ValuesIn(goldenCases(TEST_FOLDER "/optimizer")), goldenName);

class OptimizerTest : public testing::Test, public SessionFixture {
  protected:
    std::string report(const std::string& html, const std::string& address = "http://a.test/") {
        PageTexts page;
        retrieveMetaTag(html, page);
        return buildOptimizerReport({html, page, address, preference, clock.now(), QLocale::c()});
    }
};

TEST_F(OptimizerTest, VerdictsChangeAtTheirBounds) {
    const struct {
        std::string page;
        const char* verdict;
    } cases[] = {
        {pageOf(299, ""), "is 299 words, which is too short."},
        {pageOf(299, ""), "should be between 5% - 10%."},
        {pageOf(300, ""), "is 300 words, which it is fine."},
        {pageOf(300, ""), "should be between 3% - 5%."},
        {pageOf(800, ""), "should be between 3% - 5%."},
        {pageOf(801, ""), "should be between 1% - 3%."},
        {pageOf(1000, ""), "is 1000 words, which it is fine."},
        {pageOf(1001, ""), "is 1001 words, which may be too long."},
        {"x", "is 2 words, which is too short."},
        {"<head>" + keywords(textOf(299)), "fewer"},
        {keywords(textOf(1000)), "1000 characters, which is fine. For optimal"},
        {keywords(textOf(1001)), "1001 characters, which is more than"},
        {description(textOf(200)), "200 characters, which is fine."},
        {description(textOf(201)), "201 characters, which is more than"},
        {"<title>" + textOf(100) + "</title>", "100 characters, which is fine."},
        {"<title>" + textOf(101) + "</title>", "101 characters, which is more than"},
        {keywords("a, b"), " Note that the keywords should be separated"},
        {std::string(949, 'x'), "Size 0.9K"},
        {std::string(950, 'x'), "Size 1.0K"},
    };
    for (const auto& test : cases) {
        if (std::string_view(test.verdict) == "fewer") {
            EXPECT_THAT(report(test.page), HasSubstr("they are less than 35% of"));
            continue;
        }
        EXPECT_THAT(report(test.page), HasSubstr(test.verdict));
    }
    EXPECT_THAT(report(keywords("a b")), Not(HasSubstr("Note that the keywords")));
    EXPECT_THAT(report("<title> x </title>"), Not(HasSubstr("Note that the title")));
}

TEST_F(OptimizerTest, DensitiesAreRoundedBeforeTheyAreJudged) {
    const auto row = [](const char* keyword, const char* matches, const char* density, const char* judged) {
        return std::string(keyword) + "</font></td><td align=center><font FACE=Arial SIZE=2 COLOR=#000000>" +
               matches + "</font></td><td align=center>" + density +
               "</td>\r\n<td align=center><font FACE=Arial " + judged;
    };
    // 500 words, 23 of them "pen": 4.6 percent.
    std::string page = "<head>" + keywords("Pen,, pens ,zz") + "</head><p>";
    for (int word = 2; word <= 500; ++word) page += word <= 24 ? "pen " : "word ";
    const std::string text = report(page + "x<p>");
    EXPECT_THAT(text, HasSubstr(row("Pen", "23", "5%", "SIZE=2 COLOR=#0000FF><b>OK")));
    EXPECT_THAT(text, HasSubstr(row(" pens ", "0", "0%", "SIZE=4 COLOR=#FF0000><b>-")));
    EXPECT_THAT(text, HasSubstr(row("Pen", "0", "0%", "SIZE=4 COLOR=#FF0000><b>-")));
    std::size_t rows = 0;
    for (std::size_t at = text.find("<tr bgcolor=#FFFFFF><td><font"); at != npos;
         at = text.find("<tr bgcolor=#FFFFFF><td><font", at + 1))
        ++rows;
    EXPECT_EQ(rows, 6U);  // three keywords in two tables; the empty one has no row
    // A description of four words, three of them the keyword, and overlaps that count once.
    const std::string dense = report(keywords("aa") + description("aa aaa aa bb"));
    EXPECT_THAT(dense, HasSubstr(row("aa", "3", "75%", "SIZE=3 COLOR=#000000><b>+")));
}

TEST_F(OptimizerTest, CountsLikeOneScanForEachKeyword) {
    std::mt19937 random(7);
    const auto textOfLetters = [&random](std::size_t length) {
        std::string text;
        while (text.size() < length) text += "aAbB.\xE9\xC9 "[random() % 8];
        return text;
    };
    for (int round = 0; round < 300; ++round) {
        std::vector<std::string> words;
        for (std::size_t i = random() % 12; i > 0; --i) words.push_back(textOfLetters(random() % 5));
        for (std::size_t i = random() % 20; i > 0; --i) words.push_back(textOf(i, 'a'));
        const std::string text = textOfLetters(random() % 200) + textOf(random() % 90, 'A');
        const std::vector<std::int64_t> counts = KeywordCounter({words.begin(), words.end()}).count(text);
        for (std::size_t i = 0; i < words.size(); ++i)
            ASSERT_EQ(counts[i], plainCount(text, words[i])) << text << " | " << words[i];
    }
}

// A viewer would load what tags of the page's texts name, and many of them would keep it busy.
TEST_F(OptimizerTest, ShowsTheTextsInTheWindowAsTheyAre) {
    const auto shown = [this](std::string_view html) {
        PageTexts page;
        retrieveMetaTag(html, page);
        return reportForWindow(
            {html, page, "http://a.test/<b style=x>", preference, clock.now(), QLocale::c()});
    };
    preference.LogoURL = "logo.test/a.png";
    preference.Company = "<body background=/etc/x>";
    const std::string title = "<title>x<IMG src=/etc/x></title>";
    const std::string text = shown(title + description("<td background=/etc/x") + keywords("<link a,b"));
    const std::string plain = shown("<title>t</title>" + description("d") + keywords("k,b"));
    for (const char* tag : {"<img", "<td background", "<link", "<body background", "<b style"})
        EXPECT_FALSE(containsNoCase(text, tag)) << tag;
    for (const char* seen : {">x&lt;IMG src=/etc/x><", ">&lt;td background=/etc/x<", ">&lt;link a<",
                             "&lt;body background=/etc/x>", "a.test/&lt;b style=x></a>"})
        EXPECT_THAT(text, HasSubstr(seen));
    EXPECT_EQ(std::count(text.begin(), text.end(), '<'), std::count(plain.begin(), plain.end(), '<'));
    EXPECT_LT(shown("<title>" + textOf(30'000) + "</title>").size(), plain.size() + 10'000);
    std::string many;
    for (int i = 0; i < 500; ++i) many += "pen,";
    EXPECT_EQ(shown(keywords(many)), "");
}

TEST_F(OptimizerTest, NamesReportsInsideTheirFolder) {
    const std::pair<const char*, const char*> names[] = {
        {"http://a.test/b/c.html?x=1", "a.test_b_c.html_x_1.html"},
        {"a.test", "a.test_.html"},
        {"https://a.test:80/..", "a.test:80_...html"},
        {"http://../../etc/passwd", "___.._etc_passwd.html"},
        {"http://..\\..\\x\n/", "___.._x__.html"},
        {"/home/x/index.htm", "index.htm.html"},
        {"/home/x/..", "__.html"},
        {"http://", "_.html"},
    };
    for (const auto& [typed, name] : names) EXPECT_EQ(optimizerReportName(optimizerAddress(typed)), name);
    EXPECT_LE(optimizerReportName("http://a.test/" + textOf(5000)).size(), 200U);
    EXPECT_NE(optimizerReportName("http://a.test/" + textOf(5000)),
              optimizerReportName("http://a.test/" + textOf(5001)));
}

TEST_F(OptimizerTest, GoesThroughTheScreensSteps) {
    std::vector<std::string> requested;
    int disconnects = 0;
    Optimizer optimizer(
        services,
        [&](const std::string& url) {
            requested.push_back(url);
            return true;
        },
        [&] { ++disconnects; });
    int ends = 0;
    QObject::connect(&optimizer, &Optimizer::finished, &optimizer, [&ends] { ++ends; });
    optimizer.cmdRenovator();
    EXPECT_THAT(prompts.last().text, HasSubstr("Please enter your web site URL or a valid"));
    optimizer.cboSiteURL = "/none/here.html";
    optimizer.cmdRenovator();
    EXPECT_THAT(prompts.last().text, HasSubstr("Invalid path or file name"));

    optimizer.cboSiteURL = "a.test";
    optimizer.cmdRenovator();
    EXPECT_EQ(requested, std::vector<std::string>{"http://a.test"});
    EXPECT_EQ(optimizer.caption() + optimizer.status(), "&CancelConnecting to : a.test ....");
    optimizer.cmdRenovator();
    EXPECT_EQ(optimizer.caption() + std::to_string(disconnects), "&Optimizer1");

    optimizer.showPage("", "a.test: No reply");
    EXPECT_THAT(prompts.last().text, HasSubstr("No document found from HTML file"));
    optimizer.showPage("<p>text</p>", "");
    EXPECT_EQ(optimizer.status(), "Done");
    EXPECT_EQ(optimizer.report().path, home.path("Optimizer/a.test_.html"));
    EXPECT_EQ(prompts.last().kind + prompts.last().text, "system" + optimizer.report().path);
    EXPECT_THAT(rulesOf(optimizer.findings()), testing::Contains("title-missing"));
    EXPECT_EQ(ends, 2);

    // A folder where the report should go: told, logged, and the page is still checked.
    makeFolder(home.path("Optimizer/page.html.html"));
    optimizer.cboSiteURL = home.write("page.html", "<title>Paper</title>");
    optimizer.cmdRenovator();
    EXPECT_EQ(prompts.last().title, "Optimizer Error");
    EXPECT_THAT(prompts.last().text, testing::AllOf(HasSubstr("Module: Optimizer\r\n"),
                                                    EndsWith("\r\nFile: " + optimizer.cboSiteURL)));
    EXPECT_THAT(logText(), HasSubstr("Module: Optimizer"));
    EXPECT_EQ(optimizer.report().path + optimizer.status(), "");
    EXPECT_FALSE(optimizer.findings().empty());
    EXPECT_FALSE(optimizer.isBusy());

    prompts.files.push_back({home.path("f.sarif"), 2});
    optimizer.saveFindings();
    EXPECT_EQ(nlohmann::json::parse(home.read("f.sarif"))["runs"][0]["results"].size(),
              optimizer.findings().size());
    optimizer.saveHistory();
    EXPECT_THAT(home.read("data/apikrv.dmc"), HasSubstr("[Optimizer]\r\n1=" + optimizer.cboSiteURL));
}

TEST_F(OptimizerTest, TellsTheLinesOfARulesFileThatItPassesOver) {
    RuleSettings settings;
    std::string told;
    const auto problems = readRules(
        "Severity=off\n[title-length]\nMinimum=5\nMaximum=abc\nMiddle=7\nMinimum=6\n"
        "[no-such-rule]\nSeverity=off\n[LANG]\nSeverity=ERROR\n[h1-count]\nSeverity=loud\n"
        "Maximum=-1\nMinimum=3\n[title-width]\nPixelSize=101\nMaximum=99999999999\n"
        "; a comment\n\n[lang\nSeverity=off\n  loud \n[h1-empty]\nSeverity=notice\n=5\n",
        settings);
    for (const RuleProblem& problem : problems) told += problem.text + "\n";
    EXPECT_EQ(
        told,
        "optimizer.rules, line 1: \"Severity\": it belongs to no rule\n"
        "optimizer.rules, line 4: \"Maximum\": a whole number from 0 to 10000 is needed, not \"abc\"\n"
        "optimizer.rules, line 5: \"Middle\": the rule has no such bound\n"
        "optimizer.rules, line 6: \"Minimum\": it has been set before\n"
        "optimizer.rules, line 7: \"no-such-rule\": there is no such rule\n"
        "optimizer.rules, line 12: \"Severity\": the severity is error, warning, notice or off, not "
        "\"loud\"\n"
        "optimizer.rules, line 13: \"Maximum\": a whole number from 0 to 10000 is needed, not \"-1\"\n"
        "optimizer.rules, line 16: \"PixelSize\": a whole number from 1 to 100 is needed, not \"101\"\n"
        "optimizer.rules, line 17: \"Maximum\": a whole number from 0 to 10000 is needed, not "
        "\"99999999999\"\n"
        "optimizer.rules, line 20: \"[lang\": the \"]\" is missing, so the lines below are passed over up to "
        "the next rule\n"
        "optimizer.rules, line 22: \"loud\": it is neither [rule] nor KEY=VALUE\n"
        "optimizer.rules, line 25: \"=5\": it is neither [rule] nor KEY=VALUE\n"
        "optimizer.rules, line 11: \"h1-count\": its minimum is above its maximum, so both stay as they "
        "were\n");
    EXPECT_EQ(settings.of(*findRule("title-length")).bounds.at("Minimum"), 5);
    EXPECT_EQ(settings.of(*findRule("title-length")).bounds.at("Maximum"), 65);
    EXPECT_EQ(settings.of(*findRule("lang")).severity, Severity::Error);
    EXPECT_EQ(settings.of(*findRule("h1-count")).bounds.at("Minimum"), 1);
    EXPECT_NE(settings.of(*findRule("title-width")).severity, Severity::Off);
    EXPECT_EQ(settings.of(*findRule("h1-empty")).severity, Severity::Notice);

    std::string endless = "\xEF\xBB\xBF[lang]\nSeverity=notice\n";
    for (int i = 0; i < 1000; ++i) endless += "[rule" + std::to_string(i) + "]\n";
    const auto many = readRules(endless, settings);
    EXPECT_EQ(settings.of(*findRule("lang")).severity, Severity::Notice);
    EXPECT_EQ(many.size(), 101U);
    EXPECT_EQ(many.back().text, "optimizer.rules: and 900 lines more");
}

// The pages of the practice web, as their index lists them, and what is found on each: every rule finds
// something somewhere.
TEST_F(OptimizerTest, FindsOnThePracticePagesWhatTheyShow) {
    PracticeSite site;
    const auto pageOfPractice = [&site](const std::string& name) {
        PracticeRequest request;
        request.method = "GET";
        request.target = "/pages/" + name;
        return answer(request, site).body;
    };
    const std::string index = pageOfPractice("");
    std::set<std::string> shown;
    std::set<std::string> seen;
    playCases(TEST_FOLDER "/cases/practice-pages.txt",
              {{"rulesFoundOn", [&](const std::vector<std::string>& in) {
                    EXPECT_THAT(index, HasSubstr("\"" + in[0] + ".html\""));
                    shown.insert(in[0]);
                    std::vector<std::string> found =
                        rulesOf(checkPage(pageOfPractice(in[0] + ".html"),
                                          "http://127.0.0.1/pages/" + in[0] + ".html", RuleSettings()));
                    found.erase(std::unique(found.begin(), found.end()), found.end());
                    seen.insert(found.begin(), found.end());
                    return joined(found);
                }}});
    EXPECT_EQ(seen.size(), findingRules().size());
    std::size_t listed = 0;
    for (std::size_t at = index.find("<li>"); at != npos; at = index.find("<li>", at + 1)) ++listed;
    EXPECT_EQ(shown.size(), listed);
}

// The installed file says what the rules say without it.
TEST_F(OptimizerTest, InstallsARulesFileThatChangesNothing) {
    RuleSettings settings;
    for (const auto& rule : findingRules()) {
        settings.of(*rule).severity = Severity::Off;
        for (auto& [name, number] : settings.of(*rule).bounds) number = 4711;
    }
    EXPECT_TRUE(readRules(readFile(RELAY_DATA_FOLDER "/optimizer.rules"), settings).empty());
    const RuleSettings usual;
    for (const auto& rule : findingRules()) {
        EXPECT_EQ(settings.of(*rule).severity, usual.of(*rule).severity) << rule->about().name;
        EXPECT_EQ(settings.of(*rule).bounds, usual.of(*rule).bounds) << rule->about().name;
    }
}

TEST_F(OptimizerTest, TheHomesRulesFileWins) {
    RuleSettings settings;
    home.write("data/optimizer.rules", "[lang]\nSeverity=off\n");
    EXPECT_TRUE(loadRules(home.paths(), settings).empty());
    const auto findings = checkPage("<p>x</p>", "http://a.test/", settings);
    EXPECT_THAT(rulesOf(findings), Not(testing::Contains("lang")));
}

// Pages made to keep a parser busy: each is given up or read, in time that its length sets.
TEST_F(OptimizerTest, SurvivesPagesMadeToNest) {
    const auto many = [](std::string_view piece, std::size_t times) {
        std::string text;
        text.reserve(piece.size() * times);
        for (std::size_t i = 0; i < times; ++i) text += piece;
        return text;
    };
    std::string attributes;
    std::string roots;
    std::string fonts;
    for (int i = 0; i < 200000; ++i) attributes += " a" + std::to_string(i);
    for (int i = 0; i < 50000; ++i) roots += "<html a" + std::to_string(i) + ">";
    for (int i = 0; i < 1500; ++i) fonts += "<font size=" + std::to_string(i) + ">";
    const std::string refused[] = {many("<div>", 400000),
                                   many("<div></b>", 300000),
                                   many("<b><p>", 300000),
                                   "<svg>" + many("<p><div/>", 300000),
                                   "<svg><foreignObject>" + many("<div/>", 300000),
                                   "<p" + attributes + ">",
                                   "<select><style></select><p" + attributes + ">",
                                   "<p" + many(" a", 1000000),
                                   roots,
                                   many("<rt>", 300000),
                                   many("<span><object></span></object>", 100000) + "<b>" + textOf(1000000),
                                   many("<span><div></span></div>", 300000) + "<frameset>",
                                   "<select><style></select>" + many("<div>", 300000),
                                   "<!-- --!>" + many("<div>", 300000),
                                   "<p>" + fonts + many("<p>x", 300000)};
    for (const std::string& page : refused)
        EXPECT_EQ(rulesOf(checkPage(page, "http://a.test/", RuleSettings())).front(), "page-unreadable")
            << page.substr(0, 40);
    const std::string read[] = {many("<p>text<br>", 100000),
                                many("<li>text", 100000),
                                "<table>" + many("<tr><td>x", 100000),
                                many("<!--<div>-->", 100000),
                                "<script>" + many("'<div>'+", 100000) + "</script>",
                                many("<", 300000),
                                many("</div>", 300000),
                                textOf(300000, '\0'),
                                many("<div><table></div>", 100000),
                                many("<div>", 1000) + many("<p>x</p>", 30000),
                                "<b>" + many("<b><i><p>x</b></i>", 20000),
                                many("<h1><i>", 600) + textOf(4000000),
                                many("&#0;&amp", 100000)};
    for (const std::string& page : read)
        EXPECT_THAT(rulesOf(checkPage(page, "http://a.test/", RuleSettings())),
                    Not(testing::Contains("page-unreadable")))
            << page.substr(0, 40);
    const auto images = checkPage(many("<img src=x>\n", 5000), "http://a.test/", RuleSettings());
    EXPECT_EQ(std::count_if(images.begin(), images.end(),
                            [](const PageFinding& f) { return f.rule == "image-alt"; }),
              100);
    EXPECT_THAT(images.back().found, EndsWith("(and 4900 more further down)"));
}

TEST_F(OptimizerTest, MeasuresTextsWithoutAFont) {
    EXPECT_EQ(textWidth("Hi", 20), 19);  // 722 and 222 thousandths
    EXPECT_EQ(textWidth("", 20), 0);
    EXPECT_EQ(textWidth("\xC3\xA9\xE9", 1000), 556 + 556);
    EXPECT_EQ(textWidth("e\xCC\x81", 1000), 556);      // a combining mark has no width
    EXPECT_EQ(textWidth("\xE6\xBC\xA2", 1000), 1000);  // an ideograph
}

TEST_F(OptimizerTest, SavesFindingsAsATable) {
    EXPECT_EQ(findingsAsCsv({{"http://a.test/,x", {{Severity::Error, "lang", 3, "says \"no\""}}}}),
              "address,line,severity,rule,found,what_to_do\r\n\"http://a.test/,x\",3,error,lang,\"says "
              "\"\"no\"\"\",\"Write <html lang=\"\"en\"\"> with the code of the page's language.\"\r\n");
}

}  // namespace relay::test
