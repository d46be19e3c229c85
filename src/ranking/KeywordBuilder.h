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
struct DoorwayFields;
struct FetchReply;
struct Services;

// The addresses of an engine's result page, at most `limit`, as the keyword builder takes them. Unlike in a
// ranking, case counts.
std::vector<std::string> getURL(const KeywordEngine& engine, std::string_view html, std::size_t limit);
// The keywords of a page, each without blanks around it, joined with the separator.
std::string getKeywords(const Services& services, std::string_view html, std::string_view separator);
// From the first "http" on, up to a blank or a double quote.
std::string GetURLName(std::string_view text);

// Gathers the keywords of the pages that an engine finds for a phrase. Members are named after their
// controls.
class KeywordBuilder final : public QObject {
    Q_OBJECT
  public:
    // Receives the fetcher's replies for its purpose as long as it lives; both arguments outlive it.
    KeywordBuilder(frmHTTP& fetcher, const Services& services, QObject* parent = nullptr);
    ~KeywordBuilder() override;

    KeywordCatalogue catalogue;
    std::string txtKeywordList;
    bool onePerLine = false;  // Option1(0) is the comma

    // At load and unload of the screen: the engines, and the earlier phrases, newest first.
    void load();
    void unload();
    const std::vector<std::string>& history() const noexcept { return m_history; }

    // The button: asks, if the settings say so, and gathers; or cancels.
    void Command1(const std::string& phrase);
    // Gathers with the engine that the catalogue has loaded. False while the fetcher is in use.
    bool gather(const std::string& phrase);
    void cancel();
    bool isRunning() const noexcept { return m_running; }
    std::string caption() const { return m_running ? "&Cancel" : "&Get"; }
    const std::string& status() const noexcept { return m_status; }
    // Why the engine's page did not come, if it did not; problems of the pages found.
    const std::vector<std::string>& problems() const noexcept { return m_problems; }

    // Asks where, and writes the list.
    void saveKeywords();
    // What the list has, duplicates removed.
    std::vector<std::string> keywords() const;
    // The list with each keyword once, separated as chosen.
    void removeDuplicates();
    // Sends the list on: to a website's keywords, a ranking profile's, the boxes of a doorway page. What does
    // not fit is left out and told. False after a failure.
    bool sendToWebsite(const std::string& file);
    bool sendToProfile(const std::string& profile);
    void sendToDoorway(DoorwayFields& fields) const;

  Q_SIGNALS:
    void stateChanged();  // caption and status
    void listChanged();
    void done();  // also after a cancel

  private:
    void takeReply(const FetchReply& reply);
    void ProcessData(std::string_view response);
    void fetchNext();
    void finish();
    void setStatus(std::string text);

    frmHTTP& m_fetcher;
    const Services& m_services;
    QTimer m_Timer1;
    std::vector<std::string> m_sURLList;
    std::vector<std::string> m_history;
    std::vector<std::string> m_problems;
    std::string m_status;
    int m_nStage = 0;     // 0 the result page is expected, 1 a found page
    int m_nURLIndex = 0;  // pages handled
    bool m_running = false;
};

}  // namespace relay
