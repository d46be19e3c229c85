// SPDX-License-Identifier: GPL-3.0-or-later
#include "ranking/frmKeywordBuilder.h"

#include "core/ScreenText.h"
#include "core/Services.h"
#include "core/Text.h"
#include "pagetools/KeywordLists.h"
#include "ranking/ui_frmKeywordBuilder.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QShortcut>
#include <QSignalBlocker>

namespace relay {

namespace {

constexpr int kProgressCharacters = 24;

std::string bytesOf(const QPlainTextEdit& edit) {
    return fromScreen(typedText(edit).replace(QLatin1Char('\n'), QStringLiteral("\r\n")));
}

void offer(QComboBox& box, QPushButton& button, const std::vector<KeywordTarget>& targets,
           const QString& none) {
    const QString chosen = box.currentText();
    box.clear();
    for (const KeywordTarget& target : targets) box.addItem(toScreen(target.name));
    box.setPlaceholderText(none);
    box.setEnabled(!targets.empty());
    button.setEnabled(!targets.empty());
    box.setCurrentIndex(targets.empty() ? -1 : std::max(0, box.findText(chosen)));
}

}  // namespace

frmKeywordBuilder::frmKeywordBuilder(const Services& services, frmHTTP& fetcher, Hub hub, QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::frmKeywordBuilder>()),
      m_hub(std::move(hub)),
      m_builder(fetcher, services),
      m_words(fetcher, services),
      m_ProgressBar1(new QProgressBar(this)),
      m_lblCount(new QLabel(this)) {
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    m_ProgressBar1->setObjectName(QStringLiteral("ProgressBar1"));
    m_ProgressBar1->setAccessibleName(tr("Pages fetched"));
    m_ProgressBar1->setFixedWidth(fontMetrics().averageCharWidth() * kProgressCharacters);
    m_lblCount->setObjectName(QStringLiteral("lblCount"));
    m_ui->StatusBar1->addPermanentWidget(m_ProgressBar1);
    m_ui->StatusBar1->addPermanentWidget(m_lblCount);
    connectFind();
    connectList();
    connectCombine();
    connectCount();
    connectSend();
    addKeys();
    describePlaceholders(*this);
    makeReachable(*m_ui->imgSpliter, tr("Drag to make the list wider or narrower, or press Alt+Right and "
                                        "Alt+Left"));
    m_ui->imgSpliter->setSizes({width() / 2, width() / 2});
    showRun();
    showWords();
    showList();
    CenterForm(*this);
}

frmKeywordBuilder::~frmKeywordBuilder() = default;

void frmKeywordBuilder::addKeys() {
    for (int tab = 0; tab < m_ui->SSTab1->count(); ++tab) {
        const QKeySequence keys(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + tab));
        m_ui->SSTab1->setTabToolTip(tab, keys.toString(QKeySequence::NativeText));
        connect(new QShortcut(keys, this), &QShortcut::activated, this, [this, tab] {
            m_ui->SSTab1->setCurrentIndex(tab);
            focusFirst(*m_ui->SSTab1->currentWidget());
        });
    }
    connect(new QShortcut(QKeySequence::Save, this), &QShortcut::activated, m_ui->Command1_1,
            &QPushButton::click);
}

void frmKeywordBuilder::connectFind() {
    m_ui->cboKeywords->lineEdit()->setPlaceholderText(tr("What people would search for"));
    m_ui->cboKeywords->lineEdit()->setAccessibleName(m_ui->cboKeywords->accessibleName());
    connect(m_ui->cboEngine, &QComboBox::activated, &m_builder, &KeywordBuilder::chooseEngine);
    connect(m_ui->Command1_0, &QPushButton::clicked, this, &frmKeywordBuilder::get);
    connect(&m_builder, &KeywordBuilder::stateChanged, this, &frmKeywordBuilder::showRun);
    connect(&m_builder, &KeywordBuilder::listChanged, this, &frmKeywordBuilder::showList);
    connect(&m_builder, &KeywordBuilder::done, this, &frmKeywordBuilder::offerPages);
}

void frmKeywordBuilder::connectList() {
    m_ui->Command1_1->setIcon(themedIcon("Save"));
    connect(m_ui->Option1_0, &QRadioButton::toggled, this, [this](bool on) { m_builder.onePerLine = on; });
    connect(m_ui->txtKeywordList, &QPlainTextEdit::textChanged, this, [this] {
        m_builder.edit(bytesOf(*m_ui->txtKeywordList));
        showCount();
    });
    connect(m_ui->cmdRemoveDuplicates, &QPushButton::clicked, &m_builder, &KeywordBuilder::removeDuplicates);
    connect(m_ui->Command1_1, &QPushButton::clicked, &m_builder, &KeywordBuilder::saveKeywords);
    connect(m_ui->Command1_2, &QPushButton::clicked, this, &QDialog::reject);
}

