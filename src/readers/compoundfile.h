// Compound files (OLE structured storage): the streams of a document, read safely.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>
#include <memory>
#include <optional>
#include <vector>

namespace brindar {

// A compound file opened for reading: header, FAT (through the DIFAT), mini FAT and
// directory. Every chain is followed with a seen-set and every size is checked against
// the file, so a damaged or hostile file fails cleanly instead of looping or allocating
// without bound.
class CompoundFile {
public:
    struct Entry {
        QString name;
        int type = 0;  // 1 storage, 2 stream, 5 root
        quint32 left = kNoStream;
        quint32 right = kNoStream;
        quint32 child = kNoStream;
        quint32 start = 0;
        quint64 size = 0;
        QByteArray raw;  // the 128 bytes as stored: colour, class id, state, times
    };

    static constexpr quint32 kNoStream = 0xFFFFFFFF;
    // The largest stream this reader hands out: property sets are a few kilobytes.
    static constexpr quint64 kStreamLimit = 16 * 1024 * 1024;

    // Whether `head`, a file's first bytes, begins with the compound-file signature.
    static bool HasSignature(QByteArrayView head);

    // Nothing when the file is not a compound file or its structures are damaged;
    // `error` then says why.
    static std::optional<CompoundFile> Open(const QString& path, QString* error);

    // A stream directly below the root, its name compared as the format does
    // (case-insensitively). Nothing when absent, too large, or its chain is damaged.
    std::optional<QByteArray> rootStream(const QString& name);
    // The directory index of that stream, or -1.
    int rootStreamIndex(const QString& name);

    // Copies the content of stream `index` to `out`, a sector at a time, whatever its
    // size. False when its chain is damaged or a write fails.
    bool copyStream(int index, QIODevice& out);

    const QByteArray& header() const { return header_; }
    int sectorShift() const { return sectorShift_; }
    quint32 miniCutoff() const { return miniCutoff_; }
    const std::vector<Entry>& entries() const { return entries_; }
    qint64 fileSize() const { return fileSize_; }

private:
    CompoundFile() = default;
    bool readSector(quint32 sector, char* into);
    std::optional<QByteArray> readChain(quint32 start, quint64 size, bool mini);
    std::optional<std::vector<quint32>> chain(quint32 start, const std::vector<quint32>& table, quint64 limit);

    std::unique_ptr<QFile> file_;
    QByteArray header_;
    qint64 fileSize_ = 0;
    int sectorShift_ = 9;
    int miniShift_ = 6;
    quint32 miniCutoff_ = 4096;
    std::vector<quint32> fat_;
    std::vector<quint32> miniFat_;
    std::vector<Entry> entries_;
    std::vector<quint32> miniStreamSectors_;  // the root's chain, where mini sectors live
    bool miniStreamRead_ = false;
};

}  // namespace brindar
