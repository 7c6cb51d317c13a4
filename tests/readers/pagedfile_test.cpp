// Paged reading: the bytes as on disk, whatever the order of access, and a file that
// shrinks while it is read.
#include "readers/pagedfile.h"

#include "support/tempfolder.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::TempFolder;

namespace {

QByteArray Pattern(qint64 size)
{
    QByteArray bytes(size, '\0');
    for (qint64 i = 0; i < size; ++i)
        bytes[i] = char((i * 131 + i / 7) % 251);
    return bytes;
}

}  // namespace

TEST(PagedFile, BytesAreTheFileWhateverTheOrderOfAccess)
{
    TempFolder folder;
    const qint64 size = 5 * PagedFile::kPageSize + 123;
    const QByteArray expected = Pattern(size);
    PagedFile file(folder.write(QStringLiteral("f"), expected), 2);
    ASSERT_TRUE(file.isOpen());
    ASSERT_EQ(file.size(), size);
    // Jumping between pages with a cache of two forces pages out and back in.
    for (qint64 step : {qint64(1), PagedFile::kPageSize - 1, 3 * PagedFile::kPageSize + 5}) {
        for (qint64 i = 0, n = 0; n < 2000; i = (i + step) % size, ++n)
            ASSERT_EQ(file.at(i), static_cast<unsigned char>(expected[i])) << i;
    }
    EXPECT_EQ(file.bytes(PagedFile::kPageSize - 10, 30), expected.mid(PagedFile::kPageSize - 10, 30));
    EXPECT_EQ(file.bytes(size - 5, 100), expected.right(5));
    EXPECT_EQ(file.bytes(size + 10, 5), QByteArray());
    EXPECT_FALSE(file.shortRead());
    EXPECT_FALSE(PagedFile(folder.file(QStringLiteral("missing"))).isOpen());
}

TEST(PagedFile, AFileThatShrinksReadsAsZeros)
{
    TempFolder folder;
    const qint64 size = 3 * PagedFile::kPageSize;
    const QString path = folder.write(QStringLiteral("f"), Pattern(size));
    PagedFile file(path);
    EXPECT_EQ(file.at(10), static_cast<unsigned char>(Pattern(size)[10]));
    ASSERT_TRUE(QFile::resize(path, PagedFile::kPageSize + 10));
    EXPECT_EQ(file.size(), size);  // the size it had when opened
    EXPECT_EQ(file.at(size - 1), 0);
    EXPECT_EQ(file.at(PagedFile::kPageSize + 20), 0);
    EXPECT_TRUE(file.shortRead());
}
