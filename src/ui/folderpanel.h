// The main window's left panel: the drive list, the folder tree, the report buttons and
// the current reports list.
#pragma once

#include "core/language.h"
#include "reports/reportslist.h"
#include "ui/mainactions.h"

#include <QList>
#include <QWidget>

class QLabel;
class QListWidget;
class QPushButton;

namespace brindar {

class FolderPicker;

class FolderPanel final : public QWidget {
    Q_OBJECT
public:
    explicit FolderPanel(QWidget* parent = nullptr);

    void retranslate(const Captions& captions);
    // Shows `folder` in the drive list and the tree without asking for a scan.
    void showFolder(const QString& folder);
    void setReportsList(const ReportsList& list);
    void setReportsEnabled(bool enabled);

signals:
    // A folder chosen in the tree (after a short pause, so that browsing with the keyboard
    // does not scan every folder it passes) or in the drive list, or a report double-clicked.
    void folderChosen(const QString& folder);
    void commandTriggered(brindar::WindowCommand command);

private:
    FolderPicker* picker_;
    QList<std::pair<QPushButton*, int>> buttons_;  // button, [Main] caption
    QList<QPushButton*> reportButtons_;
    QLabel* listLabel_;
    QListWidget* reports_;
};

}  // namespace brindar
