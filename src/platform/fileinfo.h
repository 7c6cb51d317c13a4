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

// What a listing gathers: everything, or the names and kinds alone (times, sizes and
// attributes left out; a file is known as a file from the folder's own record).
enum class Details { All, NamesOnly };

// An open folder. A walk down a tree opens each folder from its parent's handle, so no
// path grows too long for the system whatever the depth.
class FolderHandle {
public:
    static FolderHandle Open(const QString& path);
    // The subfolder `name`, not followed when it has become a link.
    FolderHandle openChild(const QString& name) const;
    bool isOpen() const { return descriptor_ >= 0; }

    // The files and subfolders, sorted by their names upper-cased one character at a time
    // (the order NTFS returns them). A symbolic link to a file is the file it points to;
    // links to folders, and pipes, sockets and devices, are left out, so no walk can loop
    // or block. `ntfs` asks for the attributes and short names that only NTFS volumes
    // expose. `ok` is false when the folder cannot be listed.
    QList<FolderEntry> list(bool ntfs, bool* ok, Details details = Details::All) const;

    // A path that opens `path`, an entry of this folder: `path` itself while the system
    // takes it, else one through this folder's handle.
    QString openablePath(const QString& path) const;

    ~FolderHandle();
    FolderHandle(FolderHandle&& other) noexcept;
    FolderHandle& operator=(FolderHandle&& other) noexcept;
    FolderHandle(const FolderHandle&) = delete;
    FolderHandle& operator=(const FolderHandle&) = delete;

private:
    explicit FolderHandle(int descriptor);
    int descriptor_ = -1;
};

// The files and subfolders of `folder`, as FolderHandle::list gives them.
QList<FolderEntry> ListFolder(const QString& folder, bool ntfs, bool* ok, Details details = Details::All);

// A walk holds one handle per level: the process may use as many descriptors as the
// system allows it.
void RaiseOpenFileLimit();

struct VolumeInfo {
    QString label;
    QString fileSystem;  // "NTFS" whatever the driver, else the system's name upper-cased
    bool ntfs() const { return fileSystem == u"NTFS"; }
};

// The mounted volume that holds `path`.
VolumeInfo VolumeOf(const QString& path);

}  // namespace brindar
