// Replacing a file whole: new content beside it, then one rename.
#pragma once

#include <QFile>
#include <QString>
#include <functional>
#include <optional>

namespace brindar {

// Writes the new version of `path` with `write` into a temporary file of the same
// folder, gives it the old file's permissions, owner and named streams (extended
// attributes), flushes it to disk and renames it over `path`. A crash, a full disk or a
// killed process at any moment leaves either the old or the new file. Returns the
// reason on failure; the old file is then untouched.
std::optional<QString> ReplaceFile(const QString& path, const std::function<bool(QFile&)>& write);

}  // namespace brindar
