// The metadata cache: a directory's finished grid rows, kept per column set so that the
// same directory shown again with the same columns opens no file.
#pragma once

#include "scan/gridrow.h"

#include <QList>
#include <QString>
#include <optional>

namespace brindar {

class Captions;

// A stream larger than this cannot be held in memory with its rows: it is refused with
// the "not enough memory" status and the directory is scanned instead.
inline constexpr qint64 kMetadataCacheLimit = qint64(1) << 30;

// The file that stands for the directory's stream of one column set:
// <CacheFolder()>/streams/<hex SHA-1 of the directory's absolute path in UTF-8>/<name>,
// the name being `codeList` (":meta.TI.AU") without its leading ":".
QString MetadataCachePath(const QString& directory, const QString& codeList);

// Try read: the rows kept for `directory` and the column set `codeList`, or nothing
// (a miss: no stream, an empty, unreadable, truncated or damaged one). `status`, when
// given, receives the status line to show: "reading cache <size> bytes" on a hit, the
// "not enough memory" text when the stream is too large, empty otherwise.
std::optional<QList<GridRow>> ReadMetadataCache(const QString& directory, const QString& codeList,
                                                const Captions& captions, QString* status);

// Write: keeps `rows` as the stream of `directory` for `codeList`, replacing the old one
// whole. Nothing is written for no rows. Returns the status line: "writing cache
// <length> bytes", the "directory is probably read only" text when the write failed,
// or empty when nothing was written.
QString WriteMetadataCache(const QString& directory, const QString& codeList, const QList<GridRow>& rows,
                           const Captions& captions);

// Invalidate: an existing, non-empty stream is truncated to zero length, which makes it
// a miss until the next write. Streams of other column sets are left in place.
void InvalidateMetadataCache(const QString& directory, const QString& codeList);

}  // namespace brindar
