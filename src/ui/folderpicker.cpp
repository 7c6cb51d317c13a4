// The folder picker: drive list over folder tree.
#include "ui/folderpicker.h"

#include "platform/volumes.h"

#include <QComboBox>
#include <QDir>
#include <QFileSystemModel>
#include <QLabel>
#include <QTimer>
#include <QTreeView>
#include <QVBoxLayout>

namespace brindar {
namespace {

// Long enough to pass over folders with the arrow keys, short enough to feel immediate.
constexpr int kBrowsePauseMs = 300;

}  // namespace

FolderPicker::FolderPicker(QWidget* parent) : QWidget(parent)
{
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
    connect(drives_, &QComboBox::activated, this, &FolderPicker::chooseVolume);
    connect(folders_, &QFileSystemModel::directoryLoaded, this, [this](const QString& path) {
        if (shownFolder_ == path || shownFolder_.startsWith(path == u"/" ? path : path + u'/'))
            selectShownFolder();
    });

    layout->addWidget(driveLabel_);
    layout->addWidget(drives_);
    layout->addWidget(folderLabel_);
    layout->addWidget(tree_, 1);
    reloadVolumes();
}

void FolderPicker::setCaptions(const QString& drive, const QString& folder)
{
    driveLabel_->setText(drive);
    folderLabel_->setText(folder);
}

QString FolderPicker::currentFolder() const
{
    const QModelIndex current = tree_->currentIndex();
    return current.isValid() ? folders_->filePath(current) : QString();
}

void FolderPicker::reloadVolumes()
{
    drives_->clear();
    for (const MountedVolume& volume : MountedVolumes()) {
        const QString text = volume.label.isEmpty() ? volume.rootPath
                                                    : QStringLiteral("%1  [%2]").arg(volume.rootPath, volume.label);
        drives_->addItem(text, volume.rootPath);
    }
}

void FolderPicker::chooseVolume(int index)
{
    const QString root = drives_->itemData(index).toString();
    if (!root.isEmpty())
        emit folderChosen(root);
}

void FolderPicker::showFolder(const QString& folder)
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

void FolderPicker::selectShownFolder()
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
}  // namespace brindar
