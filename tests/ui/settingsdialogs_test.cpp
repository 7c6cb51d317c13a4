// The settings dialogs opened from the main window on a sandbox configuration: driven by
// object name, confirmed or cancelled, their keys checked in the file.
#include "core/session.h"
#include "platform/folders.h"
#include "platform/systeminfo.h"
#include "support/tempfolder.h"
#include "readers/displayedfields.h"
#include "ui/fileselectiondialog.h"
#include "ui/folderpicker.h"
#include "ui/gridtablemodel.h"
#include "ui/mainwindow.h"
#include "ui/recordingdesktop.h"
#include "ui/scriptedprompter.h"

#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace brindar;
using namespace brindar::test;
using namespace Qt::StringLiterals;

namespace {

struct Sandbox {
    Sandbox()
    {
        qputenv("BRINDAR_HOME", folder.file(u"settings"_s).toUtf8());
        qputenv("XDG_CACHE_HOME", folder.file(u"cache"_s).toUtf8());
        folder.write(u"documents/a.pdf"_s, "%PDF-1.4\n");
        folder.write(u"documents/b.txt"_s, "b");
        folder.write(u"documents/.hidden.txt"_s, "h");
        folder.write(u"settings/Brindar.ini"_s,
                     "[Configuration]\r\nRepertoire=" + folder.file(u"documents"_s).toUtf8() + "\r\n");
    }
    ~Sandbox()
    {
        qunsetenv("BRINDAR_HOME");
        qunsetenv("XDG_CACHE_HOME");
    }
    QByteArray configuration() const { return folder.read(u"settings/Brindar.ini"_s); }
    TempFolder folder;
};

template <typename T>
T* Child(QDialog& dialog, const char* name)
{
    T* child = dialog.findChild<T*>(QLatin1String(name));
    EXPECT_TRUE(child) << name;
    return child;
}

}  // namespace

TEST(SettingsDialogs, DisplayedFiles)
{
    Sandbox sandbox;
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    MainWindow window(StartSession(SettingsFolder(), DataFolder(), CurrentSystem()), prompter, desktop, false);
    QSignalSpy scanned(&window, &MainWindow::scanFinished);
    window.start();
    ASSERT_TRUE(scanned.wait(20000));
    EXPECT_EQ(window.model().grid().rowCount(), 3);

    // Cancel writes nothing.
    const QByteArray before = sandbox.configuration();
    prompter.onExec = [](QDialog& dialog) {
        Child<QCheckBox>(dialog, "chkCaches")->setChecked(false);
        Child<QPushButton>(dialog, "cmdAnnuler")->click();
        return dialog.result();
    };
    window.run(WindowCommand::DisplayedFiles);
    EXPECT_EQ(sandbox.configuration(), before);

    // The family boxes wait while "All files" or the filter gathers every family; the
    // filter with both lists empty is refused with a message, and the dialog stays.
    QStringList states;
    prompter.onExec = [&](QDialog& dialog) {
        auto* all = Child<QCheckBox>(dialog, "chkTout");
        auto* filter = Child<QCheckBox>(dialog, "chkExtensions");
        auto* pdf = Child<QCheckBox>(dialog, "chkPDF");
        auto* summary = Child<QLabel>(dialog, "lblSelection");
        states << u"%1 %2"_s.arg(pdf->isEnabled()).arg(summary->text());
        all->setChecked(false);
        states << u"%1 %2"_s.arg(pdf->isEnabled()).arg(summary->text());
        pdf->setChecked(true);
        states << summary->text();
        filter->setChecked(true);
        states << u"%1"_s.arg(pdf->isEnabled());
        Child<QPushButton>(dialog, "cmdOK")->click();
        states << u"%1"_s.arg(dialog.result());
        Child<QLineEdit>(dialog, "txtInclure")->setText(u"pdf, txt"_s);
        Child<QCheckBox>(dialog, "chkCaches")->setChecked(false);
        Child<QPushButton>(dialog, "cmdOK")->click();
        return dialog.result();
    };
    QSignalSpy rescanned(&window, &MainWindow::scanFinished);
    window.run(WindowCommand::DisplayedFiles);
    EXPECT_EQ(states, (QStringList{u"0 Selection: MS/OOO/HTML/PDF/IPTC/XMP"_s, u"1 Selection: "_s,
                                   u"Selection: PDF"_s, u"0"_s, u"0"_s}));
    EXPECT_EQ(prompter.calls.back().text, u"Type at least one extension or clear the filter by extension");
    const QByteArray written = sandbox.configuration();
    for (const char* line : {"InclureTout=0", "InclureExtensions=1", "ExtensionsSelected=pdf, txt", "InclureCaches=0",
                             "InclurePDF=1", "InclureOffice=0"})
        EXPECT_TRUE(written.contains(line)) << line << "\n" << written.toStdString();
    // The rescan shows the files the new settings select: no hidden file now.
    ASSERT_TRUE(rescanned.wait(20000));
    EXPECT_EQ(window.model().grid().rowCount(), 2);
}

