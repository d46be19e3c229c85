// SPDX-License-Identifier: GPL-3.0-or-later
#include "pagetools/frmMetaTagChanges.h"

#include "core/FileNames.h"
#include "core/ScreenText.h"
#include "core/Text.h"
#include "pagetools/ui_frmMetaTagChanges.h"
#include "widgets/Forms.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QTextBlock>

namespace relay {

namespace {

constexpr std::size_t kMostShown = 2000;  // bytes of one piece of a line
constexpr std::size_t kMostLines = 5000;  // of one file

struct Colours final {
    QColor line;
    QColor touched;
};

Colours coloursOf(char sign, const QPalette& palette) {
    const bool dark = palette.color(QPalette::Base).lightness() < 128;
    if (sign == '-') return dark ? Colours{0x3d2226, 0x8c2f39} : Colours{0xffebe9, 0xffb3ad};
    return dark ? Colours{0x1d3326, 0x2c6b3f} : Colours{0xe6ffec, 0x9be9ad};
}

// Control bytes are shown as escapes: \r, \n, \x1b.
QString withEscapes(QString text) {
    text.replace(QLatin1Char('\r'), QStringLiteral("\\r")).replace(QLatin1Char('\n'), QStringLiteral("\\n"));
    for (qsizetype at = 0; at < text.size(); ++at) {
        const ushort code = text.at(at).unicode();
        if (code < 0x20 || code == 0x7F)
            text.replace(at, 1, QStringLiteral("\\x%1").arg(code, 2, 16, QLatin1Char('0')));
    }
    return text;
}

// A piece of a line, cut in the middle when it is long.
QString shownPiece(std::string_view bytes, bool touched) {
    QString text = bytes.size() <= kMostShown
                       ? toScreen(bytes)
                       : toScreen(bytes.substr(0, kMostShown / 2)) + QStringLiteral(" ... ") +
                             toScreen(bytes.substr(bytes.size() - kMostShown / 2));
    if (!touched) text.replace(QLatin1Char('\t'), QStringLiteral("    "));
    return withEscapes(text);
}

class DiffDrawer final {
  public:
    explicit DiffDrawer(QPlainTextEdit& view) : m_view(view), m_cursor(view.document()) {
        m_view.clear();
        m_quiet.setForeground(view.palette().color(QPalette::PlaceholderText));
    }

    void title(const QString& text) { write(text, {}, m_quiet); }

    void line(const DiffLine& line) {
        if (line.sign == ' ') {
            write(QStringLiteral("  ") + shownPiece(line.untouchedStart(), false), {}, {});
            return;
        }
        const Colours colours = coloursOf(line.sign, m_view.palette());
        QTextBlockFormat block;
        block.setBackground(colours.line);
        write(QString(QLatin1Char(line.sign)) + QLatin1Char(' '), block, {});
        QTextCharFormat touched;
        touched.setBackground(colours.touched);
        touched.setFontWeight(QFont::Bold);
        m_cursor.insertText(shownPiece(line.untouchedStart(), false), {});
        m_cursor.insertText(shownPiece(line.touched(), true), touched);
        m_cursor.insertText(shownPiece(line.untouchedEnd(), false), {});
    }

  private:
    void write(const QString& text, const QTextBlockFormat& block, const QTextCharFormat& format) {
        if (m_first)
            m_cursor.setBlockFormat(block);
        else
            m_cursor.insertBlock(block);
        m_first = false;
        m_cursor.insertText(text, format);
    }

    QPlainTextEdit& m_view;
    QTextCursor m_cursor;
    QTextCharFormat m_quiet;
    bool m_first = true;
};

}  // namespace

void drawDiff(QPlainTextEdit& view, const FilePreview& preview) {
    DiffDrawer drawer(view);
    if (!preview.problem.empty()) drawer.title(toScreen(preview.problem));
    std::size_t lines = 0;
    for (const DiffHunk& hunk : preview.hunks) {
        drawer.title(toScreen(hunk.title()));
        for (const DiffLine& line : hunk.lines) {
            if (++lines <= kMostLines) drawer.line(line);
        }
    }
    if (lines > kMostLines) drawer.title(frmMetaTagChanges::tr("%1 more lines").arg(lines - kMostLines));
    view.moveCursor(QTextCursor::Start);
}

frmMetaTagChanges::frmMetaTagChanges(const std::vector<std::string>& files, const MetaTagChange& change,
                                     QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmMetaTagChanges>()), m_change(change) {
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowMinMaxButtonsHint);
    m_ui->txtDiff->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_ui->lblChanges->setText(change.way == MetaTagChange::Way::Insert
                                  ? tr("An insert would change %n file(s) like this. Nothing is written.",
                                       nullptr, static_cast<int>(files.size()))
                                  : tr("A replacement would change %n file(s) like this. Nothing is written.",
                                       nullptr, static_cast<int>(files.size())));
    m_files.setColumns({"Name"});
    {
        const RowsBatch batch(m_files);
        for (const std::string& file : files)
            m_files.add({{}, getFileNameFromFile(file), {}, "WebFile", file});
    }
    m_ui->lsvChanged->setRows(&m_files);
    connect(m_ui->lsvChanged, &ListView::rowClicked, this, &frmMetaTagChanges::showFile);
    connect(m_ui->lsvChanged, &ListView::rowEntered, this, &frmMetaTagChanges::showFile);
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &frmMetaTagChanges::reject);
    m_ui->splitter->setSizes({width() / 4, width() * 3 / 4});
    m_ui->lsvChanged->setFocus(Qt::OtherFocusReason);
    m_ui->lsvChanged->setCurrentIndex(m_files.index(0, 0));
    showFile(0);
    CenterForm(*this);
}

frmMetaTagChanges::~frmMetaTagChanges() = default;

void frmMetaTagChanges::showFile(int row) {
    const std::string file(m_files.at(row).tag);
    m_ui->lblFile->setText(toScreen(file));
    setPlainToolTip(*m_ui->lblFile, toScreen(file));
    drawDiff(*m_ui->txtDiff, previewFile(file, m_change));
}

}  // namespace relay
