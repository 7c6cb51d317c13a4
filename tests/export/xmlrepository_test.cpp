// The XML repository: its folder, seeding with the shipped XSL files, listing, emptying.
#include "export/xmlrepository.h"

#include "core/inifile.h"
#include "platform/folders.h"
#include "support/tempfolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::ReadFile;
using brindar::test::TempFolder;

// The names directly in a folder, files and sub-folders alike, sorted.
static QStringList Entries(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

TEST(XmlRepository, StoredFolderOnlyWhenItExists)
{
    TempFolder temp;
    const QString file = temp.write(QStringLiteral("my exports/a file"), "x"), chosen = QFileInfo(file).path();
    const QString fallback = temp.file(QStringLiteral("settings/xml"));
    // "." exists, but only relative to where the program started.
    const std::pair<QString, QString> rows[] = {
        {chosen, chosen}, {chosen + u'/', chosen}, {QString(), fallback}, {file, fallback}, {QStringLiteral("."), fallback}};
    for (const auto& [stored, expected] : rows)
        EXPECT_EQ(XmlRepository(IniDocument(QStringLiteral("[XML]\r\nDirectoryFileXML=%1\r\n").arg(stored).toUtf8()),
                                temp.file(QStringLiteral("settings"))),
                  expected) << stored.toStdString();
}

TEST(XmlRepository, SeedingCopiesOnlyWhatIsMissing)
{
    TempFolder temp;
    const auto at = [&](const char* name) { return temp.file(QLatin1String(name)); };
    // Shipped files are installed read-only; a folder and a text file are no stylesheets.
    for (const QString& path : {temp.write(QStringLiteral("data/xsl/Table.xsl"), "<table/>"), temp.write(QStringLiteral("data/xsl/Chart.xsl"), "<chart/>")})
        QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther);
    temp.write(QStringLiteral("data/xsl/readme.txt"), "not a stylesheet");
    temp.write(QStringLiteral("data/xsl/folder.xsl/inner.xsl"), "<inner/>");

    // A missing repository is created with every shipped stylesheet, in a copy the user can edit.
    EXPECT_EQ(SeedXmlRepository(at("settings/xml"), at("data")), QStringList());
    EXPECT_EQ(Entries(at("settings/xml")), QStringList({"Chart.xsl", "Table.xsl"}));
    EXPECT_EQ(ReadFile(at("settings/xml/Table.xsl")), "<table/>");
    EXPECT_TRUE(QFile::permissions(at("settings/xml/Table.xsl")) & QFile::WriteOwner);

    // The user's own files, under the same name in any letter case, are never replaced; a
    // stylesheet the user removed comes back.
    temp.write(QStringLiteral("used/chart.XSL"), "mine");
    temp.write(QStringLiteral("used/export.xml"), "<involume/>");
    EXPECT_EQ(SeedXmlRepository(at("used"), at("data")), QStringList());
    EXPECT_EQ(Entries(at("used")), QStringList({"Table.xsl", "chart.XSL", "export.xml"}));
    EXPECT_EQ(ReadFile(at("used/chart.XSL")) + ReadFile(at("used/Table.xsl")), "mine<table/>");

    // Failures are told, one message each, and nothing is half-done.
    const QStringList blocked = SeedXmlRepository(at("data/xsl/readme.txt"), at("data"));
    ASSERT_EQ(blocked.size(), 1);
    EXPECT_TRUE(blocked[0].contains(QStringLiteral("readme.txt"))) << blocked[0].toStdString();
    EXPECT_EQ(SeedXmlRepository(at("empty"), at("no data")).size(), 1);
    EXPECT_EQ(Entries(at("empty")), QStringList());

    // The stylesheets shipped with the program reach a new repository.
    EXPECT_EQ(SeedXmlRepository(at("shipped"), DataFolder()), QStringList()) << DataFolder().toStdString();
    EXPECT_EQ(Entries(at("shipped")), Entries(brindar::test::SourceFile(QStringLiteral("share/xsl"))));
}

TEST(XmlRepository, ListingAndEmptying)
{
    TempFolder temp;
    for (const char* name : {"Zeta.xml", "alpha.xml", "Beta.XML", "[x].xml", "_y.xml", "b.xsl", "A.XSL", "notes.xml.bak", "xml",
                             "B.HTM", "export {Table}.html", "list.TXT", "doc.rtf", "grid.csv", "export {Chart}.svg", "sub/inner.xml", "old.xml/kept.xml"})
        temp.write(QLatin1String(name), "x");
    // Directory order: upper-cased names compared code by code, "[" and "_" after the letters.
    EXPECT_EQ(ListRepository(temp.path(), QStringLiteral("xml")), QStringList({"alpha.xml", "Beta.XML", "Zeta.xml", "[x].xml", "_y.xml"}));
    EXPECT_EQ(ListRepository(temp.path(), QStringLiteral("XSL")), QStringList({"A.XSL", "b.xsl"}));
    EXPECT_EQ(ListRepository(temp.file(QStringLiteral("missing")), QStringLiteral("xml")), QStringList());

    // Emptying keeps the stylesheets, other files and the folders with what they hold.
    EXPECT_EQ(EmptyXmlRepository(temp.path()), QStringList());
    EXPECT_EQ(Entries(temp.path()), QStringList({"A.XSL", "b.xsl", "export {Chart}.svg", "notes.xml.bak", "old.xml", "sub", "xml"}));
    EXPECT_EQ(Entries(temp.file(QStringLiteral("sub"))) + Entries(temp.file(QStringLiteral("old.xml"))), QStringList({"inner.xml", "kept.xml"}));

    // A folder its owner may not write to: its files cannot be removed.
    for (const char* name : {"a.xml", "b.csv"})
        temp.write(QLatin1String(name), "x");
    QFile::setPermissions(temp.path(), QFile::ReadOwner | QFile::ExeOwner);
    const QStringList notRemoved = EmptyXmlRepository(temp.path()), left = Entries(temp.path());
    QFile::setPermissions(temp.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (!left.contains(QStringLiteral("a.xml")))
        GTEST_SKIP() << "running with the right to remove any file";
    EXPECT_EQ(notRemoved, QStringList({"a.xml", "b.csv"}));
    EXPECT_EQ(left, QStringList({"A.XSL", "a.xml", "b.csv", "b.xsl", "export {Chart}.svg", "notes.xml.bak", "old.xml", "sub", "xml"}));
}