TEST(SettingsDialogs, ColumnOrder)
{
    Sandbox sandbox;
    sandbox.folder.write(u"settings/Brindar.ini"_s, "[Configuration]\r\nRepertoire=" +
                                                        sandbox.folder.file(u"documents"_s).toUtf8() +
                                                        "\r\n[Proprietes]\r\nTitre=1\r\nAuteur=1\r\n");
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    MainWindow window(StartSession(SettingsFolder(), DataFolder(), CurrentSystem()), prompter, desktop, false);
    QSignalSpy scanned(&window, &MainWindow::scanFinished);
    window.start();
    ASSERT_TRUE(scanned.wait(20000));
    ASSERT_EQ(window.session().columns.columns.size(), 3);  // Document, Title, Author

    const auto items = [](QDialog& dialog) {
        auto* list = Child<QListWidget>(dialog, "lstColonnes");
        QStringList texts;
        for (int row = 0; row < list->count(); ++row)
            texts << list->item(row)->text();
        return texts.join(u',');
    };
    QStringList seen;
    prompter.onExec = [&](QDialog& dialog) {
        auto* list = Child<QListWidget>(dialog, "lstColonnes");
        auto* up = Child<QPushButton>(dialog, "cmdMonter");
        auto* down = Child<QPushButton>(dialog, "cmdDescendre");
        seen << u"%1%2 %3"_s.arg(up->isEnabled()).arg(down->isEnabled()).arg(Child<QLabel>(dialog, "lblPosition")->text());
        list->setCurrentRow(2);
        seen << u"%1%2 %3"_s.arg(up->isEnabled()).arg(down->isEnabled()).arg(Child<QLabel>(dialog, "lblPosition")->text());
        up->click();
        up->click();
        seen << items(dialog);
        Child<QPushButton>(dialog, "cmdSupprimerOrdre")->click();  // answered No
        seen << items(dialog);
        Child<QPushButton>(dialog, "cmdOK")->click();
        return dialog.result();
    };
    window.run(WindowCommand::ColumnOrder);
    EXPECT_EQ(seen, (QStringList{u"01  #1/3"_s, u"10  #3/3"_s, u"Author,Document,Title"_s, u"Author,Document,Title"_s}));
    const QByteArray written = sandbox.configuration();
    EXPECT_TRUE(written.contains("[Columns]\r\nNbColumns=3\r\n1=3\r\n2=1\r\n3=2\r\n")) << written.toStdString();
    EXPECT_EQ(window.session().columns.htmlOrder, (QList<int>{2, 0, 1}));

    // Reset, confirmed: the grid's order again.
    prompter.questions.push_back(true);
    prompter.onExec = [&](QDialog& dialog) {
        Child<QPushButton>(dialog, "cmdSupprimerOrdre")->click();
        Child<QPushButton>(dialog, "cmdOK")->click();
        return dialog.result();
    };
    window.run(WindowCommand::ColumnOrder);
    EXPECT_EQ(window.session().columns.htmlOrder, (QList<int>{0, 1, 2}));
    EXPECT_TRUE(sandbox.configuration().contains("NbColumns=3\r\n1=1\r\n2=2\r\n3=3\r\n"));
}

