// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/QtPrompts.h"

#include "core/FileNames.h"
#include "core/FileSystem.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "core/clsPreference.h"
#include "widgets/Forms.h"
#include "widgets/TextViewer.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

#include <set>

namespace relay {

namespace {
constexpr int kInputWidth = 420;
constexpr int kNoticeMilliseconds = 8000;
// A later failure is not about the opening: some openers run as long as the browser.
constexpr int kOpenerMilliseconds = 10000;

QString toBoxText(std::string_view text) {
    return toScreen(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

QMessageBox::Icon toQtIcon(Icon icon) {
    switch (icon) {
        case Icon::Information:
            return QMessageBox::Information;
        case Icon::Question:
            return QMessageBox::Question;
        case Icon::Critical:
            return QMessageBox::Critical;
        case Icon::None:
            break;
    }
    return QMessageBox::NoIcon;
}

// Labels break lines at blanks only, so long words get invisible places to break.
QString breakable(QString text) {
    constexpr int kLongestPiece = 40;
    int piece = 0;
    for (qsizetype place = 0; place < text.size(); ++place) {
        piece = text.at(place).isSpace() ? 0 : piece + 1;
        if (piece < kLongestPiece || text.at(place).isHighSurrogate()) continue;
        text.insert(++place, QChar(0x200b));
        piece = 0;
    }
    return text;
}

void prepare(QMessageBox& box, std::string_view text) {
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box.setText(toBoxText(text));
}

FileChoice run(QFileDialog& dialog, const QStringList& filters, QString& lastFolder) {
    dialog.setNameFilters(filters);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    const QString path = dialog.selectedFiles().constFirst();
    lastFolder = QFileInfo(path).absolutePath();
    return {fromScreen(path), static_cast<int>(filters.indexOf(dialog.selectedNameFilter())) + 1};
}
}  // namespace

QStringList toQtFilters(std::string_view filter) {
    static const QRegularExpression patternInName(QStringLiteral("\\s*\\([^)]*\\)\\s*$"));
    QStringList filters;
    const QStringList pieces = toScreen(filter).split(QLatin1Char('|'));
    for (qsizetype piece = 0; piece + 1 < pieces.size(); piece += 2) {
        QString name = pieces.at(piece);
        name.remove(patternInName);
        QString patterns = pieces.at(piece + 1);
        // "*.*" means every file, even without a dot in its name.
        patterns.replace(QStringLiteral("*.*"), QStringLiteral("*"))
            .replace(QLatin1Char(';'), QLatin1Char(' '));
        filters << name + QStringLiteral(" (") + patterns + QLatin1Char(')');
    }
    return filters;
}

// Shows the normal pointer while a box waits for the user during long work, which may end meanwhile.
class QtPrompts::PlainPointer final {
  public:
    explicit PlainPointer(QtPrompts& prompts) : m_prompts(prompts) { change(1); }
    ~PlainPointer() { change(-1); }
    PlainPointer(const PlainPointer&) = delete;
    PlainPointer& operator=(const PlainPointer&) = delete;

  private:
    void change(int boxes) {
        m_prompts.m_boxes += boxes;
        m_prompts.showPointer();
    }

    QtPrompts& m_prompts;
};

void QtPrompts::setWindow(QWidget* window) {
    m_window = window;
    m_front = nullptr;
    QObject::disconnect(m_followed);
    if (window == nullptr) return;
    // While a box closes, no window is active.
    m_followed = QObject::connect(
        qApp, &QApplication::focusChanged, &m_context, [this](const QWidget*, const QWidget* now) {
            QWidget* const front = now == nullptr ? nullptr : now->window();
            if (front != nullptr && !front->isModal() && (front == m_window || front->parent() == m_window))
                m_front = front;
        });
}

QWidget* QtPrompts::parent() const {
    if (QApplication::activeModalWidget() != nullptr) return QApplication::activeModalWidget();
    return m_front && m_front->isVisible() ? m_front.data() : m_window.data();
}

void QtPrompts::message(std::string_view text, std::string_view title, Icon icon) {
    const PlainPointer pointer(*this);
    QMessageBox box(toQtIcon(icon), toScreen(title), QString(), QMessageBox::Ok, parent());
    prepare(box, text);
    box.exec();
}

bool QtPrompts::ask(std::string_view text, std::string_view title) {
    const PlainPointer pointer(*this);
    QMessageBox box(QMessageBox::Question, toScreen(title), QString(), QMessageBox::Yes | QMessageBox::No,
                    parent());
    prepare(box, text);
    box.setDefaultButton(QMessageBox::Yes);
    box.setEscapeButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

std::optional<std::string> QtPrompts::input(std::string_view text, std::string_view title,
                                            std::string_view preset) {
    const PlainPointer pointer(*this);
    QInputDialog dialog(parent());
    dialog.setWindowTitle(toScreen(title));
    dialog.setLabelText(toBoxText(text));
    dialog.setTextValue(toScreen(preset));
    dialog.ensurePolished();
    dialog.sizeHint();  // lays out the dialog, which sets the label's size policy
    if (auto* label = dialog.findChild<QLabel*>(); label != nullptr) {
        label->setTextFormat(Qt::PlainText);
        label->setText(breakable(label->text()));
        label->setWordWrap(true);
        QSizePolicy policy = label->sizePolicy();
        policy.setHorizontalPolicy(QSizePolicy::Ignored);
        policy.setVerticalPolicy(QSizePolicy::Minimum);
        label->setSizePolicy(policy);
    }
    dialog.resize(kInputWidth, dialog.heightForWidth(kInputWidth));
    if (auto* edit = dialog.findChild<QLineEdit*>(); edit != nullptr) {
        edit->setAccessibleName(toBoxText(text));
        edit->setMaxLength(1 << 24);
        if (startsWithNoCase(preset, "http://")) continueAddress(*edit, toScreen(preset));
    }
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return fromScreen(dialog.textValue());
}

FileChoice QtPrompts::openFile(std::string_view filter, std::string_view folder) {
    const PlainPointer pointer(*this);
    QFileDialog dialog(parent(), QFileDialog::tr("Open"), folder.empty() ? m_lastFolder : toScreen(folder));
    dialog.setFileMode(QFileDialog::ExistingFile);
    return run(dialog, toQtFilters(filter), m_lastFolder);
}

FileChoice QtPrompts::saveFile(std::string_view filter, std::string_view folder, std::string_view name,
                               std::string_view title) {
    const PlainPointer pointer(*this);
    QFileDialog dialog(parent(), title.empty() ? QFileDialog::tr("Save As") : toScreen(title),
                       folder.empty() ? m_lastFolder : toScreen(folder));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    // The program itself asks about an existing file, after adding the extension.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    if (!name.empty()) dialog.selectFile(toScreen(name));
    return run(dialog, toQtFilters(filter), m_lastFolder);
}

std::optional<std::string> QtPrompts::chooseFolder(std::string_view title, std::string_view folder) {
    const PlainPointer pointer(*this);
    const QString chosen = QFileDialog::getExistingDirectory(
        parent(), toScreen(title), folder.empty() ? m_lastFolder : toScreen(folder));
    if (chosen.isEmpty()) return std::nullopt;
    m_lastFolder = chosen;
    return fromScreen(chosen);
}

bool QtPrompts::openWithSystem(std::string_view target) {
    const QString text = toScreen(target);
    const bool isWeb = startsWithNoCase(target, "http://") || startsWithNoCase(target, "https://");
    const QUrl address = isWeb ? QUrl(text) : QUrl::fromLocalFile(text);
    // Qt starts this same program, but does not look at its exit code.
    const QString opener = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (opener.isEmpty()) return QDesktopServices::openUrl(address);
    startOpener(opener, address, std::string(target));
    return true;
}

void QtPrompts::startOpener(const QString& opener, const QUrl& address, const std::string& target) {
    // Without an owner: what was opened stays open when this program ends.
    static auto& running = *new std::set<QProcess*>;
    auto* const process = *running.insert(new QProcess).first;
    QObject::connect(process, &QObject::destroyed, process, [process] { running.erase(process); });
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    process->setStandardInputFile(QProcess::nullDevice());
    const QDeadlineTimer failsBefore(kOpenerMilliseconds);
    const auto end = [this, process, target, failsBefore](bool opened) {
        QObject::disconnect(process, nullptr, &m_context, nullptr);
        if (!opened && !failsBefore.hasExpired())
            message(cannotOpenText(target), kApplication, Icon::Critical);
    };
    QObject::connect(process, &QProcess::finished, &m_context, [end](int code) { end(code == 0); });
    QObject::connect(process, &QProcess::errorOccurred, &m_context, [end] { end(false); });
    // Even when the prompts are gone.
    QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
    QObject::connect(process, &QProcess::errorOccurred, process, &QObject::deleteLater);
    process->start(opener, {address.toString(QUrl::FullyEncoded)});
}

bool QtPrompts::viewText(std::string_view file) {
    return openAsText(toScreen(file));
}

bool QtPrompts::startProgram(std::string_view file) {
    return QProcess::startDetached(toScreen(file), {}, toScreen(folderOf(file)));
}

void QtPrompts::beep() {
    QApplication::beep();
}

void QtPrompts::busy(bool on) {
    m_busyDepth += on ? 1 : -1;
    showPointer();
}

void QtPrompts::showPointer() {
    const bool waits = m_busyDepth > 0 && m_boxes == 0;
    if (waits == std::exchange(m_hourglass, waits)) return;
    if (waits)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

void QtPrompts::status(std::string_view text) {
    if (m_statusSink) m_statusSink(toScreen(text), 0);
}

void QtPrompts::notice(std::string_view text) {
    if (m_statusSink) m_statusSink(toScreen(text), kNoticeMilliseconds);
}

}  // namespace relay
