// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/frmWebsitePanel.h"

#include "catalogue/Categories.h"
#include "catalogue/EngineLists.h"
#include "core/ScreenText.h"
#include "projects/CategoryWalk.h"
#include "projects/ui_frmWebsitePanel.h"
#include "widgets/Contrast.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"
#include "widgets/ListView.h"

#include <QAction>
#include <QSignalBlocker>
#include <QToolButton>

namespace relay {

namespace {
constexpr int kLineCharacters = 150;  // width of a page of one-line fields
constexpr int kKeywordsLimit = 200;
constexpr int kDescriptionLimit = 250;

// Shows the number of characters in a box beside it. `limit` is a recommendation; a longer text is allowed.
void showCount(const QPlainTextEdit& edit, QLabel& label, int limit) {
    const auto show = [&edit, &label, limit] {
        const auto count = edit.toPlainText().toUcs4().size();
        QFont font = edit.font();
        font.setBold(count > limit);
        label.setFont(font);
        label.setText(QStringLiteral("%1 of %2").arg(count).arg(limit));
    };
    QObject::connect(edit.document(), &QTextDocument::contentsChanged, &label, show);
    show();
}

// The text with the first occurrence of the letter underlined.
QString withMnemonic(const QString& text, QChar letter) {
    QString marked = text;
    const qsizetype place = marked.indexOf(letter);
    return place < 0 ? marked : marked.insert(place, QLatin1Char('&'));
}
}  // namespace

frmWebsitePanel::frmWebsitePanel(QWidget* parent)
    : QTabWidget(parent), m_ui(std::make_unique<Ui::frmWebsitePanel>()) {
    m_ui->setupUi(this);
    for (int tab = 0; tab < count(); ++tab)
        setTabToolTip(tab, pageKeys(tab).toString(QKeySequence::NativeText));
    makeToolbarReachable();
    drawIcons();
    for (QWidget* page : {m_ui->tabSiteInfo, m_ui->tabContact, static_cast<QWidget*>(m_ui->fraSiteURls)})
        limitWidth(*page, kLineCharacters);
    describePlaceholders(*this);
    for (QComboBox* box : {m_ui->cboWebType, m_ui->cboLanguage, m_ui->cboCountry})
        box->lineEdit()->setAccessibleName(box->accessibleName());
    showCount(*m_ui->txtSiteKeywords, *m_ui->lblSiteKeywordsCount, kKeywordsLimit);
    showCount(*m_ui->txtSiteDescription, *m_ui->lblSiteDescriptionCount, kDescriptionLimit);
}

frmWebsitePanel::~frmWebsitePanel() = default;

QKeySequence frmWebsitePanel::pageKeys(int tab) {
    return {Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + tab)};
}

void frmWebsitePanel::drawIcons() {
    setIconSize(QSize(16, 16));
    int tab = 0;
    for (const char* icon : {"SiteInfo", "WebFile", "Category", "Custom", "Report"})
        setTabIcon(tab++, themedIcon(icon));
    m_ui->cmdGetSiteInfo->setIcon(themedIcon("AddFromWeb"));
    m_ui->cmdImportWebFormData->setIcon(themedIcon("Import"));
    m_ui->cmdFileLocation->setIcon(themedIcon("Browse"));
    m_ui->cmdViewReport->setIcon(themedIcon("Report"));
    m_ui->cmdDeleteReport->setIcon(themedIcon("DeleteURL"));
}

void frmWebsitePanel::makeToolbarReachable() {
    // The buttons come before the list in the tab order, as in the window. setTabOrder ignores widgets
    // without a focus policy, so the toolbar gets one for a moment.
    m_ui->ToolbarSiteURL->setFocusPolicy(Qt::TabFocus);
    QWidget* before = m_ui->ToolbarSiteURL;
    for (QAction* action : m_ui->ToolbarSiteURL->actions()) {
        QWidget* const button = m_ui->ToolbarSiteURL->widgetForAction(action);
        if (button == nullptr || action->isSeparator()) continue;
        connect(action, &QAction::triggered, m_ui->lsvSiteURLs,
                [this] { m_ui->lsvSiteURLs->setFocus(Qt::OtherFocusReason); });
        button->setFocusPolicy(Qt::TabFocus);
        setTabOrder(before, button);
        before = button;
    }
    m_ui->ToolbarSiteURL->setFocusPolicy(Qt::NoFocus);
}

void frmWebsitePanel::setChoices(const std::vector<std::string>& webTypes,
                                 const std::vector<std::string>& languages,
                                 const std::vector<std::string>& countries) {
    const auto fill = [this](QComboBox* box, const std::vector<std::string>& choices) {
        const QSignalBlocker quiet(box);
        const QString text = box->currentText();
        box->clear();
        QStringList items;
        for (const std::string& choice : choices) items << toScreen(choice);
        box->addItems(items);
        box->setEditText(text);
        box->lineEdit()->setMaxLength(m_ui->txtSiteTitle->maxLength());
    };
    fill(m_ui->cboWebType, webTypes);
    fill(m_ui->cboLanguage, languages);
    fill(m_ui->cboCountry, countries);
}

