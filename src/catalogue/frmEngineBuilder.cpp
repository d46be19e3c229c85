// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalogue/frmEngineBuilder.h"

#include "catalogue/ui_frmEngineBuilder.h"
#include "core/ScreenText.h"
#include "core/Services.h"
#include "core/Text.h"
#include "core/clsPreference.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QCloseEvent>
#include <QCompleter>
#include <QFontDatabase>
#include <QShortcut>
#include <QSignalBlocker>
#include <QToolButton>

namespace relay {

namespace {
constexpr int kEnginesWidth = 190;
constexpr std::size_t kMostShownSource = std::size_t{1024} * 1024;
constexpr std::size_t kMostShownFindings = 3;
constexpr std::size_t kMostShownChanges = 4;
constexpr std::size_t kMostTipChanges = 40;

const QStringList& macros() {
    static const QStringList names = {
        QStringLiteral("<TITLE>"),    QStringLiteral("<KEYWORD>"),  QStringLiteral("<DESCRIPTION>"),
        QStringLiteral("<URL>"),      QStringLiteral("<CATEGORY>"), QStringLiteral("<CUSTOMCATEGORY>"),
        QStringLiteral("<SPACEID>"),  QStringLiteral("<NAME>"),     QStringLiteral("<FIRSTNAME>"),
        QStringLiteral("<LASTNAME>"), QStringLiteral("<EMAIL>"),    QStringLiteral("<COMPANY>"),
        QStringLiteral("<ADDRESS>"),  QStringLiteral("<CITY>"),     QStringLiteral("<POSTCODE>"),
        QStringLiteral("<STATE>"),    QStringLiteral("<COUNTRY>"),  QStringLiteral("<COUNTRYCODE>"),
        QStringLiteral("<PHONE>"),    QStringLiteral("<FAX>"),      QStringLiteral("<LANGUAGE>"),
        QStringLiteral("<WEBTYPE>"),  QStringLiteral("<PASSWORD>")};
    return names;
}

// The first lines, and how many there are beyond them.
QString firstLines(const std::vector<std::string>& lines, std::size_t most) {
    QStringList shown;
    for (std::size_t i = 0; i < lines.size() && i < most; ++i) shown << toScreen(lines[i]);
    if (lines.size() > most)
        shown << frmEngineBuilder::tr("and %1 more").arg(static_cast<qulonglong>(lines.size() - most));
    return shown.join(QLatin1Char('\n'));
}
}  // namespace

frmEngineBuilder::frmEngineBuilder(const Services& services, const Catalogue& catalogue, Fetching fetching,
                                   QWidget* parent)
    : QMainWindow(parent),
      m_ui(std::make_unique<Ui::frmEngineBuilder>()),
      m_fetching(std::move(fetching)),
      m_builder(services, catalogue, m_fetching.outside) {
    m_ui->setupUi(this);
    setWindowModality(Qt::WindowModal);
    m_ui->txtSource->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_ui->imgSpliter->setSizes({kEnginesWidth, width() - kEnginesWidth});
    m_ui->imgSpliter->setStretchFactor(1, 1);
    m_ui->fraAdult->setVisible(!services.preference.refusesAdultSites());
    for (QLineEdit* const number : {m_ui->txtMaxTitle, m_ui->txtMaxKeywords, m_ui->txtMaxDescription})
        number->setMinimumWidth(number->fontMetrics().averageCharWidth() * 5);
    describePlaceholders(*this);
    connectMenu();
    connectEngine();
    connectSource();
    connectFields();
    connectCategories();
    m_ui->lsvReceived->setRows(&m_builder.lsvReceived, {24});
    connect(m_ui->cmdTryIt, &QPushButton::clicked, &m_builder, &EngineBuilder::tryIt);
    connect(&m_builder, &EngineBuilder::changed, this, &frmEngineBuilder::showAll);
    connect(&m_builder, &EngineBuilder::statusChanged, this,
            [this](const std::string& text) { m_ui->StatusBar1->showMessage(toScreen(text)); });
    connect(&m_builder, &EngineBuilder::tabWanted, this, &frmEngineBuilder::showTab);
    connect(&m_builder, &EngineBuilder::focusWanted, this, &frmEngineBuilder::focus);
    for (int tab = 0; tab < m_ui->SSTab1->count(); ++tab) {
        const QKeySequence keys(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + tab));
        m_ui->SSTab1->setTabToolTip(tab, keys.toString(QKeySequence::NativeText));
        connect(new QShortcut(keys, this), &QShortcut::activated, this, [this, tab] {
            m_ui->SSTab1->setCurrentIndex(tab);
            focusFirst(*m_ui->SSTab1->currentWidget());
        });
    }
    auto* const escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, [this] {
        if (m_fetching.isRunning()) m_fetching.cancel();
    });
    CenterForm(*this);
}

