// What the XML export learns of a folder's entries and of the volume that holds them.
#pragma once

#include <QList>
#include <QString>

namespace brindar {

// A moment in the system's time zone, as the export writes it.
struct LocalTime {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    bool valid() const { return year != 0; }
};

// One entry of a folder, the fields of a directory-search record.
struct FolderEntry {
    QString name;
    QString shortName;  // the 8.3 name where an NTFS volume exposes one, else empty
    bool directory = false;
    qint64 size = 0;
    LocalTime created;   // birth time where the file system keeps it, else the last write
    LocalTime written;
    LocalTime accessed;
    // The letters of the attributes set, in the order a c e h r s.
    QString attributes;
};

// The files and subfolders of `folder`, sorted by their upper-cased names (the order
// NTFS returns them). A symbolic link to a file is the file it points to; links to
// folders, and pipes, sockets and devices, are left out, so no walk can loop or block.
// `ntfs` asks for the attributes and short names that only NTFS volumes expose. `ok` is
// false when the folder cannot be listed.
QList<FolderEntry> ListFolder(const QString& folder, bool ntfs, bool* ok);

struct VolumeInfo {
    QString label;
    QString fileSystem;  // "NTFS" whatever the driver, else the system's name upper-cased
    bool ntfs() const { return fileSystem == u"NTFS"; }
};

// The mounted volume that holds `path`.
VolumeInfo VolumeOf(const QString& path);

}  // namespace brindar