TEST(SettingsDialogs, HyperlinkSubstitutions)
{
    Sandbox sandbox;
    sandbox.folder.write(u"settings/Brindar.pat"_s, "\"/home/me/Docs\",\"http://intranet/docs\"\r\n");
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    MainWindow window(StartSession(SettingsFolder(), DataFolder(), CurrentSystem()), prompter, desktop, false);

    QStringList seen;
    prompter.onExec = [&](QDialog& dialog) {
        auto* grid = Child<QTableWidget>(dialog, "gridPaths");
        auto* path = Child<QLineEdit>(dialog, "txtChemin");
        auto* replacement = Child<QLineEdit>(dialog, "txtRemplacement");
        const auto rows = [grid] {
            QStringList texts;
            for (int row = 0; row < grid->rowCount(); ++row)
                texts << grid->item(row, 0)->text() + u'=' + grid->item(row, 1)->text();
            return texts.join(u';');
        };
        seen << path->text();  // the selected row fills the fields
        path->clear();
        Child<QPushButton>(dialog, "cmdAjouter")->click();
        path->setText(u"/home/me/docs"_s);
        Child<QPushButton>(dialog, "cmdAjouter")->click();
        path->setText(u"/srv/archive"_s);
        Child<QPushButton>(dialog, "cmdModifier")->click();
        replacement->setText(u"http://archive"_s);
        Child<QPushButton>(dialog, "cmdAjouter")->click();
        seen << rows();
        seen << u"%1%2"_s.arg(Child<QPushButton>(dialog, "cmdMonter")->isEnabled())
                    .arg(Child<QPushButton>(dialog, "cmdDescendre")->isEnabled());
        Child<QPushButton>(dialog, "cmdMonter")->click();
        path->setText(u"/home/me/Docs"_s);
        replacement->setText(u"https://intranet/docs"_s);
        Child<QPushButton>(dialog, "cmdModifier")->click();
        seen << rows();
        Child<QPushButton>(dialog, "cmdOK")->click();
        return dialog.result();
    };
    window.run(WindowCommand::Hypertext);
    QStringList messages;
    for (const auto& call : prompter.calls)
        if (call.kind == u"message")
            messages << call.text;
    EXPECT_EQ(messages, (QStringList{u"Please type a path"_s, u"Path already defined"_s, u"Path not defined"_s}));
    EXPECT_EQ(seen, (QStringList{u"/home/me/Docs"_s,
                                 u"/home/me/Docs=http://intranet/docs;/srv/archive=http://archive"_s, u"10"_s,
                                 u"/srv/archive=http://archive;/home/me/Docs=https://intranet/docs"_s}));
    EXPECT_EQ(sandbox.folder.read(u"settings/Brindar.pat"_s),
              "\"/srv/archive\",\"http://archive\"\r\n\"/home/me/Docs\",\"https://intranet/docs\"\r\n");

    // Cancel leaves the file as it was.
    prompter.onExec = [](QDialog& dialog) {
        Child<QPushButton>(dialog, "cmdSupprimerTout")->click();
        Child<QPushButton>(dialog, "cmdAnnuler")->click();
        return dialog.result();
    };
    window.run(WindowCommand::Hypertext);
    EXPECT_TRUE(sandbox.folder.read(u"settings/Brindar.pat"_s).startsWith("\"/srv/archive\""));
}