frmEngineBuilder::~frmEngineBuilder() = default;

void frmEngineBuilder::open() {
    if (!isVisible()) {
        m_builder.load();
        show();
        m_ui->lstEngines->takeFocus();
        if (m_builder.lstEngines.count() > 0) m_builder.getEngineData(0);
    }
    raise();
    activateWindow();
}

void frmEngineBuilder::closeEvent(QCloseEvent* event) {
    if (!m_builder.close()) {
        event->ignore();
        return;
    }
    if (m_fetching.isRunning()) m_fetching.cancel();
    event->accept();
    Q_EMIT closed();
}

void frmEngineBuilder::connectMenu() {
    const auto bindAction = [this](QAction* item, QAction* button, const char* icon, auto&& operation) {
        item->setIcon(themedIcon(icon));
        connect(item, &QAction::triggered, this, operation);
        if (button == nullptr) return;
        button->setIcon(themedIcon(icon));
        connect(button, &QAction::triggered, item, &QAction::trigger);
        if (QWidget* const tool = m_ui->Toolbar1->widgetForAction(button)) tool->setFocusPolicy(Qt::TabFocus);
    };
    const auto onBuilder = [this](auto operation) { return [this, operation] { (m_builder.*operation)(); }; };
    bindAction(m_ui->mnuFileItems_0, m_ui->New, "AddURL", onBuilder(&EngineBuilder::New));
    bindAction(m_ui->mnuFileItems_2, m_ui->Save, "Save", onBuilder(&EngineBuilder::Save));
    bindAction(m_ui->mnuFileItems_3, m_ui->Delete, "DeleteURL", onBuilder(&EngineBuilder::Delete));
    bindAction(m_ui->mnuFileItems_5, m_ui->Merge, "Merge", onBuilder(&EngineBuilder::Merge));
    bindAction(m_ui->mnuUndoMerge, nullptr, "Repeat", onBuilder(&EngineBuilder::undoMerge));
    bindAction(m_ui->mnuFileItems_6, nullptr, "Report", onBuilder(&EngineBuilder::exportEngineList));
    bindAction(m_ui->mnuFileItems_8, nullptr, "Export", onBuilder(&EngineBuilder::exportEngineData));
    bindAction(m_ui->mnuFileItems_9, nullptr, "Import", onBuilder(&EngineBuilder::importEngineData));
    bindAction(m_ui->mnuFileItems_11, m_ui->Exit, "Exit", [this] { close(); });
    bindAction(m_ui->mnuHelpItems_0, nullptr, "Help", onBuilder(&EngineBuilder::help));
    m_ui->lstEngines->addAction(m_ui->mnuFileItems_0);
    m_ui->lstEngines->addAction(m_ui->mnuFileItems_3);
}

void frmEngineBuilder::bind(QLineEdit& edit, std::string EngineBuilder::*member, bool checked) {
    connect(&edit, &QLineEdit::textEdited, this, [this, member, checked](const QString& text) {
        m_builder.*member = fromScreen(text);
        if (checked) m_builder.refreshFindings();
    });
    m_show.emplace_back([this, &edit, member] {
        const QString text = toScreen(m_builder.*member);
        if (edit.text() == text) return;
        edit.setText(text);
        edit.setCursorPosition(0);
    });
}

