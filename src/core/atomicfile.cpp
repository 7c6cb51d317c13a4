// Atomic replacement of a settings or report file.
#include "core/atomicfile.h"

#include "platform/filenames.h"
#include "platform/filereplace.h"

#include <QFileInfo>

namespace brindar {

std::optional<QString> WriteFileAtomically(const QString& path, const QByteArray& bytes)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (auto error = MakeFolders(folder))
        return QStringLiteral("%1: cannot create the folder %2").arg(path, *error);
    return ReplaceFile(path, [&](QFile& file) { return file.write(bytes) == bytes.size(); });
}

}  // namespace brindar
