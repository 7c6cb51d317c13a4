// The metadata cache: one file per directory and column set in the per-user cache folder.
#include "scan/metadatacache.h"

#include "core/atomicfile.h"
#include "core/captionids.h"
#include "platform/filenames.h"
#include "platform/folders.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <algorithm>

namespace brindar {
namespace {

constexpr qint64 kChunkSize = 64 * 1024;
// The longest file name most file systems accept, in bytes.
constexpr qsizetype kNameMax = 255;

// The stream text is UTF-8, not the 8-bit code page the rows were once kept in: the file
// is private to this program, and UTF-8 loses no value. Inside a cell a backslash, tab,
// CR and LF are written as \\ \t \r \n, so a value holding them cannot break the rows,
// and a byte of a file name that is not text as \x and two hex digits, so the name
// still opens its file.
void AppendEscaped(QByteArray& text, const QString& cell)
{
    qsizetype start = 0;
    const auto appendText = [&](qsizetype end) {
        for (char c : QStringView(cell).sliced(start, end - start).toUtf8()) {
            switch (c) {
            case '\\': text += "\\\\"; break;
            case '\t': text += "\\t"; break;
            case '\r': text += "\\r"; break;
            case '\n': text += "\\n"; break;
            default: text += c;
            }
        }
    };
    for (qsizetype i = 0; i < cell.size(); ++i) {
        const int byte = UndecodableByteAt(cell, i);
        if (byte < 0)
            continue;
        appendText(i);
        text += "\\x" + QByteArray::number(byte, 16).toUpper();
        start = i + 1;
    }
    appendText(cell.size());
}

// Every column code (".TI", ".P3") holds exactly one dot; the document column has none.
int ColumnCount(const QString& codeList) { return 1 + int(codeList.count(u'.')); }

bool DecodeCell(QByteArrayView bytes, QString* cell)
{
    if (std::all_of(bytes.begin(), bytes.end(), [](char c) { return uchar(c) < 0x80; })) {
        *cell = QString::fromLatin1(bytes);
        return true;
    }
    // A value may begin with U+FEFF: keep it rather than take it for a byte-order mark.
    // Stateless, so that a sequence cut short at the end of the cell is an error.
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    *cell = decoder.decode(bytes);
    return !decoder.hasError();
}

// Splits the stream into rows as it is read, a chunk at a time. Any departure from the
// layout the writer makes (a row without its final tab, more cells than columns, an
// unknown escape, a raw LF, bytes that are not UTF-8, a last row without its CR) makes
// the whole stream a miss: a damaged cache is rebuilt by scanning, never shown.
class StreamParser {
public:
    explicit StreamParser(int columns) : columns_(columns) {}

    bool feed(QByteArrayView data)
    {
        pending_.append(data);
        qsizetype start = 0;
        for (qsizetype end = pending_.indexOf('\r', searchFrom_); end >= 0; end = pending_.indexOf('\r', start)) {
            if (!parseRow(QByteArrayView(pending_).sliced(start, end - start)))
                return false;
            start = end + 1;
        }
        pending_.remove(0, start);
        searchFrom_ = pending_.size();
        return true;
    }

    // A stream that stops inside a row was cut short.
    bool finish() const { return pending_.isEmpty(); }

    QList<GridRow> rows;

private:
    bool parseRow(QByteArrayView row)
    {
        GridRow parsed;
        QByteArray cell;  // UTF-8 not yet decoded
        QString text;     // the cell so far
        const auto decoded = [&] {
            QString part;
            if (!DecodeCell(cell, &part))
                return false;
            text += part;
            cell.clear();
            return true;
        };
        qsizetype cellEnd = 0;  // just past the last tab
        for (qsizetype i = 0; i < row.size(); ++i) {
            const char c = row[i];
            if (c == '\t') {
                if (int(parsed.cells.size()) == columns_ || !decoded())
                    return false;
                parsed.cells.append(text);
                text.clear();
                cellEnd = i + 1;
            } else if (c == '\\') {
                if (++i == row.size())
                    return false;
                switch (row[i]) {
                case '\\': cell += '\\'; break;
                case 't': cell += '\t'; break;
                case 'r': cell += '\r'; break;
                case 'n': cell += '\n'; break;
                case 'x': {
                    bool ok = false;
                    const int byte = i + 2 < row.size() ? row.sliced(i + 1, 2).toByteArray().toInt(&ok, 16) : 0;
                    if (!ok || byte < 0x80 || !decoded())
                        return false;
                    text += DecodeFileName(QByteArray(1, char(byte)));
                    i += 2;
                    break;
                }
                default: return false;
                }
            } else if (c == '\n') {
                return false;
            } else {
                cell += c;
            }
        }
        if (parsed.cells.isEmpty() || cellEnd != row.size())
            return false;
        // A row written by an older scan may hold fewer cells; the missing ones are empty.
        while (int(parsed.cells.size()) < columns_)
            parsed.cells.append(QString());
        // The stream keeps only the cell texts: a row has metadata when any cell but the
        // file name is not empty, which is what the scan's own flag means.
        parsed.hasMetadata = std::any_of(parsed.cells.cbegin() + 1, parsed.cells.cend(),
                                         [](const QString& value) { return !value.isEmpty(); });
        rows.append(std::move(parsed));
        return true;
    }

