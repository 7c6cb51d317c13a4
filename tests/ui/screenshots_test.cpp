// The window at its default size, in English and in French: written as screenshots to look
// at, and checked for texts that do not fit (a button, label or menu title cut short).
#include "core/session.h"
#include "platform/folders.h"
#include "platform/systeminfo.h"
#include "support/tempfolder.h"
#include "core/language.h"
#include "reports/htmloptions.h"
#include "ui/columnorderdialog.h"
#include "ui/configurationdialog.h"
#include "ui/displayedmetadatadialog.h"
#include "ui/fileselectiondialog.h"
#include "ui/htmloptionsdialog.h"
#include "ui/mainwindow.h"
#include "ui/propertiesdialog.h"
#include "ui/reportslistdialogs.h"
#include "ui/substitutionsdialog.h"
#include "ui/recordingdesktop.h"
#include "ui/scriptedprompter.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QMainWindow>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace brindar;
using namespace brindar::test;
using namespace Qt::StringLiterals;

namespace {

QStringList ClippedTexts(QWidget& window)
{
    QStringList clipped;
    for (QAbstractButton* button : window.findChildren<QAbstractButton*>())
        if (button->isVisible() && !button->text().isEmpty() && button->sizeHint().width() > button->width())
            clipped << u"button "_s + button->objectName() + u": "_s + button->text();
    for (QLabel* label : window.findChildren<QLabel*>())
        if (label->isVisible() && !label->wordWrap() && !label->text().isEmpty() &&
            label->minimumSizeHint().width() > label->width())
            clipped << u"label "_s + label->objectName() + u": "_s + label->text();
    auto* main = qobject_cast<QMainWindow*>(&window);
    QMenuBar* bar = main ? main->menuBar() : nullptr;
    for (QMenu* menu : bar ? bar->findChildren<QMenu*>(Qt::FindDirectChildrenOnly) : QList<QMenu*>()) {
        if (menu->title().isEmpty())
            continue;  // the bar's own overflow menu
        const QRect place = bar->actionGeometry(menu->menuAction());
        if (place.isEmpty() || !bar->rect().contains(place))
            clipped << u"menu "_s + menu->title();
    }
    return clipped;
}

}  // namespace

TEST(MainWindowLooks, ScreenshotsAndNothingClipped)
{
    TempFolder sandbox;
    qputenv("BRINDAR_HOME", sandbox.file(u"settings"_s).toUtf8());
    qputenv("XDG_CACHE_HOME", sandbox.file(u"cache"_s).toUtf8());
    QDir().mkpath(sandbox.file(u"settings"_s));
    QByteArray ini = ReadFile(SourceFile(u"samples/settings/Brindar.ini"_s));
    ini.replace("Repertoire=samples/documents", "Repertoire=" + SourceFile(u"samples/documents"_s).toUtf8());
    QDir().mkpath(QStringLiteral(BRINDAR_SCREENSHOTS_DIR));

    for (const char* language : {"English", "French"}) {
        QByteArray configuration = ini;
        configuration.replace("Langue=French", QByteArray("Langue=") + language);
        sandbox.write(u"settings/Brindar.ini"_s, configuration);
        ScriptedPrompter prompter;
        RecordingDesktop desktop;
        MainWindow window(StartSession(SettingsFolder(), DataFolder(), CurrentSystem()), prompter, desktop, false);
        QSignalSpy scanned(&window, &MainWindow::scanFinished);
        window.start();
        ASSERT_TRUE(scanned.wait(20000));
        // The folder tree reads its folders in the background.
        QTest::qWait(500);
        const QString file = QStringLiteral(BRINDAR_SCREENSHOTS_DIR "/main-window-%1.png").arg(QString::fromLatin1(language).toLower());
        EXPECT_TRUE(window.grab().save(file)) << file.toStdString();
        EXPECT_EQ(ClippedTexts(window), QStringList()) << language;
        window.close();
    }
    qunsetenv("BRINDAR_HOME");
    qunsetenv("XDG_CACHE_HOME");
}

// Every dialog of the window, in English and in French, as screenshots, none with a text
// cut short.
TEST(MainWindowLooks, DialogsInBothLanguages)
{
    TempFolder sandbox;
    sandbox.write(u"Brindar.ini"_s, "[Configuration]\r\n");
    sandbox.write(u"Photos.ini"_s, "[Configuration]\r\nRepertoire=/home/me/Photos\r\n");
    sandbox.write(u"Brindar.pat"_s, "\"/home/me/Docs\",\"http://intranet/docs\"\r\n");
    sandbox.write(u"Brindar.txt"_s, "\"/home/me/Docs|Documents\",#TRUE#\r\n");
    const QString sample = SourceFile(u"samples/documents/report.pdf"_s);
    QDir().mkpath(QStringLiteral(BRINDAR_SCREENSHOTS_DIR));
    for (const char* language : {"English", "French"}) {
        const Captions captions = LoadLanguage(QLatin1String(language), sandbox.path(), DataFolder());
        ScriptedPrompter prompter;
        ReportsList list{{u"/home/me/Docs"_s, u"Documents"_s, true}};
        FileSelection selection;
        std::vector<std::unique_ptr<QDialog>> dialogs;
        dialogs.push_back(std::make_unique<ConfigurationDialog>(ConfigurationDialog::Mode::Select, sandbox.path(),
                                                                u"Photos"_s, captions, prompter));
        dialogs.push_back(std::make_unique<FileSelectionDialog>(selection, captions, prompter));
        dialogs.push_back(std::make_unique<DisplayedMetadataDialog>(DisplayedFieldsOf(IniDocument()), captions));
        dialogs.push_back(std::make_unique<ColumnOrderDialog>(QStringList{u"   Document"_s, u"Title"_s, u"Author"_s},
                                                              QList<int>{0, 1, 2}, captions, prompter));
        dialogs.push_back(std::make_unique<SubstitutionsDialog>(sandbox.file(u"Brindar.pat"_s), captions, prompter));
        dialogs.push_back(std::make_unique<HtmlOptionsDialog>(HtmlOptionsOf(Configuration{}), captions, prompter));
        dialogs.push_back(std::make_unique<ReportsListFolderDialog>(sandbox.path(), captions, prompter));
        dialogs.push_back(std::make_unique<ReportsListDialog>(sandbox.file(u"Brindar.txt"_s), sandbox.path(), captions,
                                                              prompter));
        dialogs.push_back(std::make_unique<AddReportsDialog>(list, sandbox.path(), captions, prompter));
        dialogs.push_back(std::make_unique<PropertiesDialog>(
            sample, QList<std::pair<QString, QString>>{{u"Author"_s, u"Anne Martin"_s}}, captions));
        for (const auto& dialog : dialogs) {
            dialog->show();
            QApplication::processEvents();
            const QString file = QStringLiteral(BRINDAR_SCREENSHOTS_DIR "/%1-%2.png")
                                     .arg(dialog->objectName(), QString::fromLatin1(language).toLower());
            EXPECT_TRUE(dialog->grab().save(file)) << file.toStdString();
            EXPECT_EQ(ClippedTexts(*dialog), QStringList()) << dialog->objectName().toStdString() << ' ' << language;
            dialog->close();
        }
    }
}
