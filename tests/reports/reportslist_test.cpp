// The reports-list file, its look-ups and the edits of the main window, add dialog and editor.
#include "reports/reportslist.h"

#include "support/tempfolder.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::TempFolder;

namespace {

QString Text(const char* utf8) { return QString::fromUtf8(utf8); }
ReportEntry Entry(const char* directory, const char* title, bool active = true)
{
    return {Text(directory), Text(title), active};
}

void PrintList(const ReportsList& list, std::ostream* out)
{
    for (const ReportEntry& e : list)
        *out << "[" << e.directory.toStdString() << " | " << e.title.toStdString() << " | " << e.active << "] ";
}

}  // namespace

namespace brindar {
inline void PrintTo(const ReportEntry& e, std::ostream* out) { PrintList({e}, out); }
}  // namespace brindar

TEST(ReportsList, ReadingOneLine)
{
    struct Row { QByteArray line; ReportEntry expected; };
    const Row rows[] = {
        {"\"/data|Projects\",#TRUE#", Entry("/data", "Projects")},
        {"\"/data|\",#TRUE#", Entry("/data", "/data")},
        {"\"/data|Projects|2004\",#FALSE#", Entry("/data", "Projects|2004", false)},
        {"\"/data\",#FALSE#", Entry("/data", "/data", false)},
        {"\"/data|x\",#false#", Entry("/data", "x", false)},
        {"\"/data|x\", False", Entry("/data", "x", false)},
        {"\"/data|x\",0", Entry("/data", "x", false)},
        {"\"/data|x\",-1", Entry("/data", "x", true)},
        // No flag, or one that reads as nothing: active, as a new entry.
        {"\"/data|x\"", Entry("/data", "x", true)},
        {"\"/data|x\",maybe", Entry("/data", "x", true)},
        // An unterminated quote runs to the end of its line.
        {"\"/data|broken,#FALSE#", Entry("/data", "broken,#FALSE#", true)},
        // After a closing quote everything up to the comma is dropped; a quote inside
        // a written field therefore cuts it short.
        {"\"/data|say \"hi\"\",#FALSE#", Entry("/data", "say ", false)},
        {"\"/data|a\" junk ,#FALSE#", Entry("/data", "a", false)},
        {"  /data|x  ,  #FALSE#  ", Entry("/data", "x", false)},
        {"\"/donn\xE9" "es|R\xE9sum\xE9\",#TRUE#", Entry("/données", "Résumé")},
        {"\"|Orphan\",#TRUE#", Entry("", "Orphan")},
    };
    TempFolder folder;
    for (const Row& row : rows) {
        const ReportsList list = ReadReportsList(folder.write(QStringLiteral("r.txt"), row.line + "\r\n"));
        ASSERT_EQ(list.size(), 1) << row.line.toStdString();
        EXPECT_EQ(list[0], row.expected) << row.line.toStdString();
    }
}

TEST(ReportsList, ReadingAWholeFile)
{
    TempFolder folder;
    EXPECT_TRUE(ReadReportsList(folder.file(QStringLiteral("missing.txt"))).isEmpty());
    // Blank lines are skipped, LF and lone CR end lines too, and a broken line costs
    // nothing to its neighbours.
    const QString path = folder.write(QStringLiteral("r.txt"), "\"/a|A\",#TRUE#\r\n\r\n   \r\n\"/b|B,#TRUE#\r\n"
                                                               "\"/c|C\",#FALSE#\n\"/d\",#TRUE#\r\"/e|E\",#TRUE#");
    const ReportsList expected = {Entry("/a", "A"), Entry("/b", "B,#TRUE#"), Entry("/c", "C", false),
                                  Entry("/d", "/d"), Entry("/e", "E")};
    EXPECT_EQ(ReadReportsList(path), expected);
}

TEST(ReportsList, WriteThenRead)
{
    TempFolder folder;
    const QString path = folder.file(QStringLiteral("Office.txt"));
    const ReportsList list = {Entry("/home/me/docs", "Projects"), Entry("/srv/archive", "/srv/archive", false),
                              Entry("/data", "Projects|2004"), Entry("/données", "Résumé, 2e partie")};
    ASSERT_FALSE(WriteReportsList(path, list));
    EXPECT_EQ(folder.read(QStringLiteral("Office.txt")),
              "\"/home/me/docs|Projects\",#TRUE#\r\n\"/srv/archive|/srv/archive\",#FALSE#\r\n"
              "\"/data|Projects|2004\",#TRUE#\r\n\"/donn\xE9" "es|R\xE9sum\xE9, 2e partie\",#TRUE#\r\n");
    EXPECT_EQ(ReadReportsList(path), list);

    // A folder whose name Windows-1252 cannot hold keeps it: the file turns UTF-8.
    const ReportsList wide = {Entry("/home/me/日本", "日本"), Entry("/données", "Résumé")};
    ASSERT_FALSE(WriteReportsList(path, wide));
    EXPECT_EQ(ReadReportsList(path), wide);

    // A title typed with a line break stays one entry.
    ASSERT_FALSE(WriteReportsList(path, {Entry("/a", "two\r\nlines"), Entry("/b", "B")}));
    EXPECT_EQ(ReadReportsList(path), (ReportsList{Entry("/a", "two  lines"), Entry("/b", "B")}));

    ASSERT_FALSE(WriteReportsList(path, {}));
    EXPECT_EQ(folder.read(QStringLiteral("Office.txt")), "");

    // A file that cannot be written says why.
    folder.write(QStringLiteral("plain"), "x");
    EXPECT_TRUE(WriteReportsList(folder.file(QStringLiteral("plain/Office.txt")), list).has_value());
}

