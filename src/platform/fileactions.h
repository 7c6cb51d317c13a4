// The file actions of the grid that change the file system: rename and move to the trash.
#pragma once

#include <QString>
#include <optional>

namespace brindar {

// Renames `from` to `to` in one step, never replacing what `to` names: when a file or
// folder of that name exists, nothing changes and the reason says so. Returns the reason
// on failure.
std::optional<QString> RenameNoReplace(const QString& from, const QString& to);

// Moves the file or folder at `path` to the desktop's trash (the user's, or the one of
// its volume), from which it can be restored. The path it now has in the trash, or the
// reason it stays where it is (a volume without a trash, a name the trash cannot record).
struct TrashOutcome {
    QString pathInTrash;
    std::optional<QString> error;
};
TrashOutcome MoveToTrash(const QString& path);

}  // namespace brindar
