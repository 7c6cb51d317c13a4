// The main window driven as a user drives it, in-process, on a sandbox: settings, cache,
// trash and the folder shown all live in a temporary folder.
#include "core/configurationfiles.h"
#include "core/session.h"
#include "platform/folders.h"
#include "platform/systeminfo.h"
#include "support/tempfolder.h"
#include "ui/folderpicker.h"
#include "ui/gridtablemodel.h"
#include "ui/gridview.h"
#include "ui/mainwindow.h"
#include "ui/recordingdesktop.h"
#include "ui/scriptedprompter.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QStatusBar>
#include <QTimer>
#include <QDir>
#include <QFile>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLibraryInfo>
#include <QTableWidget>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace brindar;
using namespace brindar::test;
using namespace Qt::StringLiterals;

namespace {

QString IniValue(const QString& path, const QString& section, const QString& key)
{
    QString current;
    for (const QByteArray& line : ReadFile(path).split('\n')) {
        const QString text = QString::fromUtf8(line).trimmed();
        if (text.startsWith(u'['))
            current = text.mid(1, text.size() - 2);
        else if (current == section && text.startsWith(key + u'='))
            return text.mid(key.size() + 1);
    }
    return {};
}

// A sandbox holding the settings (the sample configuration, in English), a copy of the
// sample documents, the cache and the trash.
class Sandbox {
public:
    Sandbox()
    {
        qputenv("BRINDAR_HOME", folder.file(u"settings"_s).toUtf8());
        qputenv("XDG_DATA_HOME", folder.file(u"data"_s).toUtf8());
        qputenv("XDG_CACHE_HOME", folder.file(u"cache"_s).toUtf8());
        QDir().mkpath(folder.file(u"data"_s));
        QDir().mkpath(folder.file(u"settings"_s));
        QDir source(SourceFile(u"samples/documents"_s));
        for (const QString& name : source.entryList(QDir::Files))
            folder.write(u"documents/"_s + name, ReadFile(source.filePath(name)));
        QByteArray ini = ReadFile(SourceFile(u"samples/settings/Brindar.ini"_s));
        ini.replace("Langue=French", "Langue=English");
        ini.replace("Repertoire=samples/documents", "Repertoire=" + documents().toUtf8());
        folder.write(u"settings/Brindar.ini"_s, ini);
    }
    ~Sandbox()
    {
        for (const char* name : {"BRINDAR_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
            qunsetenv(name);
    }
    QString documents() const { return folder.file(u"documents"_s); }
    QString settings(const QString& name) const { return folder.file(u"settings/"_s + name); }
    TempFolder folder;
};

// Starts the window as the program does: the session of the settings folder, the
// placement, the first scan.
std::unique_ptr<MainWindow> OpenWindow(ScriptedPrompter& prompter, RecordingDesktop& desktop, const QString& folder = {})
{
    auto window = std::make_unique<MainWindow>(StartSession(SettingsFolder(), DataFolder(), CurrentSystem()), prompter,
                                               desktop, false);
    QSignalSpy scanned(window.get(), &MainWindow::scanFinished);
    window->start(folder);
    EXPECT_TRUE(scanned.wait(20000));
    return window;
}

void WaitForScan(MainWindow& window, const std::function<void()>& action)
{
    QSignalSpy scanned(&window, &MainWindow::scanFinished);
    action();
    ASSERT_TRUE(scanned.count() > 0 || scanned.wait(20000));
}

int ColumnOf(const MainWindow& window, const QString& caption)
{
    for (int column = 0; column < window.model().grid().columnCount(); ++column)
        if (window.model().grid().caption(column) == caption)
            return column;
    return -1;
}

QStringList Names(const MainWindow& window)
{
    QStringList names;
    for (int row = 0; row < window.model().grid().rowCount(); ++row)
        names << window.model().grid().cell(row, 0);
    return names;
}

int RowOf(const MainWindow& window, const QString& name) { return int(Names(window).indexOf(name)); }

void ClickHeader(MainWindow& window, int column)
{
    QHeaderView* header = window.grid().horizontalHeader();
    const int x = header->sectionViewportPosition(column) + header->sectionSize(column) / 2;
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(x, header->height() / 2));
}

QAction* Action(MainWindow& window, const char* name) { return window.findChild<QAction*>(QLatin1String(name)); }

}  // namespace

TEST(MainWindow, EndToEnd)
{
    Sandbox sandbox;
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    auto window = OpenWindow(prompter, desktop);
    EXPECT_EQ(window->folder(), sandbox.documents());
    EXPECT_EQ(window->windowTitle(), u"Metadata of directory "_s + sandbox.documents() + u" - Brindar Pro"_s);
    EXPECT_EQ(Names(*window).size(), 6);

    // Pages sorts as numbers, Title as text, and the selection follows its file.
    const int pages = ColumnOf(*window, u"Pages"_s);
    const int title = ColumnOf(*window, u"Title"_s);
    ASSERT_GE(pages, 0);
    ASSERT_GE(title, 0);
    window->grid().selectRows({RowOf(*window, u"report.pdf"_s)});
    ClickHeader(*window, pages);
    EXPECT_EQ(window->model().grid().sortColumn(), pages);
    EXPECT_EQ(window->grid().selectedRows(), QList<int>{RowOf(*window, u"report.pdf"_s)});
    ClickHeader(*window, title);
    ClickHeader(*window, title);  // descending
    EXPECT_EQ(window->model().grid().sortColumn(), title);
    EXPECT_FALSE(window->model().grid().sortUp());
    EXPECT_EQ(window->grid().selectedRows(), QList<int>{RowOf(*window, u"report.pdf"_s)});

    // Hiding the empty columns hides a column no file fills.
    auto* empty = window->findChild<QCheckBox*>(u"chkColonnesVides"_s);
    ASSERT_TRUE(empty);
    int emptyColumn = -1;
    for (int column = 1; column < window->model().grid().columnCount() && emptyColumn < 0; ++column) {
        bool any = false;
        for (int row = 0; row < window->model().grid().rowCount(); ++row)
            any = any || !window->model().grid().cell(row, column).isEmpty();
        if (!any)
            emptyColumn = column;
    }
    ASSERT_GE(emptyColumn, 0) << "the sample configuration shows a column no sample fills";
    empty->click();
    EXPECT_TRUE(window->grid().isColumnHidden(emptyColumn));
    EXPECT_EQ(IniValue(sandbox.settings(u"Brindar.ini"_s), u"Configuration"_s, u"DisplayEmptyColumns"_s), u"0");
    empty->click();
    EXPECT_FALSE(window->grid().isColumnHidden(emptyColumn));

    // Rename: a forbidden character is refused before anything happens; an existing name
    // is never replaced; a good name renames and the row stays selected.
    window->grid().selectRows({RowOf(*window, u"readme.txt"_s)});
    prompter.texts.push_back(u"read:me.txt"_s);
    Action(*window, "mnuRename")->trigger();
    ASSERT_FALSE(prompter.calls.isEmpty());
    EXPECT_TRUE(prompter.calls.back().text.startsWith(u"Forbidden characters"_s)) << prompter.calls.back().text.toStdString();
    EXPECT_TRUE(QFile::exists(sandbox.documents() + u"/readme.txt"_s));

    prompter.texts.push_back(u"report.pdf"_s);
    Action(*window, "mnuRename")->trigger();
    EXPECT_TRUE(prompter.calls.back().text.startsWith(u"Failed to rename file:\r\n"_s + sandbox.documents() +
                                                      u"/readme.txt\r\n(maybe already opened)"_s))
        << prompter.calls.back().text.toStdString();
    EXPECT_TRUE(QFile::exists(sandbox.documents() + u"/readme.txt"_s));

    prompter.texts.push_back(u"notes.txt"_s);
    WaitForScan(*window, [&] { Action(*window, "mnuRename")->trigger(); });
    EXPECT_TRUE(QFile::exists(sandbox.documents() + u"/notes.txt"_s));
    EXPECT_FALSE(QFile::exists(sandbox.documents() + u"/readme.txt"_s));
    EXPECT_EQ(window->grid().selectedRows(), QList<int>{RowOf(*window, u"notes.txt"_s)});

    // Delete: asked first, then into the sandbox's trash, from which it can come back.
    window->grid().selectRows({RowOf(*window, u"notes.txt"_s)});
    prompter.questions.push_back(false);
    Action(*window, "mnuDelete")->trigger();
    EXPECT_TRUE(QFile::exists(sandbox.documents() + u"/notes.txt"_s));
    prompter.questions.push_back(true);
    WaitForScan(*window, [&] { Action(*window, "mnuDelete")->trigger(); });
    EXPECT_FALSE(QFile::exists(sandbox.documents() + u"/notes.txt"_s));
    EXPECT_TRUE(QFile::exists(sandbox.folder.file(u"data/Trash/files/notes.txt"_s)));
    EXPECT_EQ(Names(*window).size(), 5);

    // The HTML report is written into the folder and opened.
    QSignalSpy worked(window.get(), &MainWindow::workFinished);
    window->findChild<QPushButton*>(u"cmdHTML"_s)->click();
    ASSERT_EQ(desktop.opened.size(), 1);
    EXPECT_EQ(desktop.opened.front(), sandbox.documents() + u"/Brindar.html"_s);
    EXPECT_TRUE(QFile::exists(desktop.opened.front()));

    // Close: placement, widths and sort saved; reopened, they come back.
    window->grid().setColumnWidth(title, 233);
    const QRect geometry = window->normalGeometry();
    window->close();
    const QString ini = sandbox.settings(u"Brindar.ini"_s);
    EXPECT_EQ(IniValue(ini, u"Configuration"_s, u"Sort"_s), QString::number(title));
    EXPECT_EQ(IniValue(ini, u"Configuration"_s, u"Up"_s), u"0");
    EXPECT_EQ(IniValue(ini, u"Configuration"_s, u"Largeur"_s + QString::number(title)), u"233");
    EXPECT_EQ(IniValue(sandbox.settings(u"ChoixConfiguration.ini"_s), u"MainWindow"_s, u"Width"_s),
              QString::number(geometry.width()));
    window.reset();

    auto reopened = OpenWindow(prompter, desktop);
    EXPECT_EQ(reopened->folder(), sandbox.documents());
    EXPECT_EQ(reopened->normalGeometry().size(), geometry.size());
    EXPECT_EQ(reopened->grid().columnWidth(title), 233);
    EXPECT_EQ(reopened->model().grid().sortColumn(), title);
    EXPECT_FALSE(reopened->model().grid().sortUp());
}

// Every switch of the Options menu is written the moment it changes.
TEST(MainWindow, OptionsWriteTheirKeysAtOnce)
{
    Sandbox sandbox;
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    auto window = OpenWindow(prompter, desktop);
    const struct {
        const char* action;
        const char* key;
    } switches[] = {
        {"mnuSurligner", "Surligner"},       {"mnuSurlignerPerso", "SurlignerProprietesPersonnelles"},
        {"mnuToolTips", "ToolTips"},         {"mnuContextuel", "Contextuel"},
        {"mnuDoubleClic", "DoubleClicProprietes"}, {"mnuBarreHorizontale", "BarreHorizontale"},
        {"mnuLocalTime", "LocalTime"},       {"mnuCache", "UseNTFSCache"},
    };
    const QString ini = sandbox.settings(u"Brindar.ini"_s);
    for (const auto& s : switches) {
        QAction* action = Action(*window, s.action);
        ASSERT_TRUE(action) << s.action;
        for (int turn = 0; turn < 2; ++turn) {
            WaitForScan(*window, [&] {
                action->trigger();
                window->run(WindowCommand::Refresh);
            });
            EXPECT_EQ(IniValue(ini, u"Configuration"_s, QLatin1String(s.key)), action->isChecked() ? u"1" : u"0")
                << s.action;
        }
    }
    Action(*window, "mnuLignes3")->trigger();
    EXPECT_EQ(IniValue(ini, u"Configuration"_s, u"LignesTexte"_s), u"3");
    EXPECT_TRUE(Action(*window, "mnuLignes3")->isChecked());
    EXPECT_FALSE(Action(*window, "mnuLignes1")->isChecked());
    EXPECT_GE(window->grid().verticalHeader()->defaultSectionSize(), 3 * window->grid().fontMetrics().lineSpacing());
    EXPECT_LT(window->grid().verticalHeader()->defaultSectionSize(), 4 * window->grid().fontMetrics().lineSpacing());

    prompter.colours.push_back(QColor(0x12, 0x34, 0x56));
    Action(*window, "mnuCouleur")->trigger();
    EXPECT_EQ(IniValue(ini, u"Configuration"_s, u"CouleurSurlignage"_s), QString::number(0x563412));

    // Tooltips stored "0" come back on at the next start (the loader cannot turn them off),
    // but the menu turns them off for the rest of the run, whatever else is written.
    EXPECT_EQ(IniValue(ini, u"Configuration"_s, u"ToolTips"_s), u"1");
    Action(*window, "mnuToolTips")->trigger();
    Action(*window, "mnuSurligner")->trigger();
    EXPECT_FALSE(Action(*window, "mnuToolTips")->isChecked());
    EXPECT_FALSE(window->session().configuration.toolTips);
}

// The Language menu retranslates the menus and the column headers at once.
TEST(MainWindow, LanguageSwitchRetranslates)
{
    Sandbox sandbox;
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    auto window = OpenWindow(prompter, desktop);
    auto* file = window->findChild<QMenu*>(u"mnuFile"_s);
    ASSERT_TRUE(file);
    EXPECT_EQ(file->title(), u"&File");
    QAction* french = Action(*window, "mnuLanguage_French");
    ASSERT_TRUE(french);
    WaitForScan(*window, [&] { french->trigger(); });
    EXPECT_EQ(file->title(), u"&Fichier");
    EXPECT_EQ(Action(*window, "mnuRename")->text(), u"Renommer");
    EXPECT_GE(ColumnOf(*window, u"Titre"_s), 0);
    EXPECT_EQ(window->findChild<QPushButton*>(u"cmdHTML"_s)->text(), u"Rapport HTML");
    EXPECT_EQ(IniValue(sandbox.settings(u"Brindar.ini"_s), u"Configuration"_s, u"Langue"_s), u"French");
    // Qt's own buttons speak the same language, when its translations are installed.
    if (QFile::exists(QLibraryInfo::path(QLibraryInfo::TranslationsPath) + u"/qtbase_fr.qm"_s)) {
        QDialogButtonBox box(QDialogButtonBox::Yes | QDialogButtonBox::Cancel);
        EXPECT_EQ(box.button(QDialogButtonBox::Cancel)->text(), u"Annuler");
    }
    WaitForScan(*window, [&] { Action(*window, "mnuLanguage_English")->trigger(); });
    EXPECT_EQ(file->title(), u"&File");
    QDialogButtonBox box(QDialogButtonBox::Cancel);
    EXPECT_EQ(box.button(QDialogButtonBox::Cancel)->text(), u"Cancel");
}

// The report commands with their questions and messages.
TEST(MainWindow, ReportCommands)
{
    Sandbox sandbox;
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    auto window = OpenWindow(prompter, desktop);

    // CSV: asked first, written, never opened.
    prompter.questions.push_back(false);
    window->run(WindowCommand::CsvReport);
    EXPECT_EQ(prompter.calls.back().text,
              u"Create the CSV report 'Brindar.csv'\r\nin the directory '"_s + sandbox.documents() + u"'"_s);
    EXPECT_FALSE(QFile::exists(sandbox.documents() + u"/Brindar.csv"_s));
    prompter.questions.push_back(true);
    window->run(WindowCommand::CsvReport);
    EXPECT_TRUE(QFile::exists(sandbox.documents() + u"/Brindar.csv"_s));
    EXPECT_TRUE(desktop.opened.isEmpty());

    // Word: built on a worker, then opened.
    QSignalSpy worked(window.get(), &MainWindow::workFinished);
    window->findChild<QPushButton*>(u"cmdWord"_s)->click();
    ASSERT_TRUE(worked.wait(20000));
    EXPECT_EQ(desktop.opened, QStringList{sandbox.documents() + u"/Brindar.docx"_s});
    EXPECT_TRUE(window->findChild<QPushButton*>(u"cmdHTML"_s)->isEnabled());

    // The reports list grows and shrinks from the window, and says when it cannot.
    const QString list = sandbox.settings(u"Brindar.txt"_s);
    window->findChild<QPushButton*>(u"cmdAjouterEnsemble"_s)->click();
    EXPECT_TRUE(ReadFile(list).contains(sandbox.documents().toUtf8()));
    window->findChild<QPushButton*>(u"cmdAjouterEnsemble"_s)->click();
    EXPECT_EQ(prompter.calls.back().text, u"Directory already in list");
    window->findChild<QPushButton*>(u"cmdRetirerEnsemble"_s)->click();
    EXPECT_FALSE(ReadFile(list).contains(sandbox.documents().toUtf8()));
    window->findChild<QPushButton*>(u"cmdRetirerEnsemble"_s)->click();
    EXPECT_EQ(prompter.calls.back().text, u"Directory not in list");

    // A report that cannot be written is said with the reason; the buttons come back and
    // nothing else of the folder goes.
    QDir().mkpath(sandbox.documents() + u"/Brindar.html"_s);
    window->run(WindowCommand::HtmlReport);
    EXPECT_TRUE(prompter.calls.back().text.startsWith(u"Unable to write the report:\r\n"_s))
        << prompter.calls.back().text.toStdString();
    EXPECT_TRUE(window->findChild<QPushButton*>(u"cmdHTML"_s)->isEnabled());
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QDir(sandbox.documents()).entryList(QDir::Files).size(), 8);  // 6 documents, the CSV and Word reports
    QDir().rmdir(sandbox.documents() + u"/Brindar.html"_s);

