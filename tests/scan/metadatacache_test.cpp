// The metadata cache: where a stream lives, round trips, and every stream that must miss.
#include "scan/metadatacache.h"

#include "core/language.h"
#include "platform/folders.h"

#include "support/tempfolder.h"

#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::TempFolder;
using namespace Qt::StringLiterals;

namespace {

// Every test keeps its cache in a folder of its own, never in the user's cache.
class MetadataCache : public ::testing::Test {
protected:
    MetadataCache() : old_(qgetenv("XDG_CACHE_HOME")), had_(qEnvironmentVariableIsSet("XDG_CACHE_HOME"))
    {
        qputenv("XDG_CACHE_HOME", cache_.path().toUtf8());
    }
    ~MetadataCache() override
    {
        if (had_)
            qputenv("XDG_CACHE_HOME", old_);
        else
            qunsetenv("XDG_CACHE_HOME");
    }

    // Puts raw bytes where the stream of `directory` for `codes` is looked for.
    void writeStream(const QString& codes, const QByteArray& bytes) const
    {
        const QString path = MetadataCachePath(directory_, codes);
        ASSERT_TRUE(path.startsWith(cache_.path()));
        cache_.write(path.mid(cache_.path().size() + 1), bytes);
    }
    QByteArray stream(const QString& codes) const
    {
        QFile f(MetadataCachePath(directory_, codes));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    std::optional<QList<GridRow>> read(const QString& codes, QString* status = nullptr) const
    {
        return ReadMetadataCache(directory_, codes, Captions::English(), status);
    }
    QString write(const QString& codes, const QList<GridRow>& rows) const
    {
        return WriteMetadataCache(directory_, codes, rows, Captions::English());
    }

    TempFolder cache_;
    TempFolder shown_;
    QString directory_ = shown_.path();

private:
    QByteArray old_;
    bool had_;
};

GridRow Row(const QStringList& cells, bool hasMetadata = false) { return GridRow{cells, hasMetadata}; }

}  // namespace

TEST_F(MetadataCache, StreamLivesInTheCacheFolderUnderTheHashOfTheDirectory)
{
    EXPECT_EQ(CacheFolder(), cache_.path() + QStringLiteral("/brindar-pro"));
    // The hashes are `printf '%s' PATH | sha1sum`.
    EXPECT_EQ(MetadataCachePath(QStringLiteral("/tmp/brindar-cache-test/Docs/"), QStringLiteral(":meta.TI.AU")),
              CacheFolder() + QStringLiteral("/streams/b442ddb531ed8947be0adc90b92d7f4c01fdf87b/meta.TI.AU"));
    EXPECT_EQ(MetadataCachePath(QStringLiteral("/tmp/brindar-cache-test/Dossier été"), QStringLiteral(":meta")),
              CacheFolder() + QStringLiteral("/streams/54fe2f10b3fb22e0b9fc705b652282a3a955ceb3/meta"));
    // Every column switched on: the list outgrows a file name, yet two sets stay apart.
    QString all = QStringLiteral(":meta");
    for (int i = 0; i < 90; ++i)
        all += QStringLiteral(".X%1").arg(i % 10);
    const QString longName = QFileInfo(MetadataCachePath(directory_, all)).fileName();
    EXPECT_LE(longName.toUtf8().size(), 255);
    EXPECT_NE(longName, QFileInfo(MetadataCachePath(directory_, all + QStringLiteral(".P0"))).fileName());
    EXPECT_EQ(write(all, {Row({QStringLiteral("a.doc")})}).left(13), u"writing cache");
    EXPECT_TRUE(read(all));
}

TEST_F(MetadataCache, RowsComeBackAsWritten)
{
    const QString codes = QStringLiteral(":meta.TI.AU.P3");
    const QList<GridRow> rows = {
        Row({u"plain.doc"_s, u"Title"_s, u"Author"_s, u"Client"_s}, true),
        Row({u"tab\tand\\back.pdf"_s, u"a\\tb"_s, u"line\r\nbreak\n"_s, u"\\"_s}, true),
        Row({u"été €.odt"_s, u"Ünïcödé 😀"_s, u"\uFEFFmark"_s, QString()}, true),
        Row({QStringLiteral("nothing.txt"), QString(), QString(), QString()}),
        // The has-metadata flag is not kept: a row with a value has metadata when read back.
        Row({QStringLiteral("flag.doc"), QString(), QString(), QStringLiteral("x")}, false),
        // A row with missing cells is written with empty ones.
        Row({QStringLiteral("short.doc"), QStringLiteral("T")}, true),
    };
    const QString written = write(codes, rows);
    const QByteArray bytes = stream(codes);
    EXPECT_EQ(written, QStringLiteral("writing cache %1 bytes").arg(bytes.size()));
    // One tab after every cell, CR after every row; escapes keep the layout intact.
    EXPECT_TRUE(bytes.startsWith("plain.doc\tTitle\tAuthor\tClient\t\rtab\\tand\\\\back.pdf\ta\\\\tb\t"
                                 "line\\r\\nbreak\\n\t\\\\\t\r\xC3\xA9t\xC3\xA9 \xE2\x82\xAC.odt\t"));
    EXPECT_EQ(bytes.count('\r'), rows.size());

    QString status;
    const auto back = read(codes, &status);
    ASSERT_TRUE(back);
    EXPECT_EQ(status, QStringLiteral("reading cache %1 bytes").arg(bytes.size()));
    ASSERT_EQ(back->size(), rows.size());
    const QList<bool> flags = {true, true, true, false, true, true};
    for (int r = 0; r < rows.size(); ++r) {
        QStringList expected = rows[r].cells;
        expected.resize(4);
        EXPECT_EQ((*back)[r].cells, expected) << r;
        EXPECT_EQ((*back)[r].hasMetadata, flags[r]) << r;
    }
}

TEST_F(MetadataCache, LargeStreamsReadAcrossChunks)
{
    // Rows of varied lengths with multi-byte characters, so that chunk ends fall inside
    // rows, escapes and characters.
    QList<GridRow> rows;
    for (int i = 0; i < 4000; ++i)
        rows << Row({u"file%1.doc"_s.arg(i), QString(i % 37, QChar(0x20AC)) + u"\\\t%1"_s.arg(i)}, true);
    write(QStringLiteral(":meta.TI"), rows);
    ASSERT_GT(stream(QStringLiteral(":meta.TI")).size(), 3 * 64 * 1024);
    const auto back = read(QStringLiteral(":meta.TI"));
    ASSERT_TRUE(back);
    ASSERT_EQ(back->size(), rows.size());
    for (int r = 0; r < rows.size(); ++r)
        ASSERT_EQ((*back)[r].cells, rows[r].cells) << r;
}

TEST_F(MetadataCache, ColumnSetsHaveStreamsOfTheirOwn)
{
    write(u":meta.TI.AU"_s, {Row({u"a.doc"_s, u"T"_s, u"A"_s})});
    EXPECT_FALSE(read(QStringLiteral(":meta.TI")));  // adding or removing a column rescans
    write(QStringLiteral(":meta.TI"), {Row({QStringLiteral("b.doc"), QStringLiteral("U")})});
    EXPECT_EQ(read(QStringLiteral(":meta.TI.AU")).value().first().cells.first(), u"a.doc");
    EXPECT_EQ(read(QStringLiteral(":meta.TI")).value().first().cells.first(), u"b.doc");

    // Refresh: the stream is emptied, which is a miss; the other set's stream stays.
    InvalidateMetadataCache(directory_, QStringLiteral(":meta.TI"));
    EXPECT_TRUE(QFileInfo::exists(MetadataCachePath(directory_, QStringLiteral(":meta.TI"))));
    EXPECT_TRUE(stream(QStringLiteral(":meta.TI")).isEmpty());
    QString status = QStringLiteral("old");
    EXPECT_FALSE(read(QStringLiteral(":meta.TI"), &status));
    EXPECT_EQ(status, QString());
    EXPECT_TRUE(read(QStringLiteral(":meta.TI.AU")));

    // An empty directory writes no stream; invalidating a missing one creates none.
    EXPECT_EQ(write(QStringLiteral(":meta.AU"), {}), QString());
    InvalidateMetadataCache(directory_, QStringLiteral(":meta.AU"));
    EXPECT_FALSE(QFileInfo::exists(MetadataCachePath(directory_, QStringLiteral(":meta.AU"))));
    EXPECT_FALSE(read(QStringLiteral(":meta.AU")));
}

TEST_F(MetadataCache, DamagedStreamsMiss)
{
    const QString codes = QStringLiteral(":meta.TI");
    write(codes, {Row({u"a.doc"_s, u"été"_s}), Row({u"b.doc"_s, u"x"_s})});
    const QByteArray good = stream(codes);
    const struct {
        const char* why;
        QByteArray bytes;
        bool hit;
    } cases[] = {
        {"written", good, true},
        {"a row with fewer cells is padded", "a.doc\t\r", true},
        {"empty", "", false},
        {"last row without its CR", good.chopped(1), false},
        {"a character cut short", "a.doc\t\xC3\t\r", false},
        {"text after the last tab", "a.doc\tTitle\r", false},
        {"a row without any cell", "a.doc\tT\t\r\r", false},
        {"more cells than columns", "a.doc\tT\tA\t\r", false},
        {"unknown escape", "a.doc\t\\x\t\r", false},
        {"backslash before the tab", "a.doc\tT\\\t\r", false},
        {"raw line feed", "a.doc\tT\nU\t\r", false},
        {"not UTF-8", "a.doc\t\xE9t\xE9\t\r", false},
        {"zeros", QByteArray(5000, '\0'), false},
        {"zeros ending in CR", QByteArray(5000, '\0') + '\r', false},
    };
    for (const auto& c : cases) {
        writeStream(codes, c.bytes);
        EXPECT_EQ(read(codes).has_value(), c.hit) << c.why;
    }
}

TEST_F(MetadataCache, HugeStreamIsRefusedWithoutReadingIt)
{
    writeStream(QStringLiteral(":meta"), "a.doc\t\r");
    QFile file(MetadataCachePath(directory_, QStringLiteral(":meta")));
    // Sparse: no disk space and no memory is used.
    ASSERT_TRUE(file.resize(kMetadataCacheLimit + 1));
    QString status;
    EXPECT_FALSE(read(QStringLiteral(":meta"), &status));
    EXPECT_EQ(status, u" error reading cache - not enough memory");
}

TEST_F(MetadataCache, UnwritableCacheFolderGivesTheReadOnlyMessage)
{
    // Root can write into any folder, so the folder of streams is made a plain file.
    cache_.write(QStringLiteral("brindar-pro/streams"), "not a folder");
    const QList<GridRow> rows = {Row({QStringLiteral("a.doc")})};
    EXPECT_EQ(write(QStringLiteral(":meta"), rows), u"error writing cache - directory is probably read only");
    InvalidateMetadataCache(directory_, QStringLiteral(":meta"));
    EXPECT_FALSE(read(QStringLiteral(":meta")));
    EXPECT_EQ(cache_.read(QStringLiteral("brindar-pro/streams")), "not a folder");
}
