// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/KeywordBuilder.h"

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
#include "pagetools/DoorwayPage.h"
#include "pagetools/KeywordLists.h"
#include "pagetools/PageFiles.h"
#include "projects/WebsiteKeys.h"
#include "ranking/RankingProfiles.h"
#include "transport/frmHTTP.h"

#include <array>

namespace relay {

namespace {

constexpr std::string_view kPurpose = "KeywordBuilder";
constexpr std::string_view kTitle = "Keyword Builder";
constexpr std::string_view kSection = "KeywordBuilder";
constexpr std::string_view kBreak = "\r\n";
constexpr int kHistory = 30;
constexpr int kPause = 10;  // milliseconds between two pages

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

}  // namespace

std::vector<std::string> getURL(const KeywordEngine& engine, std::string_view html, std::size_t limit) {
    std::vector<std::string> found;
    if (!engine.engine.NoFoundString.empty() && toUpper(html).find(engine.engine.NoFoundString) != npos)
        return found;
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
    m_fetcher.setConsumer(kPurpose, {[this](const FetchReply& reply) { takeReply(reply); },
                                     [this](const FetchReply& reply) { takeReply(reply); },
                                     [this] {
                                         m_nStage = 0;
                                         finish();
                                     }});
    m_Timer1.setSingleShot(true);
    m_Timer1.setInterval(kPause);
    connect(&m_Timer1, &QTimer::timeout, this, [this] { fetchNext(); });
}

KeywordBuilder::~KeywordBuilder() {
    m_fetcher.removeConsumer(kPurpose);
    if (m_fetcher.isRunning(kPurpose)) m_fetcher.Disconnect();
}

void KeywordBuilder::load() {
    m_history = LoadInputHistory(historyFile(m_services), kSection, kHistory);
    if (catalogue.loadEngine() && !catalogue.offered().Engine.empty())
        catalogue.loadEngineData(catalogue.offered().Engine);
}

void KeywordBuilder::unload() {
    trap(m_services.prompts,
         "SaveInputHistory_Error: ", [&] { SaveInputHistory(historyFile(m_services), kSection, m_history); });
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
    if (m_services.preference.PromptConnection != 0 &&
        !m_services.prompts.ask(
            "Please make sure you are connected to the internet and click on the 'Yes' button.\r\n\r\nDo you "
            "want to continue ?",
            kTitle))
        return;
    AddInputHistory(m_history, phrase);
    if (!gather(phrase)) setStatus("Another page is being retrieved. Please try again.");
}

bool KeywordBuilder::gather(const std::string& phrase) {
    if (m_running || m_fetcher.isRunning()) return false;
    txtKeywordList.clear();
    m_sURLList.clear();
    m_problems.clear();
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
        finish();
}

void KeywordBuilder::finish() {
    if (!m_running) return;
    m_running = false;
    setStatus({});
    Q_EMIT done();
}

void KeywordBuilder::takeReply(const FetchReply& reply) {
    const std::string problem = fetchProblem(reply);
    if (!problem.empty()) m_problems.push_back(problem);
    ProcessData(reply.isPage() ? std::string_view(reply.text) : std::string_view());
}

void KeywordBuilder::ProcessData(std::string_view response) {
    trapAndLog(
        m_services, "ProcessData_Error: ",
        [&] {
            const std::int16_t number = catalogue.NumOfURLs();
            if (m_nStage == 0) {
                m_nStage = 1;
                m_nURLIndex = 0;
                m_sURLList = getURL(catalogue.engine(), response,
                                    static_cast<std::size_t>(std::max<std::int16_t>(number, 0)));
            } else if (!response.empty()) {
                const std::string_view separator = onePerLine ? kBreak : std::string_view(",");
                txtKeywordList.append(getKeywords(m_services, response, separator)).append(kBreak);
                Q_EMIT listChanged();
            }
            ++m_nURLIndex;
        },
        {}, kTitle);
    if (m_nURLIndex <= catalogue.NumOfURLs()) {
        m_Timer1.start();
        return;
    }
    m_running = false;
    m_services.prompts.beep();
    m_services.prompts.message("Done !", kTitle);
    setStatus("Done");
    Q_EMIT done();
}

// A slot without an address counts as an empty page.
void KeywordBuilder::fetchNext() {
    const auto place = static_cast<std::size_t>(m_nURLIndex) - 1;
    if (place >= m_sURLList.size())
        ProcessData({});
    else if (!m_fetcher.fetch(kPurpose, m_sURLList[place]))
        m_Timer1.start();  // another tool has the fetcher
}

void KeywordBuilder::saveKeywords() {
    trapAndLog(
        m_services, "saveKeywords_Error: ",
        [&] {
            const std::string folder = m_services.paths.inApp("Keywords");
            makeFolder(folder);
            int filter = 1;
            std::string file =
                ShowFileDialog(m_services.prompts, true, "Text files (*.txt)|*.txt|All Files (*.*)|*.*|",
                               folder, {}, filter);
            if (file.empty()) return;
            if (!endsWithNoCase(file, ".txt")) file += ".txt";
            if (fileExists(file) &&
                !m_services.prompts.ask("The file " + file + " already exists, do you want to replace it?",
                                        "Save URL"))
                return;
            writeFile(file, txtKeywordList);
            setStatus("Save");
        },
        {}, kTitle);
}

std::vector<std::string> KeywordBuilder::keywords() const {
    return withoutDuplicates(keywordsOf(txtKeywordList));
}

void KeywordBuilder::removeDuplicates() {
    std::string list;
    for (const std::string& keyword : keywords())
        list.append(list.empty() ? std::string_view()
                    : onePerLine ? kBreak
                                 : std::string_view(","))
            .append(keyword);
    txtKeywordList = list.empty() ? list : list + std::string(kBreak);
    Q_EMIT listChanged();
}

bool KeywordBuilder::sendToWebsite(const std::string& file) {
    return trap(m_services.prompts, "Module: SendKeywords\r\n", [&] {
        requireWebsite(file);
        const std::string text = joinedKeywords(keywords(), IniFile::kShortLimit);
        setKeys(file, {{"Keyword", text}});
        setStatus(std::to_string(keywordsOf(text).size()) + " of " + std::to_string(keywords().size()) +
                  " keywords were sent.");
    });
}

bool KeywordBuilder::sendToProfile(const std::string& profile) {
    return trap(m_services.prompts, "Module: SendKeywords\r\n", [&] {
        const RankingProfiles profiles(m_services.paths);
        RankingSetup setup = profiles.load(profile).setup;
        setup.profile = profile;
        setup.keywords = joinedKeywords(keywords(), IniFile::kShortLimit);
        profiles.saveProfile(setup);
        setStatus(std::to_string(keywordsOf(setup.keywords).size()) + " of " +
                  std::to_string(keywords().size()) + " keywords were sent.");
    });
}

void KeywordBuilder::sendToDoorway(DoorwayFields& fields) const {
    setDoorwayKeywords(fields, keywords());
}

}  // namespace relay
