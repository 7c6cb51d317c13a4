// Folder listing for the scan: the export's listing, files only.
#include "platform/directory.h"

#include "platform/fileinfo.h"

namespace brindar {

QList<DirectoryEntry> ListFiles(const QString& folder, bool* ok, bool ntfs)
{
    QList<DirectoryEntry> entries;
    for (const FolderEntry& entry : ListFolder(folder, ntfs, ok, Details::NamesOnly))
        if (!entry.directory)
            entries.append(DirectoryEntry{entry.name, entry.name.startsWith(u'.'), entry.shortName});
    return entries;
}

}  // namespace brindar
