// Hyperlink path substitutions: the leading paths that reports link under another address,
// kept in the configuration's ".pat" companion file.
#pragma once

#include "core/language.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace brindar {

struct Substitution {
    QString path;
    QString replacement;
    bool operator==(const Substitution&) const = default;
};
using Substitutions = QList<Substitution>;

// Reads the substitutions file: one line per pair, both fields between double quotes,
// separated by a comma. A missing file is an empty list.
Substitutions ReadSubstitutions(const QString& path);
// Rewrites the file whole (Windows-1252, CR LF, temporary file then rename). Returns the
// reason on failure.
std::optional<QString> WriteSubstitutions(const QString& path, const Substitutions& list);

// The link reports write for `path`: the replacement of the first substitution whose path
// begins it (case-insensitive) followed by the rest of the path, else "file://" and the
// path unchanged.
QString LinkForPath(const Substitutions& list, const QString& path);

// The dialog's Add and Modify; each returns the message to show ([Hypertext] 11 "Please
// type a path", 12 "Path already defined", 13 "Path not defined"), or nothing when the
// list changed.
std::optional<QString> AddSubstitution(Substitutions& list, const QString& path, const QString& replacement,
                                       const Captions& captions);
std::optional<QString> ChangeSubstitution(Substitutions& list, const QString& path, const QString& replacement,
                                          const Captions& captions);

}  // namespace brindar