void frmKeywordBuilder::connectCombine() {
    connect(m_ui->cmdCombine, &QPushButton::clicked, this,
            [this] { m_builder.combine(bytesOf(*m_ui->txtFirst), bytesOf(*m_ui->txtSecond)); });
}

void frmKeywordBuilder::connectCount() {
    m_ui->txtMost->setValue(static_cast<int>(m_words.most));
    m_ui->lsvWords->setRows(&m_words.lsvWords, {8});
    needSelection(*m_ui->lsvWords, *m_ui->cmdAddWords, tr("Adds the selected words to the keyword list"),
                  tr("Select words first."));
    connect(m_ui->txtFewest, &QSpinBox::valueChanged, this, [this](int words) {
        m_words.fewest = static_cast<std::size_t>(words);
        m_ui->txtMost->setMinimum(words);
    });
    connect(m_ui->txtMost, &QSpinBox::valueChanged, this,
            [this](int words) { m_words.most = static_cast<std::size_t>(words); });
    connect(m_ui->cmdCount, &QPushButton::clicked, this, &frmKeywordBuilder::count);
    connect(m_ui->cmdAddWords, &QPushButton::clicked, this, [this] { m_builder.add(m_words.chosen()); });
    connect(m_ui->lsvWords, &ListView::rowActivated, this, [this] { m_builder.add(m_words.chosen()); });
    connect(&m_words, &WordCount::stateChanged, this, &frmKeywordBuilder::showWords);
}

void frmKeywordBuilder::connectSend() {
    connect(m_ui->cmdSendWebsite, &QPushButton::clicked, this, &frmKeywordBuilder::sendToWebsite);
    connect(m_ui->cmdSendProfile, &QPushButton::clicked, this, [this] {
        const auto place = static_cast<std::size_t>(m_ui->cboProfile->currentIndex());
        if (place < m_profiles.size()) m_builder.sendToProfile(m_profiles[place], chosenKeywords());
    });
    m_ui->fraDoorway->setVisible(m_hub.makeDoorways != nullptr);
    connect(m_ui->cmdSendDoorway, &QPushButton::clicked, this,
            [this] { m_hub.makeDoorways(withoutDuplicates(chosenKeywords())); });
}

void frmKeywordBuilder::get() {
    const QString phrase = m_ui->cboKeywords->currentText();
    m_builder.Command1(fromScreen(phrase));
    showHistory(phrase);
}

void frmKeywordBuilder::count() {
    if (m_words.isRunning())
        m_words.cancel();
    else
        m_words.start(bytesOf(*m_ui->txtPages), m_builder.pages());
}

// What is typed into the panel is saved first and the panel reads the file again, so that neither overwrites
// the other.
void frmKeywordBuilder::sendToWebsite() {
    const auto place = static_cast<std::size_t>(m_ui->cboWebsite->currentIndex());
    if (place >= m_websites.size()) return;
    if (m_hub.saveWebsite && !m_hub.saveWebsite()) return;
    const bool sent = m_builder.sendToWebsite(m_websites[place], chosenKeywords());
    if (sent && m_hub.readWebsite) m_hub.readWebsite();
}

bool frmKeywordBuilder::isRunning() const {
    return m_builder.isRunning() || m_words.isRunning();
}

void frmKeywordBuilder::cancel() {
    m_builder.cancel();
    m_words.cancel();
}

void frmKeywordBuilder::load() {
    m_builder.load();
    showEngines();
    showHistory(m_ui->cboKeywords->currentText());
    showTargets();
    m_ui->cboKeywords->setFocus(Qt::OtherFocusReason);
}

void frmKeywordBuilder::done(int result) {
    cancel();
    m_builder.unload();
    QDialog::done(result);
}

void frmKeywordBuilder::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && isRunning())
        cancel();
    else
        QDialog::keyPressEvent(event);
}

void frmKeywordBuilder::showEngines() {
    m_ui->cboEngine->clear();
    for (const std::string& name : m_builder.catalogue.offered().names)
        m_ui->cboEngine->addItem(toScreen(name));
    showRun();
}

void frmKeywordBuilder::showHistory(const QString& text) {
    m_ui->cboKeywords->clear();
    for (const std::string& phrase : m_builder.history()) m_ui->cboKeywords->addItem(toScreen(phrase));
    m_ui->cboKeywords->setEditText(text);
}

