// Folder listing for the scan: the export's listing, files only.
#include "platform/directory.h"

#include "platform/fileinfo.h"

#include <unistd.h>

namespace brindar {

QList<DirectoryEntry> ListFiles(const QString& folder, bool* ok)
{
    QList<DirectoryEntry> entries;
    for (const FolderEntry& entry : ListFolder(folder, false, ok))
        if (!entry.directory)
            entries.append(DirectoryEntry{entry.name, entry.name.startsWith(u'.')});
    return entries;
}

bool StandardErrorIsTerminal() { return isatty(STDERR_FILENO) == 1; }

}  // namespace brindar
