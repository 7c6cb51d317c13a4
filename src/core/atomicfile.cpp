// Atomic replacement of a file through QSaveFile.
#include "core/atomicfile.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace brindar {

std::optional<QString> WriteFileAtomically(const QString& path, const QByteArray& bytes)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        return QStringLiteral("%1: cannot create the folder %2").arg(path, folder);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QStringLiteral("%1: %2").arg(path, file.errorString());
    if (file.write(bytes) != bytes.size()) {
        const QString reason = file.errorString();
        file.cancelWriting();
        return QStringLiteral("%1: %2").arg(path, reason);
    }
    if (!file.commit())
        return QStringLiteral("%1: %2").arg(path, file.errorString());
    return std::nullopt;
}

}  // namespace brindar
