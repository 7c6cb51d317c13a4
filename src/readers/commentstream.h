// The comment a file or folder carries in its "Comments" named stream, as a Macintosh
// client writes it on an NTFS volume, or else the desktop's comment.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace brindar {

// The text of a "Comments" stream: UTF-16 little-endian, two bytes a character, at most
// `byteLimit` bytes of it when a limit is given (a lone last byte makes no character).
// Every character stays, a NUL included.
QString DecodeCommentStream(QByteArray bytes, qsizetype byteLimit = -1);

// The comment of the file or folder at `path`: its "Comments" stream decoded as above,
// else its desktop comment ("xdg.comment", UTF-8), else nothing.
std::optional<QString> ReadComment(const QString& path, qsizetype byteLimit = -1);

}  // namespace brindar
