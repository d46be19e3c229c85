// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/RankingCatalogue.h"

#include <QObject>
#include <QTimer>

#include <string>
#include <string_view>
#include <vector>

namespace relay {

class frmHTTP;
struct FetchReply;
struct Services;

// The addresses of an engine's result page, at most `limit`, as the keyword builder takes them. Unlike in a
// ranking, case counts.
std::vector<std::string> getURL(const KeywordEngine& engine, std::string_view html, std::size_t limit);
// The keywords of a page, each without blanks around it, joined with the separator.
std::string getKeywords(const Services& services, std::string_view html, std::string_view separator);
// From the first "http" on, up to a blank or a double quote.
std::string GetURLName(std::string_view text);

// A page that was found, as it was read.
struct FoundPage final {
    std::string URL;
    std::string html;
};

// Where a list can be sent.
struct KeywordTarget final {
    std::string name;
    std::string file;  // of a website; empty for a profile
};

// A list of keywords: gathers them from the pages that an engine finds for a phrase, takes more from other
// sources, saves the list and sends it on. Members are named after their controls.
class KeywordBuilder final : public QObject {
    Q_OBJECT
  public:
    // Receives the fetcher's replies for its purpose as long as it lives; both arguments outlive it.
    KeywordBuilder(frmHTTP& fetcher, const Services& services, QObject* parent = nullptr);
    ~KeywordBuilder() override;

    KeywordCatalogue catalogue;
    std::string txtKeywordList;
    bool onePerLine = false;  // Option1(0) rather than Option1(1)

    // At load and unload of the screen: the engines, and the earlier phrases, newest first.
    void load();
    void unload();
    // The chosen engine's place among those offered, or -1.
    int engine() const noexcept { return m_engine; }
    void chooseEngine(int engine);
    const std::vector<std::string>& history() const noexcept { return m_history; }

    // The button: asks, if the settings say so, and before keywords of another source are lost, and gathers;
    // or cancels.
    void Command1(const std::string& phrase);
    // Gathers with the engine that the catalogue has loaded. False while the fetcher is in use.
    bool gather(const std::string& phrase);
    void cancel();
    bool isRunning() const noexcept { return m_running; }
    std::string caption() const { return m_running ? "&Cancel" : "&Get"; }
    const std::string& status() const noexcept { return m_status; }
    // Why the engine's page did not come, if it did not; problems of the pages found.
    const std::vector<std::string>& problems() const noexcept { return m_problems; }
    // The addresses that the engine found, and how many of the rounds are over.
    const std::vector<std::string>& found() const noexcept { return m_sURLList; }
    int rounds() const noexcept { return m_nURLIndex; }
    // The pages that came, at most 32 MB of them.
    const std::vector<FoundPage>& pages() const noexcept { return m_pages; }

    // The list as the user changed it.
    void edit(std::string list);
    // Puts keywords behind those of the list, separated as chosen.
    void add(const std::vector<std::string>& keywords);
    // Adds every keyword of the first list before every one of the second.
    bool combine(std::string_view first, std::string_view second);
    // Asks where, and writes the list.
    void saveKeywords();
    // The list with each keyword once, separated as chosen.
    void removeDuplicates();

    // The websites of the projects that have a file, and the ranking profiles.
    std::vector<KeywordTarget> websites() const;
    std::vector<KeywordTarget> profiles() const;
    // Send keywords, each once, to a website's file and to a ranking profile. What does not fit is left out,
    // and the status says so. Ask before other keywords are replaced. False if nothing was sent.
    bool sendToWebsite(const KeywordTarget& website, const std::vector<std::string>& keywords);
    bool sendToProfile(const KeywordTarget& profile, const std::vector<std::string>& keywords);

  Q_SIGNALS:
    void stateChanged();  // caption and status
    void listChanged();
    void done();  // also after a cancel

  private:
    void takeReply(const FetchReply& reply);
    void ProcessData(std::string_view response);
    void addPage(std::string_view response);
    void fetchNext();
    void finish(std::string status);
    void setStatus(std::string text);
    bool mayReplace(std::string_view owner, const std::string& old, const std::string& text) const;
    void tellSent(const KeywordTarget& target, std::size_t sent, std::size_t all, std::size_t limit);

    frmHTTP& m_fetcher;
    const Services& m_services;
    QTimer m_Timer1;
    std::vector<std::string> m_sURLList;
    std::vector<std::string> m_history;
    std::vector<std::string> m_newPhrases;  // since the load
    std::vector<std::string> m_problems;
    std::vector<FoundPage> m_pages;
    std::string m_status;
    int m_engine = -1;
    int m_nStage = 0;     // 0 the result page is expected, 1 a found page
    int m_nURLIndex = 0;  // pages handled
    bool m_running = false;
    bool m_touched = false;  // the list has something that was neither gathered nor saved
};

}  // namespace relay
