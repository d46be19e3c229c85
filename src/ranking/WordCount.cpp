// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/WordCount.h"

#include "core/FileStore.h"
#include "core/Prompts.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/Trap.h"
#include "core/Url.h"
#include "pagetools/KeywordLists.h"
#include "ranking/KeywordBuilder.h"
#include "transport/HttpClient.h"
#include "transport/frmHTTP.h"

#include <algorithm>

namespace relay {

namespace {

constexpr std::string_view kPurpose = "KeywordCount";
constexpr std::size_t kMostText = std::size_t{4} * 1024 * 1024;  // bytes of all pages
constexpr std::size_t kMostRows = 10'000;
constexpr std::size_t kMostProblems = 100;
constexpr int kPause = 10;  // milliseconds between two pages

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        if (const std::string_view line = trim(text.substr(0, end)); !line.empty()) lines.emplace_back(line);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

}  // namespace

WordCount::WordCount(frmHTTP& fetcher, const Services& services, QObject* parent)
    : QObject(parent), m_fetcher(fetcher), m_services(services) {
    const auto take = [this](const FetchReply& reply) { takeReply(reply); };
    m_fetcher.setConsumer(kPurpose, {take, take, [this] { finish("Cancelled"); }});
    lsvWords.setColumns({"Words", "Count"});
    lsvWords.setNumberColumns({1});
    m_next.setSingleShot(true);
    m_next.setInterval(kPause);
    connect(&m_next, &QTimer::timeout, this, &WordCount::readNext);
}

WordCount::~WordCount() {
    m_fetcher.removeConsumer(kPurpose);
    if (m_fetcher.isRunning(kPurpose)) m_fetcher.Disconnect();
}

void WordCount::start(std::string_view txtPages, const std::vector<FoundPage>& known) {
    if (m_running) return;
    m_names = linesOf(txtPages);
    m_known = known;
    m_problems.clear();
    m_text.clear();
    m_read = 0;
    m_running = true;
    m_status = "Please wait while retrieving data from the internet ... ";
    Q_EMIT stateChanged();
    readNext();
}

void WordCount::cancel() {
    if (!m_running) return;
    m_next.stop();
    if (m_fetcher.isRunning(kPurpose))
        m_fetcher.Disconnect();  // ends in the consumer
    else
        finish("Cancelled");
}

void WordCount::finish(std::string status) {
    if (!m_running) return;
    m_running = false;
    m_known.clear();
    m_text.clear();
    m_status = std::move(status);
    Q_EMIT stateChanged();
}

void WordCount::readNext() {
    if (m_read == m_names.size()) {
        showWords();
        return;
    }
    const std::string& name = m_names[m_read];
    const auto known = std::find_if(m_known.begin(), m_known.end(),
                                    [&name](const FoundPage& page) { return page.URL == name; });
    if (known != m_known.end()) {
        takePage(known->html);
    } else if (const auto file = localPath(name, TypedIn::Field)) {
        std::string html;
        if (const auto failure = failureOf([&] { html = readFile(*file, HttpClient::kReplyLimit); }))
            m_problems.push_back(*failure);
        takePage(html);
    } else if (!m_fetcher.fetch(kPurpose, withScheme(name))) {
        m_next.start();  // another tool has the fetcher
    }
}

void WordCount::takeReply(const FetchReply& reply) {
    if (std::string problem = fetchProblem(reply); !problem.empty()) m_problems.push_back(std::move(problem));
    takePage(reply.isPage() ? std::string_view(reply.text) : std::string_view());
}

void WordCount::takePage(std::string_view html) {
    {
        const BusyPointer busy(m_services.prompts);
        if (!html.empty() && m_text.size() < kMostText) {
            const CountedText counted = countedText(html);
            m_text.append(counted.text).append("\n");
            if (!counted.problem.empty()) m_problems.push_back(m_names[m_read] + ": " + counted.problem);
        }
    }
    if (m_text.size() > kMostText) {
        m_text.resize(kMostText);
        m_problems.push_back(m_names[m_read] + ": Only the first 4 MB of all texts are counted");
    }
    if (m_problems.size() > kMostProblems) m_problems.resize(kMostProblems);
    ++m_read;
    Q_EMIT stateChanged();
    m_next.start();
}

void WordCount::showWords() {
    const BusyPointer busy(m_services.prompts);
    const std::vector<CountedWords> counted = countWords(m_text, fewest, most);
    {
        const RowsBatch batch(lsvWords);
        lsvWords.clear();
        for (std::size_t i = 0; i < std::min(counted.size(), kMostRows); ++i) {
            Row row;
            row.text = counted[i].words;
            row.subItems = {std::to_string(counted[i].count)};
            lsvWords.add(std::move(row));
        }
    }
    std::string status = std::to_string(counted.size()) + " words and phrases";
    if (counted.size() > kMostRows) status += ", the most frequent " + std::to_string(kMostRows) + " shown";
    finish(std::move(status));
}

std::vector<std::string> WordCount::chosen() const {
    std::vector<std::string> words;
    for (int row = 0; row < lsvWords.count(); ++row)
        if (lsvWords.at(row).highlighted) words.emplace_back(lsvWords.at(row).text);
    return words;
}

}  // namespace relay
