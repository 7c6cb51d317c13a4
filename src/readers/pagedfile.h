// Random access to a file's bytes, read a page at a time and only where asked.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QString>
#include <list>
#include <unordered_map>

namespace brindar {

// A file seen as an array of bytes of the size it had when opened. Pages are read on
// first use with plain reads (never mapped, so a file that shrinks while read cannot
// raise SIGBUS) and a few are kept. A byte that cannot be read - the file shrank or a
// read failed - reads as 0, as in a buffer sized to the file that a short read left
// partly empty, and shortRead() turns true.
class PagedFile {
public:
    static constexpr qint64 kPageSize = 64 * 1024;

    explicit PagedFile(const QString& path, int pagesKept = 64);

    bool isOpen() const { return open_; }
    qint64 size() const { return size_; }
    bool shortRead() const { return shortRead_; }
    qint64 bytesRead() const { return bytesRead_; }

    // The byte at 0-based `pos`. A position outside the file reads nothing: it gives 0
    // and counts as a short read, like a byte the file could not give.
    unsigned char at(qint64 pos)
    {
        if (pos < 0 || pos >= size_) {
            shortRead_ = true;
            return 0;
        }
        const qint64 index = pos / kPageSize;
        if (index != lastIndex_) {
            lastPage_ = &page(index);
            lastIndex_ = index;
        }
        return static_cast<unsigned char>(lastPage_->at(pos - index * kPageSize));
    }

    // The first `length` bytes (fewer in a shorter file). Read on their own while the
    // first page has not been read: a signature test costs only the signature.
    QByteArray head(qint64 length);

    // The page that holds `pos` (0 <= pos < size()), and the offset of its first byte.
    const QByteArray& pageAt(qint64 pos, qint64* pageStart)
    {
        const qint64 index = pos / kPageSize;
        *pageStart = index * kPageSize;
        at(pos);
        return *lastPage_;
    }

    // The bytes [pos, pos + length), clipped to the file.
    QByteArray bytes(qint64 pos, qint64 length);

    // The first offset at or after `from` where `needle` starts, or -1: one pass over
    // the pages, matches across a page end included.
    qint64 find(qint64 from, QByteArrayView needle);

private:
    const QByteArray& page(qint64 index);
    QByteArray read(qint64 start, qint64 length);

    QFile file_;
    bool open_ = false;
    qint64 size_ = 0;
    bool shortRead_ = false;
    qint64 bytesRead_ = 0;
    int pagesKept_;
    std::unordered_map<qint64, QByteArray> pages_;
    std::list<qint64> recent_;  // most recently read first
    QByteArray head_;  // the first bytes, read alone by head()
    qint64 lastIndex_ = -1;
    const QByteArray* lastPage_ = nullptr;
};

}  // namespace brindar
