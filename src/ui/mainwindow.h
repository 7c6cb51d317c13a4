// The main window: the folder panel, the grid of the folder shown, the menus and the
// status bar. A thin layer: every rule is the engine's; long work runs on worker threads
// over a snapshot of the session, so the window and its STOP stay live.
#pragma once

#include "core/session.h"
#include "scan/directoryscan.h"
#include "ui/mainactions.h"

#include <QMainWindow>
#include <QStringList>
#include <atomic>
#include <memory>

class QCheckBox;
class QFileSystemWatcher;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QSplitter;
class QTimer;
class QToolButton;
class QTranslator;

namespace brindar {

class BackgroundTask;
class Desktop;
class FolderPanel;
class GridTableModel;
class GridView;
class Prompter;
class ScanRunner;

class MainWindow final : public QMainWindow {
    Q_OBJECT
public:
    // `webdings`: whether the report's sort glyph font is installed.
    MainWindow(Session session, Prompter& prompter, Desktop& desktop, bool webdings, QWidget* parent = nullptr);
    ~MainWindow() override;

    // Placement from the chooser, then the scan of `folder`, or of "Repertoire" when it is
    // empty (the nearest existing folder, else the home folder).
    void start(const QString& folder = {});
    // Shows `folder` and scans it; a running scan is stopped first.
    void showFolder(const QString& folder, bool rescan = false);

    QString folder() const { return folder_; }
    const Session& session() const { return session_; }
    const GridTableModel& model() const { return *model_; }
    GridView& grid() const { return *grid_; }
    // Runs a command as its menu entry or button does.
    void run(WindowCommand command);

signals:
    void scanFinished();
    void workFinished();  // a report or the list page

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void buildLayout();
    void connectSignals();
    void retranslate();
    void updateTitle();
    void applyConfiguration();
    void resetGrid();
    void onScanFinished(const ScanResult& result);
    void onScanProgress(const ScanProgress& progress);
    void stopWork();
    void setBusy(bool busy, const QString& status = {});
    void save(const SettingsChange& change);
    void setOption(WindowCommand command, bool on);
    void setFullGrid(bool full);
    void chooseColour();
    void chooseLanguage(const QString& name);
    void configurationDialog(WindowCommand command);
    void configurationChanged();
    void settingsDialog(WindowCommand command);
    QStringList selectedNames() const;
    void fileCommand(WindowCommand command);
    void showPopup(int row, QPoint globalPos);
    void reportCommand(WindowCommand command);
    void buildReportsList();
    void changeReportsList(WindowCommand command);
    void folderChangedOnDisk();
    void goToTypedFolder();

    Session session_;
    Prompter& prompter_;
    Desktop& desktop_;
    bool webdings_;
    QString folder_;
    QStringList reselect_;  // names to select once the scan ends (after a rename)
    bool settingsErrorShown_ = false;
    bool folderChanged_ = false;  // the folder shown, not only its parent, changed on disk

    MainActions* actions_ = nullptr;
    FolderPanel* panel_ = nullptr;
    QSplitter* splitter_ = nullptr;
    QLabel* pathLabel_ = nullptr;
    QLineEdit* path_ = nullptr;
    QToolButton* parent_ = nullptr;
    GridTableModel* model_ = nullptr;
    GridView* grid_ = nullptr;
    QWidget* checks_ = nullptr;
    QCheckBox* emptyColumns_ = nullptr;
    QCheckBox* automaticUpdate_ = nullptr;
    QLabel* status_ = nullptr;
    QLabel* cache_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QPushButton* stop_ = nullptr;
    ScanRunner* scanner_ = nullptr;
    BackgroundTask* task_ = nullptr;
    QFileSystemWatcher* watcher_ = nullptr;
    QTimer* watchPause_ = nullptr;
    QTranslator* qtTranslator_ = nullptr;
};

}  // namespace brindar
