// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/frmHelp.h"

#include "app/Help.h"
#include "app/ui_frmHelp.h"
#include "core/Prompts.h"
#include "core/ScreenText.h"
#include "core/clsPreference.h"
#include "widgets/Forms.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QTextBlock>
#include <QTextTable>
#include <QTimer>
#include <QUrl>

namespace relay {

namespace {

// Room around a picture, in pixels.
constexpr int kPictureMargin = 48;

void drawTables(QTextDocument& document, const QColor& lines) {
    for (QTextFrame* frame : document.rootFrame()->childFrames()) {
        auto* const table = qobject_cast<QTextTable*>(frame);
        if (table == nullptr) continue;
        QTextTableFormat format = table->format();
        format.setBorder(1);
        format.setBorderBrush(lines);
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBorderCollapse(true);
        format.setCellPadding(5);
        format.setTopMargin(8);
        format.setBottomMargin(12);
        table->setFormat(format);
    }
}

// Room above the headings inside the page.
void spaceHeadings(QTextDocument& document) {
    constexpr double kRoom = 18;
    for (QTextBlock block = document.begin().next(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0) continue;
        QTextBlockFormat format = block.blockFormat();
        format.setTopMargin(kRoom);
        QTextCursor(block).setBlockFormat(format);
    }
}

}  // namespace

frmHelp::frmHelp(const std::string& folder, Prompts& prompts, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint),
      m_ui(std::make_unique<Ui::frmHelp>()),
      m_prompts(prompts) {
    m_ui->setupUi(this);
    GuideBrowser* const page = m_ui->txtPage;
    page->setFolder(folder);
    page->document()->setDocumentMargin(16);
    connect(page, &QTextBrowser::anchorClicked, this, &frmHelp::followLink);
    connect(page, &QTextBrowser::sourceChanged, this, &frmHelp::dressPage);
    connect(page, &QTextBrowser::backwardAvailable, m_ui->cmdBack, &QPushButton::setEnabled);
    connect(page, &QTextBrowser::forwardAvailable, m_ui->cmdForward, &QPushButton::setEnabled);
    connect(m_ui->cmdBack, &QPushButton::clicked, page, &QTextBrowser::backward);
    connect(m_ui->cmdForward, &QPushButton::clicked, page, &QTextBrowser::forward);
    connect(m_ui->cmdContents, &QPushButton::clicked, this, [this] { showPage(kHelpContents); });
    connect(m_ui->cmdClose, &QPushButton::clicked, this, &QDialog::close);
    connect(m_ui->txtFind, &QLineEdit::returnPressed, this, [this] { lookUp(false); });
    const auto key = [this](const QKeySequence& keys, auto&& operation) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, operation);
    };
    key(QKeySequence::Back, [this] { m_ui->txtPage->backward(); });
    key(QKeySequence::Forward, [this] { m_ui->txtPage->forward(); });
    key(Qt::ALT | Qt::Key_Home, [this] { showPage(kHelpContents); });
    key(QKeySequence::Find, [this] {
        m_ui->txtFind->setFocus();
        m_ui->txtFind->selectAll();
    });
    key(QKeySequence::FindNext, [this] { lookUp(false); });
    key(QKeySequence::FindPrevious, [this] { lookUp(true); });
    resize(size().boundedTo(screen()->availableSize() - QSize(8, 40)));
    CenterForm(*this);
}

frmHelp::~frmHelp() = default;

void frmHelp::showPage(std::string_view page) {
    const QString wanted = toScreen(page);
    const bool there = m_ui->txtPage->hasPage(wanted.section(QLatin1Char('#'), 0, 0));
    m_ui->txtPage->setSource(QUrl(there ? wanted : toScreen(kHelpContents)), QTextDocument::MarkdownResource);
    m_ui->txtPage->setFocus();
}

