// Listing a folder as the scan sees it: files only, in a fixed order.
#pragma once

#include <QList>
#include <QString>

namespace brindar {

struct DirectoryEntry {
    QString name;       // the long name
    bool hidden = false;
    QString shortName;  // the 8.3 name where an NTFS volume exposes one, else empty
};

// The regular files of `folder` (symbolic links to files included), in the order of
// ListFolder. Folders, links to folders and special files (pipes, sockets, devices) are
// left out: nothing may block or loop on them. Hidden means a name beginning with ".".
// `ntfs` asks for the short names only NTFS volumes keep. `ok` is false when the folder
// cannot be listed.
QList<DirectoryEntry> ListFiles(const QString& folder, bool* ok, bool ntfs = false);

}  // namespace brindar