void frmEngineBuilder::bind(QCheckBox& box, bool EngineBuilder::*member) {
    connect(&box, &QCheckBox::clicked, this, [this, member](bool on) {
        m_builder.*member = on;
        m_builder.refreshFindings();
    });
    m_show.emplace_back([this, &box, member] { box.setChecked(m_builder.*member); });
}

void frmEngineBuilder::connectEngine() {
    m_ui->lstEngines->setRows(&m_builder.lstEngines);
    // The list is filled anew, which it must not be within its own click.
    const auto choose = [this](int row) { m_builder.getEngineData(row); };
    connect(m_ui->lstEngines, &ListView::rowClicked, this, choose, Qt::QueuedConnection);
    connect(m_ui->lstEngines, &ListView::rowEntered, this, choose, Qt::QueuedConnection);
    connect(m_ui->lstEngines, &ListView::deletePressed, &m_builder, &EngineBuilder::Delete,
            Qt::QueuedConnection);
    bind(*m_ui->txtEngineName, &EngineBuilder::txtEngineName);
    bind(*m_ui->txtEngineURL, &EngineBuilder::txtEngineURL);
    bind(*m_ui->txtSubmitURL, &EngineBuilder::txtSubmitURL);
    bind(*m_ui->txtCountry, &EngineBuilder::txtCountry);
    bind(*m_ui->txtAction, &EngineBuilder::txtAction);
    bind(*m_ui->txtLanguage, &EngineBuilder::txtLanguage);
    bind(*m_ui->txtMaxTitle, &EngineBuilder::txtMaxTitle);
    bind(*m_ui->txtMaxKeywords, &EngineBuilder::txtMaxKeywords);
    bind(*m_ui->txtMaxDescription, &EngineBuilder::txtMaxDescription);
    bind(*m_ui->chkCountry, &EngineBuilder::chkCountry);
    bind(*m_ui->chkAllowAdultSite, &EngineBuilder::chkAllowAdultSite);
    bind(*m_ui->chkAdultOnlySite, &EngineBuilder::chkAdultOnlySite);
    // Shows what a form says; only the two methods can be chosen.
    m_ui->cboMethod->lineEdit()->setReadOnly(true);
    m_ui->cboMethod->lineEdit()->setAccessibleName(m_ui->cboMethod->accessibleName());
    connect(m_ui->cboMethod, &QComboBox::activated, this, [this](int row) {
        m_builder.cboMethod = fromScreen(m_ui->cboMethod->itemText(row));
        m_builder.refreshFindings();
    });
    connect(m_ui->cboEngineType, &QComboBox::activated, &m_builder, &EngineBuilder::chooseEngineType);
    const auto bindRow = [this](QComboBox& box, int EngineBuilder::*member) {
        connect(&box, &QComboBox::activated, this, [this, member](int row) {
            m_builder.*member = row;
            m_builder.refreshFindings();
        });
        m_show.emplace_back([this, &box, member] { box.setCurrentIndex(m_builder.*member); });
    };
    bindRow(*m_ui->cboCategory, &EngineBuilder::cboCategory);
    bindRow(*m_ui->cboSiteLevel, &EngineBuilder::cboSiteLevel);
    connect(m_ui->cmdGetSource, &QPushButton::clicked, &m_builder, &EngineBuilder::getSource);
    connect(m_ui->txtSubmitURL, &QLineEdit::returnPressed, m_ui->cmdGetSource, &QPushButton::click);
}

void frmEngineBuilder::connectSource() {
    connect(m_ui->txtSource, &QPlainTextEdit::textChanged, this, [this] {
        m_builder.editSource(
            fromScreen(typedText(*m_ui->txtSource).replace(QLatin1Char('\n'), QStringLiteral("\r\n"))));
    });
    connect(m_ui->cmdGetFields, &QPushButton::clicked, &m_builder, &EngineBuilder::getFields);
}

