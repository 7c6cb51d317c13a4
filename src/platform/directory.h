// Listing a folder as the scan sees it: files only, in a fixed order.
#pragma once

#include <QList>
#include <QString>

namespace brindar {

struct DirectoryEntry {
    QString name;      // the long name
    bool hidden = false;
};

// The regular files of `folder` (symbolic links to files included), sorted by their
// upper-cased names compared code unit by code unit - the order NTFS returns them - so
// rows come out the same from run to run. Folders, links to folders and special files
// (pipes, sockets, devices) are left out: nothing may block or loop on them. Hidden
// means a name beginning with ".". `ok` is false when the folder cannot be listed.
QList<DirectoryEntry> ListFiles(const QString& folder, bool* ok);

// Whether standard error is a terminal (for a progress line).
bool StandardErrorIsTerminal();

}  // namespace brindar
