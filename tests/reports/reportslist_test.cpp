// The reports-list file, its look-ups and the edits of the main window, add dialog and editor.
// The sequential-file grammar itself (quotes, flags) is the substitutions test's.
#include "reports/reportslist.h"

#include "support/tempfolder.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::TempFolder;

namespace {

QString Text(const char* utf8) { return QString::fromUtf8(utf8); }
ReportEntry Entry(const char* directory, const char* title, bool active = true) { return {Text(directory), Text(title), active}; }

}  // namespace

namespace brindar {
inline void PrintTo(const ReportEntry& e, std::ostream* out)
{
    *out << "[" << e.directory.toStdString() << " | " << e.title.toStdString() << " | " << e.active << "]";
}
}  // namespace brindar

TEST(ReportsList, Reading)
{
    TempFolder folder;
    EXPECT_TRUE(ReadReportsList(folder.file(QStringLiteral("missing.txt"))).isEmpty());
    // The first "|" ends the directory; no title is the directory's own; a flag missing or
    // unreadable leaves the entry active. Blank lines are skipped, LF and lone CR end lines
    // too, and a broken line costs nothing to its neighbours.
    const QString path = folder.write(QStringLiteral("r.txt"), "\"/a|A\",#TRUE#\r\n\r\n   \r\n\"/b|B,#TRUE#\r\n\"/c|C|2004\",#FALSE#\n"
                                                               "\"/d\",#FALSE#\r\"/e|\",#TRUE#\r\n\"/f|F\"\r\n\"/g|G\",maybe\r\n\"|Orphan\",#TRUE#");
    EXPECT_EQ(ReadReportsList(path), ReportsList({Entry("/a", "A"), Entry("/b", "B,#TRUE#"), Entry("/c", "C|2004", false),
                                                  Entry("/d", "/d", false), Entry("/e", "/e"), Entry("/f", "F"), Entry("/g", "G"),
                                                  Entry("", "Orphan")}));
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
    EXPECT_EQ(ReadReportsList(path), ReportsList({Entry("/a", "two  lines"), Entry("/b", "B")}));
    ASSERT_FALSE(WriteReportsList(path, {}));
    EXPECT_EQ(folder.read(QStringLiteral("Office.txt")), "");
    // A file that cannot be written says why.
    folder.write(QStringLiteral("plain"), "x");
    EXPECT_TRUE(WriteReportsList(folder.file(QStringLiteral("plain/Office.txt")), list).has_value());
}

TEST(ReportsList, LookUpsAndMainWindowEdits)
{
    ReportsList list = {Entry("/home/me/Docs", "Documents"), Entry("/DONNÉES", "Data", false)};
    EXPECT_EQ(QList<int>({FindReport(list, Text("/données")), FindReport(list, Text("/home/me")), FindReport(list, Text("/home/me/Docs/"))}),
              QList<int>({1, -1, -1}));
    EXPECT_EQ(ReportTitle(list, Text("/HOME/ME/DOCS")), u"Documents");
    EXPECT_EQ(ReportTitle(list, Text("/home/me/Other")), u"/home/me/Other");

    EXPECT_FALSE(AddCurrentDirectory(list, Text("/home/ME/docs")));
    EXPECT_TRUE(AddCurrentDirectory(list, Text("/srv/new")));
    EXPECT_TRUE(RemoveCurrentDirectory(list, Text("/données")));
    EXPECT_FALSE(RemoveCurrentDirectory(list, Text("/données")));
    EXPECT_EQ(list, ReportsList({Entry("/home/me/Docs", "Documents"), Entry("/srv/new", "/srv/new")}));
    // The editor's moves are the column order's (see its test).
    MoveReport(list, 0, 1);
    EXPECT_EQ(list, ReportsList({Entry("/srv/new", "/srv/new"), Entry("/home/me/Docs", "Documents")}));
}

TEST(ReportsList, AddDialog)
{
    TempFolder folder;
    for (const char* name : {"parent/b", "parent/A", "parent/.hidden", "elsewhere"})
        QDir(folder.path()).mkpath(QLatin1String(name));
    folder.write(QStringLiteral("parent/file.txt"), "x");
    folder.write(QStringLiteral("empty/file.txt"), "x");
    ASSERT_TRUE(QFile::link(folder.file(QStringLiteral("elsewhere")), folder.file(QStringLiteral("parent/link"))));
    const QString parent = folder.file(QStringLiteral("parent")), empty = folder.file(QStringLiteral("empty"));
    const auto sub = [&](const char* name) { return parent + u'/' + QLatin1String(name); };

    // Each row works on the list the rows before it left.
    const struct {
        QString directory;
        bool subdirectories;
        std::optional<QString> message;
        QStringList directoriesAfter;
    } rows[] = {
        {QStringLiteral("parent"), false, QStringLiteral("Path is invalid"), {}},
        {parent + QStringLiteral("/A/"), false, std::nullopt, {sub("A")}},
        {sub("a"), false, QStringLiteral("Directory already in list"), {sub("A")}},
        // Hidden sub-folders count, files and links to folders do not; "A" is there already.
        {parent, true, std::nullopt, {sub("A"), sub(".hidden"), sub("b")}},
        {parent + u'/', true, QStringLiteral("All directories already in list"), {sub("A"), sub(".hidden"), sub("b")}},
        {empty, true, QStringLiteral("No sub-directories in\r\n") + empty, {sub("A"), sub(".hidden"), sub("b")}},
    };
    ReportsList list;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.directory.toStdString());
        EXPECT_EQ(AddDirectories(list, row.directory, row.subdirectories, Captions::English()), row.message);
        QStringList directories;
        for (const ReportEntry& entry : list) {
            directories.append(entry.directory);
            EXPECT_EQ(entry, ReportEntry({entry.directory, entry.directory, true}));
        }
        EXPECT_EQ(directories, row.directoriesAfter);
    }

    // The root's sub-folders are joined without a doubled "/".
    ReportsList root;
    EXPECT_EQ(AddDirectories(root, QStringLiteral("/"), true, Captions::English()), std::nullopt);
    EXPECT_GE(FindReport(root, QStringLiteral("/usr")), 0);
}
