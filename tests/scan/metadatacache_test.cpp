// The metadata cache: where a stream lives, round trips, and every stream that must miss.
#include "scan/metadatacache.h"

#include "core/language.h"
#include "platform/folders.h"

#include "support/tempfolder.h"

#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace brindar;
using namespace Qt::StringLiterals;

namespace {

// Every test keeps its cache in a folder of its own, never in the user's cache.
class MetadataCache : public ::testing::Test {
protected:
    MetadataCache() { qputenv("XDG_CACHE_HOME", cache_.path().toUtf8()); }
    QString path(const QString& codes) const { return MetadataCachePath(directory_, codes); }
    // Puts raw bytes where the stream of `codes` is looked for.
    void writeStream(const QString& codes, const QByteArray& bytes) const
    {
        cache_.write(path(codes).mid(cache_.path().size() + 1), bytes);
    }
    QByteArray stream(const QString& codes) const { return test::ReadFile(path(codes)); }
    std::optional<QList<GridRow>> read(const QString& codes, QString* status = nullptr) const
    {
        return ReadMetadataCache(directory_, codes, Captions::English(), status);
    }
    QString write(const QString& codes, const QList<GridRow>& rows) const
    {
        return WriteMetadataCache(directory_, codes, rows, Captions::English());
    }

    test::TempFolder cache_, shown_;
    QString directory_ = shown_.path();
};

}  // namespace

TEST_F(MetadataCache, StreamLivesInTheCacheFolderUnderTheHashOfTheDirectory)
{
    EXPECT_EQ(CacheFolder(), cache_.path() + u"/brindar-pro"_s);
    // The hashes are `printf '%s' PATH | sha1sum`.
    EXPECT_EQ(MetadataCachePath(u"/tmp/brindar-cache-test/Docs/"_s, u":meta.TI.AU"_s),
              CacheFolder() + u"/streams/b442ddb531ed8947be0adc90b92d7f4c01fdf87b/meta.TI.AU"_s);
    EXPECT_EQ(MetadataCachePath(u"/tmp/brindar-cache-test/Dossier été"_s, u":meta"_s),
              CacheFolder() + u"/streams/54fe2f10b3fb22e0b9fc705b652282a3a955ceb3/meta"_s);
    // Every column switched on: the list outgrows a file name, yet two sets stay apart.
    const QString all = u":meta"_s + u".X0.X1.X2.X3.X4.X5.X6.X7.X8.X9"_s.repeated(9);
    EXPECT_LE(QFileInfo(path(all)).fileName().toUtf8().size(), 255);
    EXPECT_NE(QFileInfo(path(all)).fileName(), QFileInfo(path(all + u".P0"_s)).fileName());
    EXPECT_TRUE(write(all, {GridRow{{u"a.doc"_s}, false}}).startsWith(u"writing cache"));
    EXPECT_TRUE(read(all));
}

TEST_F(MetadataCache, RowsComeBackAsWritten)
{
    const QString codes = u":meta.TI.AU.P3"_s;
    const QList<GridRow> rows = {
        {{u"plain.doc"_s, u"Title"_s, u"Author"_s, u"Client"_s}, true},
        {{u"tab\tand\\back.pdf"_s, u"a\\tb"_s, u"line\r\nbreak\n"_s, u"\\"_s}, true},
        {{u"été €.odt"_s, u"Ünïcödé 😀"_s, u"\uFEFFmark"_s, QString()}, true},
        {{u"nothing.txt"_s, QString(), QString(), QString()}, false},
        // The has-metadata flag is not kept: a row with a value has metadata when read back.
        {{u"flag.doc"_s, QString(), QString(), u"x"_s}, false},
        // A row with missing cells is written with empty ones.
        {{u"short.doc"_s, u"T"_s}, true},
    };
    const QString written = write(codes, rows);
    const QByteArray bytes = stream(codes);
    EXPECT_EQ(written, u"writing cache %1 bytes"_s.arg(bytes.size()));
    // One tab after every cell, CR after every row; escapes keep the layout intact.
    EXPECT_TRUE(bytes.startsWith("plain.doc\tTitle\tAuthor\tClient\t\rtab\\tand\\\\back.pdf\ta\\\\tb\t"
                                 "line\\r\\nbreak\\n\t\\\\\t\r\xC3\xA9t\xC3\xA9 \xE2\x82\xAC.odt\t"));
    EXPECT_EQ(bytes.count('\r'), rows.size());

    QString status;
    const auto back = read(codes, &status);
    ASSERT_TRUE(back);
    EXPECT_EQ(status, u"reading cache %1 bytes"_s.arg(bytes.size()));
    ASSERT_EQ(back->size(), rows.size());
    for (int r = 0; r < rows.size(); ++r) {
        QStringList expected = rows[r].cells;
        expected.resize(4);
        EXPECT_EQ((*back)[r].cells, expected) << r;
        EXPECT_EQ((*back)[r].hasMetadata, r != 3) << r;  // only nothing.txt has no value
    }
}