    // A folder without files: every report says so and writes nothing.
    QDir().mkpath(sandbox.folder.file(u"empty"_s));
    WaitForScan(*window, [&] { window->showFolder(sandbox.folder.file(u"empty"_s)); });
    const struct {
        WindowCommand command;
        QString message;
    } empties[] = {
        {WindowCommand::HtmlReport, u"No file in this directory: no HTML report created"_s},
        {WindowCommand::CsvReport, u"No file in this directory: no CSV report created"_s},
        {WindowCommand::WordReport, u"No file in this directory: no Word report created"_s},
    };
    for (const auto& e : empties) {
        window->run(e.command);
        EXPECT_EQ(prompter.calls.back().text, e.message);
    }
    EXPECT_TRUE(QDir(sandbox.folder.file(u"empty"_s)).entryList(QDir::Files).isEmpty());
}

// The list page asks for its folder when none is set, shows its progress, and a STOP
// half-way writes nothing and leaves the folder shown as it was.
TEST(MainWindow, ListPage)
{
    Sandbox sandbox;
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    QStringList lines;
    for (int folder = 0; folder < 40; ++folder) {
        for (int file = 0; file < 150; ++file)
            sandbox.folder.write(u"many/%1/f%2.html"_s.arg(folder).arg(file),
                                 "<html><head><title>t</title></head></html>");
        lines << u"\"%1\",#TRUE#"_s.arg(sandbox.folder.file(u"many/%1"_s.arg(folder)));
    }
    sandbox.folder.write(u"settings/Brindar.txt"_s, lines.join(u"\r\n"_s).toUtf8() + "\r\n");
    auto window = OpenWindow(prompter, desktop);

    // No folder for the page yet: the window says so and asks for one.
    QDir().mkpath(sandbox.folder.file(u"lists"_s));
    prompter.onExec = [&](QDialog& dialog) {
        EXPECT_EQ(dialog.objectName(), u"frmPathListeTableaux");
        dialog.findChild<FolderPicker*>()->showFolder(sandbox.folder.file(u"lists"_s));
        dialog.findChild<QPushButton*>(u"cmdOK"_s)->click();
        return dialog.result();
    };
    QSignalSpy worked(window.get(), &MainWindow::workFinished);
    window->run(WindowCommand::BuildReportsList);
    EXPECT_EQ(IniValue(sandbox.settings(u"Brindar.ini"_s), u"HTML"_s, u"PathListeTableaux"_s),
              sandbox.folder.file(u"lists"_s));
    // STOP once the first folders are in.
    auto* stop = window->findChild<QPushButton*>(u"cmdStop"_s);
    ASSERT_TRUE(stop->isVisible());
    auto* progress = window->findChild<QProgressBar*>(u"progress"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return progress->value() >= 2 || worked.count() > 0; }, 20000));
    stop->click();
    ASSERT_TRUE(worked.count() > 0 || worked.wait(20000));
    EXPECT_TRUE(QDir(sandbox.folder.file(u"lists"_s)).entryList(QDir::Files).isEmpty());
    EXPECT_TRUE(desktop.opened.isEmpty());
    EXPECT_EQ(window->folder(), sandbox.documents());
    EXPECT_EQ(IniValue(sandbox.settings(u"Brindar.ini"_s), u"Configuration"_s, u"Repertoire"_s), sandbox.documents());

    // Built to the end, it is opened.
    window->run(WindowCommand::BuildReportsList);
    ASSERT_TRUE(worked.wait(60000));
    ASSERT_EQ(desktop.opened.size(), 1);
    EXPECT_TRUE(desktop.opened.front().startsWith(sandbox.folder.file(u"lists/Brindar"_s)));
    EXPECT_TRUE(QFile::exists(desktop.opened.front()));
}

