// The compound-file writer: a fresh layout of the same directory, streams copied or replaced.
#include "readers/compoundfilewriter.h"

#include "platform/filereplace.h"
#include "readers/compoundfile.h"

#include <QtEndian>
#include <algorithm>
#include <cstring>
#include <functional>

namespace brindar {
namespace {

constexpr quint32 kFree = 0xFFFFFFFF;
constexpr quint32 kEnd = 0xFFFFFFFE;
constexpr quint32 kFatSector = 0xFFFFFFFD;
constexpr quint32 kDifatSector = 0xFFFFFFFC;
constexpr quint32 kMiniUnit = 64;

void Set32(QByteArray& bytes, qsizetype at, quint32 value) { qToLittleEndian(value, bytes.data() + at); }
void Set64(QByteArray& bytes, qsizetype at, quint64 value) { qToLittleEndian(value, bytes.data() + at); }

// The order the format keeps siblings in: shorter names first, then by upper case.
bool NameBefore(const QString& a, const QString& b)
{
    if (a.size() != b.size())
        return a.size() < b.size();
    return a.toUpper() < b.toUpper();
}

// A directory entry for a new stream directly below the root.
QByteArray NewStreamEntry(const QString& name)
{
    QByteArray raw(128, '\0');
    const QString cut = name.left(31);
    std::memcpy(raw.data(), cut.utf16(), size_t(cut.size()) * 2);
    raw[64] = char((cut.size() + 1) * 2);
    raw[65] = 0;
    raw[66] = 2;  // stream
    Set32(raw, 68, kFree);
    Set32(raw, 72, kFree);
    Set32(raw, 76, kFree);
    return raw;
}

// Rebuilds the root's children as a balanced tree: the middle name at the top, the
// deepest level red and every other node black, which keeps it a valid red-black tree.
void RebuildRootTree(std::vector<CompoundFile::Entry>& entries, QList<quint32> children)
{
    std::sort(children.begin(), children.end(),
              [&](quint32 a, quint32 b) { return NameBefore(entries[a].name, entries[b].name); });
    int deepest = 0;
    std::function<quint32(int, int, int)> build = [&](int low, int high, int depth) -> quint32 {
        if (low > high)
            return kFree;
        const int middle = (low + high) / 2;
        const quint32 index = children[middle];
        deepest = std::max(deepest, depth);
        entries[index].left = build(low, middle - 1, depth + 1);
        entries[index].right = build(middle + 1, high, depth + 1);
        entries[index].raw[67] = char(depth);  // the depth for now; colours below
        return index;
    };
    entries.front().child = build(0, int(children.size()) - 1, 0);
    const bool perfect = children.size() == (qsizetype(1) << (deepest + 1)) - 1;
    for (quint32 index : children) {
        const int depth = entries[index].raw[67];
        entries[index].raw[67] = char(depth == deepest && !perfect && deepest > 0 ? 0 : 1);  // 0 red, 1 black
    }
}

// The new file, planned whole before a byte is written: the directory's entries with
// their new starts and sizes, the sector tables and the header, then the order in which
// the streams' content follows them.
struct CompoundLayout {
    quint32 sectorSize = 512;
    std::vector<CompoundFile::Entry> entries;
    QMap<int, QByteArray> replaced;  // new content, by entry
    QList<int> miniStreams;          // in the mini stream's order
    QList<int> regularStreams;       // in file order, after the mini stream
    QByteArray header;
    std::vector<quint32> fat;
    std::vector<quint32> difat;      // the DIFAT sectors, each ending with the next one's number
    QByteArray directory;
    std::vector<quint32> miniFat;
    quint32 sectorCount = 0;         // after the header
};

// The directory's entries with the new streams added below the root, and the new
// content of each entry that takes one.
std::vector<CompoundFile::Entry> PlanEntries(CompoundFile& source, const QMap<QString, QByteArray>& streams,
                                             QMap<int, QByteArray>* replaced)
{
    std::vector<CompoundFile::Entry> entries = source.entries();
    bool added = false;
    for (auto it = streams.cbegin(); it != streams.cend(); ++it) {
        int index = source.rootStreamIndex(it.key());
        if (index < 0) {
            CompoundFile::Entry entry;
            entry.name = it.key().left(31);
            entry.type = 2;
            entry.raw = NewStreamEntry(it.key());
            entries.push_back(entry);
            index = int(entries.size() - 1);
            added = true;
        }
        replaced->insert(index, it.value());
    }
    if (added) {
        // The root's children as the walk finds them, each once.
        QList<quint32> children;
        QList<quint32> pending{entries.front().child};
        while (!pending.isEmpty()) {
            const quint32 index = pending.takeLast();
            if (index == kFree || index >= entries.size() || children.contains(index))
                continue;
            children.append(index);
            pending.append(entries[index].left);
            pending.append(entries[index].right);
        }
        for (auto it = replaced->cbegin(); it != replaced->cend(); ++it)
            if (!children.contains(quint32(it.key())))
                children.append(quint32(it.key()));
        RebuildRootTree(entries, children);
    }
    for (auto it = replaced->cbegin(); it != replaced->cend(); ++it)
        entries[size_t(it.key())].size = quint64(it.value().size());
    return entries;
}

// The directory sectors: every entry with its tree links, start and size, then unused
// entries up to the end of the last sector.
QByteArray DirectoryBytes(const std::vector<CompoundFile::Entry>& entries, quint32 sectors, quint32 sectorSize)
{
    QByteArray directory(qsizetype(sectors) * sectorSize, '\0');
    for (size_t i = 0; i < size_t(sectors) * sectorSize / 128; ++i) {
        const qsizetype at = qsizetype(i) * 128;
        if (i >= entries.size()) {
            Set32(directory, at + 68, kFree);  // an unused entry
            Set32(directory, at + 72, kFree);
            Set32(directory, at + 76, kFree);
            continue;
        }
        const CompoundFile::Entry& e = entries[i];
        QByteArray raw = e.raw.size() == 128 ? e.raw : QByteArray(128, '\0');
        Set32(raw, 68, e.left);
        Set32(raw, 72, e.right);
        Set32(raw, 76, e.child);
        Set32(raw, 116, e.start);
        Set64(raw, 120, e.size);
        std::memcpy(directory.data() + at, raw.constData(), 128);
    }
    return directory;
}

// Where the parts of the new file go, in file order: each one's sector count and first sector.
struct Regions {
    quint32 fatSectors = 1, difatSectors = 0, directorySectors = 0, miniFatSectors = 0, miniStreamSectors = 0;
    quint32 firstFat = 0, firstDifat = 0, firstDirectory = 0, firstMiniFat = 0, firstMiniStream = 0;
};

// The header: the old one's class id and minor version, everything else anew.
QByteArray HeaderBytes(const CompoundFile& source, const Regions& r)
{
    const quint32 sectorSize = quint32(1) << source.sectorShift();
    QByteArray header(qsizetype(std::max<quint32>(512, sectorSize)), '\0');
    std::memcpy(header.data(), source.header().constData(), 0x1C);
    qToLittleEndian<quint16>(0xFFFE, header.data() + 0x1C);
    qToLittleEndian<quint16>(quint16(source.sectorShift()), header.data() + 0x1E);
    qToLittleEndian<quint16>(6, header.data() + 0x20);
    Set32(header, 0x28, sectorSize == 4096 ? r.directorySectors : 0);
    Set32(header, 0x2C, r.fatSectors);
    Set32(header, 0x30, r.firstDirectory);
    Set32(header, 0x38, source.miniCutoff());
    Set32(header, 0x3C, r.miniFatSectors ? r.firstMiniFat : kEnd);
    Set32(header, 0x40, r.miniFatSectors);
    Set32(header, 0x44, r.difatSectors ? r.firstDifat : kEnd);
    Set32(header, 0x48, r.difatSectors);
    for (quint32 k = 0; k < 109; ++k)
        Set32(header, 0x4C + 4 * k, k < r.fatSectors ? r.firstFat + k : kFree);
    return header;
}

// The DIFAT sectors: the FAT sectors past the header's 109, each DIFAT sector ending with
// the next one's number.
std::vector<quint32> DifatSectors(const Regions& r, quint32 perSector)
{
    std::vector<quint32> difat(size_t(r.difatSectors) * perSector, kFree);
    for (quint32 k = 0; k < r.difatSectors; ++k) {
        for (quint32 j = 0; j + 1 < perSector; ++j) {
            const quint64 fatIndex = 109 + quint64(k) * (perSector - 1) + j;
            if (fatIndex < r.fatSectors)
                difat[size_t(k) * perSector + j] = r.firstFat + quint32(fatIndex);
        }
        difat[size_t(k + 1) * perSector - 1] = k + 1 < r.difatSectors ? r.firstDifat + k + 1 : kEnd;
    }
    return difat;
}

// The layout of `source` with `streams` replaced or added; nothing when it would be too
// large for the format.
std::optional<CompoundLayout> PlanLayout(CompoundFile& source, const QMap<QString, QByteArray>& streams)
{
    CompoundLayout layout;
    layout.entries = PlanEntries(source, streams, &layout.replaced);
    std::vector<CompoundFile::Entry>& entries = layout.entries;
    const quint32 sectorSize = layout.sectorSize = quint32(1) << source.sectorShift();
    const quint32 perSector = sectorSize / 4;
    const quint32 cutoff = source.miniCutoff();

    // Size classes: below the cutoff a stream lives in the mini stream.
    quint32 miniSectors = 0;
    quint64 regularSectors = 0;
    for (int i = 1; i < int(entries.size()); ++i) {
        const quint64 size = entries[size_t(i)].size;
        if (entries[size_t(i)].type != 2 || size == 0)
            continue;
        if (size < cutoff) {
            layout.miniStreams.append(i);
            miniSectors += quint32((size + kMiniUnit - 1) / kMiniUnit);
        } else {
            layout.regularStreams.append(i);
            regularSectors += (size + sectorSize - 1) / sectorSize;
        }
    }
    Regions r;
    r.directorySectors = quint32((entries.size() * 128 + sectorSize - 1) / sectorSize);
    r.miniFatSectors = (miniSectors * 4 + sectorSize - 1) / sectorSize;
    r.miniStreamSectors = (miniSectors * kMiniUnit + sectorSize - 1) / sectorSize;
    const quint64 dataSectors = r.directorySectors + r.miniFatSectors + r.miniStreamSectors + regularSectors;
    if (dataSectors > 0x7FFFFFF0ULL)
        return std::nullopt;
    for (;;) {
        const quint64 total = dataSectors + r.fatSectors + r.difatSectors;
        const quint32 needFat = quint32((total + perSector - 1) / perSector);
        const quint32 needDifat = needFat > 109 ? (needFat - 109 + perSector - 2) / (perSector - 1) : 0;
        if (needFat == r.fatSectors && needDifat == r.difatSectors)
            break;
        r.fatSectors = std::max(r.fatSectors, needFat);
        r.difatSectors = needDifat;
    }

    // Sector numbers, in file order.
    auto take = [&](quint64 count) {
        const quint32 first = layout.sectorCount;
        layout.sectorCount += quint32(count);
        return first;
    };
    r.firstFat = take(r.fatSectors);
    r.firstDifat = take(r.difatSectors);
    r.firstDirectory = take(r.directorySectors);
    r.firstMiniFat = take(r.miniFatSectors);
    r.firstMiniStream = take(r.miniStreamSectors);
    std::vector<quint32>& fat = layout.fat;
    fat.assign(size_t(r.fatSectors) * perSector, kFree);
    auto chain = [&](quint32 first, quint64 count) {
        for (quint64 k = 0; k < count; ++k)
            fat[first + k] = k + 1 == count ? kEnd : quint32(first + k + 1);
    };
    for (quint32 k = 0; k < r.fatSectors; ++k)
        fat[r.firstFat + k] = kFatSector;
    for (quint32 k = 0; k < r.difatSectors; ++k)
        fat[r.firstDifat + k] = kDifatSector;
    chain(r.firstDirectory, r.directorySectors);
    chain(r.firstMiniFat, r.miniFatSectors);
    chain(r.firstMiniStream, r.miniStreamSectors);

    // Mini streams packed into the mini stream, each its own mini chain.
    layout.miniFat.assign(size_t(r.miniFatSectors) * perSector, kFree);
    quint32 nextMini = 0;
    for (int index : std::as_const(layout.miniStreams)) {
        const quint32 count = quint32((entries[size_t(index)].size + kMiniUnit - 1) / kMiniUnit);
        entries[size_t(index)].start = nextMini;
        for (quint32 k = 0; k < count; ++k)
            layout.miniFat[nextMini + k] = k + 1 == count ? kEnd : nextMini + k + 1;
        nextMini += count;
    }
    for (int index : std::as_const(layout.regularStreams)) {
        const quint64 count = (entries[size_t(index)].size + sectorSize - 1) / sectorSize;
        entries[size_t(index)].start = take(count);
        chain(entries[size_t(index)].start, count);
    }
    // The root holds the mini stream; storages have no content, empty streams no chain.
    entries.front().size = quint64(miniSectors) * kMiniUnit;
    entries.front().start = miniSectors ? r.firstMiniStream : kEnd;
    for (size_t i = 1; i < entries.size(); ++i) {
        if (entries[i].type != 2) {
            entries[i].start = 0;
            entries[i].size = 0;
        } else if (entries[i].size == 0) {
            entries[i].start = kEnd;
        }
    }
    layout.directory = DirectoryBytes(entries, r.directorySectors, sectorSize);
    layout.difat = DifatSectors(r, perSector);
    layout.header = HeaderBytes(source, r);
    return layout;
}

// Writes the planned file: header, tables and directory, then every stream's content,
// new or copied from `source`, each padded to its unit.
bool WriteLayout(const CompoundLayout& layout, CompoundFile& source, QFile& out)
{
    auto put = [&](const QByteArray& bytes) { return out.write(bytes) == bytes.size(); };
    auto putTable = [&](const std::vector<quint32>& table) {
        QByteArray bytes(qsizetype(table.size()) * 4, '\0');
        for (size_t k = 0; k < table.size(); ++k)
            Set32(bytes, qsizetype(k) * 4, table[k]);
        return put(bytes);
    };
    auto padTo = [&](quint64 unit) {
        const qint64 body = out.pos() - qint64(layout.header.size());
        const qint64 pad = qint64((unit - quint64(body) % unit) % unit);
        return put(QByteArray(pad, '\0'));
    };
    auto putStreams = [&](const QList<int>& streams, quint64 unit) {
        for (int index : streams) {
            const auto it = layout.replaced.constFind(index);
            if (!(it != layout.replaced.cend() ? put(*it) : source.copyStream(index, out)) || !padTo(unit))
                return false;
        }
        return true;
    };
    return put(layout.header) && putTable(layout.fat) && putTable(layout.difat) && put(layout.directory)
           && putTable(layout.miniFat) && putStreams(layout.miniStreams, kMiniUnit) && padTo(layout.sectorSize)
           && putStreams(layout.regularStreams, layout.sectorSize)
           && out.pos() == qint64(layout.header.size()) + qint64(layout.sectorCount) * layout.sectorSize;
}

}  // namespace

std::optional<QString> RewriteCompoundFile(const QString& path, const QMap<QString, QByteArray>& streams)
{
    QString error;
    std::optional<CompoundFile> source = CompoundFile::Open(path, &error);
    if (!source)
        return error;
    const std::optional<CompoundLayout> layout = PlanLayout(*source, streams);
    if (!layout)
        return QStringLiteral("%1: too large to be written back").arg(path);
    return ReplaceFile(path, [&](QFile& out) { return WriteLayout(*layout, *source, out); });
}

}  // namespace brindar
