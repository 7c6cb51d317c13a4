// The XML repository: its folder, seeding with the shipped XSL files, listing, emptying.
#include "export/xmlrepository.h"

#include "core/inifile.h"
#include "platform/folders.h"
#include "support/tempfolder.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::ReadFile;
using brindar::test::TempFolder;

namespace {

IniDocument WithRepository(const QString& stored)
{
    return IniDocument(QStringLiteral("[XML]\r\nDirectoryFileXML=%1\r\n").arg(stored).toUtf8());
}

// The names directly in a folder, files and sub-folders alike, sorted.
QStringList Entries(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

}  // namespace

TEST(XmlRepository, StoredFolderOnlyWhenItExists)
{
    TempFolder temp;
    const QString chosen = temp.file(QStringLiteral("my exports"));
    ASSERT_TRUE(QDir().mkpath(chosen));
    temp.write(QStringLiteral("a file"), "x");
    const QString settings = temp.file(QStringLiteral("settings"));
    const QString fallback = settings + QStringLiteral("/xml");

    struct Row { QString stored; QString expected; };
    const Row rows[] = {
        {chosen, chosen},
        {chosen + u'/', chosen},
        {QString(), fallback},
        {temp.file(QStringLiteral("gone")), fallback},
        {temp.file(QStringLiteral("a file")), fallback},
        {QStringLiteral("."), fallback},  // exists, but only relative to where the program started
    };
    for (const Row& row : rows)
        EXPECT_EQ(XmlRepository(WithRepository(row.stored), settings), row.expected) << row.stored.toStdString();
    EXPECT_EQ(XmlRepository(IniDocument(), settings), fallback);
}

TEST(XmlRepository, SeedingCopiesOnlyWhatIsMissing)
{
    TempFolder temp;
    const QString data = temp.file(QStringLiteral("data"));
    const QString table = temp.write(QStringLiteral("data/xsl/Table.xsl"), "<table/>");
    const QString chart = temp.write(QStringLiteral("data/xsl/Chart.xsl"), "<chart/>");
    temp.write(QStringLiteral("data/xsl/readme.txt"), "not a stylesheet");
    temp.write(QStringLiteral("data/xsl/folder.xsl/inner.xsl"), "<inner/>");
    // Shipped files are installed read-only.
    for (const QString& path : {table, chart})
        QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);

    // A missing repository is created, with every shipped stylesheet in it.
    const QString fresh = temp.file(QStringLiteral("settings/xml"));
    EXPECT_EQ(SeedXmlRepository(fresh, data), QStringList());
    EXPECT_EQ(Entries(fresh), (QStringList{QStringLiteral("Chart.xsl"), QStringLiteral("Table.xsl")}));
    EXPECT_EQ(ReadFile(fresh + QStringLiteral("/Table.xsl")), "<table/>");
    // The user's copy can be edited.
    EXPECT_TRUE(QFile::permissions(fresh + QStringLiteral("/Table.xsl")) & QFile::WriteOwner);

    // The user's own files, under the same name in any letter case, are never replaced.
    const QString used = temp.file(QStringLiteral("used"));
    temp.write(QStringLiteral("used/chart.XSL"), "mine");
    temp.write(QStringLiteral("used/Table.xsl"), "mine too");
    temp.write(QStringLiteral("used/export.xml"), "<involume/>");
    EXPECT_EQ(SeedXmlRepository(used, data), QStringList());
    EXPECT_EQ(Entries(used), (QStringList{QStringLiteral("Table.xsl"), QStringLiteral("chart.XSL"), QStringLiteral("export.xml")}));
    EXPECT_EQ(temp.read(QStringLiteral("used/chart.XSL")), "mine");
    EXPECT_EQ(temp.read(QStringLiteral("used/Table.xsl")), "mine too");

    // A stylesheet the user removed comes back; the others stay as they are.
    ASSERT_TRUE(QFile::remove(used + QStringLiteral("/Table.xsl")));
    EXPECT_EQ(SeedXmlRepository(used, data), QStringList());
    EXPECT_EQ(temp.read(QStringLiteral("used/Table.xsl")), "<table/>");
    EXPECT_EQ(temp.read(QStringLiteral("used/chart.XSL")), "mine");

