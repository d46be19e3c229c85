// SPDX-License-Identifier: GPL-3.0-or-later
#include "projects/frmAddURL.h"

#include "core/ScreenText.h"
#include "projects/UrlsFromFolder.h"
#include "projects/ui_frmAddURL.h"
#include "widgets/Drives.h"
#include "widgets/Forms.h"
#include "widgets/IconTheme.h"

#include <QDir>
#include <QFileIconProvider>
#include <QFileSystemModel>

namespace relay {

namespace {
// The program's own folder icon, whatever the desktop has.
class FolderIcons final : public QFileIconProvider {
  public:
    QIcon icon(const QFileInfo&) const override { return themedIcon("ProjectFolder"); }
    QIcon icon(IconType) const override { return themedIcon("ProjectFolder"); }
};
}  // namespace

frmAddURL::frmAddURL(Rows& urls, Prompts& prompts, const std::string& folder, QWidget* parent)
    : QDialog(parent),
      m_ui(std::make_unique<Ui::frmAddURL>()),
      m_folders(new QFileSystemModel(this)),
      m_urls(urls),
      m_prompts(prompts) {
    m_ui->setupUi(this);
    m_ui->txtDomain->setText(toScreen(FolderChoice().txtDomain));
    continueAddress(*m_ui->txtDomain, m_ui->txtDomain->text());
    m_folders->setFilter(QDir::Dirs | QDir::NoDotAndDotDot);
    static FolderIcons icons;
    m_folders->setIconProvider(&icons);
    m_folders->setRootPath(QDir::rootPath());
    m_ui->Dir1->setModel(m_folders);
    m_ui->Dir1->setSortingEnabled(true);
    m_ui->Dir1->sortByColumn(0, Qt::AscendingOrder);
    for (int column = 1; column < m_folders->columnCount(); ++column) m_ui->Dir1->hideColumn(column);
    m_ui->Drive1->addItem(tr("Program data"), toScreen(folder));
    fillDrives(*m_ui->Drive1);
    showFolders(toScreen(folder));
    // Folders are loaded and sorted after the list is shown; until the user takes over, keep the chosen one
    // visible.
    const auto keepInSight = [this] {
        if (!m_ui->Dir1->hasFocus())
            m_ui->Dir1->scrollTo(m_ui->Dir1->currentIndex(), QAbstractItemView::PositionAtCenter);
    };
    connect(m_folders, &QFileSystemModel::directoryLoaded, this, keepInSight);
    connect(m_folders, &QFileSystemModel::layoutChanged, this, keepInSight, Qt::QueuedConnection);
    connect(m_ui->Drive1, &QComboBox::activated, this,
            [this](int index) { showFolders(m_ui->Drive1->itemData(index).toString()); });
    connect(m_ui->Command1_0, &QPushButton::clicked, this, &frmAddURL::accept);
    connect(m_ui->Command1_1, &QPushButton::clicked, this, &frmAddURL::reject);
    CenterForm(*this);
}

frmAddURL::~frmAddURL() = default;

void frmAddURL::showFolders(const QString& folder) {
    const QModelIndex index = m_folders->index(folder);
    m_ui->Dir1->setCurrentIndex(index);
    m_ui->Dir1->expand(index);
    m_ui->Dir1->scrollTo(index, QAbstractItemView::PositionAtTop);
}

void frmAddURL::accept() {
    FolderChoice choice;
    choice.txtDomain = fromScreen(m_ui->txtDomain->text());
    choice.html = m_ui->chkExtention_0->isChecked();
    choice.asp = m_ui->chkExtention_1->isChecked();
    choice.cgi = m_ui->chkExtention_2->isChecked();
    choice.chkSubDirectory = m_ui->chkSubDirectory->isChecked();
    choice.folder = fromScreen(m_folders->filePath(m_ui->Dir1->currentIndex()));
    if (addURLFromFolder(m_urls, choice, m_prompts))
        QDialog::accept();
    else
        m_ui->txtDomain->setFocus(Qt::OtherFocusReason);
}

}  // namespace relay
