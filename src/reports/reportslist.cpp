// The current reports list: its ".txt" file, look-ups, and the edits of the main window,
// the add dialog and the list editor.
#include "reports/reportslist.h"

#include "core/captionids.h"
#include "core/columnorder.h"
#include "platform/fileinfo.h"
#include "reports/sequentialfile.h"

#include <QDir>

namespace brindar {
namespace {

// A directory and its title share the first field; a name the program makes never holds
// "|", so the first one ends the directory.
constexpr QChar kTitleSeparator = u'|';

// Qt counts ":/..." (its resource paths) as absolute; no folder is named so.
bool IsAbsolutePath(const QString& path) { return QDir::isAbsolutePath(path) && !path.startsWith(u':'); }

ReportEntry NewEntry(const QString& directory) { return {directory, directory, true}; }

}  // namespace

ReportsList ReadReportsList(const QString& path)
{
    // Every non-blank line is an entry, so that the list editor shows whatever a damaged
    // line left and the user decides. A flag that is missing or unreadable leaves the
    // entry active, as a new entry is.
    ReportsList list;
    for (const QStringList& fields : ReadSequentialFile(path)) {
        const QString first = fields.value(0);
        const qsizetype separator = first.indexOf(kTitleSeparator);
        ReportEntry entry;
        entry.directory = separator < 0 ? first : first.first(separator);
        entry.title = separator < 0 ? QString() : first.sliced(separator + 1);
        if (entry.title.isEmpty())
            entry.title = entry.directory;
        entry.active = fields.size() < 2 ? true : InputSequentialBoolean(fields[1]).value_or(true);
        list.append(entry);
    }
    return list;
}

std::optional<QString> WriteReportsList(const QString& path, const ReportsList& list)
{
    QStringList lines;
    for (const ReportEntry& entry : list)
        lines.append(WriteSequentialText(entry.directory + kTitleSeparator + entry.title) + u','
                     + WriteSequentialBoolean(entry.active));
    return WriteSequentialFile(path, lines);
}

int FindReport(const ReportsList& list, const QString& directory)
{
    for (int i = 0; i < list.size(); ++i)
        if (list[i].directory.compare(directory, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

QString ReportTitle(const ReportsList& list, const QString& directory)
{
    const int index = FindReport(list, directory);
    return index < 0 ? directory : list[index].title;
}

bool AddCurrentDirectory(ReportsList& list, const QString& directory)
{
    if (FindReport(list, directory) >= 0)
        return false;
    list.append(NewEntry(directory));
    return true;
}

bool RemoveCurrentDirectory(ReportsList& list, const QString& directory)
{
    const int index = FindReport(list, directory);
    if (index < 0)
        return false;
    list.removeAt(index);
    return true;
}

void MoveReport(ReportsList& list, int index, int step)
{
    MoveItem(list, index, step);
}

std::optional<QString> AddDirectories(ReportsList& list, const QString& directory, bool subdirectories,
                                      const Captions& captions)
{
    if (!IsAbsolutePath(directory))
        return captions.text(caption::PathIsInvalid);
    // The key is compared with the directory the main window shows, which never ends
    // with "/" (the root aside) nor holds "." or ".." steps.
    const QString folder = QDir::cleanPath(directory);
    if (!subdirectories) {
        if (!AddCurrentDirectory(list, folder))
            return captions.text(caption::DirectoryAlreadyInList);
        return std::nullopt;
    }

    // A folder that cannot be listed has no sub-folders to offer either.
    bool ok = false;
    const QList<FolderEntry> entries = ListFolder(folder, false, &ok);
    const QString prefix = folder.endsWith(u'/') ? folder : folder + u'/';
    int found = 0, added = 0;
    for (const FolderEntry& entry : entries) {
        if (!entry.directory)
            continue;
        ++found;
        if (AddCurrentDirectory(list, prefix + entry.name))
            ++added;
    }
    if (found == 0)
        return captions.text(caption::NoSubdirectoriesIn) + QStringLiteral("\r\n") + folder;
    if (added == 0)
        return captions.text(caption::AllDirectoriesInList);
    return std::nullopt;
}

}  // namespace brindar
