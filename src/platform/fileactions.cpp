// Rename without replacing, and the freedesktop trash through Qt.
#include "platform/fileactions.h"

#include "platform/filenames.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brindar {

std::optional<QString> RenameNoReplace(const QString& from, const QString& to)
{
    const QByteArray source = EncodeFileName(from);
    const QByteArray target = EncodeFileName(to);
    if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) == 0)
        return std::nullopt;
    if (errno == EINVAL) {
        // A file system that cannot rename without replacing: a file is linked under its
        // new name (which fails when the name is taken), then its old name goes.
        struct stat info {};
        if (::lstat(source.constData(), &info) == 0 && !S_ISDIR(info.st_mode)) {
            if (::link(source.constData(), target.constData()) == 0) {
                if (::unlink(source.constData()) == 0)
                    return std::nullopt;
                const QString reason = LastSystemError();
                ::unlink(target.constData());
                return QStringLiteral("%1: %2").arg(from, reason);
            }
        }
    }
    if (errno == EEXIST)
        return QStringLiteral("%1: a file or folder of that name exists already").arg(to);
    return QStringLiteral("%1: %2").arg(from, LastSystemError());
}

TrashOutcome MoveToTrash(const QString& path)
{
    TrashOutcome outcome;
    if (HasUndecodableBytes(path)) {
        outcome.error = QStringLiteral("%1: the trash cannot record a name that is not text").arg(path);
        return outcome;
    }
    // Qt finds the user's trash below the data folder, which must exist first.
    QDir().mkpath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    QFile file(path);
    if (!file.moveToTrash()) {
        outcome.error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return outcome;
    }
    outcome.pathInTrash = file.fileName();
    // Qt answers with the file's new place; a file still in its place was not moved.
    if (outcome.pathInTrash == path || PathExists(path))
        outcome.error = QStringLiteral("%1: the trash did not take it").arg(path);
    return outcome;
}

}  // namespace brindar