void frmHelp::followLink(const QUrl& link) {
    if (link.scheme().startsWith(QLatin1String("http")))
        openPageOrTell(m_prompts, fromScreen(link.toString(QUrl::FullyEncoded)), fromScreen(windowTitle()));
    else if (link.path().isEmpty() || m_ui->txtPage->hasPage(link.path()))
        m_ui->txtPage->setSource(m_ui->txtPage->source().resolved(link), QTextDocument::MarkdownResource);
}

// The browser's own source is still that of the page before.
void frmHelp::dressPage(const QUrl& source) {
    QTextDocument& page = *m_ui->txtPage->document();
    QColor lines = palette().color(QPalette::Text);
    lines.setAlphaF(0.3F);
    drawTables(page, lines);
    spaceHeadings(page);
    const QString title = page.firstBlock().text();
    setWindowTitle(tr("%1 - %2 Help").arg(title, toScreen(kApplication)));
    // The page has its width once it is shown.
    QTimer::singleShot(0, this, [this, heading = source.fragment()] {
        fitPictures();
        if (!heading.isEmpty()) scrollToHeading(heading);
    });
}

void frmHelp::scrollToHeading(const QString& name) {
    const QTextDocument& page = *m_ui->txtPage->document();
    for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0) continue;
        if (headingName(fromScreen(block.text())) != fromScreen(name)) continue;
        m_ui->txtPage->setTextCursor(QTextCursor(block));
        const double top = page.documentLayout()->blockBoundingRect(block).top();
        m_ui->txtPage->verticalScrollBar()->setValue(static_cast<int>(top - page.documentMargin() / 2));
        return;
    }
}

void frmHelp::lookUp(bool backwards) {
    GuideBrowser* const page = m_ui->txtPage;
    const QString text = m_ui->txtFind->text();
    if (text.isEmpty()) return;
    const QTextDocument::FindFlags way = backwards ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    bool found = page->find(text, way);
    if (!found) {
        const QTextCursor before = page->textCursor();
        page->moveCursor(backwards ? QTextCursor::End : QTextCursor::Start);
        found = page->find(text, way);
        if (!found) page->setTextCursor(before);
    }
    m_ui->lblFound->setText(found ? QString() : tr("Not on this page"));
}

// No picture is wider than the page.
void frmHelp::fitPictures() {
    QTextDocument& page = *m_ui->txtPage->document();
    bool changed = false;
    const int room = std::max(100, m_ui->txtPage->viewport()->width() - kPictureMargin);
    for (QTextBlock block = page.begin(); block.isValid(); block = block.next()) {
        for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
            if (!piece.fragment().charFormat().isImageFormat()) continue;
            QTextImageFormat format = piece.fragment().charFormat().toImageFormat();
            const QUrl name(format.name());
            const auto picture =
                m_ui->txtPage->loadResource(QTextDocument::ImageResource, name).value<QImage>();
            if (picture.isNull()) continue;
            const int width = std::min(room, picture.width());
            if (qFuzzyCompare(format.width(), width)) continue;
            format.setWidth(width);
            format.setHeight(static_cast<double>(picture.height()) * width / picture.width());
            // The view itself would scale it without smoothing.
            const double ratio = devicePixelRatioF();
            QImage fitted = picture.scaledToWidth(qRound(width * ratio), Qt::SmoothTransformation);
            fitted.setDevicePixelRatio(ratio);
            page.addResource(QTextDocument::ImageResource, name, fitted);
            QTextCursor cursor(&page);
            cursor.setPosition(piece.fragment().position());
            cursor.setPosition(piece.fragment().position() + piece.fragment().length(),
                               QTextCursor::KeepAnchor);
            cursor.setCharFormat(format);
            changed = true;
            break;  // a change ends the walk through the block
        }
    }
    // Laid out anew as a whole: on a long page, Qt leaves out text that is near a changed picture.
    if (changed) page.markContentsDirty(0, page.characterCount());
}

void frmHelp::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    QTimer::singleShot(0, this, &frmHelp::fitPictures);
}

}  // namespace relay
