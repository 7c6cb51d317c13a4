// The desktop's services for the window: open a file, open it in a text editor, move it to
// the trash. One class, so that tests answer these calls and nothing starts a program
// during a test.
#pragma once

#include "platform/fileactions.h"

#include <QString>
#include <QStringList>
#include <QUrl>
#include <optional>

namespace brindar {

class Desktop {
public:
    virtual ~Desktop() = default;

    // Opens the file with the application the desktop associates with its type. Returns
    // the reason when nothing could open it.
    virtual std::optional<QString> openFile(const QString& path);
    // Opens the file in a text editor (TextEditorCommand). Returns the reason when there
    // is none or it cannot be started.
    virtual std::optional<QString> openInTextEditor(const QString& path);
    virtual TrashOutcome moveToTrash(const QString& path);
    // Shows the file manager's properties dialog of these files
    // (org.freedesktop.FileManager1.ShowItemProperties over the session bus). Returns the
    // reason when no file manager answered: the window then shows its own dialog.
    virtual std::optional<QString> showProperties(const QStringList& paths);

protected:
    virtual bool startDetached(const QStringList& command);
};

// The command that opens `path` in a text editor: the desktop's default application for
// plain text (its mimeapps.list files and the applications' .desktop files, in the
// freedesktop order), else $VISUAL, else $EDITOR in a terminal. Nothing when none is set.
std::optional<QStringList> TextEditorCommand(const QString& path);

}  // namespace brindar