void frmWebsitePanel::connectTo(WebsiteFields& fields, Categories& categories) {
    m_fields = &fields;
    bindFields();
    connectLists(categories);
    showFields();
}

void frmWebsitePanel::take(TextMember member, const QString& text) {
    m_fields->*member = fromScreen(text);
    Q_EMIT edited();
}

void frmWebsitePanel::bind(QLineEdit* edit, TextMember member) {
    connect(edit, &QLineEdit::textEdited, this, [this, member](const QString& text) { take(member, text); });
    m_show.emplace_back([this, edit, member] {
        const QString text = toScreen(m_fields->*member);
        if (edit->text() == text) return;
        edit->setText(text);
        edit->setCursorPosition(0);
    });
}

void frmWebsitePanel::bind(QPlainTextEdit* edit, TextMember member) {
    // Line breaks are CR LF in the fields and LF on the screen.
    connect(edit, &QPlainTextEdit::textChanged, this, [this, edit, member] {
        take(member, typedText(*edit).replace(QLatin1Char('\n'), QStringLiteral("\r\n")));
    });
    m_show.emplace_back([this, edit, member] {
        const QString text =
            toScreen(m_fields->*member).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        if (typedText(*edit) == text) return;
        const QSignalBlocker quiet(edit);
        edit->setPlainText(text);
    });
}

void frmWebsitePanel::bind(QComboBox* box, TextMember member) {
    connect(box, &QComboBox::currentTextChanged, this,
            [this, member](const QString& text) { take(member, text); });
    m_show.emplace_back([this, box, member] {
        const QString text = toScreen(m_fields->*member);
        const QSignalBlocker quiet(box);
        box->setCurrentIndex(box->findText(text, Qt::MatchExactly));
        box->setEditText(text);
        box->lineEdit()->setCursorPosition(0);
    });
}

void frmWebsitePanel::bindLabel(QLabel* label, TextMember member) {
    const QString resting = label->text();
    const QChar letter = resting.at(resting.indexOf(QLatin1Char('&')) + 1);
    m_show.emplace_back(
        [this, label, member, letter] { label->setText(withMnemonic(toScreen(m_fields->*member), letter)); });
}

void frmWebsitePanel::bindFields() {
    for (const WebsiteKey& key : kWebsiteKeys) {
        if (!key.control) continue;
        auto* const control = findChild<QWidget*>(QString::fromLatin1(key.control));
        if (auto* const edit = qobject_cast<QLineEdit*>(control)) bind(edit, key.field);
        if (auto* const edit = qobject_cast<QPlainTextEdit*>(control)) bind(edit, key.field);
        if (auto* const box = qobject_cast<QComboBox*>(control)) bind(box, key.field);
    }
    bind(m_ui->txtURLTitle, &WebsiteFields::txtURLTitle);
    bind(m_ui->txtURLKeyword, &WebsiteFields::txtURLKeyword);
    bind(m_ui->txtURLDescription, &WebsiteFields::txtURLDescription);
    bind(m_ui->txtURLFileLocation, &WebsiteFields::txtURLFileLocation);
    bindLabel(m_ui->lblURLTitle, &WebsiteFields::lblURLTitle);
    bindLabel(m_ui->lblURLKeyword, &WebsiteFields::lblURLKeyword);
    bindLabel(m_ui->lblURLDescription, &WebsiteFields::lblURLDescription);
    connect(m_ui->chkBlockFFA, &QCheckBox::clicked, this, [this](bool on) {
        m_fields->chkBlockFFA = on ? 1 : 0;
        Q_EMIT edited();
    });
    m_show.emplace_back([this] { m_ui->chkBlockFFA->setChecked(m_fields->chkBlockFFA != 0); });
}

void frmWebsitePanel::connectLists(Categories& categories) {
    m_ui->lsvSiteURLs->setRows(&m_fields->lsvSiteURLs);
    m_ui->lsvReports->setRows(&m_fields->lsvReports, {20});
    m_ui->lstMainCategory->setRows(&categories.lstMainCategory);
    m_ui->lstCategory->setRows(&categories.lstCategory);
    connect(m_ui->lstMainCategory, &ListView::rowClicked, this,
            [&categories](int row) { categories.selectMainCategory(row); });
    connect(m_ui->lstMainCategory, &ListView::rowEntered, this,
            [&categories](int row) { categories.selectMainCategory(row); });

    connect(m_ui->lsvSiteURLs, &ListView::rowClicked, this, &frmWebsitePanel::urlChosen);
    connect(m_ui->lsvSiteURLs, &ListView::rowEntered, this, &frmWebsitePanel::urlChosen);
    connect(m_ui->lsvSiteURLs, &ListView::deletePressed, this, [this] { m_ui->DeleteURL->trigger(); });
    connect(m_ui->cmdGetSiteInfo, &QPushButton::clicked, this, &frmWebsitePanel::getSiteInfo);
    connect(m_ui->cmdImportWebFormData, &QPushButton::clicked, this, &frmWebsitePanel::importWebFormData);
    connect(m_ui->cmdFileLocation, &QPushButton::clicked, this, &frmWebsitePanel::browseForLocalFile);
    connect(m_ui->lsvReports, &ListView::rowActivated, this, &frmWebsitePanel::viewReport);
    connect(m_ui->cmdViewReport, &QPushButton::clicked, this, &frmWebsitePanel::viewReport);
    connect(m_ui->cmdDeleteReport, &QPushButton::clicked, this, &frmWebsitePanel::deleteReport);
    connect(m_ui->lsvReports, &ListView::deletePressed, m_ui->cmdDeleteReport, &QPushButton::click);
    followLists();
}

