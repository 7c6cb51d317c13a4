// Atomic replacement of a settings or report file.
#include "core/atomicfile.h"

#include "platform/filereplace.h"

#include <QDir>
#include <QFileInfo>

namespace brindar {

std::optional<QString> WriteFileAtomically(const QString& path, const QByteArray& bytes)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        return QStringLiteral("%1: cannot create the folder %2").arg(path, folder);
    return ReplaceFile(path, [&](QFile& file) { return file.write(bytes) == bytes.size(); });
}

}  // namespace brindar
