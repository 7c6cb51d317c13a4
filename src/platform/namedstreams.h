// Named streams of files and folders (NTFS alternate data streams), kept here as
// extended attributes "user.<name>", as ntfs-3g shows NTFS streams.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <optional>

namespace brindar {

// Extended attributes hold at most 64 KiB; a larger stream cannot exist here.
inline constexpr qsizetype kNamedStreamLimit = 64 * 1024;

// The stream `name` of the file or folder at `path`; nothing when it has none or the
// file system keeps no such attributes.
std::optional<QByteArray> ReadNamedStream(const QString& path, const QString& name);

// Whether the file or folder has any named stream at all: one question to the file
// system, so that the many files without any cost no more.
bool HasNamedStreams(const QString& path);

// Replaces the stream `name` of the file or folder at `path` in one step (the
// attribute is swapped whole). Returns the reason on failure.
std::optional<QString> WriteNamedStream(const QString& path, const QString& name, const QByteArray& bytes);

// Replaces several streams together, all or nothing: every size is checked and every old
// value read before anything is written, and when the file system refuses one stream,
// those written before it are put back (a stream the file did not have is removed
// again). Returns the reason on failure; the streams are then as they were.
std::optional<QString> WriteNamedStreams(const QString& path, const QMap<QString, QByteArray>& streams);

}  // namespace brindar