// Creating, selecting and removing configurations from the Configuration menu.
TEST(MainWindow, ConfigurationFiles)
{
    Sandbox sandbox;
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    auto window = OpenWindow(prompter, desktop);
    const auto typeAndConfirm = [](const QString& name, const char* button) {
        return [name, button](QDialog& dialog) {
            dialog.findChild<QLineEdit*>(u"txtNom"_s)->setText(name);
            dialog.findChild<QPushButton*>(QLatin1String(button))->click();
            return dialog.result();
        };
    };

    // A new configuration: asked, created, selected; the one left keeps its widths.
    const int title = ColumnOf(*window, u"Title"_s);
    window->grid().setColumnWidth(title, 321);
    prompter.onExec = typeAndConfirm(u"Photos"_s, "cmdOK");
    prompter.questions.push_back(true);
    WaitForScan(*window, [&] { window->run(WindowCommand::SelectConfiguration); });
    EXPECT_TRUE(QFile::exists(sandbox.settings(u"Photos.ini"_s)));
    EXPECT_EQ(window->session().chooser.nom, u"Photos");
    EXPECT_EQ(IniValue(sandbox.settings(u"ChoixConfiguration.ini"_s), u"Configuration"_s, u"Nom"_s), u"Photos");
    EXPECT_EQ(IniValue(sandbox.settings(u"Brindar.ini"_s), u"Configuration"_s, u"Largeur"_s + QString::number(title)),
              u"321");

    // Back to the first one: its folder and columns again.
    prompter.onExec = typeAndConfirm(u"Brindar"_s, "cmdOK");
    WaitForScan(*window, [&] { window->run(WindowCommand::SelectConfiguration); });
    EXPECT_EQ(window->session().chooser.nom, u"Brindar");
    EXPECT_EQ(window->folder(), sandbox.documents());
    EXPECT_EQ(window->grid().columnWidth(title), 321);

    // Removing the one in use returns to the built-in name.
    prompter.onExec = typeAndConfirm(u"Photos"_s, "cmdSupprimer");
    prompter.questions.push_back(true);
    window->run(WindowCommand::RemoveConfiguration);
    EXPECT_FALSE(QFile::exists(sandbox.settings(u"Photos.ini"_s)));
    EXPECT_EQ(window->session().chooser.nom, u"Brindar");
}

