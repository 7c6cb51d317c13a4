// The left panel of the main window.
#include "ui/folderpanel.h"

#include "platform/volumes.h"

#include <QComboBox>
#include <QDir>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>
#include <QVBoxLayout>

namespace brindar {
namespace {

// Long enough to pass over folders with the arrow keys, short enough to feel immediate.
constexpr int kBrowsePauseMs = 300;

struct ButtonInfo {
    const char* objectName;
    int caption;  // [Main]
    WindowCommand command;
    bool report;  // waits while a report is built
    bool later;   // its dialog is not part of the window yet
};
constexpr ButtonInfo kButtons[] = {
    {"cmdHTML", 56, WindowCommand::HtmlReport, true, false},
    {"cmdHTMLEnsemble", 57, WindowCommand::BuildReportsList, true, false},
    {"cmdCSV", 58, WindowCommand::CsvReport, true, false},
    {"cmdWord", 59, WindowCommand::WordReport, true, false},
    {"cmdXML", 60, WindowCommand::XmlExport, true, true},
    {"cmdAjouterEnsemble", 61, WindowCommand::AddDirectory, true, false},
    {"cmdRetirerEnsemble", 93, WindowCommand::RemoveDirectory, true, false},
    {"cmdModifier", 62, WindowCommand::ModifyProperties, true, true},
};

}  // namespace

FolderPanel::FolderPanel(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("panel"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);

    driveLabel_ = new QLabel(this);
    drives_ = new QComboBox(this);
    drives_->setObjectName(QStringLiteral("Lecteurs"));
    driveLabel_->setBuddy(drives_);
    folderLabel_ = new QLabel(this);

    folders_ = new QFileSystemModel(this);
    folders_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot | QDir::Hidden);
    folders_->setRootPath(QStringLiteral("/"));
    // A folder that vanishes moves the tree's current row to a neighbour: that is not the
    // user choosing it. Connected before the view's own handlers, so it is in place first.
    connect(folders_, &QAbstractItemModel::rowsAboutToBeRemoved, this, [this] {
        showing_ = true;
        QTimer::singleShot(0, this, [this] { showing_ = false; });
    });
    tree_ = new QTreeView(this);
    tree_->setObjectName(QStringLiteral("Chemins"));
    tree_->setModel(folders_);
    for (int column = 1; column < folders_->columnCount(); ++column)
        tree_->hideColumn(column);
    tree_->setHeaderHidden(true);
    tree_->setUniformRowHeights(true);
    folderLabel_->setBuddy(tree_);

    pause_ = new QTimer(this);
    pause_->setSingleShot(true);
    pause_->setInterval(kBrowsePauseMs);
    connect(pause_, &QTimer::timeout, this, [this] {
        const QModelIndex current = tree_->currentIndex();
        if (current.isValid())
            emit folderChosen(folders_->filePath(current));
    });
    connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        if (!showing_)
            pause_->start();
    });
    connect(drives_, &QComboBox::activated, this, &FolderPanel::chooseVolume);
    connect(folders_, &QFileSystemModel::directoryLoaded, this, [this](const QString& path) {
        if (shownFolder_ == path || shownFolder_.startsWith(path == u"/" ? path : path + u'/'))
            selectShownFolder();
    });

    auto* buttons = new QGridLayout;
    int index = 0;
    for (const ButtonInfo& info : kButtons) {
        auto* button = new QPushButton(this);
        button->setObjectName(QLatin1String(info.objectName));
        button->setEnabled(!info.later);
        const WindowCommand command = info.command;
        connect(button, &QPushButton::clicked, this, [this, command] { emit commandTriggered(command); });
        buttons->addWidget(button, index / 2, index % 2);
        ++index;
        buttons_.append({button, info.caption});
        if (info.report && !info.later)
            reportButtons_.append(button);
    }

    listLabel_ = new QLabel(this);
    reports_ = new QListWidget(this);
    reports_->setObjectName(QStringLiteral("lstTableaux"));
    reports_->setSelectionMode(QAbstractItemView::NoSelection);
    listLabel_->setBuddy(reports_);
    connect(reports_, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* item) { emit folderChosen(item->data(Qt::UserRole).toString()); });

    layout->addWidget(driveLabel_);
    layout->addWidget(drives_);
    layout->addWidget(folderLabel_);
    layout->addWidget(tree_, 3);
    layout->addLayout(buttons);
    layout->addWidget(listLabel_);
    layout->addWidget(reports_, 1);
    reloadVolumes();
}

void FolderPanel::reloadVolumes()
{
    drives_->clear();
    for (const MountedVolume& volume : MountedVolumes()) {
        const QString text = volume.label.isEmpty() ? volume.rootPath
                                                    : QStringLiteral("%1  [%2]").arg(volume.rootPath, volume.label);
        drives_->addItem(text, volume.rootPath);
    }
}

void FolderPanel::chooseVolume(int index)
{
    const QString root = drives_->itemData(index).toString();
    if (!root.isEmpty())
        emit folderChosen(root);
}

void FolderPanel::retranslate(const Captions& captions)
{
    driveLabel_->setText(captions.text(CaptionSection::Main, 84));
    folderLabel_->setText(captions.text(CaptionSection::Main, 85));
    listLabel_->setText(captions.text(CaptionSection::List, 1));
    for (const auto& [button, number] : buttons_)
        button->setText(captions.text(CaptionSection::Main, number));
}

void FolderPanel::showFolder(const QString& folder)
{
    showing_ = true;
    pause_->stop();
    // The drive list names the volume holding the folder: the longest root it starts with.
    int best = -1;
    qsizetype bestLength = -1;
    for (int i = 0; i < drives_->count(); ++i) {
        const QString root = drives_->itemData(i).toString();
        const bool holds = folder == root || root == u"/" || folder.startsWith(root + u'/');
        if (holds && root.size() > bestLength) {
            best = i;
            bestLength = root.size();
        }
    }
    if (best >= 0)
        drives_->setCurrentIndex(best);
    shownFolder_ = folder;
    selectShownFolder();
    showing_ = false;
}

// The tree fills itself in the background: the folder shown is selected again as each
// folder on its way is read, until it can be.
void FolderPanel::selectShownFolder()
{
    const QModelIndex index = folders_->index(shownFolder_);
    if (!index.isValid())
        return;
    for (QModelIndex parent = index.parent(); parent.isValid(); parent = parent.parent())
        tree_->expand(parent);
    const bool wasShowing = showing_;
    showing_ = true;
    tree_->setCurrentIndex(index);
    showing_ = wasShowing;
    // The model sorts what it has read a moment later, which moves the rows again.
    QTimer::singleShot(150, tree_, [this] { tree_->scrollTo(tree_->currentIndex(), QAbstractItemView::PositionAtCenter); });
}

void FolderPanel::setReportsList(const ReportsList& list)
{
    reports_->clear();
    for (const ReportEntry& entry : list) {
        auto* item = new QListWidgetItem(entry.title == entry.directory ? entry.directory
                                                                         : entry.title + QStringLiteral("  —  ") +
                                                                               entry.directory,
                                         reports_);
        item->setData(Qt::UserRole, entry.directory);
        item->setFlags(Qt::ItemIsEnabled);
        item->setCheckState(entry.active ? Qt::Checked : Qt::Unchecked);
    }
}

void FolderPanel::setReportsEnabled(bool enabled)
{
    for (QPushButton* button : reportButtons_)
        button->setEnabled(enabled);
}

}  // namespace brindar
