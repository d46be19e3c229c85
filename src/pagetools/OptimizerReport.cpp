// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/OptimizerReport.h"

#include "core/Clock.h"
#include "core/FileNames.h"
#include "core/ReportFiles.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "core/Url.h"
#include "core/clsPreference.h"
#include "pagetools/KeywordCounter.h"

#include <algorithm>

namespace relay {

namespace {

constexpr std::string_view kBreak = "\r\n";

// The densities in percent, both included, within which a keyword's use is judged effective.
struct Bounds final {
    int minimum = 0;
    int maximum = 0;
};

Bounds bodyBounds(std::int64_t words) {
    if (words < 300) return {5, 10};
    return words <= 800 ? Bounds{3, 5} : Bounds{1, 3};
}

Bounds descriptionBounds(std::size_t length) {
    if (length < 20) return {20, 30};
    return length <= 100 ? Bounds{10, 20} : Bounds{5, 10};
}

std::int64_t blanksIn(std::string_view text) {
    return std::count(text.begin(), text.end(), ' ');
}

// A text in which keywords are counted. Runs of blanks count as words, too.
struct Measured final {
    std::string_view text;
    std::int64_t words = 0;
    Bounds bounds;
};

// Rounded, half up; 0 without words.
std::int64_t percentOf(std::int64_t matches, std::int64_t words) {
    return words < 1 ? 0 : (200 * matches + words) / (2 * words);
}

std::string_view judgement(std::int64_t percent, const Bounds& bounds) {
    if (percent < bounds.minimum) return "<font FACE=Arial SIZE=4 COLOR=#FF0000><b>-</b></font>";
    if (percent <= bounds.maximum) return "<font FACE=Arial SIZE=2 COLOR=#0000FF><b>OK</b></font>";
    return "<font FACE=Arial SIZE=3 COLOR=#000000><b>+</b></font>";
}

std::vector<std::string_view> splitAtCommas(std::string_view text) {
    std::vector<std::string_view> parts;
    if (text.empty()) return parts;
    for (;;) {
        const std::size_t comma = text.find(',');
        parts.push_back(text.substr(0, comma));
        if (comma == npos) return parts;
        text.remove_prefix(comma + 1);
    }
}

// "12.3": thousands of characters.
std::string sizeInThousands(std::size_t length) {
    const std::size_t tenths = (length + 50) / 100;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
}

std::string date(const QDateTime& time, QStringView format) {
    return fromScreen(QLocale::c().toString(time, format));
}

enum class Viewer { Browser, Window };

// Appends pieces of text. Odd blanks and closing tags are part of the report.
class ReportText final {
  public:
    ReportText(const OptimizerInput& input, Viewer viewer)
        : m_input(input),
          m_forWindow(viewer == Viewer::Window),
          m_tags(input.page.tags),
          m_keywords(splitAtCommas(m_tags.keywords)),
          m_body{input.page.body, blanksIn(input.page.body) + 2, {}},
          m_description{m_tags.description, 0, descriptionBounds(m_tags.description.size())} {
        m_body.bounds = bodyBounds(m_body.words);
        if (!m_tags.description.empty()) m_description.words = blanksIn(m_tags.description) + 1;
    }

    std::size_t keywordCount() const { return m_keywords.size(); }
    std::string build() {
        addHead();
        addSimulation();
        if (containsNoCase(m_input.html, "<frameset")) addFrames();
        addKeywords();
        addDescription();
        addTitle();
        addContents();
        addDensities();
        addFoot();
        return std::move(m_text);
    }

  private:
    template <typename... Pieces>
    void add(const Pieces&... pieces) {
        (m_text.append(pieces), ...);
    }
    template <typename... Pieces>
    void line(const Pieces&... pieces) {
        add(pieces..., kBreak);
    }
    static std::string heading(std::string_view words) {
        return std::string("<font FACE=Arial SIZE=2 COLOR=#000000><b>").append(words).append("</b></font>");
    }
    void openSection(std::string_view headingText) {
        line("<table border=0 width=620 bgcolor=#C0C0C0 cellspacing=1>");
        line("<tr><td>");
        line(headingText);
        line("</td></tr><tr bgcolor=#FFFFFF><td>");
    }
    void closeSection() {
        line("</font></td></tr></table>");
        add("<p>&nbsp;</p>");
    }
    void addVerdict(std::string_view verdict) {
        line("<font FACE=Arial SIZE=2 COLOR=#000000>", verdict, "</font>");
    }

