// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/Rows.h"

#include <QObject>
#include <QTimer>

#include <string>
#include <string_view>
#include <vector>

namespace relay {

class frmHTTP;
struct FetchReply;
struct FoundPage;
struct Services;

// Counts the words of pages, and the sequences of two and three. Members are named after their controls.
class WordCount final : public QObject {
    Q_OBJECT
  public:
    // Receives the fetcher's replies for its purpose as long as it lives; both arguments outlive it.
    WordCount(frmHTTP& fetcher, const Services& services, QObject* parent = nullptr);
    ~WordCount() override;

    std::size_t fewest = 1;  // words of a sequence
    std::size_t most = 3;
    Rows lsvWords;  // text the words, sub-item 1 how often; the most frequent ones

    // Counts the pages of a text, an address or a local file a line. `known` pages are not fetched again.
    // Waits while another tool has the fetcher.
    void start(std::string_view txtPages, const std::vector<FoundPage>& known);
    // The words of the last count stay.
    void cancel();
    bool isRunning() const noexcept { return m_running; }
    std::size_t pages() const noexcept { return m_names.size(); }
    std::size_t pagesRead() const noexcept { return m_read; }
    const std::string& status() const noexcept { return m_status; }
    // Why pages are missing or not complete.
    const std::vector<std::string>& problems() const noexcept { return m_problems; }
    // The highlighted words.
    std::vector<std::string> chosen() const;

  Q_SIGNALS:
    void stateChanged();

  private:
    void readNext();
    void takePage(std::string_view html);
    void takeReply(const FetchReply& reply);
    void finish(std::string status);
    void showWords();

    frmHTTP& m_fetcher;
    const Services& m_services;
    QTimer m_next;
    std::vector<std::string> m_names;
    std::vector<FoundPage> m_known;
    std::vector<std::string> m_problems;
    std::string m_text;
    std::string m_status;
    std::size_t m_read = 0;
    bool m_running = false;
};

}  // namespace relay
