// Paged reading of a file with a small cache of recent pages.
#include "readers/pagedfile.h"

#include "platform/filenames.h"

#include <algorithm>

namespace brindar {

PagedFile::PagedFile(const QString& path, int pagesKept) : pagesKept_(std::max(2, pagesKept))
{
    // Opened by the name's own bytes, whatever they are.
    open_ = OpenForReading(file_, path, true);
    size_ = open_ ? std::max<qint64>(0, file_.size()) : 0;
}

QByteArray PagedFile::read(qint64 start, qint64 length)
{
    QByteArray bytes(length, '\0');
    qint64 got = 0;
    if (file_.pos() == start || file_.seek(start)) {
        while (got < length) {
            const qint64 n = file_.read(bytes.data() + got, length - got);
            if (n <= 0)
                break;
            got += n;
        }
    }
    bytesRead_ += got;
    // What could not be read stays 0.
    if (got < length)
        shortRead_ = true;
    return bytes;
}

const QByteArray& PagedFile::page(qint64 index)
{
    if (auto it = pages_.find(index); it != pages_.end())
        return it->second;

    const qint64 start = index * kPageSize;
    QByteArray bytes = read(start, std::min(kPageSize, size_ - start));

    if (int(pages_.size()) >= pagesKept_) {
        // at() points at the page it asked for at once, so dropping any page is safe;
        // callers that walk a page keep their own (shared) copy of it.
        pages_.erase(recent_.back());
        recent_.pop_back();
    }
    recent_.push_front(index);
    return pages_.emplace(index, std::move(bytes)).first->second;
}

QByteArray PagedFile::head(qint64 length)
{
    length = std::clamp<qint64>(length, 0, size_);
    if (pages_.count(0) || length > kPageSize)
        return bytes(0, length);
    if (head_.size() < length)
        head_ = read(0, length);
    return head_.left(length);
}

QByteArray PagedFile::bytes(qint64 pos, qint64 length)
{
    pos = std::clamp<qint64>(pos, 0, size_);
    length = std::clamp<qint64>(length, 0, size_ - pos);
    QByteArray out;
    out.reserve(length);
    while (length > 0) {
        qint64 pageStart = 0;
        const QByteArray& p = pageAt(pos, &pageStart);
        const qint64 offset = pos - pageStart;
        const qint64 n = std::min(length, qint64(p.size()) - offset);
        out.append(p.constData() + offset, n);
        pos += n;
        length -= n;
    }
    return out;
}

qint64 PagedFile::find(qint64 from, QByteArrayView needle)
{
    const qint64 n = needle.size();
    while (from >= 0 && from + n <= size_) {
        qint64 pageStart = 0;
        const QByteArray page = pageAt(from, &pageStart);  // shared copy: bytes() may evict
        const qsizetype at = QByteArrayView(page).indexOf(needle, from - pageStart);
        if (at >= 0)
            return pageStart + at;
        const qint64 pageEnd = pageStart + page.size();
        if (pageEnd >= size_)
            return -1;
        const qint64 seamStart = std::max(from, pageEnd - (n - 1));
        const QByteArray seam = bytes(seamStart, pageEnd - seamStart + n - 1);
        const qsizetype across = QByteArrayView(seam).indexOf(needle);
        if (across >= 0)
            return seamStart + across;
        from = pageEnd;
    }
    return -1;
}

}  // namespace brindar