TEST_F(MetadataCache, LargeStreamsReadAcrossChunks)
{
    // Rows of varied lengths with multi-byte characters, so that chunk ends fall inside
    // rows, escapes and characters.
    QList<GridRow> rows;
    for (int i = 0; i < 4000; ++i)
        rows << GridRow{{u"file%1.doc"_s.arg(i), QString(i % 37, QChar(0x20AC)) + u"\\\t%1"_s.arg(i)}, true};
    write(u":meta.TI"_s, rows);
    ASSERT_GT(stream(u":meta.TI"_s).size(), 3 * 64 * 1024);
    const auto back = read(u":meta.TI"_s);
    ASSERT_TRUE(back);
    ASSERT_EQ(back->size(), rows.size());
    for (int r = 0; r < rows.size(); ++r)
        ASSERT_EQ((*back)[r].cells, rows[r].cells) << r;
}

TEST_F(MetadataCache, ColumnSetsHaveStreamsOfTheirOwn)
{
    write(u":meta.TI.AU"_s, {GridRow{{u"a.doc"_s, u"T"_s, u"A"_s}, true}});
    EXPECT_FALSE(read(u":meta.TI"_s));  // adding or removing a column rescans
    write(u":meta.TI"_s, {GridRow{{u"b.doc"_s, u"U"_s}, true}});
    EXPECT_EQ(read(u":meta.TI"_s).value().first().cells.first(), u"b.doc");

    // Refresh: the stream is emptied, which is a miss; the other set's stream stays.
    InvalidateMetadataCache(directory_, u":meta.TI"_s);
    EXPECT_TRUE(QFileInfo::exists(path(u":meta.TI"_s)));
    EXPECT_TRUE(stream(u":meta.TI"_s).isEmpty());
    QString status = u"old"_s;
    EXPECT_FALSE(read(u":meta.TI"_s, &status));
    EXPECT_EQ(status, QString());
    EXPECT_EQ(read(u":meta.TI.AU"_s).value().first().cells.first(), u"a.doc");

    // An empty directory writes no stream; invalidating a missing one creates none.
    EXPECT_EQ(write(u":meta.AU"_s, {}), QString());
    InvalidateMetadataCache(directory_, u":meta.AU"_s);
    EXPECT_FALSE(QFileInfo::exists(path(u":meta.AU"_s)));
}

TEST_F(MetadataCache, DamagedStreamsMiss)
{
    write(u":meta.TI"_s, {GridRow{{u"a.doc"_s, u"été"_s}, false}, GridRow{{u"b.doc"_s, u"x"_s}, false}});
    const QByteArray good = stream(u":meta.TI"_s);
    const struct { const char* why; QByteArray bytes; bool hit; } cases[] = {
        {"written", good, true},
        {"a row with fewer cells is padded", "a.doc\t\r", true},
        {"empty", "", false},
        {"last row without its CR", good.chopped(1), false},
        {"a character cut short", "a.doc\t\xC3\t\r", false},
        {"text after the last tab", "a.doc\tTitle\r", false},
        {"a row without any cell", "a.doc\tT\t\r\r", false},
        {"more cells than columns", "a.doc\tT\tA\t\r", false},
        {"unknown escape", "a.doc\t\\x\t\r", false},
        {"raw line feed", "a.doc\tT\nU\t\r", false},
        {"not UTF-8", "a.doc\t\xE9t\xE9\t\r", false},
        {"zeros ending in CR", QByteArray(5000, '\0') + '\r', false},
    };
    for (const auto& c : cases) {
        writeStream(u":meta.TI"_s, c.bytes);
        EXPECT_EQ(read(u":meta.TI"_s).has_value(), c.hit) << c.why;
    }
}

TEST_F(MetadataCache, HugeStreamIsRefusedWithoutReadingIt)
{
    writeStream(u":meta"_s, "a.doc\t\r");
    ASSERT_TRUE(QFile(path(u":meta"_s)).resize(kMetadataCacheLimit + 1));  // sparse: no disk and no memory used
    QString status;
    EXPECT_FALSE(read(u":meta"_s, &status));
    EXPECT_EQ(status, u" error reading cache - not enough memory");
}

TEST_F(MetadataCache, UnwritableCacheFolderGivesTheReadOnlyMessage)
{
    // Root can write into any folder, so the folder of streams is made a plain file.
    cache_.write(u"brindar-pro/streams"_s, "not a folder");
    EXPECT_EQ(write(u":meta"_s, {GridRow{{u"a.doc"_s}, false}}), u"error writing cache - directory is probably read only");
    InvalidateMetadataCache(directory_, u":meta"_s);
    EXPECT_FALSE(read(u":meta"_s));
    EXPECT_EQ(cache_.read(u"brindar-pro/streams"_s), "not a folder");
}
