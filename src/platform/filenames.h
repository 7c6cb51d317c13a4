// File names and paths between the program's text and the system's bytes. A name is
// whatever bytes the file system holds; most are UTF-8, some are not (a name written by
// an older system in its 8-bit code page). Each byte that is not part of valid UTF-8 is
// kept as one character U+DC80..U+DCFF, so a name read from a folder opens the same file
// again, and is shown with a replacement mark where it cannot be read as text.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>
#include <optional>

class QFile;

namespace brindar {

QString DecodeFileName(QByteArrayView bytes);
// The length of the valid UTF-8 sequence of two bytes or more starting at `at` (no
// overlong forms, no surrogates, nothing above U+10FFFF), or 0.
int Utf8SequenceLength(QByteArrayView bytes, qsizetype at);
QByteArray EncodeFileName(QStringView name);

// Whether the name holds bytes that are not text (kept as U+DC80..U+DCFF).
bool HasUndecodableBytes(QStringView name);
// The byte that character `i` of `name` keeps when it is one of those, else -1.
int UndecodableByteAt(QStringView name, qsizetype i);

// Opens the regular file at `path` for reading into `file` (which then owns it),
// unbuffered when asked. False when it cannot be opened or is no regular file: a folder,
// a pipe or a device is never read (a pipe would block the reader for good).
bool OpenForReading(QFile& file, const QString& path, bool unbuffered = false);

bool PathExists(const QString& path);   // links followed: a link to nothing is missing
bool IsDirectory(const QString& path);  // links followed
bool IsRegularFile(const QString& path);

// Removes the file (not a folder) at `path`; false when it cannot.
bool RemoveFile(const QString& path);

// Creates the folder and every missing parent; the reason on failure.
std::optional<QString> MakeFolders(const QString& path);

// The text of the system's last error (errno), in the user's language.
QString LastSystemError();

}  // namespace brindar
