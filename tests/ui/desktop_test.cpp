// The plain-text editor chosen from the desktop's settings, as a user of this desktop expects.
#include "ui/desktop.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;
using namespace Qt::StringLiterals;
using brindar::test::TempFolder;

namespace {

// The desktop's folders in temporary ones, and the editor variables, for one scope.
struct DesktopFolders {
    TempFolder config, data, system;
    QStringList variables{u"XDG_CONFIG_HOME"_s, u"XDG_CONFIG_DIRS"_s, u"XDG_DATA_HOME"_s, u"XDG_DATA_DIRS"_s,
                          u"XDG_CURRENT_DESKTOP"_s, u"VISUAL"_s, u"EDITOR"_s, u"PATH"_s};
    QList<QByteArray> saved;
    DesktopFolders()
    {
        for (const QString& name : variables)
            saved << qgetenv(name.toLatin1());
        qputenv("XDG_CONFIG_HOME", config.path().toUtf8());
        qputenv("XDG_CONFIG_DIRS", config.file(u"none"_s).toUtf8());
        qputenv("XDG_DATA_HOME", data.path().toUtf8());
        qputenv("XDG_DATA_DIRS", system.path().toUtf8());
        qputenv("XDG_CURRENT_DESKTOP", "Acme:GNOME");
        qputenv("PATH", config.path().toUtf8());  // no terminal to be found
        qunsetenv("VISUAL");
        qunsetenv("EDITOR");
    }
    ~DesktopFolders()
    {
        for (int i = 0; i < variables.size(); ++i)
            saved[i].isNull() ? qunsetenv(variables[i].toLatin1()) : qputenv(variables[i].toLatin1(), saved[i]);
    }
};

}  // namespace

TEST(Desktop, TheDefaultPlainTextApplicationThenTheEditorVariables)
{
    DesktopFolders desktop;
    const QString file = u"/home/me/notes 1.txt"_s;
    EXPECT_FALSE(TextEditorCommand(file));

    desktop.system.write(u"applications/mimeinfo.cache"_s, "[MIME Cache]\ntext/plain=cached.desktop;\n");
    desktop.system.write(u"applications/cached.desktop"_s, "[Desktop Entry]\nExec=cached\n");
    EXPECT_EQ(TextEditorCommand(file), (QStringList{u"cached"_s, file}));

    // A desktop's own list comes before the common one; an application whose file is
    // missing is passed over; field codes take the file, "%%" is a percent sign.
    desktop.config.write(u"mimeapps.list"_s, "[Default Applications]\ntext/plain=common.desktop\n");
    desktop.config.write(u"gnome-mimeapps.list"_s, "[Default Applications]\ntext/plain=missing.desktop;gedit.desktop;\n");
    desktop.data.write(u"applications/gedit.desktop"_s,
                       "[Desktop Entry]\nName=Text\nExec=\"/opt/my editor/gedit\" --new-window %U --tab-width=4%% %i\n");
    desktop.data.write(u"applications/common.desktop"_s, "[Desktop Entry]\nExec=common %f\n");
    EXPECT_EQ(TextEditorCommand(file), (QStringList{u"/opt/my editor/gedit"_s, u"--new-window"_s,
                                                    u"file:///home/me/notes%201.txt"_s, u"--tab-width=4%"_s}));

    // Without any application: $VISUAL, then $EDITOR (no terminal found here).
    DesktopFolders bare;
    qputenv("EDITOR", "vi -n");
    EXPECT_EQ(TextEditorCommand(file), (QStringList{u"vi"_s, u"-n"_s, file}));
    qputenv("VISUAL", "kate");
    EXPECT_EQ(TextEditorCommand(file), (QStringList{u"kate"_s, file}));
}
