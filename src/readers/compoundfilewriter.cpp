// The compound-file writer: a fresh layout of the same directory, streams copied or replaced.
#include "readers/compoundfilewriter.h"

#include "platform/filereplace.h"
#include "readers/compoundfile.h"

#include <QtEndian>
#include <algorithm>
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

}  // namespace

std::optional<QString> RewriteCompoundFile(const QString& path, const QMap<QString, QByteArray>& streams)
{
    QString error;
    std::optional<CompoundFile> source = CompoundFile::Open(path, &error);
    if (!source)
        return error;
    std::vector<CompoundFile::Entry> entries = source->entries();
    const quint32 sectorSize = quint32(1) << source->sectorShift();
    const quint32 perSector = sectorSize / 4;
    const quint32 cutoff = source->miniCutoff();

    // Which entries take new content; new streams join the root.
    QMap<int, QByteArray> replaced;
    bool added = false;
    for (auto it = streams.cbegin(); it != streams.cend(); ++it) {
        int index = source->rootStreamIndex(it.key());
        if (index < 0) {
            CompoundFile::Entry entry;
            entry.name = it.key().left(31);
            entry.type = 2;
            entry.raw = NewStreamEntry(it.key());
            entries.push_back(entry);
            index = int(entries.size() - 1);
            added = true;
        }
        replaced.insert(index, it.value());
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
        for (auto it = replaced.cbegin(); it != replaced.cend(); ++it)
            if (!children.contains(quint32(it.key())))
                children.append(quint32(it.key()));
        RebuildRootTree(entries, children);
    }

    // Sizes and size classes.
    auto sizeOf = [&](int index) -> quint64 {
        return replaced.contains(index) ? quint64(replaced[index].size()) : entries[size_t(index)].size;
    };
    QList<int> miniStreams, regularStreams;
    quint32 miniSectors = 0;
    quint64 regularSectors = 0;
    for (int i = 1; i < int(entries.size()); ++i) {
        if (entries[size_t(i)].type != 2 || sizeOf(i) == 0)
            continue;
        if (sizeOf(i) < cutoff) {
            miniStreams.append(i);
            miniSectors += quint32((sizeOf(i) + kMiniUnit - 1) / kMiniUnit);
        } else {
            regularStreams.append(i);
            regularSectors += (sizeOf(i) + sectorSize - 1) / sectorSize;
        }
    }
    const quint32 directorySectors = quint32((entries.size() * 128 + sectorSize - 1) / sectorSize);
    const quint32 miniFatSectors = (miniSectors * 4 + sectorSize - 1) / sectorSize;
    const quint32 miniStreamSectors = (miniSectors * kMiniUnit + sectorSize - 1) / sectorSize;
    const quint64 dataSectors = directorySectors + miniFatSectors + miniStreamSectors + regularSectors;
    if (dataSectors > 0x7FFFFFF0ULL)
        return QStringLiteral("%1: too large to be written back").arg(path);
    quint32 fatSectors = 1, difatSectors = 0;
    for (;;) {
        const quint64 total = dataSectors + fatSectors + difatSectors;
        const quint32 needFat = quint32((total + perSector - 1) / perSector);
        const quint32 needDifat = needFat > 109 ? (needFat - 109 + perSector - 2) / (perSector - 1) : 0;
        if (needFat == fatSectors && needDifat == difatSectors)
            break;
        fatSectors = std::max(fatSectors, needFat);
        difatSectors = needDifat;
    }

    // Sector numbers, in file order.
    quint32 next = 0;
    auto take = [&](quint64 count) {
        const quint32 first = next;
        next += quint32(count);
        return first;
    };
    const quint32 firstFat = take(fatSectors);
    const quint32 firstDifat = take(difatSectors);
    const quint32 firstDirectory = take(directorySectors);
    const quint32 firstMiniFat = take(miniFatSectors);
    const quint32 firstMiniStream = take(miniStreamSectors);
    std::vector<quint32> fat(size_t(fatSectors) * perSector, kFree);
    auto chain = [&](quint32 first, quint64 count) {
        for (quint64 k = 0; k < count; ++k)
            fat[first + k] = k + 1 == count ? kEnd : quint32(first + k + 1);
    };
    for (quint32 k = 0; k < fatSectors; ++k)
        fat[firstFat + k] = kFatSector;
    for (quint32 k = 0; k < difatSectors; ++k)
        fat[firstDifat + k] = kDifatSector;
    chain(firstDirectory, directorySectors);
    chain(firstMiniFat, miniFatSectors);
    chain(firstMiniStream, miniStreamSectors);

    // Mini streams packed into the mini stream, each its own mini chain.
    std::vector<quint32> miniFat(size_t(miniFatSectors) * perSector, kFree);
    quint32 nextMini = 0;
    for (int index : miniStreams) {
        const quint32 count = quint32((sizeOf(index) + kMiniUnit - 1) / kMiniUnit);
        entries[size_t(index)].start = nextMini;
        for (quint32 k = 0; k < count; ++k)
            miniFat[nextMini + k] = k + 1 == count ? kEnd : nextMini + k + 1;
        nextMini += count;
    }
    for (int index : regularStreams) {
        const quint64 count = (sizeOf(index) + sectorSize - 1) / sectorSize;
        entries[size_t(index)].start = take(count);
        chain(entries[size_t(index)].start, count);
    }

    // The directory, with the new starts and sizes.
    QByteArray directory(qsizetype(directorySectors) * sectorSize, '\0');
    for (size_t i = 0; i < size_t(directorySectors) * sectorSize / 128; ++i) {
        const qsizetype at = qsizetype(i) * 128;
        if (i >= entries.size()) {
            Set32(directory, at + 68, kFree);  // an unused entry
            Set32(directory, at + 72, kFree);
            Set32(directory, at + 76, kFree);
            continue;
        }
        CompoundFile::Entry& e = entries[i];
        QByteArray raw = e.raw.size() == 128 ? e.raw : QByteArray(128, '\0');
        Set32(raw, 68, e.left);
        Set32(raw, 72, e.right);
        Set32(raw, 76, e.child);
        quint64 size = 0;
        quint32 start = kEnd;
        if (i == 0) {
            size = quint64(miniSectors) * kMiniUnit;
            start = miniSectors ? firstMiniStream : kEnd;
        } else if (e.type == 2) {
            size = sizeOf(int(i));
            start = size ? e.start : kEnd;
        } else {
            start = 0;
        }
        Set32(raw, 116, start);
        Set64(raw, 120, size);
        std::memcpy(directory.data() + at, raw.constData(), 128);
    }

    // The header: the old one's class id and minor version, everything else anew.
    QByteArray header(qsizetype(std::max<quint32>(512, sectorSize)), '\0');
    std::memcpy(header.data(), source->header().constData(), 0x1C);
    qToLittleEndian<quint16>(0xFFFE, header.data() + 0x1C);
    qToLittleEndian<quint16>(quint16(source->sectorShift()), header.data() + 0x1E);
    qToLittleEndian<quint16>(6, header.data() + 0x20);
    Set32(header, 0x28, sectorSize == 4096 ? directorySectors : 0);
    Set32(header, 0x2C, fatSectors);
    Set32(header, 0x30, firstDirectory);
    Set32(header, 0x38, cutoff);
    Set32(header, 0x3C, miniFatSectors ? firstMiniFat : kEnd);
    Set32(header, 0x40, miniFatSectors);
    Set32(header, 0x44, difatSectors ? firstDifat : kEnd);
    Set32(header, 0x48, difatSectors);
    for (quint32 k = 0; k < 109; ++k)
        Set32(header, 0x4C + 4 * k, k < fatSectors ? firstFat + k : kFree);

    auto writeAll = [&](QFile& out) -> bool {
        auto put = [&](const QByteArray& bytes) { return out.write(bytes) == bytes.size(); };
        auto putTable = [&](const std::vector<quint32>& table) {
            QByteArray bytes(qsizetype(table.size()) * 4, '\0');
            for (size_t k = 0; k < table.size(); ++k)
                Set32(bytes, qsizetype(k) * 4, table[k]);
            return put(bytes);
        };
        auto padTo = [&](quint64 unit) {
            const qint64 body = out.pos() - qint64(header.size());
            const qint64 pad = qint64((unit - quint64(body) % unit) % unit);
            return put(QByteArray(pad, '\0'));
        };
        if (!put(header) || !putTable(fat))
            return false;
        for (quint32 k = 0; k < difatSectors; ++k) {
            std::vector<quint32> sector(perSector, kFree);
            for (quint32 j = 0; j + 1 < perSector; ++j) {
                const quint64 fatIndex = 109 + quint64(k) * (perSector - 1) + j;
                if (fatIndex < fatSectors)
                    sector[j] = firstFat + quint32(fatIndex);
            }
            sector[perSector - 1] = k + 1 < difatSectors ? firstDifat + k + 1 : kEnd;
            if (!putTable(sector))
                return false;
        }
        if (!put(directory) || !putTable(miniFat))
            return false;
        for (int index : miniStreams) {
            const bool ok = replaced.contains(index) ? put(replaced[index]) : source->copyStream(index, out);
            if (!ok || !padTo(kMiniUnit))
                return false;
        }
        if (!padTo(sectorSize))
            return false;
        for (int index : regularStreams) {
            const bool ok = replaced.contains(index) ? put(replaced[index]) : source->copyStream(index, out);
            if (!ok || !padTo(sectorSize))
                return false;
        }
        return out.pos() == qint64(header.size()) + qint64(next) * sectorSize;
    };
    return ReplaceFile(path, writeAll);
}

}  // namespace brindar
