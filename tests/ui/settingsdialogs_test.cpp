// The settings dialogs opened from the main window on a sandbox configuration: driven by
// object name, confirmed or cancelled, their keys checked in the file.
#include "core/session.h"
#include "platform/folders.h"
#include "platform/systeminfo.h"
#include "support/tempfolder.h"
#include "ui/fileselectiondialog.h"
#include "ui/gridtablemodel.h"
#include "ui/mainwindow.h"
#include "ui/recordingdesktop.h"
#include "ui/scriptedprompter.h"

#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>

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
