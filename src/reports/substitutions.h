// Hyperlink path substitutions: the leading paths that reports link under another address,
// kept in the configuration's ".pat" companion file.
#pragma once

#include "core/language.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <optional>

namespace brindar {

// The classic sequential-file form of the configuration's companion files (this one and
// the reports list). "Write" puts a text between double quotes as it is (a double quote
// inside cannot be stored faithfully), a boolean as #TRUE# or #FALSE#, fields separated
// by "," and lines ended by CR LF.
QString WriteSequentialText(const QString& text);
QString WriteSequentialBoolean(bool value);
// "Input": the fields of one line. A quoted field runs to the next double quote, what
// follows it up to the next comma being dropped; an unquoted one runs to the next comma,
// blanks trimmed.
QStringList InputSequentialFields(QStringView line);
// #TRUE# / #FALSE#, True / False in any case, or a number (non-zero is true); nothing
// for any other text.
std::optional<bool> InputSequentialBoolean(const QString& field);
// The fields of each non-blank line of a companion file (Windows-1252; CR LF, LF or a
// lone CR ends a line). A missing or unreadable file has no lines.
QList<QStringList> ReadSequentialFile(const QString& path);
// Rewrites a companion file whole from lines made with the "write" functions.
std::optional<QString> WriteSequentialFile(const QString& path, const QStringList& lines);

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
