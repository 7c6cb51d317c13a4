// Mounted volumes through QStorageInfo, less the system's pseudo file systems.
#include "platform/volumes.h"

#include "platform/fileinfo.h"

#include <QStorageInfo>
#include <algorithm>

namespace brindar {
namespace {

// File systems of the kernel and of packaging that hold no user's documents.
constexpr const char* kPseudoTypes[] = {
    "autofs", "binfmt_misc", "bpf", "cgroup", "cgroup2", "configfs", "debugfs", "devpts", "devtmpfs", "efivarfs",
    "fusectl", "hugetlbfs", "mqueue", "nsfs", "proc", "pstore", "ramfs", "rpc_pipefs", "securityfs", "squashfs",
    "sysfs", "tracefs", "tmpfs", "fuse.portal", "fuse.gvfsd-fuse",
};

// Network shares and user-space file systems that do hold documents.
constexpr const char* kNetworkTypes[] = {"nfs", "nfs4", "cifs", "smb3", "smbfs", "9p", "fuse.sshfs", "fuse.rclone"};

}  // namespace

bool IsUserVolume(const QString& type, const QString& device, const QString& rootPath)
{
    const QString lower = type.toLower();
    // The root is always offered: in a container it is an overlay, yet it holds the home.
    if (rootPath == u"/")
        return true;
    for (const char* pseudo : kPseudoTypes)
        if (lower == QLatin1String(pseudo))
            return false;
    for (const char* network : kNetworkTypes)
        if (lower == QLatin1String(network))
            return true;
    return device.startsWith(u"/dev/");
}

QList<MountedVolume> MountedVolumes()
{
    QList<MountedVolume> volumes;
    for (const QStorageInfo& storage : QStorageInfo::mountedVolumes()) {
        if (!storage.isValid() || !storage.isReady())
            continue;
        const QString type = QString::fromLatin1(storage.fileSystemType());
        if (!IsUserVolume(type, QString::fromLocal8Bit(storage.device()), storage.rootPath()))
            continue;
        const VolumeInfo volume = VolumeOf(storage.rootPath());
        volumes.append({storage.rootPath(), volume.label, volume.fileSystem});
    }
    std::sort(volumes.begin(), volumes.end(),
              [](const MountedVolume& a, const MountedVolume& b) { return a.rootPath < b.rootPath; });
    return volumes;
}

}  // namespace brindar
