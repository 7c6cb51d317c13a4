// The classic sequential-file form of the configuration's companion files (the reports
// list and the hyperlink substitutions).
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <optional>

namespace brindar {

// "Write" puts a text between double quotes as it is (a double quote
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

}  // namespace brindar