void frmEngineBuilder::connectFields() {
    m_ui->lsvDataFields->setRows(&m_builder.lsvDataFields, {22, 30});
    connect(m_ui->lsvDataFields, &ListView::rowClicked, &m_builder, &EngineBuilder::chooseField);
    connect(m_ui->lsvDataFields, &ListView::rowEntered, &m_builder, &EngineBuilder::chooseField);
    connect(m_ui->lsvDataFields, &ListView::clicked, this, [this](const QModelIndex& cell) {
        constexpr int kWhy = 2;
        if (cell.column() == kWhy) m_builder.acceptSuggestion(cell.row());
    });
    connect(m_ui->lsvDataFields, &ListView::rowActivated, this, [this](int row) {
        if (!m_builder.acceptSuggestion(row)) focus("txtValue");
    });
    connect(m_ui->lsvDataFields, &ListView::deletePressed, &m_builder, &EngineBuilder::deleteField);
    bind(*m_ui->txtFieldName, &EngineBuilder::txtFieldName, false);
    bind(*m_ui->txtValue, &EngineBuilder::txtValue, false);
    auto* const completer = new QCompleter(macros(), this);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchContains);
    m_ui->txtValue->setCompleter(completer);
    // A choice of the completer is no edit.
    connect(m_ui->txtValue, &QLineEdit::textChanged, this,
            [this](const QString& text) { m_builder.txtValue = fromScreen(text); });
    m_ui->txtFieldName->installEventFilter(this);
    auto* const unlock = new QShortcut(QKeySequence(Qt::Key_F2), m_ui->txtFieldName);
    unlock->setContext(Qt::WidgetShortcut);
    connect(unlock, &QShortcut::activated, this, &frmEngineBuilder::unlockFieldName);
    connect(m_ui->txtValue, &QLineEdit::returnPressed, m_ui->cmdUpdate_0, &QPushButton::click);
    connect(m_ui->cmdUpdate_0, &QPushButton::clicked, this, [this] {
        m_builder.updateField();
        m_ui->lsvDataFields->setFocus(Qt::OtherFocusReason);
    });
    connect(m_ui->cmdUpdate_1, &QPushButton::clicked, &m_builder, &EngineBuilder::deleteField);
    connect(m_ui->cmdUseSuggestion, &QPushButton::clicked, this,
            [this] { m_builder.acceptSuggestion(m_builder.lsvDataFields.firstHighlighted()); });
    connect(m_ui->cmdUseAll, &QPushButton::clicked, this, [this] { m_builder.acceptAllSuggestions(); });
}

void frmEngineBuilder::connectCategories() {
    m_ui->lsvCategory->setRows(&m_builder.lsvCategory, {26});
    connect(m_ui->lsvCategory, &ListView::rowClicked, &m_builder, &EngineBuilder::chooseCategory);
    connect(m_ui->lsvCategory, &ListView::rowEntered, &m_builder, &EngineBuilder::chooseCategory);
    connect(m_ui->lsvCategory, &ListView::rowActivated, this, [this] { focus("txtEngineCategory"); });
    connect(m_ui->lsvCategory, &ListView::deletePressed, &m_builder, &EngineBuilder::clearCategories);
    bind(*m_ui->txtDefaultCategory, &EngineBuilder::txtDefaultCategory, false);
    bind(*m_ui->txtEngineCategory, &EngineBuilder::txtEngineCategory, false);
    connect(m_ui->txtEngineCategory, &QLineEdit::returnPressed, m_ui->cmdUpdateCategory, &QPushButton::click);
    connect(m_ui->cmdUpdateCategory, &QPushButton::clicked, this, [this] {
        m_builder.updateCategory();
        m_ui->lsvCategory->setFocus(Qt::OtherFocusReason);
    });
    needSelection(*m_ui->lsvCategory, *m_ui->cmdUpdateCategory, m_ui->cmdUpdateCategory->toolTip(),
                  tr("Select a category in the list first."));
}