TEST(ReportsList, LookUpsAndMainWindowEdits)
{
    ReportsList list = {Entry("/home/me/Docs", "Documents"), Entry("/DONNÉES", "Data", false)};
    EXPECT_EQ(FindReport(list, Text("/home/me/docs")), 0);
    EXPECT_EQ(FindReport(list, Text("/données")), 1);
    EXPECT_EQ(FindReport(list, Text("/home/me")), -1);
    EXPECT_EQ(FindReport(list, Text("/home/me/Docs/")), -1);
    EXPECT_EQ(ReportTitle(list, Text("/HOME/ME/DOCS")), u"Documents");
    EXPECT_EQ(ReportTitle(list, Text("/home/me/Other")), u"/home/me/Other");

    EXPECT_FALSE(AddCurrentDirectory(list, Text("/home/ME/docs")));
    EXPECT_EQ(list.size(), 2);
    EXPECT_TRUE(AddCurrentDirectory(list, Text("/srv/new")));
    EXPECT_EQ(list.last(), Entry("/srv/new", "/srv/new", true));

    EXPECT_TRUE(RemoveCurrentDirectory(list, Text("/données")));
    EXPECT_FALSE(RemoveCurrentDirectory(list, Text("/données")));
    EXPECT_EQ(list, (ReportsList{Entry("/home/me/Docs", "Documents"), Entry("/srv/new", "/srv/new")}));
}

TEST(ReportsList, AddDialog)
{
    TempFolder folder;
    QDir(folder.path()).mkpath(QStringLiteral("parent/b"));
    QDir(folder.path()).mkpath(QStringLiteral("parent/A"));
    QDir(folder.path()).mkpath(QStringLiteral("parent/.hidden"));
    QDir(folder.path()).mkpath(QStringLiteral("empty"));
    folder.write(QStringLiteral("parent/file.txt"), "x");
    folder.write(QStringLiteral("empty/file.txt"), "x");
    QDir(folder.path()).mkpath(QStringLiteral("elsewhere"));
    ASSERT_TRUE(QFile::link(folder.file(QStringLiteral("elsewhere")), folder.file(QStringLiteral("parent/link"))));
    const QString parent = folder.file(QStringLiteral("parent"));
    const QString empty = folder.file(QStringLiteral("empty"));
    const auto sub = [&](const char* name) { return parent + u'/' + QLatin1String(name); };
    const Captions& english = Captions::English();

    struct Row {
        QString directory;
        bool subdirectories;
        std::optional<QString> message;
        QStringList directoriesAfter;
    };
    const QString noSub = QStringLiteral("No sub-directories in\r\n");
    // Each row works on the list the rows before it left.
    const Row rows[] = {
        {QStringLiteral("parent"), false, QStringLiteral("Path is invalid"), {}},
        {QString(), true, QStringLiteral("Path is invalid"), {}},
        {parent + QStringLiteral("/A/"), false, std::nullopt, {sub("A")}},
        {sub("a"), false, QStringLiteral("Directory already in list"), {sub("A")}},
        // Hidden sub-folders count, files and links to folders do not; "A" is there already.
        {parent, true, std::nullopt, {sub("A"), sub(".hidden"), sub("b")}},
        {parent + u'/', true, QStringLiteral("All directories already in list"), {sub("A"), sub(".hidden"), sub("b")}},
        {empty, true, noSub + empty, {sub("A"), sub(".hidden"), sub("b")}},
        {folder.file(QStringLiteral("missing")), true, noSub + folder.file(QStringLiteral("missing")),
         {sub("A"), sub(".hidden"), sub("b")}},
    };
    ReportsList list;
    for (const Row& row : rows) {
        EXPECT_EQ(AddDirectories(list, row.directory, row.subdirectories, english), row.message)
            << row.directory.toStdString();
        QStringList directories;
        for (const ReportEntry& entry : list) {
            directories.append(entry.directory);
            EXPECT_EQ(entry.title, entry.directory);
            EXPECT_TRUE(entry.active);
        }
        EXPECT_EQ(directories, row.directoriesAfter) << row.directory.toStdString();
    }

    // The root's sub-folders are joined without a doubled "/".
    ReportsList root;
    EXPECT_EQ(AddDirectories(root, QStringLiteral("/"), true, english), std::nullopt);
    EXPECT_GE(FindReport(root, QStringLiteral("/usr")), 0);
    for (const ReportEntry& entry : root)
        EXPECT_FALSE(entry.directory.startsWith(u"//")) << entry.directory.toStdString();
}

TEST(ReportsList, MoveReport)
{
    struct Row { int index, step; const char* after; };
    const Row rows[] = {
        {0, -1, "abc"}, {2, 1, "abc"}, {0, 1, "bac"}, {2, -1, "acb"}, {1, 1, "acb"},
        {3, -1, "abc"}, {-1, 1, "abc"}, {0, 2, "abc"}, {1, 0, "abc"},
    };
    for (const Row& row : rows) {
        ReportsList list = {Entry("a", "a"), Entry("b", "b"), Entry("c", "c")};
        MoveReport(list, row.index, row.step);
        QString order;
        for (const ReportEntry& entry : list)
            order += entry.directory;
        EXPECT_EQ(order, QLatin1String(row.after)) << row.index << " " << row.step;
    }
}
