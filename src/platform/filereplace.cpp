// File replacement with the old file's permissions, owner and extended attributes kept.
#include "platform/filereplace.h"

#include "platform/filenames.h"

#include <QFileInfo>
#include <QTemporaryFile>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace brindar {
namespace {

QString SystemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

// Copies the "user." attributes: on NTFS they are the file's named streams, elsewhere
// its desktop comments and tags.
bool CopyUserAttributes(const QByteArray& from, int to)
{
    const ssize_t length = listxattr(from.constData(), nullptr, 0);
    if (length <= 0)
        return true;
    QByteArray names(length, '\0');
    const ssize_t got = listxattr(from.constData(), names.data(), size_t(names.size()));
    if (got < 0)
        return true;
    for (const QByteArray& name : names.left(got).split('\0')) {
        if (!name.startsWith("user."))
            continue;
        const ssize_t size = getxattr(from.constData(), name.constData(), nullptr, 0);
        if (size < 0)
            continue;
        QByteArray value(size, '\0');
        if (getxattr(from.constData(), name.constData(), value.data(), size_t(value.size())) != size)
            continue;
        if (fsetxattr(to, name.constData(), value.constData(), size_t(value.size()), 0) != 0)
            return false;
    }
    return true;
}

// The umask, read without changing it (umask() alone would, for a moment, for every
// thread); 022 when the system does not say.
mode_t ProcessUmask()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly))
        for (const QByteArray& line : status.readAll().split('\n'))
            if (line.startsWith("Umask:"))
                return mode_t(line.mid(6).trimmed().toUInt(nullptr, 8));
    return 022;
}

}  // namespace

std::optional<QString> ReplaceFile(const QString& path, const std::function<bool(QFile&)>& write)
{
    const QFileInfo info(path);
    const QByteArray target = EncodeFileName(info.absoluteFilePath());
    QTemporaryFile temp(info.absolutePath() + QStringLiteral("/.brindar-XXXXXX"));
    if (!temp.open())
        return QStringLiteral("%1: %2").arg(path, temp.errorString());
    if (!write(temp) || !temp.flush())
        return QStringLiteral("%1: %2").arg(path, temp.errorString());

    const int fd = temp.handle();
    struct stat old {};
    if (::stat(target.constData(), &old) == 0) {
        if (fchmod(fd, old.st_mode & 07777) != 0)
            return QStringLiteral("%1: %2").arg(path, SystemError());
        // Only the super-user may give a file away; for anyone else it is already theirs.
        if (fchown(fd, old.st_uid, old.st_gid) != 0 && geteuid() == 0)
            return QStringLiteral("%1: %2").arg(path, SystemError());
        if (!CopyUserAttributes(target, fd))
            return QStringLiteral("%1: its named streams cannot be kept: %2").arg(path, SystemError());
    } else {
        // A new file gets the permissions any program gives it (0666 less the umask), not
        // the private ones of a temporary file.
        if (fchmod(fd, 0666 & ~ProcessUmask()) != 0)
            return QStringLiteral("%1: %2").arg(path, SystemError());
    }
    if (fsync(fd) != 0)
        return QStringLiteral("%1: %2").arg(path, SystemError());
    if (std::rename(EncodeFileName(temp.fileName()).constData(), target.constData()) != 0)
        return QStringLiteral("%1: %2").arg(path, SystemError());
    temp.setAutoRemove(false);
    // The rename itself reaches the disk with the folder.
    const int folder = ::open(EncodeFileName(info.absolutePath()).constData(), O_RDONLY | O_DIRECTORY);
    if (folder >= 0) {
        fsync(folder);
        ::close(folder);
    }
    return std::nullopt;
}

}  // namespace brindar