    // Failures are told, one message each, and nothing is half-done.
    const QStringList blocked = SeedXmlRepository(temp.file(QStringLiteral("data/xsl/readme.txt")), data);
    ASSERT_EQ(blocked.size(), 1);
    EXPECT_TRUE(blocked[0].contains(QStringLiteral("readme.txt"))) << blocked[0].toStdString();
    const QString empty = temp.file(QStringLiteral("empty"));
    ASSERT_EQ(SeedXmlRepository(empty, temp.file(QStringLiteral("no data"))).size(), 1);
    EXPECT_EQ(Entries(empty), QStringList());
}

TEST(XmlRepository, ShippedStylesheetsReachANewRepository)
{
    TempFolder temp;
    const QString repository = temp.file(QStringLiteral("xml"));
    EXPECT_EQ(SeedXmlRepository(repository, DataFolder()), QStringList()) << DataFolder().toStdString();
    const QStringList seeded = ListRepository(repository, QStringLiteral("xsl"));
    EXPECT_EQ(seeded, (QStringList{QStringLiteral("Chart.xsl"), QStringLiteral("Table.xsl")}));
    for (const QString& name : seeded)
        EXPECT_EQ(ReadFile(repository + u'/' + name), ReadFile(brindar::test::SourceFile(QStringLiteral("share/xsl/")) + name)) << name.toStdString();
}

TEST(XmlRepository, ListsInDirectoryOrder)
{
    TempFolder temp;
    for (const char* name : {"Zeta.xml", "alpha.xml", "Beta.XML", "[x].xml", "_y.xml", "b.xsl", "A.XSL",
                             "notes.xml.bak", "xml", "page.htm", "folder.xml/inside.xml"})
        temp.write(QLatin1String(name), "x");

    // Upper-cased names compared code by code: "[" and "_" come after the letters.
    EXPECT_EQ(ListRepository(temp.path(), QStringLiteral("xml")),
              (QStringList{QStringLiteral("alpha.xml"), QStringLiteral("Beta.XML"), QStringLiteral("Zeta.xml"),
                           QStringLiteral("[x].xml"), QStringLiteral("_y.xml")}));
    EXPECT_EQ(ListRepository(temp.path(), QStringLiteral("XSL")), (QStringList{QStringLiteral("A.XSL"), QStringLiteral("b.xsl")}));
    EXPECT_EQ(ListRepository(temp.file(QStringLiteral("missing")), QStringLiteral("xml")), QStringList());
}

TEST(XmlRepository, EmptyingKeepsStylesheetsOtherFilesAndFolders)
{
    TempFolder temp;
    for (const char* name : {"export.xml", "B.HTM", "export {Table}.html", "list.TXT", "doc.rtf", "grid.csv",
                             "Table.xsl", "export {Chart}.svg", "notes.doc", "readme", "xml",
                             "sub/inner.xml", "old.xml/kept.xml"})
        temp.write(QLatin1String(name), "x");

    EXPECT_EQ(EmptyXmlRepository(temp.path()), QStringList());
    EXPECT_EQ(Entries(temp.path()),
              (QStringList{QStringLiteral("Table.xsl"), QStringLiteral("export {Chart}.svg"), QStringLiteral("notes.doc"),
                           QStringLiteral("old.xml"), QStringLiteral("readme"), QStringLiteral("sub"), QStringLiteral("xml")}));
    EXPECT_EQ(Entries(temp.file(QStringLiteral("sub"))), QStringList{QStringLiteral("inner.xml")});
    EXPECT_EQ(Entries(temp.file(QStringLiteral("old.xml"))), QStringList{QStringLiteral("kept.xml")});
}

TEST(XmlRepository, EmptyingNamesWhatCannotBeRemoved)
{
    TempFolder temp;
    for (const char* name : {"a.xml", "b.csv", "Table.xsl"})
        temp.write(QLatin1String(name), "x");
    // A folder its owner may not write to: its files cannot be removed.
    QFile::setPermissions(temp.path(), QFile::ReadOwner | QFile::ExeOwner);
    const QStringList notRemoved = EmptyXmlRepository(temp.path());
    const QStringList left = Entries(temp.path());
    QFile::setPermissions(temp.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (left == QStringList{QStringLiteral("Table.xsl")})
        GTEST_SKIP() << "running with the right to remove any file";
    EXPECT_EQ(notRemoved, (QStringList{QStringLiteral("a.xml"), QStringLiteral("b.csv")}));
    EXPECT_EQ(left, (QStringList{QStringLiteral("Table.xsl"), QStringLiteral("a.xml"), QStringLiteral("b.csv")}));
}
