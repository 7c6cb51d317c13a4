// Office property access on real documents, on damaged copies of them, and through named streams.
#include "platform/namedstreams.h"
#include "readers/compoundfile.h"
#include "readers/officeproperties.h"
#include "readers/readertable.h"

#include "support/tempfolder.h"

#include <QFile>
#include <QtEndian>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::CorpusFile;
using brindar::test::ReadFile;
using brindar::test::TempFolder;


TEST(OfficeProperties, RealDocuments)
{
    struct Row { const char* file; QString title, author, company; int groups, userCount; QString firstUserName, firstUserValue; };
    // Values read by hand from each document's property streams (code page noted).
    const Row rows[] = {
        {"ole/poi__TestMickey.doc", QStringLiteral("sample title"), QStringLiteral("Miroslav Obradovic"),
         QStringLiteral("sample company"), 7, 6, QStringLiteral("Checked by"), QStringLiteral("Mickey")},
        // Code page 65001: UTF-8 strings.
        {"ole/poi__TestChineseProperties.doc", QStringLiteral("\u53C3\u8003\u8CC7\u6599"), QStringLiteral("\u96C5\u864E"),
         QStringLiteral("Computer Associates Intl."), 3, 0, {}, {}},
        // Code page 1200: wide strings everywhere, not an Office document at all.
        {"ole/poi__Test0313rur.adm", {}, QStringLiteral("wbustillo"), QStringLiteral("Proyecto PAAR"), 3, 0, {}, {}},
        // The summary section's identifier stored byte-swapped (big-endian fields).
        {"ole/poi__TestInvertedClassID.doc", QStringLiteral(" "), QStringLiteral("DIH-Collecticiel"), {}, 1, 0, {}, {}},
        // User-defined names with accents in UTF-8.
        {"ole/poi__Bug52311.doc", QStringLiteral("TEST"), QStringLiteral("bmaggi"), {}, 7, 6, QStringLiteral("Client"),
         QStringLiteral("Client")},
    };
    for (const Row& row : rows) {
        const QString path = CorpusFile(QLatin1String(row.file));
        if (!QFile::exists(path))
            GTEST_SKIP() << "shared corpus not found: " << path.toStdString();
        OfficeProperties p;
        QString error;
        ASSERT_TRUE(p.open(path, OfficeProperties::kModeRead, &error)) << error.toStdString();
        EXPECT_EQ(p.title().value_or(QString()), row.title) << row.file;
        EXPECT_EQ(p.author().value_or(QString()), row.author) << row.file;
        EXPECT_EQ(p.company().value_or(QString()), row.company) << row.file;
        EXPECT_EQ(p.propertyGroups(), row.groups) << row.file;
        EXPECT_EQ(p.userDefinedCount(), row.userCount) << row.file;
        if (row.userCount > 0) {
            EXPECT_EQ(p.userDefinedName(0), row.firstUserName) << row.file;
            EXPECT_EQ(p.userDefinedValue(0)->toString(), row.firstUserValue) << row.file;
        }
    }

    // The component's values as the grid's cells: dates in UTC, the editing time in hours and
    // minutes, a count of zero (or none) empty.
    OfficeProperties mickey;
    ASSERT_TRUE(mickey.open(CorpusFile(QStringLiteral("ole/poi__TestMickey.doc")), OfficeProperties::kModeReadTransacted));
    QMap<QString, QString> cells;
    for (const OfficeColumn& column : OfficeColumns())
        cells.insert(QLatin1String(column.code), column.text(mickey, false));
    const std::pair<const char*, const char*> expected[] = {{".TI", "sample title"}, {".RV", "6"},
        {".MA", "sample manager"}, {".AP", "Microsoft Word for Windows 95"}, {".LI", "3"}, {".ED", "0 h 07 min"},
        {".WO", "81"}, {".CD", "2003/06/26 13:19:00"}, {".SL", ""}};
    for (const auto& [code, value] : expected)
        EXPECT_EQ(cells.value(QLatin1String(code)), QLatin1String(value)) << code;
    EXPECT_EQ(mickey.userDefinedName(5), u"Division");
    EXPECT_FALSE(mickey.userDefinedName(6).has_value());
    mickey.close();
    EXPECT_FALSE(mickey.title().has_value());
}