    int columns_;
    QByteArray pending_;
    qsizetype searchFrom_ = 0;
};

}  // namespace

QString MetadataCachePath(const QString& directory, const QString& codeList)
{
    if (directory.isEmpty())
        return QString();
    // The absolute path as given, not the canonical one: a directory reached through a
    // symbolic link keeps a cache of its own, which costs a scan and never shows wrong rows.
    const QString absolute = QDir::cleanPath(QFileInfo(directory).absoluteFilePath());
    const QByteArray hash = QCryptographicHash::hash(EncodeFileName(absolute), QCryptographicHash::Sha1).toHex();

    QString name = codeList.startsWith(u':') ? codeList.mid(1) : codeList;
    if (name.isEmpty() || name == u"." || name == u".." || name.contains(u'/') || name.contains(QChar(0)))
        return QString();
    // With most columns displayed the list outgrows a file name; such a list is named by
    // its own SHA-1, so every column set still has a stream of its own.
    if (name.toUtf8().size() > kNameMax)
        name = QStringLiteral("meta~")
               + QString::fromLatin1(QCryptographicHash::hash(name.toUtf8(), QCryptographicHash::Sha1).toHex());
    return CacheFolder() + QStringLiteral("/streams/") + QString::fromLatin1(hash) + u'/' + name;
}

std::optional<QList<GridRow>> ReadMetadataCache(const QString& directory, const QString& codeList,
                                                const Captions& captions, QString* status)
{
    if (status)
        status->clear();
    const QString path = MetadataCachePath(directory, codeList);
    if (path.isEmpty() || !QFileInfo(path).isFile())
        return std::nullopt;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const qint64 size = file.size();
    if (size <= 0)
        return std::nullopt;
    if (size > kMetadataCacheLimit) {
        if (status)
            *status = captions.text(caption::CacheNotEnoughMemory);
        return std::nullopt;
    }

    StreamParser parser(ColumnCount(codeList));
    QByteArray chunk(kChunkSize, Qt::Uninitialized);
    for (qint64 total = 0; total < size;) {
        const qint64 got = file.read(chunk.data(), std::min(kChunkSize, size - total));
        if (got <= 0)
            return std::nullopt;  // fewer bytes than the size: a short read is a miss
        total += got;
        if (!parser.feed(QByteArrayView(chunk.constData(), got)))
            return std::nullopt;
    }
    char extra = 0;
    if (file.read(&extra, 1) != 0 || !parser.finish())
        return std::nullopt;  // the stream changed while it was read, or was cut short

    if (status)
        *status = captions.text(caption::ReadingCache) + u' ' + QString::number(size) + u' '
                  + captions.text(caption::Bytes);
    return std::move(parser.rows);
}

QString WriteMetadataCache(const QString& directory, const QString& codeList, const QList<GridRow>& rows,
                           const Captions& captions)
{
    if (rows.isEmpty())
        return QString();
    // Each row holds exactly one cell per column, as the grid does: missing cells are
    // written empty, cells beyond the columns are not written.
    const int columns = ColumnCount(codeList);
    QByteArray text;
    for (const GridRow& row : rows) {
        for (int c = 0; c < columns; ++c) {
            if (c < row.cells.size())
                AppendEscaped(text, row.cells[c]);
            text += '\t';
        }
        text += '\r';
    }
    const QString path = MetadataCachePath(directory, codeList);
    if (path.isEmpty() || WriteFileAtomically(path, text))
        return captions.text(caption::CacheWriteError);
    return captions.text(caption::WritingCache) + u' ' + QString::number(text.size()) + u' '
           + captions.text(caption::Bytes);
}

void InvalidateMetadataCache(const QString& directory, const QString& codeList)
{
    const QString path = MetadataCachePath(directory, codeList);
    if (path.isEmpty())
        return;
    const QFileInfo info(path);
    if (!info.isFile() || info.size() <= 0)
        return;
    // Truncated in place, not removed: an empty stream is the invalid one.
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.close();
}

}  // namespace brindar
