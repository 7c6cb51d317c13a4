// Writing compound files back: the same document with some root streams replaced.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <optional>

namespace brindar {

// Rewrites the compound file at `path` with the root streams named in `streams`
// replaced by the given bytes, or added when the document has none of that name. Every
// other stream and storage, with its class id, state and times, is kept; sectors, FAT,
// DIFAT, mini FAT and directory are laid out anew, so a stream may grow from the mini
// stream into regular sectors and the FAT may grow. The file is replaced whole (see
// ReplaceFile): a failure leaves it exactly as it was. Returns the reason on failure.
std::optional<QString> RewriteCompoundFile(const QString& path, const QMap<QString, QByteArray>& streams);

}  // namespace brindar
