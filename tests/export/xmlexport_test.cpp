// The XML export on trees built by the tests: the whole document against a golden copy,
// the family switches, stops, loops and the helpers with rules of their own.
#include "core/codepage.h"
#include "export/xmlexport.h"
#include "export/xsltransform.h"
#include "platform/filenames.h"
#include "platform/namedstreams.h"

#include "support/tempfolder.h"

#include <QBuffer>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::ReadFile;
using brindar::test::SourceFile;
using brindar::test::TempFolder;

namespace {

// The document with its last CR LF checked and every CR LF made LF, the tree's own path
// made "TREE" and the creation times the file system chose (today's) made "BIRTH".
QString Normalised(const QByteArray& bytes, const QString& tree)
{
    EXPECT_TRUE(bytes.endsWith("\r\n"));
    QString text = DecodeWin1252(bytes).replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(tree, QStringLiteral("TREE"));
    text.replace(QString(tree).replace(u' ', QStringLiteral("%20")), QStringLiteral("TREE"));
    const QDate today = QDate::currentDate();
    const QString day = QStringLiteral("yyyy/MM/dd");
    return text.replace(QRegularExpression(QStringLiteral("<creation>(%1|%2) \\d\\d:\\d\\d:\\d\\d</creation>")
                                               .arg(today.toString(day), today.addDays(-1).toString(day))),
                        QStringLiteral("<creation>BIRTH</creation>"));
}

QByteArray Export(const QString& folder, const XmlExportOptions& options)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    static const Captions captions = Captions::English();
    XmlExport(buffer, options, captions).ExportXmlDirectory(ExportStartPath(folder));
    return buffer.data();
}

// Builds the tree of the golden document: every family (the layout file carries an XMP
// packet as Photoshop writes one), an encrypted PDF, names without and ending with a dot,
// blanks, a read-only and a hidden file, a folder named .svn that must not be entered, an
// empty folder, comment streams. False when the file system keeps no extended attributes
// (the comments are then missing).
bool BuildTree(const QString& root)
{
    const auto write = [&](const char* name, const QByteArray& bytes) {
        QDir().mkpath(QFileInfo(root + u'/' + QLatin1String(name)).absolutePath());
        QFile file(root + u'/' + QLatin1String(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    };
    write("README", "hello\n");
    write("ends with dot.", "");
    write(".profile", "hidden");
    write("layout.psd", QByteArray("8BPS\0\1 header bytes 8BIM\4\x24")
                            + "<?xpacket begin='\xEF\xBB\xBF' id='W5M0MpCehiHzreSzNTczkc9d'?>\n"
                              "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
                              "<rdf:Description xmlns:pdf='http://ns.adobe.com/pdf/1.3/' pdf:Creator='Layout and Co'/>"
                              "</rdf:RDF></x:xmpmeta>\n<?xpacket end='w'?> trailing bytes");
    for (const auto& [name, source] : {std::pair("budget.doc", "samples/documents/budget.doc"),
                                       {"harbour.jpg", "samples/documents/harbour.jpg"},
                                       {"notes.sxw", "samples/documents/notes.sxw"},
                                       {"prices.html", "samples/documents/prices.html"},
                                       {"My Docs/report.pdf", "samples/documents/report.pdf"},
                                       {"My Docs/a b.doc", "samples/documents/budget.doc"},
                                       {"My Docs/locked.pdf", "fuzz/corpus/pdf_fuzzer/crlf-encrypted.pdf"}})
        write(name, ReadFile(SourceFile(QLatin1String(source))));
    write(".svn/entries", "never read");
    QDir().mkpath(root + QStringLiteral("/empty"));
    const QByteArray comment("N\0o\0t\0e\0\t\0M\0a\0c\0 \0&\0 \0c\0o\0", 26);
    const bool streams = !WriteNamedStream(root + QStringLiteral("/ends with dot."), QStringLiteral("Comments"), comment)
                         && !WriteNamedStream(root + QStringLiteral("/My Docs"), QStringLiteral("xdg.comment"),
                                              QByteArray("Caf\xC3\xA9 <docs>"));
    // Fixed last-write and last-access times, so that the document can be compared whole.
    // Birth times cannot be set: they are compared by their form only (see Normalised).
    for (QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); it.hasNext();) {
        QFile file(it.next());
        EXPECT_TRUE(file.open(QIODevice::ReadWrite)) << file.fileName().toStdString();
        file.setFileTime(QDateTime(QDate(2024, 3, 7), QTime(9, 5, 0)), QFileDevice::FileModificationTime);
        file.setFileTime(QDateTime(QDate(2025, 12, 31), QTime(23, 59, 58)), QFileDevice::FileAccessTime);
    }
    // Read-only only now: a user other than root cannot set the times of a read-only file.
    QFile(root + QStringLiteral("/README")).setPermissions(QFileDevice::ReadOwner);
    return streams;
}

}  // namespace