TEST(SettingsDialogs, ReportsListEditorAndAddDialog)
{
    Sandbox sandbox;
    for (const char* folder : {"tree/a/x.txt", "tree/b/y.txt"})
        sandbox.folder.write(QLatin1String(folder), "t");
    const QString documents = sandbox.folder.file(u"documents"_s);
    const QString tree = sandbox.folder.file(u"tree"_s);
    sandbox.folder.write(u"settings/Brindar.txt"_s, "\"" + documents.toUtf8() + "|Documents\",#TRUE#\r\n");
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    MainWindow window(StartSession(SettingsFolder(), DataFolder(), CurrentSystem()), prompter, desktop, false);
    QSignalSpy scanned(&window, &MainWindow::scanFinished);
    window.start();
    ASSERT_TRUE(scanned.wait(20000));

    QStringList seen;
    prompter.onExec = [&](QDialog& dialog) {
        if (dialog.objectName() == u"frmAjouterTableau") {
            dialog.findChild<FolderPicker*>()->showFolder(tree);
            Child<QCheckBox>(dialog, "chkSousRepertoires")->setChecked(true);
            Child<QPushButton>(dialog, "cmdOK")->click();
            return dialog.result();
        }
        auto* grid = Child<QTableWidget>(dialog, "gridTableaux");
        const auto rows = [grid] {
            QStringList texts;
            for (int row = 0; row < grid->rowCount(); ++row)
                texts << grid->item(row, 0)->text() + u'|' + QFileInfo(grid->item(row, 1)->text()).fileName() + u'|' +
                             grid->item(row, 2)->text();
            return texts.join(u';');
        };
        Child<QPushButton>(dialog, "cmdAjouter")->click();  // the two sub-folders
        Child<QPushButton>(dialog, "cmdAjouter")->click();  // nothing new: said, nothing added
        seen << QString::number(grid->rowCount());
        emit grid->cellClicked(0, 0);  // the first report left out
        grid->setCurrentCell(1, 1);
        auto* title = Child<QLineEdit>(dialog, "txtLibelle");
        title->clear();
        QTest::keyClicks(title, u"Folder A"_s);
        grid->setCurrentCell(2, 1);
        Child<QPushButton>(dialog, "cmdMonter")->click();
        seen << rows();
        Child<QPushButton>(dialog, "cmdSupprimerTout")->click();  // answered No
        seen << QString::number(grid->rowCount());
        Child<QPushButton>(dialog, "cmdOK")->click();
        return dialog.result();
    };
    window.run(WindowCommand::EditReportsList);
    EXPECT_EQ(seen, (QStringList{u"3"_s, u"|documents|Documents;Yes|b|"_s + tree + u"/b"_s + u";Yes|a|Folder A"_s,
                                 u"3"_s}));
    bool saidAll = false;
    for (const auto& call : prompter.calls)
        saidAll = saidAll || call.text == u"All directories already in list";
    EXPECT_TRUE(saidAll);
    const QByteArray file = sandbox.folder.read(u"settings/Brindar.txt"_s);
    EXPECT_EQ(file, "\"" + documents.toUtf8() + "|Documents\",#FALSE#\r\n\"" + tree.toUtf8() + "/b|" + tree.toUtf8() +
                        "/b\",#TRUE#\r\n\"" + tree.toUtf8() + "/a|Folder A\",#TRUE#\r\n");
    EXPECT_EQ(window.findChild<QListWidget*>(u"lstTableaux"_s)->count(), 3);

    // "Go to directory" keeps the list and shows the folder.
    prompter.onExec = [&](QDialog& dialog) {
        Child<QTableWidget>(dialog, "gridTableaux")->setCurrentCell(2, 1);
        Child<QPushButton>(dialog, "cmdGoTo")->click();
        return dialog.result();
    };
    QSignalSpy moved(&window, &MainWindow::scanFinished);
    window.run(WindowCommand::EditReportsList);
    ASSERT_TRUE(moved.count() > 0 || moved.wait(20000));
    EXPECT_EQ(window.folder(), tree + u"/a"_s);
}

TEST(SettingsDialogs, HtmlOptions)
{
    Sandbox sandbox;
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    MainWindow window(StartSession(SettingsFolder(), DataFolder(), CurrentSystem()), prompter, desktop, false);
    QStringList seen;
    prompter.onExec = [&](QDialog& dialog) {
        auto* prefix = Child<QLineEdit>(dialog, "txtPrefixeTableauHTML");
        prefix->setText(u"My:Rep?orts"_s);
        seen << prefix->text() << Child<QLabel>(dialog, "lblExemple")->text();
        seen << QString::number(Child<QLabel>(dialog, "lblErrPrefixe")->isVisibleTo(&dialog));
        auto* index = Child<QCheckBox>(dialog, "chkIndexListes");
        index->setChecked(false);
        seen << QString::number(Child<QRadioButton>(dialog, "optIndexListe")->isEnabled());
        Child<QRadioButton>(dialog, "optIndexNumerote")->setChecked(true);
        prompter.questions.push_back(true);
        emit Child<QLabel>(dialog, "lblExempleEnTete")->linkActivated(u"#"_s);
        prompter.fileNames.push_back(u"/images/top.png"_s);
        Child<QPushButton>(dialog, "cmdParcourirEnTete")->click();
        prompter.colours.push_back(QColor(0x11, 0x22, 0x33));
        Child<QPushButton>(dialog, "cmdCouleur")->click();
        Child<QPushButton>(dialog, "cmdOK")->click();
        return dialog.result();
    };
    window.run(WindowCommand::HtmlOptions);
    EXPECT_EQ(seen, (QStringList{u"MyReports"_s, u"Report file name example: MyReports.html"_s, u"1"_s, u"0"_s}));
    const QByteArray written = sandbox.configuration();
    for (const char* line : {"PrefixeTableau=MyReports", "IndexListes=0", "IndexType=0",
                             "TexteEnTete=<center><h2>List of documents</h2><h3><i>%Date</i></h3></center>",
                             "ImageEnTete=/images/top.png", "CouleurTitre=3351057"})
        EXPECT_TRUE(written.contains(line)) << line << "\n" << written.toStdString();
    EXPECT_EQ(window.session().configuration.prefixeTableau, u"MyReports");
    EXPECT_EQ(window.session().configuration.imageEnTeteExtension, u".png");
}

