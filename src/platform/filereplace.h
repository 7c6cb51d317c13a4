// Replacing a file whole: new content beside it, then one rename.
#pragma once

#include <QFile>
#include <QString>
#include <functional>
#include <optional>

namespace brindar {

// Where the new content waits until it takes the file's name.
enum class Staging {
    // An unnamed file of the folder, which no kill can leave behind; a named temporary
    // where the file system has no unnamed files.
    Unnamed,
    // Always a named temporary ".brindar-<pid>-XXXXXX": the way of file systems without
    // unnamed files, chosen on purpose.
    Named,
};

// Writes the new version of `path` with `write` into a file of the same folder, gives it
// the old file's permissions, owner and named streams (extended attributes), flushes it
// to disk and renames it over `path`. A crash, a full disk or a killed process at any
// moment leaves either the old or the new file. A symbolic link (or a chain of them) is
// written through: the link stays and its final target gets the new content. A file its
// owner may not write, or that the system does not let this process write, is refused.
// Named temporaries that killed processes of this program left in the folder are
// removed before a new one is made. Returns the reason on failure; the old file is then
// untouched.
std::optional<QString> ReplaceFile(const QString& path, const std::function<bool(QFile&)>& write,
                                   Staging staging = Staging::Unnamed);

}  // namespace brindar
