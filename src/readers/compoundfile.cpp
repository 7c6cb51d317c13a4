// Reading compound files: header, DIFAT, FAT, mini FAT, directory tree and stream chains.
#include "readers/compoundfile.h"

#include "platform/filenames.h"

#include <QSet>
#include <QtEndian>
#include <cstring>

namespace brindar {
namespace {

constexpr unsigned char kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
constexpr quint32 kEndOfChain = 0xFFFFFFFE;
constexpr quint32 kMaxRegularSector = 0xFFFFFFFA;
// Directory trees deeper than this are damaged (a balanced tree of every possible
// entry is far shallower).
constexpr int kTreeDepthLimit = 256;

quint32 U32(const char* p) { return qFromLittleEndian<quint32>(p); }
quint16 U16(const char* p) { return qFromLittleEndian<quint16>(p); }

}  // namespace

bool CompoundFile::HasSignature(QByteArrayView head)
{
    return head.size() >= 8 && std::memcmp(head.data(), kSignature, 8) == 0;
}

bool CompoundFile::readSector(quint32 sector, char* into)
{
    const qint64 size = qint64(1) << sectorShift_;
    const qint64 offset = (qint64(sector) + 1) * size;
    if (sector > kMaxRegularSector || offset + size > fileSize_ + size)
        return false;
    if (!file_->seek(offset))
        return false;
    const qint64 got = file_->read(into, size);
    if (got < 0)
        return false;
    // A last sector cut short by the end of the file reads as zeros, as the format allows.
    std::memset(into + got, 0, size_t(size - got));
    return got > 0;
}

std::optional<std::vector<quint32>> CompoundFile::chain(quint32 start, const std::vector<quint32>& table,
                                                        quint64 limit)
{
    std::vector<quint32> sectors;
    QSet<quint32> seen;
    for (quint32 s = start; s != kEndOfChain && sectors.size() < limit;) {
        if (s >= table.size() || seen.contains(s))
            return std::nullopt;
        seen.insert(s);
        sectors.push_back(s);
        s = table[s];
    }
    return sectors;
}

std::optional<QByteArray> CompoundFile::readChain(quint32 start, quint64 size, bool mini)
{
    if (size > kStreamLimit)
        return std::nullopt;
    if (size == 0)
        return QByteArray();
    if (mini) {
        // Mini sectors are read where they lie in the root's chain, so the mini stream
        // itself is never loaded whole.
        if (!miniStreamRead_) {
            miniStreamRead_ = true;
            const Entry& root = entries_.front();
            const quint64 unit = quint64(1) << sectorShift_;
            if (auto sectors = chain(root.start, fat_, (root.size + unit - 1) / unit))
                miniStreamSectors_ = *sectors;
        }
        const quint64 unit = quint64(1) << miniShift_;
        const quint64 perSector = (quint64(1) << sectorShift_) / unit;
        const auto sectors = chain(start, miniFat_, (size + unit - 1) / unit);
        if (!sectors || sectors->size() * unit < size)
            return std::nullopt;
        QByteArray bytes;
        bytes.reserve(qsizetype(size));
        QByteArray sector(qsizetype(1) << sectorShift_, '\0');
        for (quint32 s : *sectors) {
            const quint64 index = s / perSector;
            if (index >= miniStreamSectors_.size() || !readSector(miniStreamSectors_[index], sector.data()))
                return std::nullopt;
            bytes.append(sector.constData() + (s % perSector) * unit, qsizetype(unit));
        }
        bytes.truncate(qsizetype(size));
        return bytes;
    }
    const quint64 unit = quint64(1) << sectorShift_;
    const auto sectors = chain(start, fat_, (size + unit - 1) / unit);
    if (!sectors || sectors->size() * unit < size)
        return std::nullopt;
    QByteArray bytes(qsizetype(sectors->size() * unit), '\0');
    for (size_t i = 0; i < sectors->size(); ++i)
        if (!readSector((*sectors)[i], bytes.data() + i * unit))
            return std::nullopt;
    bytes.truncate(qsizetype(size));
    return bytes;
}

std::optional<CompoundFile> CompoundFile::Open(const QString& path, QString* error)
{
    CompoundFile cf;
    cf.file_ = std::make_unique<QFile>();
    auto fail = [&](const char* why) -> std::optional<CompoundFile> {
        *error = QStringLiteral("%1: %2").arg(path, QLatin1String(why));
        return std::nullopt;
    };
    if (!OpenForReading(*cf.file_, path))
        return fail("cannot be opened");
    cf.fileSize_ = cf.file_->size();
    char header[512];
    if (cf.file_->read(header, 512) != 512 || std::memcmp(header, kSignature, 8) != 0)
        return fail("not a compound file");
    cf.header_ = QByteArray(header, 512);
    if (U16(header + 0x1C) != 0xFFFE)
        return fail("unknown byte order");
    cf.sectorShift_ = U16(header + 0x1E);
    cf.miniShift_ = U16(header + 0x20);
    if ((cf.sectorShift_ != 9 && cf.sectorShift_ != 12) || cf.miniShift_ != 6)
        return fail("unknown sector size");
    cf.miniCutoff_ = U32(header + 0x38);
    const quint32 fatSectors = U32(header + 0x2C);
    const quint32 firstDirectory = U32(header + 0x30);
    const quint32 firstMiniFat = U32(header + 0x3C);
    const quint32 miniFatSectors = U32(header + 0x40);
    quint32 difatSector = U32(header + 0x44);
    const quint32 difatSectors = U32(header + 0x48);

    const qint64 sectorSize = qint64(1) << cf.sectorShift_;
    const qint64 sectorsInFile = (cf.fileSize_ + sectorSize - 1) / sectorSize;
    if (fatSectors > sectorsInFile || miniFatSectors > sectorsInFile || difatSectors > sectorsInFile)
        return fail("sector counts larger than the file");

    // The FAT's own sectors: 109 in the header, the rest in the DIFAT chain.
    std::vector<quint32> fatList;
    for (int i = 0; i < 109 && fatList.size() < fatSectors; ++i)
        fatList.push_back(U32(header + 0x4C + 4 * i));
    QByteArray sector(sectorSize, '\0');
    QSet<quint32> seenDifat;
    const quint32 perDifat = quint32(sectorSize / 4) - 1;
    while (fatList.size() < fatSectors) {
        if (difatSector > kMaxRegularSector || seenDifat.contains(difatSector) || !cf.readSector(difatSector, sector.data()))
            return fail("damaged DIFAT");
        seenDifat.insert(difatSector);
        for (quint32 i = 0; i < perDifat && fatList.size() < fatSectors; ++i)
            fatList.push_back(U32(sector.constData() + 4 * i));
        difatSector = U32(sector.constData() + 4 * perDifat);
    }
    cf.fat_.reserve(size_t(fatSectors) * sectorSize / 4);
    for (quint32 s : fatList) {
        if (!cf.readSector(s, sector.data()))
            return fail("damaged FAT");
        for (qint64 i = 0; i < sectorSize / 4; ++i)
            cf.fat_.push_back(U32(sector.constData() + 4 * i));
    }

    if (miniFatSectors > 0) {
        const auto miniFat = cf.chain(firstMiniFat, cf.fat_, miniFatSectors);
        if (!miniFat)
            return fail("damaged mini FAT");
        for (quint32 s : *miniFat) {
            if (!cf.readSector(s, sector.data()))
                return fail("damaged mini FAT");
            for (qint64 i = 0; i < sectorSize / 4; ++i)
                cf.miniFat_.push_back(U32(sector.constData() + 4 * i));
        }
    }

    const auto directory = cf.chain(firstDirectory, cf.fat_, quint64(sectorsInFile));
    if (!directory || directory->empty())
        return fail("damaged directory");
    for (quint32 s : *directory) {
        if (!cf.readSector(s, sector.data()))
            return fail("damaged directory");
        for (qint64 at = 0; at + 128 <= sectorSize; at += 128) {
            const char* e = sector.constData() + at;
            Entry entry;
            const int nameBytes = std::min<int>(U16(e + 64), 64);
            const int chars = std::max(0, nameBytes / 2 - 1);
            entry.name = QString::fromUtf16(reinterpret_cast<const char16_t*>(e), chars);
            entry.type = static_cast<unsigned char>(e[66]);
            entry.left = U32(e + 68);
            entry.right = U32(e + 72);
            entry.child = U32(e + 76);
            entry.start = U32(e + 116);
            entry.size = qFromLittleEndian<quint64>(e + 120);
            entry.raw = QByteArray(e, 128);
            if (cf.sectorShift_ == 9)
                entry.size &= 0xFFFFFFFF;  // version 3 files may leave garbage in the high half
            cf.entries_.push_back(entry);
        }
    }
    if (cf.entries_.front().type != 5)
        return fail("no root entry");
    return cf;
}

int CompoundFile::rootStreamIndex(const QString& name)
{
    // The root's children form a tree through left and right siblings; walk it without
    // trusting it to be a tree.
    QList<std::pair<quint32, int>> pending{{entries_.front().child, 0}};
    QSet<quint32> seen;
    while (!pending.isEmpty()) {
        const auto [index, depth] = pending.takeLast();
        if (index == kNoStream || index >= entries_.size() || seen.contains(index) || depth > kTreeDepthLimit)
            continue;
        seen.insert(index);
        const Entry& entry = entries_[index];
        if (entry.type == 2 && entry.name.compare(name, Qt::CaseInsensitive) == 0)
            return int(index);
        pending.append({entry.left, depth + 1});
        pending.append({entry.right, depth + 1});
    }
    return -1;
}

std::optional<QByteArray> CompoundFile::rootStream(const QString& name)
{
    const int index = rootStreamIndex(name);
    if (index < 0)
        return std::nullopt;
    const Entry& entry = entries_[size_t(index)];
    return readChain(entry.start, entry.size, entry.size < miniCutoff_);
}

bool CompoundFile::copyStream(int index, QIODevice& out)
{
    if (index <= 0 || size_t(index) >= entries_.size())
        return false;
    const Entry& entry = entries_[size_t(index)];
    if (entry.size < miniCutoff_) {
        const auto bytes = readChain(entry.start, entry.size, true);
        return bytes && out.write(*bytes) == bytes->size();
    }
    const quint64 unit = quint64(1) << sectorShift_;
    if (entry.size > quint64(fileSize_))
        return false;
    const auto sectors = chain(entry.start, fat_, (entry.size + unit - 1) / unit);
    if (!sectors || sectors->size() * unit < entry.size)
        return false;
    QByteArray sector(qsizetype(unit), '\0');
    quint64 left = entry.size;
    for (quint32 s : *sectors) {
        if (!readSector(s, sector.data()))
            return false;
        const qint64 n = qint64(std::min(left, unit));
        if (out.write(sector.constData(), n) != n)
            return false;
        left -= quint64(n);
    }
    return true;
}

}  // namespace brindar
