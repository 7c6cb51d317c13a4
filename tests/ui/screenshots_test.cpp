// The window at its default size, in English and in French: written as screenshots to look
// at, and checked for texts that do not fit (a button, label or menu title cut short).
#include "core/session.h"
#include "platform/folders.h"
#include "platform/systeminfo.h"
#include "support/tempfolder.h"
#include "ui/mainwindow.h"
#include "ui/recordingdesktop.h"
#include "ui/scriptedprompter.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace brindar;
using namespace brindar::test;
using namespace Qt::StringLiterals;

namespace {

QStringList ClippedTexts(MainWindow& window)
{
    QStringList clipped;
    for (QAbstractButton* button : window.findChildren<QAbstractButton*>())
        if (button->isVisible() && !button->text().isEmpty() && button->sizeHint().width() > button->width())
            clipped << u"button "_s + button->objectName() + u": "_s + button->text();
    for (QLabel* label : window.findChildren<QLabel*>())
        if (label->isVisible() && !label->wordWrap() && !label->text().isEmpty() &&
            label->minimumSizeHint().width() > label->width())
            clipped << u"label "_s + label->objectName() + u": "_s + label->text();
    QMenuBar* bar = window.menuBar();
    for (QMenu* menu : bar->findChildren<QMenu*>(Qt::FindDirectChildrenOnly)) {
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
