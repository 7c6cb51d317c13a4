// The mounted volumes a user can browse: the drive list of this platform.
#pragma once

#include <QList>
#include <QString>

namespace brindar {

struct MountedVolume {
    QString rootPath;    // "/", "/media/me/USB"
    QString label;       // may be empty
    QString fileSystem;  // as VolumeOf names it: "NTFS", "EXT4", "VFAT" ...
};

// The volumes with real file systems (disks, partitions, network shares, the root of the
// system), sorted by root path; the system's own pseudo file systems (proc, sysfs,
// cgroups, devices, run-time folders, read-only application images) are left out.
QList<MountedVolume> MountedVolumes();

// Whether a volume of this type, mounted from this device at this root, is one a user
// browses. Exposed for the tests.
bool IsUserVolume(const QString& type, const QString& device, const QString& rootPath);

}  // namespace brindar