void frmWebsitePanel::followLists() {
    for (ListView* list : {m_ui->lsvSiteURLs, m_ui->lstMainCategory, m_ui->lstCategory})
        connect(list, &ListView::changed, this, &frmWebsitePanel::edited);
    connect(m_ui->lsvSiteURLs, &ListView::rowsSelected, this, &frmWebsitePanel::urlSelected);
    const QString reason = tr("Select a report in the list first.");
    needSelection(*m_ui->lsvReports, *m_ui->cmdViewReport, tr("Opens the selected report"), reason);
    needSelection(*m_ui->lsvReports, *m_ui->cmdDeleteReport,
                  tr("Deletes the files of the selected reports (Del)"), reason);
}

void frmWebsitePanel::connectWalk(CategoryWalk& walk, const EngineLists& lists) {
    m_walk = &walk;
    m_lists = &lists;
    m_ui->lsvCustomMainCategory->setRows(&m_fields->lsvCustomMainCategory);
    m_ui->lsvCustomSubCategory->setRows(&m_fields->lsvCustomSubCategory);
    bind(m_ui->txtCustomCategory, &WebsiteFields::txtCustomCategory);
    connect(m_ui->cboCustomEngines, &QComboBox::activated, &walk, &CategoryWalk::chooseEngine);
    connect(m_ui->lsvCustomMainCategory, &ListView::rowClicked, &walk, &CategoryWalk::chooseMainCategory);
    connect(m_ui->lsvCustomMainCategory, &ListView::rowEntered, &walk, &CategoryWalk::chooseMainCategory);
    // A list is filled anew, which it must not be within its own click.
    connect(m_ui->lsvCustomMainCategory, &ListView::rowActivated, &walk, &CategoryWalk::openMainCategory,
            Qt::QueuedConnection);
    connect(m_ui->lsvCustomSubCategory, &ListView::rowActivated, &walk, &CategoryWalk::openSubCategory,
            Qt::QueuedConnection);
    connect(&walk, &CategoryWalk::changed, this, [this] {
        showFields();
        Q_EMIT edited();
    });
    showCustomEngines();
}

void frmWebsitePanel::showCustomEngines() {
    if (m_lists == nullptr) return;
    const QSignalBlocker quiet(m_ui->cboCustomEngines);
    m_ui->cboCustomEngines->clear();
    for (const std::string& name : m_lists->cboCustomEngines) m_ui->cboCustomEngines->addItem(toScreen(name));
    const bool any = m_ui->cboCustomEngines->count() > 0;
    m_ui->cboCustomEngines->setEnabled(any);
    m_ui->cboCustomEngines->setPlaceholderText(any ? tr("Choose a directory")
                                                   : tr("The catalogue has no directory of this kind"));
    showWalk();
}

void frmWebsitePanel::showWalk() {
    if (m_walk == nullptr) return;
    const bool chosen = m_fields->cboCustomEngines >= 0;
    m_ui->cboCustomEngines->setCurrentIndex(m_fields->cboCustomEngines);
    for (QWidget* part :
         {static_cast<QWidget*>(m_ui->txtCustomCategory), static_cast<QWidget*>(m_ui->lsvCustomMainCategory),
          static_cast<QWidget*>(m_ui->lsvCustomSubCategory)})
        part->setEnabled(chosen);
    m_ui->lsvCustomMainCategory->setEmptyHint(
        chosen ? tr("The catalogue has no categories of this directory.") : tr("Choose a directory first."));
    m_ui->lsvCustomSubCategory->setEmptyHint(
        chosen ? tr("Double-click a main category, or press\nReturn on it, to fetch its page.") : QString());
    m_ui->lblReadyToSubmit->setText(toScreen(m_walk->lblReadyToSubmit()));
    QPalette colours = palette();
    if (m_walk->readyStandsOut())
        colours.setColor(QPalette::WindowText,
                         contrasting(QColor(0, 0, 255), colours.color(QPalette::WindowText),
                                     {colours.color(QPalette::Window)}, kTextContrast));
    m_ui->lblReadyToSubmit->setPalette(colours);
}

void frmWebsitePanel::showFields() {
    for (const std::function<void()>& show : m_show) show();
    showWalk();
}

void frmWebsitePanel::showMissing(const MissingField& missing) {
    setCurrentIndex(static_cast<int>(missing.tab));
    if (missing.tab == WebsiteTab::Category) m_ui->tabCategory->setCurrentIndex(0);
    if (auto* control = findChild<QWidget*>(toScreen(missing.control)); control != nullptr)
        control->setFocus(Qt::OtherFocusReason);
}

}  // namespace relay