TEST(OfficeProperties, DamagedDocumentsFailCleanly)
{
    const QByteArray original = ReadFile(CorpusFile(QStringLiteral("ole/poi__TestMickey.doc")));
    if (original.isEmpty())
        GTEST_SKIP() << "shared corpus not found";
    const auto u32 = [&](int at) { return qFromLittleEndian<quint32>(original.constData() + at); };
    const qint64 miniFat = (qint64(u32(0x3C)) + 1) * 512;
    const qint64 directory = (qint64(u32(0x30)) + 1) * 512;
    const auto patch = [&](qint64 at, quint32 value) {
        QByteArray bytes = original;
        qToLittleEndian<quint32>(value, bytes.data() + at);
        return bytes;
    };
    // Damage in the structures the summary needs fails the open with its reason; damage
    // elsewhere (a stream the summary does not use, a loop past the chains it follows)
    // leaves the summary readable.
    struct Row { const char* what; QByteArray bytes; const char* failure; };
    const Row rows[] = {
        {"truncated", original.left(3000), "damaged FAT"},
        {"header only", original.left(512), "damaged FAT"},
        {"mini FAT chain that loops on itself", patch(miniFat, 0), nullptr},
        {"root entry whose child is itself", patch(directory + 76, 0), "no property sets"},
        {"sibling cycle", patch(directory + 128 + 68, 1), nullptr},
        {"FAT sector count larger than the file", patch(0x2C, 0x00FFFFFF), "sector counts larger than the file"},
        {"directory start outside the file", patch(0x30, 0x00FFFFF0), "damaged directory"},
        {"stream size of 4 GiB", patch(directory + 128 * 2 + 120, 0xFFFFFFF0), nullptr},
    };
    TempFolder folder;
    for (const Row& row : rows) {
        OfficeProperties p;
        QString error;
        const bool opened = p.open(folder.write(QStringLiteral("damaged.doc"), row.bytes), OfficeProperties::kModeRead, &error);
        EXPECT_EQ(opened, row.failure == nullptr) << row.what;
        if (row.failure)
            EXPECT_TRUE(error.endsWith(QLatin1String(row.failure))) << row.what << ": " << error.toStdString();
        else
            EXPECT_EQ(p.title(), QStringLiteral("sample title")) << row.what;
    }
}

TEST(OfficeProperties, PlainFilesUseTheirNamedStreams)
{
    TempFolder folder;
    const QString plain = folder.write(QStringLiteral("notes.txt"), "just text");
    OfficeProperties p;
    QString error;
    EXPECT_FALSE(p.open(plain, OfficeProperties::kModeRead, &error));
    EXPECT_TRUE(error.contains(u"notes.txt"));
    EXPECT_FALSE(p.title().has_value());
    EXPECT_EQ(p.userDefinedCount(), 0);

    // The property sets a Windows 2000 volume keeps for any file: bare streams.
    QString why;
    auto document = CompoundFile::Open(CorpusFile(QStringLiteral("ole/poi__TestMickey.doc")), &why);
    if (!document)
        GTEST_SKIP() << "shared corpus not found";
    const auto summary = document->rootStream(QStringLiteral("\u0005SummaryInformation"));
    ASSERT_TRUE(summary.has_value());
    if (WriteNamedStream(plain, QStringLiteral("\u0005SummaryInformation"), *summary))
        GTEST_SKIP() << "this file system keeps no extended attributes";
    ASSERT_TRUE(p.open(plain, OfficeProperties::kModeRead));
    EXPECT_EQ(p.title(), u"sample title");
    EXPECT_EQ(p.propertyGroups(), OfficeProperties::kSummaryGroup);
}