TEST(XmlExport, TreeMatchesTheGoldenDocument)
{
    TempFolder folder;
    const QString root = folder.file(QStringLiteral("tree"));
    if (!BuildTree(root))
        GTEST_SKIP() << "this file system keeps no extended attributes";
    EXPECT_EQ(Normalised(Export(root, XmlExportOptions{}), root),
              QString::fromUtf8(ReadFile(SourceFile(QStringLiteral("tests/export/golden/tree.xml")))));
}

TEST(XmlExport, FamilySwitchesChooseTheBlocks)
{
    TempFolder folder;
    const QString root = folder.file(QStringLiteral("tree"));
    BuildTree(root);
    // The blocks each file gets, as the elements that open them.
    const auto blocks = [&](const XmlFamilies& families, const QString& file) {
        XmlExportOptions options;
        options.families = families;
        const QString document = DecodeWin1252(Export(root, options));
        const qsizetype start = document.indexOf(QStringLiteral("<name>%1</name>").arg(file));
        const QString element = document.mid(start, document.indexOf(QStringLiteral("</file>"), start) - start);
        QStringList found;
        for (const char* tag : {"<datetime>", "<html>", "<iptc>", "<xmp>", "<pdf>", "<summary>"})
            if (element.contains(QLatin1String(tag)))
                found << QLatin1String(tag);
        return found.join(u' ');
    };
    // Office, OpenOffice, PDF, IPTC, XMP.
    const XmlFamilies all, none{false, false, false, false, false}, onlyXmp{false, false, false, false, true},
        noOffice{false, true, true, true, true};
    const struct {
        XmlFamilies families;
        const char *file, *blocks;
    } rows[] = {
        {all, "budget.doc", "<datetime> <summary>"},
        {all, "prices.html", "<datetime> <html>"},
        {all, "harbour.jpg", "<datetime> <iptc>"},
        {all, "layout.psd", "<datetime> <xmp>"},
        {all, "notes.sxw", "<datetime> <summary>"},
        // An image with IPTC off gets nothing, not even its dates, XMP on or not.
        {onlyXmp, "harbour.jpg", ""},
        {onlyXmp, "layout.psd", "<datetime> <xmp>"},
        // HTML pages follow the Office switch.
        {noOffice, "prices.html", ""},
        // Only an unrecognised family falls back to its file-system dates.
        {noOffice, "README", "<datetime>"},
        {none, "budget.doc", "<datetime>"},
        {none, "report.pdf", ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(blocks(row.families, QLatin1String(row.file)), QLatin1String(row.blocks)) << row.file;
}

TEST(XmlExport, CompleteDocumentsAreWellFormedAndStopsLeaveThemOpen)
{
    TempFolder folder;
    const QString root = folder.file(QStringLiteral("tree"));
    BuildTree(root);
    // A link back up the tree must neither loop nor be entered.
    ASSERT_TRUE(QFile::link(root, root + QStringLiteral("/My Docs/loop")));
    const Captions captions = Captions::English();
    const QString output = folder.file(QStringLiteral("export.xml"));
    const QDateTime now(QDate(2026, 11, 15), QTime(14, 5));
    const XmlExportResult done = WriteXmlExport(root, output, XmlExportOptions{}, captions, now);
    EXPECT_EQ(QList<QVariant>({bool(done.writeError), done.directories, done.files}), QList<QVariant>({false, 3, 11}));
    const QByteArray document = ReadFile(output);
    static const QRegularExpression head(QStringLiteral(
        "^<\\?xml version=\"1.0\" encoding=\"ISO-8859-1\" \\?>\r\n<!-- Created with Brindar Pro version \\d+\\.\\d+\\.\\d+ "
        "\\[Quorvane\\] -->\r\n<involume name=\"[^\"]*\" filesystem=\"[A-Z0-9_-]+\" dategeneration = \"November 15, 2026 "
        "14:05\">\r\n<dir>\r\n"));
    EXPECT_TRUE(head.match(QString::fromLatin1(document)).hasMatch()) << document.left(300).toStdString();
    EXPECT_TRUE(document.endsWith("</dir>\r\n</dir>\r\n</involume>\r\n"));
    // xmllint, when at hand, reads it (its complaints go to the test's output).
    const QString xmllint = QStandardPaths::findExecutable(QStringLiteral("xmllint"));
    EXPECT_EQ(xmllint.isEmpty() ? 0 : QProcess::execute(xmllint, {QStringLiteral("--noout"), output}), 0);

    // Stopped at the fourth file: what was written stays, no folder is closed.
    std::atomic<bool> stop = false;
    const XmlExportResult stopped = WriteXmlExport(root, output, XmlExportOptions{}, captions, now,
                                                   [&](const XmlExportProgress& p) { stop = p.files == 4; }, &stop);
    EXPECT_TRUE(stopped.stopped);
    EXPECT_EQ(stopped.files, 4);
    const QByteArray partial = ReadFile(output);
    EXPECT_TRUE(partial.endsWith("</file>\r\n")) << partial.right(100).toStdString();
    EXPECT_FALSE(partial.contains("</dir>"));

    // A target folder that does not exist: the reason, and nothing written.
    EXPECT_TRUE(WriteXmlExport(root, folder.file(QStringLiteral("none/export.xml")), XmlExportOptions{}, captions, now).writeError);
}

TEST(XmlExport, RepairUtf8AccentsAndFileSystemDates)
{
    const QChar A = CharOfCode(195);
    const std::pair<QString, QString> repairs[] = {
        {QString(A) + CharOfCode(169) + u't' + A + CharOfCode(169), QStringLiteral("\u00E9t\u00E9")},
        {QStringLiteral("\u00C2\u00A0x"), QString(CharOfCode(160)) + QStringLiteral("x")},  // every Â goes
        {QStringLiteral("caf") + A, QStringLiteral("caf")},                                    // a last Ã is dropped
        // Capitals: the second byte of "É" (0x89) reads as "‰" in the 8-bit code page, a
        // character far from 0x89 in Unicode; the code page's code is what counts.
        {QString(A) + CharOfCode(0x89) + QStringLiteral("cole ") + A + CharOfCode(0x9F), QStringLiteral("\u00C9cole \u00DF")},
    };
    for (const auto& [in, out] : repairs)
        EXPECT_EQ(RepairUtf8Accents(in), out) << in.toStdString();
    EXPECT_EQ(FileSystemDate(LocalTime{}), QString());  // a time the system could not give
}

TEST(XmlExport, DeepTreesAndLongPaths)
{
    TempFolder folder;
    const Captions captions = Captions::English();
    const QDateTime now(QDate(2026, 11, 15), QTime(14, 5));
    const QByteArray pdf = ReadFile(SourceFile(QStringLiteral("samples/documents/report.pdf")));

    // 300 folders deep: the export of such a tree transforms like any other.
    QString deep = folder.file(QStringLiteral("deep"));
    for (int level = 0; level < 300; ++level)
        deep += QStringLiteral("/d");
    ASSERT_TRUE(QDir().mkpath(deep));
    folder.write(QStringLiteral("deep") + deep.mid(folder.file(QStringLiteral("deep")).size()) + QStringLiteral("/x.pdf"), pdf);
    const QString xml = folder.file(QStringLiteral("deep.xml"));
    ASSERT_FALSE(WriteXmlExport(folder.file(QStringLiteral("deep")), xml, XmlExportOptions{}, captions, now).writeError);
    const QString page = folder.file(QStringLiteral("deep.htm"));
    const auto failure = TransformXmlFile(SourceFile(QStringLiteral("share/xsl/Table.xsl")), xml, page, captions);
    EXPECT_FALSE(failure) << (failure ? failure->text.toStdString() : std::string());
    EXPECT_TRUE(ReadFile(page).contains("x.pdf"));

    // A path longer than the system takes (40 names of 120 characters): made short, then
    // each folder renamed from the bottom up, so that no call ever needs the long path.
    const QString top = folder.file(QStringLiteral("long"));
    QString shortPath = top;
    for (int level = 0; level < 40; ++level)
        shortPath += QStringLiteral("/s");
    ASSERT_TRUE(QDir().mkpath(shortPath));
    folder.write(QStringLiteral("long") + shortPath.mid(top.size()) + QStringLiteral("/bottom.pdf"), pdf);
    const QString longName = QString(120, u'n');
    for (QString at = shortPath; at != top; at.chop(2))
        ASSERT_TRUE(QDir().rename(at, at.chopped(1) + longName));
    const QString document = QString::fromLatin1(Export(top, XmlExportOptions{}));
    // Cleaned up the way the walk went: the system's own remover opens each level in turn.
    QProcess::execute(QStringLiteral("rm"), {QStringLiteral("-rf"), top});
    EXPECT_EQ(document.count(QStringLiteral("<dir>")), 41);
    EXPECT_EQ(document.count(QStringLiteral("</dir>")), 41);
    EXPECT_TRUE(document.contains(QStringLiteral("/") + longName + QStringLiteral("/bottom.pdf</fullname>")));
    EXPECT_TRUE(document.contains(QStringLiteral("<title>Annual report 2026</title>")));
}

TEST(XmlExport, FoldersAndFilesWhoseNamesAreNotText)
{
    // Bytes that are not UTF-8 in a folder's and a file's name: the folder is entered and
    // the file read, under the names their bytes make.
    TempFolder folder;
    const QString odd = folder.path() + DecodeFileName("/dossier\xE9");
    ASSERT_FALSE(MakeFolders(odd));
    ASSERT_TRUE(test::WriteFileAtBytes(EncodeFileName(odd) + "/caf\xE9.pdf",
                                       ReadFile(SourceFile(QStringLiteral("samples/documents/report.pdf")))));
    const QString document = DecodeWin1252(Export(folder.path(), XmlExportOptions{}));
    EXPECT_EQ(document.count(QStringLiteral("<file>")), 1);
    EXPECT_TRUE(document.contains(QStringLiteral("<title>Annual report 2026</title>")));
}
