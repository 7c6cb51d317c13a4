// Comment streams: one reading for the grid's Macintosh comments and the XML export.
#include "readers/commentstream.h"

#include "platform/namedstreams.h"

#include <QStringDecoder>

namespace brindar {

QString DecodeCommentStream(QByteArray bytes, qsizetype byteLimit)
{
    if (byteLimit >= 0 && bytes.size() > byteLimit)
        bytes.truncate(byteLimit);
    bytes.truncate(bytes.size() & ~qsizetype(1));
    // A leading U+FEFF is one of the comment's characters, not a byte-order mark to drop:
    // the stream has no mark, and is little-endian whatever it begins with.
    return QStringDecoder(QStringDecoder::Utf16LE, QStringDecoder::Flag::ConvertInitialBom).decode(bytes);
}

std::optional<QString> ReadComment(const QString& path, qsizetype byteLimit)
{
    if (!HasNamedStreams(path))
        return std::nullopt;
    if (auto bytes = ReadNamedStream(path, QStringLiteral("Comments")))
        return DecodeCommentStream(*bytes, byteLimit);
    if (auto desktop = ReadNamedStream(path, QStringLiteral("xdg.comment")))
        return QString::fromUtf8(*desktop);
    return std::nullopt;
}

}  // namespace brindar
