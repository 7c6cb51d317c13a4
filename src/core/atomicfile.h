// Files replaced whole: written beside the target, then renamed over it.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace brindar {

// Writes `bytes` to a temporary file in the target's folder and renames it over `path`,
// so a crash never leaves a half-written file; the old file's permissions and named
// streams are kept (see ReplaceFile). The folder is created when missing.
// Returns the reason on failure (the old file is then untouched).
std::optional<QString> WriteFileAtomically(const QString& path, const QByteArray& bytes);

}  // namespace brindar
