// Paged reading: the bytes as on disk, whatever the order of access, and a file that shrinks while read.
#include "readers/pagedfile.h"

#include "support/tempfolder.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace brindar;

TEST(PagedFile, BytesAsOnDiskWhateverTheOrderAndZerosWhereTheFileShrank)
{
    constexpr qint64 kPage = PagedFile::kPageSize;
    brindar::test::TempFolder folder;
    const qint64 size = 5 * kPage + 123;
    QByteArray expected(size, '\0');
    for (qint64 i = 0; i < size; ++i)
        expected[i] = char((i * 131 + i / 7) % 251);  // neighbouring bytes and pages differ
    PagedFile file(folder.write(QStringLiteral("f"), expected), 2);
    ASSERT_EQ(file.size(), size);
    // Jumping between pages with a cache of two forces pages out and back in.
    for (qint64 step : {qint64(1), kPage - 1, 3 * kPage + 5})
        for (qint64 i = 0, n = 0; n < 2000; i = (i + step) % size, ++n)
            ASSERT_EQ(file.at(i), static_cast<unsigned char>(expected[i])) << i;
    EXPECT_EQ(file.bytes(kPage - 10, 30), expected.mid(kPage - 10, 30));
    EXPECT_EQ(file.bytes(size - 5, 100), expected.right(5));
    EXPECT_EQ(file.bytes(size + 10, 5), QByteArray());
    EXPECT_FALSE(file.shortRead());
    EXPECT_FALSE(PagedFile(folder.file(QStringLiteral("missing"))).isOpen());

    // A signature costs its own bytes only; a byte outside the file reads nothing and says so.
    PagedFile signature(folder.file(QStringLiteral("f")));
    EXPECT_EQ(signature.head(8), expected.left(8));
    EXPECT_EQ(signature.bytesRead(), 8);
    EXPECT_EQ(signature.at(7), static_cast<unsigned char>(expected[7]));
    EXPECT_EQ(signature.head(8), expected.left(8));  // now from the first page
    EXPECT_FALSE(signature.shortRead());
    for (qint64 outside : {size, size + kPage, qint64(-1)}) {
        PagedFile bounded(folder.file(QStringLiteral("f")));
        EXPECT_EQ(bounded.at(outside), 0) << outside;
        EXPECT_TRUE(bounded.shortRead()) << outside;
        EXPECT_EQ(bounded.bytesRead(), 0) << outside;
    }

    // A file that shrinks keeps the size it had when opened; what is gone reads as zeros.
    const QString path = folder.write(QStringLiteral("g"), expected);
    PagedFile shrinking(path);
    EXPECT_EQ(shrinking.at(10), static_cast<unsigned char>(expected[10]));
    ASSERT_TRUE(QFile::resize(path, kPage + 10));
    EXPECT_EQ(shrinking.size(), size);
    EXPECT_EQ(shrinking.at(size - 1), 0);
    EXPECT_EQ(shrinking.at(kPage + 20), 0);
    EXPECT_TRUE(shrinking.shortRead());
}
