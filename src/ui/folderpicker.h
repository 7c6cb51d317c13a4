// A folder picker: the drive list `Lecteurs` (mounted volumes) over the folder tree
// `Chemins` (folders only). The main window's panel and the dialogs that choose a folder
// share it.
#pragma once

#include <QString>
#include <QWidget>

class QComboBox;
class QFileSystemModel;
class QLabel;
class QTimer;
class QTreeView;

namespace brindar {

class FolderPicker final : public QWidget {
    Q_OBJECT
public:
    explicit FolderPicker(QWidget* parent = nullptr);

    void setCaptions(const QString& drive, const QString& folder);
    // Shows `folder` in the drive list and the tree without announcing it as chosen.
    void showFolder(const QString& folder);
    // The folder selected in the tree (empty before any).
    QString currentFolder() const;
    // The volumes again (a disk plugged in since).
    void reloadVolumes();

signals:
    // A folder chosen by the user in the tree (after a short pause, so that browsing with
    // the keyboard does not announce every folder it passes) or in the drive list.
    void folderChosen(const QString& folder);

private:
    void chooseVolume(int index);
    void selectShownFolder();

    QLabel* driveLabel_;
    QComboBox* drives_;
    QLabel* folderLabel_;
    QTreeView* tree_;
    QFileSystemModel* folders_;
    QTimer* pause_;
    QString shownFolder_;
    bool showing_ = false;
};

}  // namespace brindar