    // A text of the page or the settings.
    std::string value(std::string_view text) const;
    // The target of a link.
    std::string_view target(std::string_view address) const { return m_forWindow ? "#" : address; }
    void addLogo();
    void addHead();
    void addSimulation();
    void addFrames();
    void addMeta(std::string_view name, std::string_view content, std::string_view verdict);
    void addKeywords();
    void addDescription();
    void addTitle();
    void addContents();
    std::string contentsVerdict() const;
    void addDensities();
    std::string rows(const Measured& measured, const KeywordCounter& counter) const;
    void openTable(std::string_view name, std::string_view rows);
    void addFoot();

    const OptimizerInput& m_input;
    bool m_forWindow;
    const MetaTags& m_tags;
    std::vector<std::string_view> m_keywords;
    Measured m_body;
    Measured m_description;
    std::string m_text;
};

std::string ReportText::value(std::string_view text) const {
    constexpr std::size_t kLongest = 2000;
    if (!m_forWindow) return std::string(text);
    const std::string whole = replaceAll(left(text, kLongest), "<", "&lt;");
    return text.size() > kLongest ? whole + " ..." : whole;
}

void ReportText::addLogo() {
    const std::string& logo = m_input.preference.LogoURL;
    if (!logo.empty() && !m_forWindow) add("<br><img src=http://", logo, "><br>");
}

void ReportText::addHead() {
    const std::string address = value(m_input.address);
    line("<html><head>");
    line("<title>Web Site Optimizer for: ", address, "</title>");
    line("</head>");
    line("<body width = 620>");
    line("<table border=0 width=620>");
    line("<tr><td>");
    if (m_input.preference.LogoPosition == 0) addLogo();
    line(
        "<table border=0 width=620><tr bgcolor=#000000><td><font face=arial color=#FFFFFF><b>Web Site "
        "Optimizer Report</b></font></td></tr></table>");
    line("<p><font face=Arial><b>Website: <a href=", target(address), ">", address, "</a><br>");
    line("Report Date: </b>", longDate(m_input.time, m_input.locale), "</p><p><br></p></font>");
    add("</p><font FACE=Arial SIZE=2 COLOR=#000000>");
}

void ReportText::addSimulation() {
    constexpr std::size_t kShown = 200;
    const std::string address = value(m_input.address);
    const std::string_view title = m_tags.title.empty() ? std::string_view("NO TITLE") : m_tags.title;
    const std::string_view body = m_input.page.body;
    const std::string_view text = m_tags.description.empty() ? body : std::string_view(m_tags.description);
    const std::string size = sizeInThousands(m_input.html.size());
    openSection(heading("Search Engine Simulation"));
    line(
        "<font FACE=Arial SIZE=2>The listing below shows two typical samples how your web site will look on "
        "the search engines. How your web site listing appear on the search engines will effect the "
        "click-thru-rate to your web site. Please make sure your web site listing are attractive."
        "</font><br><br>");
    add("<font face=\"Times New Roman, Times, serif\" SIZE=3><ul>");
    line("<li><a href=", target(address), "><b>", value(left(title, kShown)), "</b></a><br>");
    line(value(left(text, kShown)),
         "<br><font SIZE=2 COLOR=#999999>98% Date: ", date(m_input.time, u"d MMM yyyy"), ", Size ", size,
         "K, ", address, "</font><br><br></li>");
    line("<li><a href=", target(address), "><b>", value(title), "</b></a><br>");
    line(value(left(body, kShown)), "<br><font SIZE=2 COLOR=#999999>Last Modified ",
         date(m_input.time, u"d-MMM-yyyy"), " -page size ", size, "K - URL: ", address,
         "</font><br><br></li></ul>");
    closeSection();
}

void ReportText::addFrames() {
    line("<table border=0 width=620 bgcolor=#C0C0C0 cellspacing=1>");
    line("<tr><td>");
    line(heading("Your web site is a Frame style"));
    add("</td></tr><tr bgcolor=#FFFFFF><td><font FACE=Arial SIZE=2 COLOR=#FF0000>");
    line(
        "Most major search engines do not support Frame style of the web sites. If you wish your web sites "
        "to be indexed by the search engines and get good results, please consider changing your web sites "
        "to a non-frame style. </font><br><br>");
    add("</td></tr></table><p>&nbsp;</p>");
}

void ReportText::addMeta(std::string_view name, std::string_view content, std::string_view verdict) {
    line(
        "<font FACE=Arial SIZE=2 COLOR=#ff0000>&lt;META NAME=&quot;</font><font FACE=Arial SIZE=2 "
        "COLOR=#0000ff>",
        name,
        "</font><font FACE=Arial SIZE=2 COLOR=#ff0000>&quot; CONTENT=&quot;</font><font FACE=Arial SIZE=2 "
        "COLOR=#0000ff>",
        value(content), "</font><font FACE=Arial SIZE=2 COLOR=#ff0000>&quot;&gt;</font><br><br>");
    addVerdict(verdict);
}

void ReportText::addKeywords() {
    const std::string& keywords = m_tags.keywords;
    const std::size_t length = keywords.size();
    const std::string count = "The keywords are " + std::to_string(length) + " characters, which is ";
    std::string verdict;
    if (length == 0)
        verdict =
            "No <META> keywords tag was found in the <font COLOR=#0000ff>&lt;HEAD&gt;</font>...<font "
            "COLOR=#0000ff>&lt;/HEAD&gt;</font> portion. Please make sure to add one before submitting your "
            "web site. This meta tag will be used by search engine how to index your web site.";
    else if (length < 300)
        verdict = count +
                  "fine. However, they are less than 35% of the permitted length of 1000 characters. For "
                  "optimal results we suggest a keyword tag sized between 300 and 500 characters. Consider "
                  "adding more keywords to this tag to make the most out of it. ";
    else if (length <= 1000)
        verdict = count + "fine. For optimal results we suggest a tag sized between 300 and 500 characters. ";
    else
        verdict = count +
                  "more than the permitted length. They should be no longer than 1000 characters. Otherwise, "
                  "search engines will simply use the words in the first 1000 characters.";
    // Said of a list that has commas, although its words speak of one that has none.
    if (keywords.find(',') != npos)
        verdict += " Note that the keywords should be separated with commas rather than spaces.";
    openSection(heading("Meta Tag Keywords"));
    addMeta("Keywords", keywords, verdict);
    closeSection();
}

void ReportText::addDescription() {
    const std::size_t length = m_tags.description.size();
    const std::string number = std::to_string(length);
    std::string verdict;
    if (length == 0)
        verdict =
            "No <META> description tag was found in the  <font COLOR=#0000ff>&lt;HEAD&gt;</font>...<font "
            "COLOR=#0000ff>&lt;/HEAD&gt;</font>> portion. Please make sure to add one before submitting your "
            "web site. This meta tag will be used by search engine to index your web site.";
    else if (length <= 200)
        verdict = "The description tag is " + number +
                  " characters, which is fine. Make sure it is attractive, and well describes your web "
                  "site's purpose.";
    else
        verdict = "The description is " + number +
                  " characters, which is more than the permitted length. It should be no longer than 200 "
                  "characters. Otherwise, search engines will use the first 200 characters in your "
                  "description.";
    openSection(heading("Meta Tag Description"));
    addMeta("Description", m_tags.description, verdict);
    closeSection();
}

void ReportText::addTitle() {
    const std::size_t length = m_tags.title.size();
    const std::string number = std::to_string(length);
    std::string verdict;
    if (length == 0)
        verdict =
            "No title tag was found in the  <font COLOR=#0000ff>&lt;HEAD&gt;</font>...<font "
            "COLOR=#0000ff>&lt;/HEAD&gt;</font> portion. This meta tag will be used to display your web site "
            "title by search engine when index your web site. Do not submit your site before it has a "
            "title. ";
    else if (length <= 100)
        verdict = "The title tag is " + number +
                  " characters, which is fine. For best results, make sure it is descriptive, attractive, "
                  "containing your important keywords and well describes your web site's purpose.";
    else
        verdict = "The title is " + number +
                  " characters, which is more than the permitted length. It should be no longer than 100 "
                  "characters. Otherwise, search engines will use first 100 characters in the title.";
    openSection(heading("Choose the Right Title"));
    line("<font FACE=Arial SIZE=2 COLOR=#ff0000>&lt;TITLE&gt;</font><font FACE=Arial SIZE=2 COLOR=#0000ff>",
         value(m_tags.title), "</font><font FACE=Arial SIZE=2 COLOR=#ff0000>&lt;/TITLE&gt;</font><br><br>");
    addVerdict(verdict);
    closeSection();
}

std::string ReportText::contentsVerdict() const {
    const std::int64_t words = m_body.words;
    const std::string count = "The contents of your web page is " + std::to_string(words) + " words, which ";
    constexpr std::string_view kNote = "<font color=#FF0000>Note: </font>";
    std::string verdict =
        "Some search engines use the text near the top of a Web page to index your web site, so make sure "
        "you place the most important stuff at the top. Search engines that do not support <font "
        "COLOR=#ff0000>&lt;META&gt;</font> tags will use the first 200 (or 250) characters for the site's "
        "description, so the first paragraph should describe/sell your service.<br><br>";
    if (words < 300)
        verdict.append(kNote).append(count).append(
            "is too short. Search engines will not consider your web page important to be indexed. Please "
            "consider to add more text contents to your web page.");
    else if (words <= 1000)
        verdict.append("Note: ").append(count).append(
            "it is fine. For best results, make sure it is descriptive, attractive, containing your "
            "important keywords and well describes your web site's purpose.");
    else
        verdict.append(kNote).append(count).append(
            "may be too long. For best results, please consider to shorten your contents between 500 to 800 "
            "words  and well describes your web site's purpose.");
    return verdict;
}

void ReportText::addContents() {
    constexpr std::size_t kShown = 250;
    const std::string text = CleanLineBreaks(m_input.page.body);
    openSection(
        "<font FACE=Arial SIZE=2 COLOR=#000000><b>Web Site Contents</b>(first 250 characters)</font>");
    line("<font FACE=Arial SIZE=2 COLOR=#0000ff>", value(left(trim(text), kShown)), "</font><br><br>");
    addVerdict(contentsVerdict());
    closeSection();
}

std::string ReportText::rows(const Measured& measured, const KeywordCounter& counter) const {
    const std::vector<std::int64_t> counts = counter.count(measured.text);
    std::string rows;
    for (std::size_t i = 0; i < m_keywords.size(); ++i) {
        if (m_keywords[i].empty()) continue;
        const std::int64_t percent = percentOf(counts[i], measured.words);
        rows.append("<tr bgcolor=#FFFFFF><td><font FACE=Arial SIZE=2 COLOR=#000000>")
            .append(value(m_keywords[i]));
        rows.append("</font></td><td align=center><font FACE=Arial SIZE=2 COLOR=#000000>");
        rows.append(std::to_string(counts[i])).append("</font></td><td align=center>");
        rows.append(std::to_string(percent)).append("%</td>").append(kBreak).append("<td align=center>");
        rows.append(judgement(percent, measured.bounds)).append("</td></tr>").append(kBreak);
    }
    return rows;
}

void ReportText::openTable(std::string_view name, std::string_view rows) {
    line("<table border=0 width=620 bgcolor=#C0C0C0 cellspacing=1>");
    line("<tr><td colspan = 4>");
    line(heading(name));
    line("</td></tr>");
    line(
        "<tr align=center bgcolor=#FFFFFF><td width=360><b>Keyword</b></td><td width=120><b>Matches</b></td>"
        "<td width=120><b>Density</b></td><td width=120><b>Results</b></td></tr>");
    add(rows);
    line("<tr bgcolor=#FFFFFF><td colspan = 4>");
    line("<font FACE=Arial SIZE=2 COLOR=#000000><b>Results:</b><br>");
}

void ReportText::addDensities() {
    std::vector<std::string> texts;
    texts.reserve(m_keywords.size());
    for (const std::string_view keyword : m_keywords) texts.push_back(CleanLineBreaks(trim(keyword)));
    const KeywordCounter counter({texts.begin(), texts.end()});

    openTable("Keyword Utilization on Meta Tag Description", rows(m_description, counter));
    line(
        "<font FACE=Arial SIZE=2 COLOR=#0000FF><b>OK</b></font>: Effective keyword usage in <b>Meta Tag "
        "Description</b>. <br>"
        "<font FACE=Arial SIZE=4 COLOR=#FF0000><b> - </b></font>: Not enough keyword matches, may result in "
        "lower Search Engine ranking. Please add more keywords to <b>Meta Tag Description</b>.<br>"
        "<font FACE=Arial SIZE=3 COLOR=#000000><b> + </b></font>: Too many keyword matches, may be "
        "considered SPAM and dropped from the Search Engines. Please don't repeat the same keyword more than "
        "5 times in the <b>Meta Tag Description</b>.<br></font></td></tr></table><p><br></p>");

    openTable("Keyword Utilization on Web Page Body", rows(m_body, counter));
    line(
        "<font FACE=Arial SIZE=2 COLOR=#0000FF><b>OK</b></font>: Effective keyword usage in <b>Web Page "
        "body</b>. <br>"
        "<font FACE=Arial SIZE=4 COLOR=#FF0000><b> - </b></font>: Not enough keyword matches, may result in "
        "lower Search Engine ranking. Please add more keywords to your page.<br>"
        "<font FACE=Arial SIZE=3 COLOR=#000000><b> + </b></font>: Too many keyword matches, may be "
        "considered SPAM and dropped from the Search Engines. Please don't repeat the same keyword more than "
        "the suggested keyword density in <b>Web Page body</b>.<br>"
        "<br><b>Suggestion:</b><br>The contents of your web page is ",
        std::to_string(m_body.words), " words, for best results, suggest keyword density should be between ",
        std::to_string(m_body.bounds.minimum), "% - ", std::to_string(m_body.bounds.maximum),
        "%.</font></td></tr>");
    add("</table><p>&nbsp;</p>");
}

void ReportText::addFoot() {
    const clsPreference& preference = m_input.preference;
    line("<b><font color=#FF0000>Need More Tips</font></b><br>");
    line("Please check our web site at: ");
    line("<a href=", target(preference.TipsURL), ">", value(preference.TipsURL),
         "</a> and <a href=", target(preference.TutorialPage), ">", value(preference.TutorialPage),
         "</a> for more information on how to improve your web ranking.<br><br><hr size=1>");
    if (preference.LogoPosition != 0) addLogo();
    std::string_view site = preference.SiteURL;
    // Always removes seven characters, so an "https" address keeps a slash.
    if (startsWithNoCase(site, "http")) site.remove_prefix(std::min<std::size_t>(7, site.size()));
    line("<font face=arial size =1>This report is generated by : <a href=http://", target(site), ">",
         value(preference.Company), "</a>");
    line("<br>");
    line("Email: <a href=mailto:", target(preference.Email), ">", value(preference.name), "</a> ");
    line("Web: <a href=http://", target(site), ">", value(site), "</a>");
    line("</font></td></tr></table>");
    add("</body></html>");
}

std::string underscored(std::string text) {
    for (char& c : text)
        if (c == '/' || c == '?' || c == '=') c = '_';
    return text;
}

}  // namespace

std::string buildOptimizerReport(const OptimizerInput& input) {
    return ReportText(input, Viewer::Browser).build();
}

std::string optimizerAddress(std::string_view typed) {
    const bool whole = startsWithNoCase(typed, "http") || localPath(typed, TypedIn::Field);
    return (whole ? "" : "http://") + std::string(typed);
}

std::string reportForWindow(const OptimizerInput& input) {
    constexpr std::size_t kLongest = 128 * 1024;
    constexpr std::size_t kMostKeywords = 200;  // more make it longer anyway
    ReportText text(input, Viewer::Window);
    if (text.keywordCount() > kMostKeywords) return {};
    std::string report = text.build();
    return report.size() > kLongest ? std::string() : report;
}

std::string optimizerReportName(std::string_view address) {
    const std::string name = startsWithNoCase(address, "http")
                                 ? GetURLHost(address) + "_" + underscored(GetURLPath(address))
                                 : getFileNameFromFile(address);
    return distinctFileName(mendedFileName(name, name.size())) + ".html";
}

}  // namespace relay