// Ticking Title on the PDF tab ticks the one Title switch everywhere; OK writes it and its
// family labels, rebuilds the columns and rescans: the samples' titles fill the column.
TEST(SettingsDialogs, DisplayedMetadata)
{
    Sandbox sandbox;
    sandbox.folder.write(u"settings/Brindar.ini"_s,
                         "[Configuration]\r\nLangue=English\r\nRepertoire=" + SourceFile(u"samples/documents"_s).toUtf8() +
                             "\r\nUseNTFSCache=0\r\n");
    ScriptedPrompter prompter;
    RecordingDesktop desktop;
    MainWindow window(StartSession(SettingsFolder(), DataFolder(), CurrentSystem()), prompter, desktop, false);
    QSignalSpy scanned(&window, &MainWindow::scanFinished);
    window.start();
    ASSERT_TRUE(scanned.wait(20000));
    ASSERT_EQ(window.model().grid().columnCount(), 1);

    QStringList seen;
    prompter.onExec = [&](QDialog& dialog) {
        const int pdf = int(MetadataTab::Pdf), office = int(MetadataTab::Office), iptc = int(MetadataTab::Iptc);
        Child<QCheckBox>(dialog, qPrintable(u"chkTI_%1"_s.arg(pdf)))->setChecked(true);
        seen << QString::number(Child<QCheckBox>(dialog, qPrintable(u"chkTI_%1"_s.arg(office)))->isChecked());
        seen << QString::number(Child<QCheckBox>(dialog, qPrintable(u"chkTI_%1"_s.arg(iptc)))->isChecked());
        seen << Child<QLabel>(dialog, "lblColonnes")->text();
        Child<QCheckBox>(dialog, "chkPerso2")->setChecked(true);
        seen << QString::number(!Child<QLabel>(dialog, "lblAvertissement")->isHidden());
        Child<QLineEdit>(dialog, "textPerso2")->setText(u"Client"_s);
        seen << QString::number(!Child<QLabel>(dialog, "lblAvertissement")->isHidden());
        seen << Child<QLabel>(dialog, "lblColonnes")->text();
        Child<QPushButton>(dialog, "cmdOK")->click();
        return dialog.result();
    };
    QSignalSpy rescanned(&window, &MainWindow::scanFinished);
    window.run(WindowCommand::DisplayedMetadata);
    EXPECT_EQ(seen, (QStringList{u"1"_s, u"1"_s, u"2 columns"_s, u"1"_s, u"0"_s, u"3 columns"_s}));
    const QByteArray written = sandbox.configuration();
    for (const char* line : {"Titre=1", "PDFTitle=1", "IPTCHeadline=1", "textPerso2=Client", "chkPerso2=1"})
        EXPECT_TRUE(written.contains(line)) << line;
    ASSERT_TRUE(rescanned.wait(20000));
    const GridModel& grid = window.model().grid();
    ASSERT_EQ(grid.columnCount(), 3);
    EXPECT_EQ(grid.caption(1), u"Title");
    int titles = 0;
    for (int row = 0; row < grid.rowCount(); ++row)
        titles += !grid.cell(row, 1).isEmpty();
    EXPECT_GE(titles, 4);
}