// The website in the panel comes first.
void frmKeywordBuilder::showTargets() {
    m_websites = m_builder.websites();
    m_profiles = m_builder.profiles();
    offer(*m_ui->cboWebsite, *m_ui->cmdSendWebsite, m_websites, tr("No website yet"));
    offer(*m_ui->cboProfile, *m_ui->cmdSendProfile, m_profiles, tr("No ranking profile yet"));
    const std::string open = m_hub.openWebsite ? m_hub.openWebsite() : std::string();
    for (std::size_t place = 0; place < m_websites.size(); ++place)
        if (!open.empty() && m_websites[place].file == open)
            m_ui->cboWebsite->setCurrentIndex(static_cast<int>(place));
}

// The pages that were found are counted without being fetched again. What the user typed stays.
void frmKeywordBuilder::offerPages() {
    std::string pages;
    for (const FoundPage& page : m_builder.pages())
        pages.append(pages.empty() ? "" : "\r\n").append(page.URL);
    const std::string typed = bytesOf(*m_ui->txtPages);
    if (pages.empty() || (!typed.empty() && typed != m_offered)) return;
    m_offered = pages;
    m_ui->txtPages->setPlainText(toScreen(replaceAll(pages, "\r\n", "\n")));
}

void frmKeywordBuilder::showRun() {
    const bool running = m_builder.isRunning();
    m_ui->Command1_0->setText(toScreen(m_builder.caption()));
    m_ui->Command1_0->setIcon(themedIcon(running ? "Stop" : "Search"));
    m_ui->Command1_0->setToolTip(running ? tr("Stops gathering (Escape)")
                                         : tr("Gathers the keywords (Return)"));
    m_ui->Command1_0->setDefault(!running);
    // Alt+C is the other button's while it says Cancel.
    m_ui->Command1_2->setText(running ? tr("Close") : tr("&Close"));
    m_ui->cmdCount->setEnabled(!running);
    m_ui->cboEngine->setCurrentIndex(m_builder.engine());
    m_ui->cboEngine->setEnabled(!running && m_ui->cboEngine->count() > 0);
    showProblems(m_builder.problems());
    m_ui->StatusBar1->showMessage(toScreen(m_builder.status()));
    showProgress(running ? m_builder.rounds() : 0, m_builder.catalogue.NumOfURLs() + 1);
}

void frmKeywordBuilder::showWords() {
    const bool running = m_words.isRunning();
    m_ui->cmdCount->setText(running ? tr("Ca&ncel") : tr("C&ount"));
    m_ui->cmdCount->setIcon(running ? themedIcon("Stop") : QIcon());
    m_ui->Command1_0->setEnabled(!running);
    showProblems(m_words.problems());
    m_ui->StatusBar1->showMessage(toScreen(m_words.status()));
    showProgress(static_cast<int>(m_words.pagesRead()), static_cast<int>(m_words.pages()));
}

void frmKeywordBuilder::showProblems(const std::vector<std::string>& problems) {
    QStringList lines;
    for (const std::string& problem : problems) lines << toScreen(problem);
    m_ui->lblProblems->setVisible(!lines.isEmpty());
    m_ui->txtProblems->setVisible(!lines.isEmpty());
    const QString text = lines.join(QLatin1Char('\n'));
    if (m_ui->txtProblems->toPlainText() != text) m_ui->txtProblems->setPlainText(text);
}

void frmKeywordBuilder::showProgress(int done, int all) {
    m_ProgressBar1->setVisible(isRunning());
    m_ProgressBar1->setRange(0, std::max(1, all));
    m_ProgressBar1->setValue(std::min(done, all));
}

// What was added goes behind what is shown, so that a long list is not drawn anew for each page.
void frmKeywordBuilder::showList() {
    QPlainTextEdit& edit = *m_ui->txtKeywordList;
    const QSignalBlocker quiet(edit);
    const QString list =
        toScreen(m_builder.txtKeywordList).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    const QString shown = typedText(edit);
    QTextCursor end(edit.document());
    end.movePosition(QTextCursor::End);
    if (!shown.isEmpty() && list.startsWith(shown))
        end.insertText(list.mid(shown.size()));
    else
        edit.setPlainText(list);
    edit.moveCursor(QTextCursor::End);
    showCount();
}

void frmKeywordBuilder::showCount() {
    const std::size_t count = keywordsOf(m_builder.txtKeywordList).size();
    m_lblCount->setText(tr("Keywords: %1").arg(static_cast<qulonglong>(count)));
    m_ui->cmdRemoveDuplicates->setEnabled(count > 0);
}

std::vector<std::string> frmKeywordBuilder::chosenKeywords() const {
    const QString selected = m_ui->txtKeywordList->textCursor().selectedText();
    if (selected.isEmpty()) return keywordsOf(m_builder.txtKeywordList);
    return keywordsOf(fromScreen(QString(selected).replace(QChar::ParagraphSeparator, QLatin1Char('\n'))));
}

}  // namespace relay