// What goes wrong around the window is said once and clearly, and loses nothing.
TEST(MainWindow, BadInput)
{
    Sandbox sandbox;
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    auto window = OpenWindow(prompter, desktop);
    const auto messages = [&](const QString& start) {
        int count = 0;
        for (const auto& call : prompter.calls)
            count += call.kind == u"message" && call.text.startsWith(start);
        return count;
    };

    // No file manager on the bus: the program's own properties, with the row's values.
    window->grid().selectRows({RowOf(*window, u"report.pdf"_s)});
    QStringList facts;
    prompter.onExec = [&](QDialog& dialog) {
        auto* table = dialog.findChild<QTableWidget*>(u"tblFaits"_s);
        for (int row = 0; table && row < table->rowCount(); ++row)
            facts << table->item(row, 0)->text() + u'=' + table->item(row, 1)->text();
        return int(QDialog::Rejected);
    };
    Action(*window, "mnuProperties")->trigger();
    EXPECT_EQ(desktop.properties, QStringList{sandbox.documents() + u"/report.pdf"_s});
    EXPECT_TRUE(facts.contains(u"Name=report.pdf"_s)) << facts.join(u", "_s).toStdString();
    EXPECT_TRUE(facts.contains(u"Author=Anne Martin"_s)) << facts.join(u", "_s).toStdString();
    EXPECT_TRUE(std::any_of(facts.cbegin(), facts.cend(), [](const QString& f) { return f.startsWith(u"Size="_s); }));

    // A file that cannot go to the trash is named and stays.
    desktop.trashError = u"no trash on this volume"_s;
    prompter.questions.push_back(true);
    WaitForScan(*window, [&] { Action(*window, "mnuDelete")->trigger(); });
    EXPECT_EQ(messages(u"These files could not be moved to the trash"_s), 1);
    EXPECT_TRUE(prompter.calls.back().text.contains(u"report.pdf: no trash on this volume"_s));
    EXPECT_TRUE(QFile::exists(sandbox.documents() + u"/report.pdf"_s));

    // Automatic update: a new file appears by itself; the folder vanishing empties the grid.
    auto* update = window->findChild<QCheckBox*>(u"chkMiseAJour"_s);
    WaitForScan(*window, [&] { update->click(); });
    WaitForScan(*window, [&] { sandbox.folder.write(u"documents/new.txt"_s, "n"); });
    EXPECT_GE(RowOf(*window, u"new.txt"_s), 0);
    QDir().rename(sandbox.documents(), sandbox.folder.file(u"moved"_s));
    auto* status = window->findChild<QLabel*>(u"lblStatus"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return status->text().startsWith(u"Directory not found:"_s); }, 10000))
        << status->text().toStdString();
    EXPECT_EQ(window->model().grid().rowCount(), 0);
    QDir().rename(sandbox.folder.file(u"moved"_s), sandbox.documents());
    WaitForScan(*window, [&] { update->click(); });

    // A settings folder that cannot be written: said once, with the reason; the options
    // still change for the rest of the run.
    const QString settings = sandbox.folder.file(u"settings"_s);
    QDir().rename(settings, settings + u".away"_s);
    sandbox.folder.write(u"settings"_s, "a file where the folder was");
    Action(*window, "mnuDoubleClic")->trigger();
    Action(*window, "mnuBarreHorizontale")->trigger();
    EXPECT_EQ(messages(u"Unable to save the settings:"_s), 1);
    EXPECT_TRUE(window->session().configuration.doubleClicProprietes);
    EXPECT_TRUE(window->session().configuration.barreHorizontale);
    QFile::remove(settings);
    QDir().rename(settings + u".away"_s, settings);
}

