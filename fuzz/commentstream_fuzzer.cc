// Fuzzes the reading of "Comments" streams: UTF-16 little-endian, with and without the
// grid's 255-byte limit, decoded directly and through a file's named stream.
#include "platform/namedstreams.h"
#include "readers/commentstream.h"

#include "fuzzinput.h"

#include <QByteArray>
#include <algorithm>
#include <cstdint>

namespace {

// The characters written back as UTF-16 little-endian, two bytes each.
QByteArray Utf16LittleEndian(const QString& text)
{
    QByteArray bytes;
    bytes.reserve(text.size() * 2);
    for (const QChar c : text) {
        bytes += char(c.unicode() & 0xFF);
        bytes += char(c.unicode() >> 8);
    }
    return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace brindar;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    for (const qsizetype limit : {qsizetype(-1), qsizetype(255)}) {
        const QString text = DecodeCommentStream(bytes, limit);
        // Every character of the bytes within the limit stays, as it is: two bytes each,
        // a lone last byte dropped.
        const qsizetype within = limit < 0 ? bytes.size() : std::min(bytes.size(), limit);
        if (text.size() != within / 2 || !bytes.startsWith(Utf16LittleEndian(text)))
            __builtin_trap();
    }

    // The same bytes as the stream of a file read the same, where streams can be kept.
    const QString path = fuzz::WriteInput(data, 0, ".txt");
    if (!WriteNamedStream(path, QStringLiteral("Comments"), bytes)) {
        const std::optional<QString> comment = ReadComment(path, 255);
        if (!comment || *comment != DecodeCommentStream(bytes, 255))
            __builtin_trap();
    }
    return 0;
}