bool frmEngineBuilder::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_ui->txtFieldName && event->type() == QEvent::MouseButtonDblClick) unlockFieldName();
    return QMainWindow::eventFilter(watched, event);
}

void frmEngineBuilder::unlockFieldName() {
    m_builder.txtFieldNameLocked = false;
    showFields();
}

void frmEngineBuilder::showAll() {
    for (const std::function<void()>& show : m_show) show();
    const auto& engines = m_builder;
    m_ui->lblEngines->setText(toScreen(engines.lblEngines));
    m_ui->cboEngineType->setCurrentIndex(engines.cboEngineType);
    m_ui->cboMethod->setCurrentIndex(m_ui->cboMethod->findText(toScreen(engines.cboMethod)));
    m_ui->cboMethod->setEditText(toScreen(engines.cboMethod));
    m_ui->mnuUndoMerge->setEnabled(engines.canUndoMerge());
    m_ui->mnuFileItems_3->setEnabled(engines.lstEngines.firstHighlighted() >= 0);
    m_ui->Delete->setEnabled(m_ui->mnuFileItems_3->isEnabled());
    m_ui->lblReceived->setText(toScreen(engines.lblReceived));
    showFields();
    showSource();
    showFindings();
}

void frmEngineBuilder::showFields() {
    m_ui->txtFieldName->setReadOnly(m_builder.txtFieldNameLocked);
    const int row = m_builder.lsvDataFields.firstHighlighted();
    m_ui->cmdUpdate_1->setEnabled(row >= 0);
    m_ui->cmdUpdate_0->setEnabled(row >= 0);
    m_ui->cmdUseSuggestion->setEnabled(m_builder.hasSuggestion(row));
    m_ui->cmdUseAll->setEnabled(m_builder.hasSuggestions());
    m_ui->lblFormChanges->setText(firstLines(m_builder.formChanges, kMostShownChanges));
    m_ui->lblFormChanges->setToolTip(firstLines(m_builder.formChanges, kMostTipChanges));
    m_ui->lblFormChanges->setVisible(!m_builder.formChanges.empty());
}

// A long source is shown in part; the whole of it is read.
void frmEngineBuilder::showSource() {
    const std::string& source = m_builder.txtSource;
    m_ui->cmdGetFields->setEnabled(m_builder.cmdGetFields && !source.empty());
    const bool isLong = source.size() > kMostShownSource;
    const QString text =
        toScreen(left(source, kMostShownSource)).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    m_ui->txtSource->setReadOnly(isLong);
    m_ui->lblSource->setText(
        isLong ? tr("The start of the form of the submit page. It is too long to be edited here; all of it "
                    "is read.")
               : tr("The form of the submit page. You may &edit it before its fields are read:"));
    if (typedText(*m_ui->txtSource) == text) return;
    const QSignalBlocker quiet(m_ui->txtSource);
    m_ui->txtSource->setPlainText(text);
}

void frmEngineBuilder::showFindings() {
    std::vector<std::string> lines;
    for (const Finding& finding : m_builder.findings) lines.push_back(finding.text);
    const bool none = lines.empty();
    m_ui->lblFindings->setVisible(!none);
    m_ui->lblFindings->setText(none ? QString()
                                    : tr("Before you save it:") + QLatin1Char('\n') +
                                          firstLines(lines, kMostShownFindings));
}

void frmEngineBuilder::showTab(EngineBuilder::Tab tab) {
    m_ui->SSTab1->setCurrentIndex(static_cast<int>(tab));
}

void frmEngineBuilder::focus(const std::string& control) {
    auto* const widget = findChild<QWidget*>(toScreen(control));
    if (widget == nullptr) return;
    widget->setFocus(Qt::OtherFocusReason);
    if (auto* const edit = qobject_cast<QLineEdit*>(widget)) edit->selectAll();
}

void frmEngineBuilder::showFetching(bool fetching) {
    m_ui->cmdGetSource->setEnabled(!fetching);
    m_ui->cmdTryIt->setEnabled(!fetching);
}

}  // namespace relay
