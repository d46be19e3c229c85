// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ranking/KeywordBuilder.h"
#include "ranking/WordCount.h"

#include <QDialog>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QComboBox;
class QLabel;
class QProgressBar;

namespace relay {

namespace Ui {
class frmKeywordBuilder;
}

// "Keyword Builder". It keeps its list while hidden. Escape first cancels what is being fetched, then closes
// the form.
class frmKeywordBuilder final : public QDialog {
    Q_OBJECT
  public:
    // What the form needs of the program's window.
    struct Hub final {
        std::function<std::string()> openWebsite;  // the file of the website in the panel; may be empty
        // Saves the panel; false when something typed was not saved.
        std::function<bool()> saveWebsite;
        // Reads the panel's website again if its file has changed.
        std::function<void()> readWebsite;
        // Opens the doorway page generator with the keywords.
        std::function<void(const std::vector<std::string>& keywords)> makeDoorways;
    };

    // The fetcher and the services outlive the form.
    frmKeywordBuilder(const Services& services, frmHTTP& fetcher, Hub hub, QWidget* parent = nullptr);
    ~frmKeywordBuilder() override;

    KeywordBuilder& builder() noexcept { return m_builder; }
    WordCount& words() noexcept { return m_words; }

    // Reads the engines, websites and profiles anew; for each time the form is shown.
    void load();
    // Cancels what is being fetched, and stores the earlier phrases.
    void done(int result) override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void addKeys();
    void connectFind();
    void connectList();
    void connectCombine();
    void connectCount();
    void connectSend();
    void get();
    void count();
    void sendToWebsite();
    bool isRunning() const;
    void cancel();
    void showEngines();
    void showHistory(const QString& text);
    void showTargets();
    void offerPages();
    void showRun();
    void showWords();
    void showProblems(const std::vector<std::string>& problems);
    void showProgress(int done, int all);
    void showList();
    void showCount();
    // The keywords selected in the list, or all.
    std::vector<std::string> chosenKeywords() const;

    std::unique_ptr<Ui::frmKeywordBuilder> m_ui;
    Hub m_hub;
    KeywordBuilder m_builder;
    WordCount m_words;
    QProgressBar* m_ProgressBar1;
    QLabel* m_lblCount;
    std::vector<KeywordTarget> m_websites;
    std::vector<KeywordTarget> m_profiles;
    std::string m_offered;  // the pages that were put into txtPages
};

}  // namespace relay
