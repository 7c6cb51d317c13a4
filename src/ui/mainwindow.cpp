// The main window.
#include "ui/mainwindow.h"

#include "core/captionids.h"
#include "core/columnorder.h"
#include "core/configurationfiles.h"
#include "core/paths.h"
#include "platform/filenames.h"
#include "platform/folders.h"
#include "reports/csvreport.h"
#include "reports/docxreport.h"
#include "reports/htmlreport.h"
#include "reports/reportslist.h"
#include "ui/configurationdialog.h"
#include "ui/desktop.h"
#include "ui/filecommands.h"
#include "ui/folderpanel.h"
#include "ui/gridtablemodel.h"
#include "ui/gridview.h"
#include "ui/prompter.h"
#include "ui/reportcommands.h"
#include "ui/scanrunner.h"
#include "ui/settingscommands.h"
#include "ui/windowplacement.h"
#include "version.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLibraryInfo>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QToolButton>
#include <QTimer>
#include <QTranslator>
#include <QVBoxLayout>

namespace brindar {
namespace {

constexpr int kReadErrorsShown = 20;
constexpr int kAutomaticUpdatePauseMs = 1000;
constexpr int kDefaultPanelWidth = 260;
constexpr int kNoticeMs = 10000;
const QString kCrLf = QStringLiteral("\r\n");

QString Main(const Captions& captions, int number) { return captions.text(CaptionSection::Main, number); }

}  // namespace

MainWindow::MainWindow(Session session, Prompter& prompter, Desktop& desktop, bool webdings, QWidget* parent)
    : QMainWindow(parent), session_(std::move(session)), prompter_(prompter), desktop_(desktop), webdings_(webdings)
{
    setObjectName(QStringLiteral("frmBrindarDocsOffice"));
    scanner_ = new ScanRunner(this);
    task_ = new BackgroundTask(this);
    watcher_ = new QFileSystemWatcher(this);
    watchPause_ = new QTimer(this);
    watchPause_->setSingleShot(true);
    watchPause_->setInterval(kAutomaticUpdatePauseMs);
    qtTranslator_ = new QTranslator(this);
    buildLayout();
    connectSignals();
    applyConfiguration();
}

MainWindow::~MainWindow()
{
    // The workers hold references into this window's session snapshot copies only, but
    // their deliveries target this object: both stop before it goes.
    scanner_->stopAndWait();
    task_->stopAndWait();
}

void MainWindow::buildLayout()
{
    actions_ = new MainActions(menuBar(), this);

    panel_ = new FolderPanel(this);
    auto* right = new QWidget(this);
    auto* rightLayout = new QVBoxLayout(right);
    rightLayout->setContentsMargins(0, 0, 0, 0);
    auto* pathRow = new QHBoxLayout;
    pathLabel_ = new QLabel(right);
    path_ = new QLineEdit(right);
    path_->setObjectName(QStringLiteral("txtRepertoire"));
    pathLabel_->setBuddy(path_);
    parent_ = new QToolButton(right);
    parent_->setObjectName(QStringLiteral("cmdParent"));
    parent_->setIcon(style()->standardIcon(QStyle::SP_FileDialogToParent));
    parent_->setAutoRaise(true);
    pathRow->addWidget(pathLabel_);
    pathRow->addWidget(path_, 1);
    pathRow->addWidget(parent_);

    model_ = new GridTableModel(this);
    grid_ = new GridView(right);
    grid_->setGridModel(model_);
    // The grid's own keys: the actions of the selected files act where the grid is.
    for (WindowCommand command : {WindowCommand::Open, WindowCommand::Delete, WindowCommand::Copy, WindowCommand::SelectAll})
        grid_->addAction(actions_->action(command));

    checks_ = new QWidget(right);
    auto* checkRow = new QHBoxLayout(checks_);
    checkRow->setContentsMargins(0, 0, 0, 0);
    emptyColumns_ = new QCheckBox(checks_);
    emptyColumns_->setObjectName(QStringLiteral("chkColonnesVides"));
    automaticUpdate_ = new QCheckBox(checks_);
    automaticUpdate_->setObjectName(QStringLiteral("chkMiseAJour"));
    checkRow->addWidget(emptyColumns_);
    checkRow->addWidget(automaticUpdate_);
    checkRow->addStretch(1);

    rightLayout->addLayout(pathRow);
    rightLayout->addWidget(grid_, 1);
    rightLayout->addWidget(checks_);

    splitter_ = new QSplitter(this);
    splitter_->setObjectName(QStringLiteral("splitter"));
    splitter_->addWidget(panel_);
    splitter_->addWidget(right);
    splitter_->setStretchFactor(1, 1);
    splitter_->setChildrenCollapsible(false);
    setCentralWidget(splitter_);

    status_ = new QLabel(this);
    status_->setObjectName(QStringLiteral("lblStatus"));
    cache_ = new QLabel(this);
    cache_->setObjectName(QStringLiteral("lblCache"));
    progress_ = new QProgressBar(this);
    progress_->setObjectName(QStringLiteral("progress"));
    progress_->setMaximumWidth(200);
    progress_->hide();
    stop_ = new QPushButton(this);
    stop_->setObjectName(QStringLiteral("cmdStop"));
    stop_->hide();
    statusBar()->addWidget(status_, 1);
    statusBar()->addPermanentWidget(cache_);
    statusBar()->addPermanentWidget(progress_);
    statusBar()->addPermanentWidget(stop_);
}

void MainWindow::connectSignals()
{
    connect(actions_, &MainActions::triggered, this, &MainWindow::run);
    connect(actions_, &MainActions::languageChosen, this, &MainWindow::chooseLanguage);
    connect(panel_, &FolderPanel::commandTriggered, this, &MainWindow::run);
    connect(panel_, &FolderPanel::folderChosen, this, [this](const QString& folder) {
        if (folder != folder_)
            showFolder(folder);
    });
    connect(path_, &QLineEdit::returnPressed, this, &MainWindow::goToTypedFolder);
    connect(parent_, &QToolButton::clicked, this, [this] {
        if (folder_ != u"/")
            showFolder(NearestExistingFolder(QDir::cleanPath(folder_ + QStringLiteral("/..")), QStringLiteral("/")));
    });
    auto* up = new QShortcut(QKeySequence(Qt::ALT | Qt::Key_Up), this);
    connect(up, &QShortcut::activated, parent_, &QToolButton::click);
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(escape, &QShortcut::activated, this, &MainWindow::stopWork);
    connect(stop_, &QPushButton::clicked, this, &MainWindow::stopWork);

    connect(grid_, &GridView::sortRequested, this, [this](int column) { model_->sortByColumn(column); });
    connect(grid_, &GridView::rowActivated, this, [this] {
        run(session_.configuration.doubleClicProprietes ? WindowCommand::Properties : WindowCommand::Open);
    });
    connect(grid_, &GridView::contextMenuRequested, this, &MainWindow::showPopup);
    connect(grid_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { actions_->setRowsSelected(!grid_->selectedRows().isEmpty()); });
    connect(emptyColumns_, &QCheckBox::toggled, this, [this](bool display) {
        model_->setDisplayEmptyColumns(display);
        save(SettingsChange().setBool(key::DisplayEmptyColumns, display));
    });
    connect(automaticUpdate_, &QCheckBox::toggled, this, [this](bool on) {
        save(SettingsChange().setBool(key::AutomaticUpdate, on));
        showFolder(folder_);
    });
    connect(watcher_, &QFileSystemWatcher::directoryChanged, this, [this](const QString& path) {
        folderChanged_ = folderChanged_ || path == folder_;
        watchPause_->start();
    });
    connect(watchPause_, &QTimer::timeout, this, &MainWindow::folderChangedOnDisk);

    connect(scanner_, &ScanRunner::rowsReady, model_, &GridTableModel::appendRows);
    connect(scanner_, &ScanRunner::progress, this, &MainWindow::onScanProgress);
    connect(scanner_, &ScanRunner::finished, this, &MainWindow::onScanFinished);
}

// Everything that follows the configuration in use: the check marks, the grid's columns
// and options, the reports list, the texts.
void MainWindow::applyConfiguration()
{
    const Configuration& c = session_.configuration;
    actions_->mirror(c, session_.chooser.fullGrid);
    actions_->setLanguages(OfferedLanguages(session_.settingsFolder, session_.dataFolder), c.langue);
    const QSignalBlocker blockEmpty(emptyColumns_);
    const QSignalBlocker blockUpdate(automaticUpdate_);
    emptyColumns_->setChecked(c.displayEmptyColumns);
    automaticUpdate_->setChecked(c.automaticUpdate);
    grid_->setLinesPerRow(c.lignesTexte);
    grid_->setHorizontalScrollBarShown(c.barreHorizontale);
    setFullGrid(session_.chooser.fullGrid);
    panel_->setReportsList(ReadReportsList(ReportsListPath(session_.settingsFolder, session_.chooser.nom)));
    resetGrid();
    retranslate();
}

void MainWindow::resetGrid()
{
    GridModel grid(session_.columns, session_.configuration);
    model_->reset(std::move(grid));
    const Configuration& c = session_.configuration;
    model_->setHighlightFilesWithMetadata(c.surligner);
    model_->setHighlightUserColumns(c.surlignerProprietesPersonnelles);
    model_->setHighlightColour(c.couleurSurlignage, palette().color(QPalette::Highlight));
    model_->setToolTips(c.toolTips);
    model_->setDisplayEmptyColumns(emptyColumns_->isChecked());
    grid_->applyWidths();
}

void MainWindow::retranslate()
{
    const Captions& captions = session_.captions;
    actions_->retranslate(captions);
    panel_->retranslate(captions);
    pathLabel_->setText(captions.text(caption::FolderLabel));
    parent_->setToolTip(captions.text(caption::ParentFolder));
    emptyColumns_->setText(Main(captions, 54));
    automaticUpdate_->setText(Main(captions, 55));
    stop_->setText(Main(captions, 53));
    model_->setHeaderToolTip(Main(captions, 91));
    updateTitle();
    actions_->action(WindowCommand::UseNTFSCache)->setToolTip(captions.text(caption::CacheLocation).arg(CacheFolder()));
    // Qt's own texts (standard buttons, file and colour dialogs) in the same language.
    QCoreApplication::removeTranslator(qtTranslator_);
    if (qtTranslator_->load(QStringLiteral("qtbase_") + captions.text(caption::QtLocale),
                            QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(qtTranslator_);
}

void MainWindow::updateTitle()
{
    setWindowTitle(Main(session_.captions, 73) + u' ' + folder_ + QStringLiteral(" - ") +
                   QLatin1String(kProgramTitle));
}

void MainWindow::start(const QString& folder)
{
    QList<QRect> screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens << screen->availableGeometry();
    const QRect primary = QGuiApplication::primaryScreen() ? QGuiApplication::primaryScreen()->availableGeometry()
                                                           : QRect(0, 0, 1280, 800);
    const Placement placement = PlacementOf(session_.chooser, screens, primary, QSize(1100, 700));
    setGeometry(placement.geometry);
    const int panelWidth = session_.chooser.panelWidth.value_or(kDefaultPanelWidth);
    splitter_->setSizes({panelWidth, std::max(1, placement.geometry.width() - panelWidth)});
    if (placement.maximised)
        showMaximized();
    else
        show();

    const QString wanted = folder.isEmpty() ? session_.configuration.repertoire : folder;
    const QString shown = NearestExistingFolder(wanted, QDir::homePath());
    showFolder(shown);
    // Said over the status bar for a while: the counts of the folder shown come after it.
    if (!wanted.isEmpty() && shown != QDir::cleanPath(wanted))
        statusBar()->showMessage(session_.captions.text(caption::DirectoryNotFound) + u' ' + wanted, kNoticeMs);
}

void MainWindow::showFolder(const QString& folder, bool rescan)
{
    scanner_->stopAndWait();
    folder_ = folder;
    panel_->showFolder(folder);
    path_->setText(folder);
    updateTitle();
    // The folder shown is the one the next start opens.
    if (session_.configuration.repertoire != folder)
        save(SettingsChange().set(key::Repertoire, folder));
    if (!watcher_->directories().isEmpty())
        watcher_->removePaths(watcher_->directories());
    // The parent is watched too: a folder renamed or moved away tells only its parent.
    if (automaticUpdate_->isChecked() && IsDirectory(folder)) {
        watcher_->addPath(folder);
        if (folder != u"/")
            watcher_->addPath(QFileInfo(folder).path());
    }
    model_->clearRows();
    cache_->clear();
    status_->setText(Main(session_.captions, 74));
    progress_->setRange(0, 0);
    progress_->show();
    stop_->show();
    scanner_->start(session_, ScanRequest{folder, rescan, 0});
}

void MainWindow::onScanProgress(const ScanProgress& progress)
{
    progress_->setRange(0, progress.total);
    progress_->setValue(progress.done);
}

void MainWindow::onScanFinished(const ScanResult& result)
{
    if (!task_->isRunning()) {
        progress_->hide();
        stop_->hide();
    }
    model_->applySavedSort();
    grid_->horizontalHeader()->setSortIndicatorShown(model_->grid().sortColumn() >= 0);
    if (result.stopped)
        status_->setText(Main(session_.captions, 75));
    else if (!result.listed)
        status_->setText(session_.captions.text(caption::FolderCannotBeListed) + u' ' + folder_);
    else
        status_->setText(CountsText(session_.captions, result.files, result.documents));
    cache_->setText(result.cacheStatus);
    if (!reselect_.isEmpty()) {
        QList<int> rows;
        for (int row = 0; row < model_->grid().rowCount(); ++row)
            if (reselect_.contains(model_->grid().cell(row, 0)))
                rows << row;
        grid_->selectRows(rows);
        reselect_.clear();
    }
    if (!result.messages.isEmpty())
        prompter_.message(this, Prompter::Icon::Exclamation,
                          NamesMessage(session_.captions, QString(), result.messages, kReadErrorsShown));
    emit scanFinished();
}

void MainWindow::stopWork()
{
    scanner_->stop();
    task_->stop();
}

void MainWindow::setBusy(bool busy, const QString& status)
{
    actions_->setReportsEnabled(!busy);
    panel_->setReportsEnabled(!busy);
    if (busy) {
        QGuiApplication::setOverrideCursor(Qt::BusyCursor);
        status_->setText(status);
        progress_->setRange(0, 0);
        progress_->show();
        stop_->show();
    } else {
        QGuiApplication::restoreOverrideCursor();
        progress_->hide();
        stop_->hide();
    }
}

// Settings are written the moment they change; a folder where they cannot be saved is
// said once, and the window goes on with the change in memory.
void MainWindow::save(const SettingsChange& change)
{
    const auto error = WriteKeepingSwitches(session_, change);
    if (error && !settingsErrorShown_) {
        settingsErrorShown_ = true;
        prompter_.message(this, Prompter::Icon::Exclamation, *error);
    }
}

void MainWindow::setOption(WindowCommand command, bool on)
{
    for (const OptionSwitch& option : OptionSwitches())
        if (option.command == command)
            save(SettingsChange().setBool(option.key, on));
    switch (command) {
    case WindowCommand::Surligner:
        model_->setHighlightFilesWithMetadata(on);
        break;
    case WindowCommand::SurlignerProprietesPersonnelles:
        model_->setHighlightUserColumns(on);
        break;
    case WindowCommand::ToolTips:
        model_->setToolTips(on);
        break;
    case WindowCommand::BarreHorizontale:
        grid_->setHorizontalScrollBarShown(on);
        break;
    case WindowCommand::LocalTime:
        // Rows of the cache hold dates in the old form, under the same cache name.
        showFolder(folder_, true);
        break;
    default:
        break;
    }
}

void MainWindow::setFullGrid(bool full)
{
    panel_->setVisible(!full);
    checks_->setVisible(!full);
    session_.chooser.fullGrid = full;
}

void MainWindow::chooseColour()
{
    const QColor initial = ColourOfWord(session_.configuration.couleurSurlignage, palette().color(QPalette::Highlight));
    if (const auto colour = prompter_.colour(this, initial)) {
        save(SettingsChange().setNumber(key::CouleurSurlignage, WordOfColour(*colour)));
        model_->setHighlightColour(session_.configuration.couleurSurlignage, palette().color(QPalette::Highlight));
    }
}

void MainWindow::chooseLanguage(const QString& name)
{
    save(model_->grid().stateChange());
    if (auto error = session_.chooseLanguage(name); error && !settingsErrorShown_) {
        settingsErrorShown_ = true;
        prompter_.message(this, Prompter::Icon::Exclamation, *error);
    }
    applyConfiguration();
    showFolder(folder_);
}

void MainWindow::configurationDialog(WindowCommand command)
{
    const auto mode = command == WindowCommand::SelectConfiguration  ? ConfigurationDialog::Mode::Select
                      : command == WindowCommand::RemoveConfiguration ? ConfigurationDialog::Mode::Remove
                                                                : ConfigurationDialog::Mode::Conditions;
    const QString current = mode == ConfigurationDialog::Mode::Conditions ? session_.chooser.nomConditions
                                                                          : session_.chooser.nom;
    ConfigurationDialog dialog(mode, session_.settingsFolder, current, session_.captions, prompter_, this);
    if (prompter_.exec(dialog) != QDialog::Accepted)
        return;
    const QString name = dialog.chosenName();
    switch (mode) {
    case ConfigurationDialog::Mode::Conditions:
        save(SettingsChange().set(key::NomConditions, name));
        return;
    case ConfigurationDialog::Mode::Select:
        // The configuration left keeps the widths and sort it was shown with.
        save(model_->grid().stateChange());
        if (auto error = session_.selectConfiguration(name); error && !settingsErrorShown_) {
            settingsErrorShown_ = true;
            prompter_.message(this, Prompter::Icon::Exclamation, *error);
        }
        break;
    case ConfigurationDialog::Mode::Remove:
        if (name.compare(current, Qt::CaseInsensitive) != 0)
            return;
        // The chooser names the built-in configuration again.
        session_ = StartSession(session_.settingsFolder, session_.dataFolder, session_.system);
        break;
    }
    configurationChanged();
}

void MainWindow::settingsDialog(WindowCommand command)
{
    if (command == WindowCommand::EditReportsList) {
        if (const auto edit = EditReportsList(this, prompter_, session_, folder_)) {
            panel_->setReportsList(edit->list);
            if (!edit->goTo.isEmpty() && IsDirectory(edit->goTo))
                showFolder(edit->goTo);
        }
        return;
    }
    const auto change = command == WindowCommand::DisplayedFiles      ? AskFileSelection(this, prompter_, session_)
                        : command == WindowCommand::DisplayedMetadata ? AskDisplayedMetadata(this, prompter_, session_)
                        : command == WindowCommand::ColumnOrder  ? AskColumnOrder(this, prompter_, session_)
                        : command == WindowCommand::HtmlOptions  ? AskHtmlOptions(this, prompter_, session_)
                                                                 : AskReportsListFolder(this, prompter_, session_);
    if (!change)
        return;
    save(*change);
    if (command == WindowCommand::DisplayedMetadata) {
        session_.buildColumns();
        resetGrid();
    }
    if (command == WindowCommand::DisplayedFiles || command == WindowCommand::DisplayedMetadata)
        showFolder(folder_, true);  // the cache's name covers neither filters nor options
    else if (command == WindowCommand::ColumnOrder)
        session_.columns.htmlOrder = ReadColumnOrder(session_.configurationFile, int(session_.columns.columns.size()));
}

void MainWindow::configurationChanged()
{
    applyConfiguration();
    showFolder(NearestExistingFolder(session_.configuration.repertoire, folder_));
}

QStringList MainWindow::selectedNames() const
{
    QStringList names;
    for (int row : grid_->selectedRows())
        names << model_->grid().cell(row, 0);
    return names;
}

void MainWindow::fileCommand(WindowCommand command)
{
    const QList<int> rows = grid_->selectedRows();
    if (rows.isEmpty())
        return;
    const FileCommandContext context{this, prompter_, desktop_, session_.captions, folder_};
    const QStringList names = selectedNames();
    switch (command) {
    case WindowCommand::Open:
        OpenFiles(context, names);
        break;
    case WindowCommand::OpenWithEditor:
        OpenInTextEditor(context, names);
        break;
    case WindowCommand::Properties:
        ShowProperties(context, names, RowMetadata(model_->grid(), rows.front()));
        break;
    case WindowCommand::Rename:
        if (const auto renamed = RenameFile(context, names.front())) {
            reselect_ = {*renamed};
            showFolder(folder_, true);
        }
        break;
    case WindowCommand::Delete:
        if (DeleteFiles(context, names))
            showFolder(folder_, true);
        break;
    case WindowCommand::Copy:
        QGuiApplication::clipboard()->setText(RowsAsText(model_->grid(), rows));
        break;
    default:
        break;
    }
}

void MainWindow::showPopup(int row, QPoint globalPos)
{
    if (!grid_->selectedRows().contains(row))
        grid_->selectRows({row});
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("mnuPopup"));
    menu.setToolTipsVisible(true);
    if (session_.configuration.contextuel)
        AddMetadataEntries(menu, model_->grid(), row, session_.captions);
    for (WindowCommand command : {WindowCommand::Open, WindowCommand::OpenWithEditor, WindowCommand::Properties, WindowCommand::Rename,
                            WindowCommand::Delete, WindowCommand::Copy})
        menu.addAction(actions_->action(command));
    menu.exec(globalPos);
}

void MainWindow::goToTypedFolder()
{
    QString typed = path_->text().trimmed();
    if (typed.startsWith(u'~'))
        typed = QDir::homePath() + typed.mid(1);
    typed = QDir::cleanPath(typed);
    if (!typed.startsWith(u'/') || !IsDirectory(typed)) {
        prompter_.message(this, Prompter::Icon::Exclamation,
                          session_.captions.text(caption::DirectoryNotFound) + u' ' + path_->text());
        path_->setText(folder_);
        return;
    }
    showFolder(typed);
}

void MainWindow::folderChangedOnDisk()
{
    if (!automaticUpdate_->isChecked())
        return;
    const bool changed = std::exchange(folderChanged_, false);
    if (IsDirectory(folder_)) {
        if (changed)
            showFolder(folder_, true);
        return;
    }
    // The folder has gone: nothing of it is shown any longer.
    scanner_->stopAndWait();
    model_->clearRows();
    status_->setText(session_.captions.text(caption::DirectoryNotFound) + u' ' + folder_);
}

void MainWindow::run(WindowCommand command)
{
    if (const int lines = int(command) - int(WindowCommand::Lines1) + 1; lines >= 1 && lines <= 5) {
        save(SettingsChange().setNumber(key::LignesTexte, lines));
        return grid_->setLinesPerRow(lines);
    }
    switch (command) {
    case WindowCommand::Open:
    case WindowCommand::OpenWithEditor:
    case WindowCommand::Properties:
    case WindowCommand::Rename:
    case WindowCommand::Delete:
    case WindowCommand::Copy:
        fileCommand(command);
        break;
    case WindowCommand::SelectAll:
        grid_->selectAll();
        break;
    case WindowCommand::Refresh:
        showFolder(folder_, true);
        break;
    case WindowCommand::Exit:
        close();
        break;
    case WindowCommand::SelectConfiguration:
    case WindowCommand::RemoveConfiguration:
    case WindowCommand::SelectConditions:
        configurationDialog(command);
        break;
    case WindowCommand::DisplayedFiles:
    case WindowCommand::DisplayedMetadata:
    case WindowCommand::ColumnOrder:
    case WindowCommand::HtmlOptions:
    case WindowCommand::EditReportsList:
        settingsDialog(command);
        break;
    case WindowCommand::Hypertext:
        EditSubstitutions(this, prompter_, session_);
        break;
    case WindowCommand::Surligner:
    case WindowCommand::SurlignerProprietesPersonnelles:
    case WindowCommand::ToolTips:
    case WindowCommand::Contextuel:
    case WindowCommand::DoubleClicProprietes:
    case WindowCommand::BarreHorizontale:
    case WindowCommand::LocalTime:
    case WindowCommand::UseNTFSCache:
        setOption(command, actions_->action(command)->isChecked());
        break;
    case WindowCommand::HighlightColour:
        chooseColour();
        break;
    case WindowCommand::FullGrid:
    case WindowCommand::GridAndButtons:
        setFullGrid(command == WindowCommand::FullGrid);
        actions_->action(command)->setChecked(true);
        break;
    case WindowCommand::HtmlReport:
    case WindowCommand::CsvReport:
    case WindowCommand::WordReport:
        reportCommand(command);
        break;
    case WindowCommand::BuildReportsList:
        buildReportsList();
        break;
    case WindowCommand::AddDirectory:
    case WindowCommand::RemoveDirectory:
        changeReportsList(command);
        break;
    case WindowCommand::ReportsListFolder:
        settingsDialog(command);
        break;
    case WindowCommand::HelpContents:
        prompter_.message(this, Prompter::Icon::Information, session_.captions.text(caption::HelpNotInstalled));
        break;
    case WindowCommand::About:
        prompter_.message(this, Prompter::Icon::Information, QLatin1String(kProgramTitle) + u' ' +
                          Main(session_.captions, 78) + u' ' + QLatin1String(kProgramVersion) + kCrLf + QStringLiteral("Qt ") + QLatin1String(qVersion()));
        break;
    case WindowCommand::AboutQt:
        QApplication::aboutQt();
        break;
    default:
        break;  // the dialogs not part of the window yet: their entries stay disabled
    }
}

void MainWindow::reportCommand(WindowCommand command)
{
    ReportContext context = ReportContextOf(session_);
    context.webdings = webdings_;
    const QList<int>& order = session_.columns.htmlOrder;
    const GridModel& grid = model_->grid();
    const ReportCommandContext commands{this, prompter_, desktop_, session_.captions, folder_};
    if (command == WindowCommand::WordReport) {
        if (grid.rowCount() == 0) {
            prompter_.message(this, Prompter::Icon::Exclamation, Main(session_.captions, 71));
            return;
        }
        // The document is built from a copy, so the grid may change while it is written.
        auto outcome = std::make_shared<ReportOutcome>();
        const QString shown = status_->text();
        setBusy(true, Main(session_.captions, 89));
        task_->start(
            [outcome, grid, order, folder = folder_, context](const std::atomic<bool>&) {
                *outcome = WriteWordReport(grid, order, folder, context);
            },
            [this, outcome, commands, shown] {
                setBusy(false);
                status_->setText(shown);
                ShowReportOutcome(commands, *outcome, true, Main(session_.captions, 72));
                emit workFinished();
            });
        return;
    }
    if (grid.rowCount() == 0) {
        prompter_.message(this, Prompter::Icon::Exclamation,
                          Main(session_.captions, command == WindowCommand::CsvReport ? 65 : 80));
        return;
    }
    if (command == WindowCommand::CsvReport && !ConfirmCsvReport(commands, context))
        return;
    setBusy(true, status_->text());
    const ReportOutcome outcome = command == WindowCommand::CsvReport ? WriteCsvReport(grid, order, folder_, context)
                                                                : WriteHtmlReport(grid, order, folder_, context);
    setBusy(false);
    ShowReportOutcome(commands, outcome, command == WindowCommand::HtmlReport,
                      session_.captions.text(caption::UnableToOpenFile));
    emit workFinished();
}

void MainWindow::buildReportsList()
{
    if (ReadReportsList(ReportsListPath(session_.settingsFolder, session_.chooser.nom)).isEmpty()) {
        prompter_.message(this, Prompter::Icon::Information, Main(session_.captions, 81));
        return;
    }
    if (session_.configuration.pathListeTableaux.isEmpty() || !IsDirectory(session_.configuration.pathListeTableaux)) {
        prompter_.message(this, Prompter::Icon::Information, session_.captions.text(caption::NoReportsListFolder));
        settingsDialog(WindowCommand::ReportsListFolder);
        if (session_.configuration.pathListeTableaux.isEmpty())
            return;
    }
    ReportContext context = ReportContextOf(session_);
    context.webdings = webdings_;
    auto outcome = std::make_shared<ReportOutcome>();
    auto errors = std::make_shared<QStringList>();
    setBusy(true, session_.captions.text(caption::BuildingReportsList));
    // Each folder of the list is scanned on the worker with a snapshot of the session; the
    // folder shown and "Repertoire" are never touched, so nothing needs restoring after.
    task_->start(
        [this, outcome, errors, context, snapshot = session_](const std::atomic<bool>& stop) {
            const auto scan = [&](const QString& folder) {
                ScanResult result;
                GridModel grid = ScanIntoGrid(snapshot, folder, &result);
                *errors += result.messages;
                return grid;
            };
            const auto progress = [this](const ReportsListProgress& p) {
                QMetaObject::invokeMethod(this, [this, p] {
                    progress_->setRange(0, p.total);
                    progress_->setValue(p.done);
                    status_->setText(session_.captions.text(caption::BuildingReportsList) + u' ' + p.directory);
                });
            };
            *outcome = WriteReportsListPage(context.reportsList, snapshot.columns.htmlOrder, context, scan, progress,
                                            &stop);
        },
        [this, outcome, errors] {
            setBusy(false);
            status_->setText(outcome->stopped ? Main(session_.captions, 75) : QString());
            if (!errors->isEmpty())
                prompter_.message(this, Prompter::Icon::Exclamation,
                                  NamesMessage(session_.captions, QString(), *errors, kReadErrorsShown));
            ShowReportOutcome({this, prompter_, desktop_, session_.captions, folder_}, *outcome, true,
                              session_.captions.text(caption::UnableToOpenFile));
            emit workFinished();
        });
}

void MainWindow::changeReportsList(WindowCommand command)
{
    const ReportCommandContext commands{this, prompter_, desktop_, session_.captions, folder_};
    if (auto list = ChangeReportsList(commands, ReportsListPath(session_.settingsFolder, session_.chooser.nom),
                                      command == WindowCommand::AddDirectory))
        panel_->setReportsList(*list);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    // Work in progress stops and unwinds first: nothing is half-written when the window goes.
    scanner_->stopAndWait();
    task_->stopAndWait();
    if (task_->isRunning()) {
        event->ignore();
        return;
    }
    SettingsChange change = PlacementChange(*this);
    change.set(key::Repertoire, folder_)
        .setBool(key::FullGrid, session_.chooser.fullGrid)
        .setNumber(key::PanelWidth, panel_->isVisible() ? splitter_->sizes().value(0) : session_.chooser.panelWidth.value_or(kDefaultPanelWidth))
        .add(model_->grid().stateChange());
    save(change);
    event->accept();
}

}  // namespace brindar
