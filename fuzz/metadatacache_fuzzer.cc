// Fuzzes the metadata cache: the input as the stream of one folder and column set, and as
// the cell texts of rows written to it; whatever is read must write and read back the same.
#include "core/language.h"
#include "platform/filenames.h"
#include "scan/metadatacache.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>
#include <QTemporaryDir>
#include <cstdint>
#include <optional>

namespace {

using brindar::GridRow;

const QString kDirectory = QStringLiteral("/fuzz/Documents");
const QString kCodes = QStringLiteral(":meta.TI.AU.P3");
constexpr int kColumns = 4;  // the document column and three codes

std::optional<QList<GridRow>> Read()
{
    QString status;
    auto rows = brindar::ReadMetadataCache(kDirectory, kCodes, brindar::Captions::English(), &status);
    if (rows.has_value() == status.isEmpty())
        __builtin_trap();  // a hit says how much it read, a miss says nothing here
    return rows;
}

// Every row holds one cell per column, and has metadata exactly when a cell after the
// file name is not empty.
void CheckShape(const QList<GridRow>& rows)
{
    for (const GridRow& row : rows) {
        if (row.cells.size() != kColumns)
            __builtin_trap();
        bool any = false;
        for (qsizetype c = 1; c < row.cells.size(); ++c)
            any = any || !row.cells[c].isEmpty();
        if (row.hasMetadata != any)
            __builtin_trap();
    }
}

bool SameRows(const QList<GridRow>& a, const QList<GridRow>& b)
{
    if (a.size() != b.size())
        return false;
    for (qsizetype i = 0; i < a.size(); ++i)
        if (a[i].cells != b[i].cells || a[i].hasMetadata != b[i].hasMetadata)
            return false;
    return true;
}

// Writes the rows and reads them back: the same rows must come back, cells padded or cut
// to one per column.
void RoundTrip(const QList<GridRow>& rows)
{
    brindar::WriteMetadataCache(kDirectory, kCodes, rows, brindar::Captions::English());
    QList<GridRow> expected = rows;
    for (GridRow& row : expected) {
        row.cells.resize(kColumns);
        row.hasMetadata = false;
        for (qsizetype c = 1; c < kColumns; ++c)
            row.hasMetadata = row.hasMetadata || !row.cells[c].isEmpty();
    }
    const auto again = Read();
    if (!again || !SameRows(*again, expected))
        __builtin_trap();
    CheckShape(*again);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // The cache lives in a folder of this process, never in the user's cache.
    static const QTemporaryDir cache;
    static const bool pointed = qputenv("XDG_CACHE_HOME", cache.path().toUtf8());
    if (!pointed)
        __builtin_trap();
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));

    // The input as a stream, put where the cache looks for it.
    const QString path = brindar::MetadataCachePath(kDirectory, kCodes);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        __builtin_trap();
    file.close();
    if (const auto rows = Read()) {
        CheckShape(*rows);
        RoundTrip(*rows);
    }

    // The input as values: rows at CR, cells at tab, each cell the text of a file name
    // made of those bytes, so that cells hold any text and any byte a name may keep.
    QList<GridRow> rows;
    for (const QByteArray& line : bytes.split('\r')) {
        GridRow row;
        for (const QByteArray& cell : line.split('\t'))
            row.cells.append(brindar::DecodeFileName(cell));
        rows.append(row);
    }
    RoundTrip(rows);
    return 0;
}
