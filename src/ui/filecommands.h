// The File menu's commands on the selected files of the grid: open, open in a text editor,
// properties, rename, move to the trash, and copy as text. Each asks and tells through the
// Prompter and reaches the desktop through Desktop, so a test answers both.
#pragma once

#include "core/language.h"
#include "scan/gridmodel.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

class QMenu;
class QWidget;

namespace brindar {

class Desktop;
class Prompter;

struct FileCommandContext {
    QWidget* parent;
    Prompter& prompter;
    Desktop& desktop;
    const Captions& captions;
    QString folder;  // the folder shown: the rows' files are in it
};

// Opens every file with its application, asking first when there are more than ten.
void OpenFiles(const FileCommandContext& context, const QStringList& names);
void OpenInTextEditor(const FileCommandContext& context, const QStringList& names);
// The file manager's properties of the files, else the program's own dialog of the first
// one with `metadata` ((caption, value) of its row).
void ShowProperties(const FileCommandContext& context, const QStringList& names,
                    const QList<std::pair<QString, QString>>& metadata);
// Asks for a new name and renames the file, never over another file. Returns the new name
// when the file was renamed.
std::optional<QString> RenameFile(const FileCommandContext& context, const QString& name);
// Asks, then moves the files to the trash; the ones that stay are named in one message.
// Returns true when the user confirmed (the folder changed or may have).
bool DeleteFiles(const FileCommandContext& context, const QStringList& names);

// The message that lists names: `heading` (when there is one), then up to `shown` names
// one per line, then "... and N more".
QString NamesMessage(const Captions& captions, const QString& heading, const QStringList& names, int shown);

// The rows as text for the clipboard: the shown columns' cells, tab-separated, one line
// per row.
QString RowsAsText(const GridModel& grid, const QList<int>& rows);
// (caption, value) of the row's non-empty cells but the name: the popup menu and the
// properties dialog.
QList<std::pair<QString, QString>> RowMetadata(const GridModel& grid, int row);
// The popup's entries of one row: "Metadata of <name>", then "caption: value" for each
// value (choosing one copies the value), or "No metadata".
void AddMetadataEntries(QMenu& menu, const GridModel& grid, int row, const Captions& captions);

}  // namespace brindar