// The grid's conveniences: the popup of a row's metadata, copying rows as text, opening
// many files, the grid alone, and a remembered folder that has gone.
TEST(MainWindow, GridConveniences)
{
    Sandbox sandbox;
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    auto window = OpenWindow(prompter, desktop, sandbox.documents() + u"/gone/deeper"_s);
    // The nearest folder that still exists opens, and the window says what it could not find.
    EXPECT_EQ(window->folder(), sandbox.documents());
    EXPECT_TRUE(window->statusBar()->currentMessage().startsWith(u"Directory not found: "_s));

    // The popup: the row's metadata, each entry copying its value, then the file actions.
    const int report = RowOf(*window, u"report.pdf"_s);
    QStringList entries;
    QTimer::singleShot(0, [&] {
        auto* popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!popup)
            return;
        for (QAction* action : popup->actions())
            entries << action->text();
        for (QAction* action : popup->actions())
            if (action->text().startsWith(u"Author: "_s))
                action->trigger();
        popup->close();
    });
    QMetaObject::invokeMethod(&window->grid(), "contextMenuRequested", Q_ARG(int, report), Q_ARG(QPoint, QPoint(10, 10)));
    EXPECT_TRUE(entries.contains(u"Metadata of report.pdf"_s)) << entries.join(u" | "_s).toStdString();
    EXPECT_TRUE(entries.contains(u"Author: Anne Martin"_s)) << entries.join(u" | "_s).toStdString();
    EXPECT_TRUE(entries.contains(u"Rename"_s));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"Anne Martin");

    // Copy: the selected rows' shown cells, tab-separated.
    window->grid().selectRows({report, RowOf(*window, u"readme.txt"_s)});
    Action(*window, "mnuCopy")->trigger();
    const QStringList lines = QGuiApplication::clipboard()->text().split(u'\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines.front().startsWith(u"readme.txt\t"_s) || lines.front().startsWith(u"report.pdf\t"_s));
    EXPECT_EQ(lines.back().count(u'\t'), window->model().grid().visibleColumns().size() - 1);

    // Opening more than ten files asks first; No opens none.
    for (int i = 0; i < 12; ++i)
        sandbox.folder.write(u"documents/many%1.txt"_s.arg(i), "m");
    WaitForScan(*window, [&] { window->run(WindowCommand::Refresh); });
    window->run(WindowCommand::SelectAll);
    prompter.questions.push_back(false);
    window->run(WindowCommand::Open);
    EXPECT_TRUE(prompter.calls.back().text.startsWith(u"Open all the selected files? (18)"_s));
    EXPECT_TRUE(desktop.opened.isEmpty());
    prompter.questions.push_back(true);
    window->run(WindowCommand::Open);
    EXPECT_EQ(desktop.opened.size(), 18);

    // The grid alone, kept for the next start.
    Action(*window, "mnuFullGrid")->trigger();
    EXPECT_FALSE(window->findChild<QWidget*>(u"panel"_s)->isVisible());
    window->close();
    EXPECT_EQ(IniValue(sandbox.settings(u"ChoixConfiguration.ini"_s), u"MainWindow"_s, u"FullGrid"_s), u"1");
    window.reset();
    auto reopened = OpenWindow(prompter, desktop);
    EXPECT_FALSE(reopened->findChild<QWidget*>(u"panel"_s)->isVisible());
    EXPECT_TRUE(Action(*reopened, "mnuFullGrid")->isChecked());
}
