// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/KeywordBuilder.h"

#include "core/Failure.h"
#include "core/FileStore.h"
#include "core/FileSystem.h"
#include "core/IniFile.h"
#include "core/InputHistory.h"
#include "core/Log.h"
#include "core/LoggedTrap.h"
#include "core/Paths.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/Url.h"
#include "core/clsPreference.h"
#include "pagetools/KeywordLists.h"
#include "pagetools/PageFiles.h"
#include "projects/ProjectStore.h"
#include "projects/WebsiteKeys.h"
#include "ranking/RankingProfiles.h"
#include "transport/frmHTTP.h"

#include <algorithm>
#include <array>

namespace relay {

namespace {

constexpr std::string_view kPurpose = "KeywordBuilder";
constexpr std::string_view kTitle = "Keyword Builder";
constexpr std::string_view kSection = "KeywordBuilder";
constexpr std::string_view kBreak = "\r\n";
constexpr int kHistory = 30;
constexpr int kPause = 10;                                        // milliseconds between two pages
constexpr std::size_t kMostKept = std::size_t{32} * 1024 * 1024;  // bytes of pages
// Of a keyword list's line: longer ones take long to draw.
constexpr std::size_t kLongestLine = 1000;  // keywords
constexpr std::size_t kMostCombined = 100'000;
constexpr std::size_t kMostShown = 200;  // bytes of old keywords, in a question

std::string historyFile(const Services& services) {
    return services.paths.inWindows("apikrv.dmc");
}

std::string withoutBreaks(std::string_view html) {
    return replaceAll(replaceAll(html, "\r", ""), "\n", "");
}

// The first character of the end marker stays, as in a ranking.
std::string_view resultList(std::string_view html, const RankEngine& engine) {
    const std::size_t start = html.find(engine.ResultStartString);
    if (start == npos) return html;
    html.remove_prefix(start + engine.ResultStartString.size());
    const std::size_t end = html.find(engine.ResultEndString);
    return end == npos ? html : html.substr(0, end + 1);
}

bool isOwn(std::string_view address, const RankEngine& engine) {
    const std::array<std::string_view, 4> marks = {engine.EngineKey, "this site only", "Text-only version",
                                                   "more this site"};
    return std::any_of(marks.begin(), marks.end(),
                       [address](std::string_view mark) { return address.find(mark) != npos; });
}

// As many keywords as fit; throws Failure when there is none.
std::string textToSend(const std::vector<std::string>& keywords, std::size_t limit) {
    if (keywords.empty()) throw Failure("There are no keywords to send.", 5);
    std::string text = joinedKeywords(keywords, limit);
    if (text.empty())
        throw Failure(
            "The first keyword is longer than the " + std::to_string(limit) + " characters that fit.", 5);
    return text;
}

}  // namespace

std::vector<std::string> getURL(const KeywordEngine& engine, std::string_view html, std::size_t limit) {
    std::vector<std::string> found;
    // As in a ranking, an empty mark is in every page.
    if (toUpper(html).find(engine.engine.NoFoundString) != npos) return found;
    const std::string flat = withoutBreaks(html);
    std::string_view list = resultList(flat, engine.engine);
    if (engine.URLStartString.empty() || engine.URLEndString.empty()) return found;
    while (found.size() < limit) {
        const std::size_t start = list.find(engine.URLStartString);
        if (start == npos) break;
        // Many records have the end's quote in the start, too; that one is not meant.
        const std::size_t first = start + engine.URLStartString.size();
        const std::size_t end = list.find(engine.URLEndString, first);
        if (end == npos) break;
        const std::string_view candidate = trim(list.substr(first, end - first));
        if (!isOwn(candidate, engine.engine))
            found.push_back(
                EncodeString((candidate.starts_with("http://") ? "" : "http://") + std::string(candidate)));
        list.remove_prefix(end);
    }
    return found;
}

std::string getKeywords(const Services& services, std::string_view html, std::string_view separator) {
    PageTexts page;
    readMetaTag(services, html, page);
    std::string_view rest = page.tags.keywords;
    std::string joined;
    while (!rest.empty()) {
        const std::size_t comma = std::min(rest.find(','), rest.size());
        const std::string_view entry = trim(rest.substr(0, comma));
        rest.remove_prefix(std::min(comma + 1, rest.size()));
        if (entry.empty() || entry == "\r" || entry == kBreak) continue;
        joined.append(joined.empty() ? std::string_view() : separator).append(entry);
    }
    return joined;
}

std::string GetURLName(std::string_view text) {
    const std::size_t start = text.find("http");
    if (start != npos) text.remove_prefix(start);
    text = text.substr(0, text.find(' '));
    return std::string(text.substr(0, text.find('"')));
}

KeywordBuilder::KeywordBuilder(frmHTTP& fetcher, const Services& services, QObject* parent)
    : QObject(parent), catalogue(services), m_fetcher(fetcher), m_services(services) {
    m_fetcher.setConsumer(
        kPurpose, {[this](const FetchReply& reply) { takeReply(reply); },
                   [this](const FetchReply& reply) { takeReply(reply); }, [this] { finish("Cancelled"); }});
    m_Timer1.setSingleShot(true);
    m_Timer1.setInterval(kPause);
    connect(&m_Timer1, &QTimer::timeout, this, [this] { fetchNext(); });
}

KeywordBuilder::~KeywordBuilder() {
    m_fetcher.removeConsumer(kPurpose);
    if (m_fetcher.isRunning(kPurpose)) m_fetcher.Disconnect();
}

// The engine that the catalogue names first, or else the first one.
void KeywordBuilder::load() {
    trapAndLog(
        m_services, "Form_Load_Error: ",
        [this] {
            m_history = LoadInputHistory(historyFile(m_services), kSection, kHistory);
            m_engine = -1;
            if (!catalogue.loadEngine()) return;
            const KeywordEngines& offered = catalogue.offered();
            const auto first =
                std::find_if(offered.names.begin(), offered.names.end(),
                             [&](const std::string& name) { return equalsNoCase(name, offered.Engine); });
            if (!offered.names.empty())
                chooseEngine(first == offered.names.end() ? 0
                                                          : static_cast<int>(first - offered.names.begin()));
        },
        {}, kTitle);
}

void KeywordBuilder::chooseEngine(int engine) {
    const std::vector<std::string>& names = catalogue.offered().names;
    const bool known = engine >= 0 && static_cast<std::size_t>(engine) < names.size();
    m_engine = known && catalogue.loadEngineData(names[static_cast<std::size_t>(engine)]) ? engine : -1;
    Q_EMIT stateChanged();
}

void KeywordBuilder::unload() {
    trap(m_services.prompts, "SaveInputHistory_Error: ", [this] {
        ExtendInputHistory(historyFile(m_services), kSection, kHistory, m_newPhrases);
        m_newPhrases.clear();
    });
}

void KeywordBuilder::setStatus(std::string text) {
    m_status = std::move(text);
    Q_EMIT stateChanged();
}

void KeywordBuilder::Command1(const std::string& phrase) {
    if (m_running) {
        cancel();
        return;
    }
    const auto refuse = [this](std::string_view text) {
        m_services.prompts.message(text, kTitle, Icon::Information);
    };
    // A blank phrase would also end the list of earlier ones.
    if (trim(phrase).empty()) return refuse("Please enter the keywords you would like to search for.");
    if (m_engine < 0) return refuse("Please choose a search engine.");
    trapAndLog(
        m_services, "cmdGet_Error: ",
        [&] {
            if (m_services.preference.PromptConnection != 0 &&
                !m_services.prompts.ask(
                    "Please make sure you are connected to the internet and click on the 'Yes' "
                    "button.\r\n\r\nDo you want to continue ?",
                    kTitle))
                return;
            if (m_touched && !keywordsOf(txtKeywordList).empty() &&
                !m_services.prompts.ask("The list has keywords that are not saved.\r\n\r\nDo you want to "
                                        "replace them?",
                                        kTitle))
                return;
            AddInputHistory(m_history, phrase);
            m_newPhrases.push_back(phrase);
            if (!gather(phrase)) setStatus("Another page is being retrieved. Please try again.");
        },
        {}, kTitle);
}

bool KeywordBuilder::gather(const std::string& phrase) {
    if (m_running || m_fetcher.isRunning()) return false;
    txtKeywordList.clear();
    m_sURLList.clear();
    m_problems.clear();
    m_pages.clear();
    m_touched = false;
    m_nStage = 0;
    m_nURLIndex = 0;
    m_running = true;
    Q_EMIT listChanged();
    setStatus("Please wait while retrieving data from the internet ... ");
    const RankEngine& engine = catalogue.engine().engine;
    m_fetcher.fetch(kPurpose,
                    engine.EngineURL + engine.QueryKeyword1 + EncodeURLValue(phrase) + engine.QueryKeyword2);
    return true;
}

void KeywordBuilder::cancel() {
    if (!m_running) return;
    m_Timer1.stop();
    if (m_fetcher.isRunning(kPurpose))
        m_fetcher.Disconnect();  // ends in the consumer
    else
        finish("Cancelled");
}

void KeywordBuilder::finish(std::string status) {
    if (!m_running) return;
    m_running = false;
    setStatus(std::move(status));
    Q_EMIT done();
}

void KeywordBuilder::takeReply(const FetchReply& reply) {
    const std::string problem = fetchProblem(reply);
    if (!problem.empty()) m_problems.push_back(problem);
    ProcessData(reply.isPage() ? std::string_view(reply.text) : std::string_view());
}

void KeywordBuilder::ProcessData(std::string_view response) {
    const std::int16_t number = catalogue.NumOfURLs();
    trapAndLog(
        m_services, "ProcessData_Error: ",
        [&] {
            if (m_nStage == 0) {
                m_nStage = 1;
                m_nURLIndex = 0;
                trapAndLog(
                    m_services, "GetURL_Error: ",
                    [&] {
                        m_sURLList = getURL(catalogue.engine(), response,
                                            static_cast<std::size_t>(std::max<std::int16_t>(number, 0)));
                    },
                    {}, kTitle);
            } else if (!response.empty()) {
                addPage(response);
            }
        },
        {}, kTitle);
    ++m_nURLIndex;
    Q_EMIT stateChanged();
    if (m_nURLIndex <= number) {
        m_Timer1.start();
        return;
    }
    m_services.prompts.beep();
    m_services.prompts.message("Done !", kTitle);
    finish("Done");
}

void KeywordBuilder::addPage(std::string_view response) {
    std::string keywords;
    trapAndLog(
        m_services, "getKeywords_Error: ",
        [&] { keywords = getKeywords(m_services, response, onePerLine ? kBreak : std::string_view(",")); },
        {}, kTitle);
    txtKeywordList.append(keywords).append(kBreak);
    const auto place = static_cast<std::size_t>(m_nURLIndex) - 1;
    std::size_t kept = response.size();
    for (const FoundPage& page : m_pages) kept += page.html.size();
    if (place < m_sURLList.size() && kept <= kMostKept)
        m_pages.push_back({m_sURLList[place], std::string(response)});
    Q_EMIT listChanged();
}

// The rounds without an address are over at once.
void KeywordBuilder::fetchNext() {
    const auto place = static_cast<std::size_t>(m_nURLIndex) - 1;
    if (place >= m_sURLList.size()) {
        m_nURLIndex = catalogue.NumOfURLs();
        ProcessData({});
    } else if (!m_fetcher.fetch(kPurpose, m_sURLList[place])) {
        m_Timer1.start();  // another tool has the fetcher
    }
}

void KeywordBuilder::edit(std::string list) {
    m_touched = true;
    txtKeywordList = std::move(list);
}

void KeywordBuilder::add(const std::vector<std::string>& keywords) {
    if (keywords.empty()) return;
    if (!txtKeywordList.empty() && !txtKeywordList.ends_with('\n')) txtKeywordList += kBreak;
    std::size_t inLine = 0;
    for (const std::string& keyword : keywords) {
        const bool newLine = onePerLine || inLine == kLongestLine;
        if (inLine > 0) txtKeywordList += newLine ? kBreak : std::string_view(",");
        inLine = newLine ? 1 : inLine + 1;
        txtKeywordList += keyword;
    }
    txtKeywordList += kBreak;
    m_touched = true;
    Q_EMIT listChanged();
}

bool KeywordBuilder::combine(std::string_view first, std::string_view second) {
    return trap(
        m_services.prompts, "Module: CombineKeywords\r\n",
        [&] {
            const std::vector<std::vector<std::string>> lists = {keywordsOf(first), keywordsOf(second)};
            if (lists[0].empty() || lists[1].empty())
                throw Failure("Please fill in both lists, one keyword a line.", 5);
            if (lists[0].size() * lists[1].size() > kMostCombined)
                throw Failure("The lists make more than " + std::to_string(kMostCombined) + " keywords.", 6);
            const std::vector<std::string> combined = combineKeywords(lists);
            add(combined);
            setStatus(std::to_string(combined.size()) + " keywords were added.");
        },
        kTitle);
}

void KeywordBuilder::saveKeywords() {
    setStatus({});
    trapAndLog(
        m_services, "saveKeywords_Error: ",
        [&] {
            const std::string folder = m_services.paths.inApp("Keywords");
            makeFolder(folder);
            int filter = 1;
            std::string file =
                ShowFileDialog(m_services.prompts, true, "Text files (*.txt)|*.txt|All Files (*.*)|*.*|",
                               folder, {}, filter, "Save Keywords");
            if (file.empty()) return;
            if (!endsWithNoCase(file, ".txt")) file += ".txt";
            if (fileExists(file) &&
                !m_services.prompts.ask("The file " + file + " already exists, do you want to replace it?",
                                        "Save URL"))
                return;
            writeFile(file, txtKeywordList);
            m_touched = false;
            setStatus("Save");
        },
        {}, kTitle);
}

void KeywordBuilder::removeDuplicates() {
    const std::vector<std::string> all = keywordsOf(txtKeywordList);
    const std::vector<std::string> kept = withoutDuplicates(all);
    txtKeywordList.clear();
    add(kept);
    setStatus(std::to_string(all.size() - kept.size()) + " duplicates were removed.");
}

std::vector<KeywordTarget> KeywordBuilder::websites() const {
    std::vector<KeywordTarget> targets;
    trap(m_services.prompts, "loadWebProfile_Error: ", [&] {
        for (const ProjectRecord& project : ProjectStore(m_services.paths.ProjectFilePath).loadProject())
            for (const WebsiteSlot& website : project.websites)
                if (!website.file.empty())
                    targets.push_back({project.name + " / " + website.name, website.file});
    });
    return targets;
}

std::vector<KeywordTarget> KeywordBuilder::profiles() const {
    std::vector<KeywordTarget> targets;
    trap(m_services.prompts, "loadWebProfile_Error: ", [&] {
        for (ProfileEntry& profile : RankingProfiles(m_services.paths).loadProfile())
            targets.push_back({std::move(profile.name), {}});
    });
    return targets;
}

bool KeywordBuilder::mayReplace(std::string_view owner, const std::string& old,
                                const std::string& text) const {
    if (trim(old).empty() || old == text) return true;
    const std::string shown = old.size() > kMostShown ? std::string(left(old, kMostShown)) + " ..." : old;
    return m_services.prompts.ask(
        std::string(owner) + " has these keywords:\r\n\r\n" + shown + "\r\n\r\nDo you want to replace them?",
        kTitle);
}

void KeywordBuilder::tellSent(const KeywordTarget& target, std::size_t sent, std::size_t all,
                              std::size_t limit) {
    std::string text =
        std::to_string(sent) + " of " + std::to_string(all) + " keywords were sent to " + target.name + ".";
    if (sent < all) text += " No more fit into " + std::to_string(limit) + " characters.";
    setStatus(text);
}

bool KeywordBuilder::sendToWebsite(const KeywordTarget& website, const std::vector<std::string>& keywords) {
    bool sent = false;
    setStatus({});
    trap(m_services.prompts, "Module: SendKeywords\r\n", [&] {
        requireWebsite(website.file);
        const std::vector<std::string> all = withoutDuplicates(keywords);
        const std::string text = textToSend(all, IniFile::kShortLimit);
        if (!mayReplace("The website " + website.name, getKey(website.file, "Keyword"), text)) return;
        setKeys(website.file, {{"Keyword", text}});
        tellSent(website, keywordsOf(text).size(), all.size(), IniFile::kShortLimit);
        sent = true;
    });
    return sent;
}

bool KeywordBuilder::sendToProfile(const KeywordTarget& profile, const std::vector<std::string>& keywords) {
    bool sent = false;
    setStatus({});
    trap(m_services.prompts, "Module: SendKeywords\r\n", [&] {
        const RankingProfiles profiles(m_services.paths);
        const std::string old = profiles.load(profile.name).setup.keywords;
        const std::vector<std::string> all = withoutDuplicates(keywords);
        const std::string text = textToSend(all, kLongestPhrase);
        if (!mayReplace("The profile " + profile.name, old, text)) return;
        profiles.setKeywords(profile.name, text);
        tellSent(profile, keywordsOf(text).size(), all.size(), kLongestPhrase);
        sent = true;
    });
    return sent;
}

}  // namespace relay
