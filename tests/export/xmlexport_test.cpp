// The XML export on trees built by the tests: the whole document against a golden copy,
// the family switches, stops, loops and the helpers with rules of their own.
#include "core/codepage.h"
#include "export/xmlexport.h"
#include "platform/namedstreams.h"

#include "support/tempfolder.h"

#include <QBuffer>
#include <QDir>
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

const QDateTime kWritten(QDate(2024, 3, 7), QTime(9, 5, 0));
const QDateTime kAccessed(QDate(2025, 12, 31), QTime(23, 59, 58));


// Fixed last-write and last-access times, so that the document can be compared whole.
// Birth times cannot be set: they are compared by their form only (see Normalised).
void FixTimes(const QString& folder)
{
    QDir dir(folder);
    for (const QFileInfo& info : dir.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
        if (info.isDir()) {
            FixTimes(info.filePath());
            continue;
        }
        QFile file(info.filePath());
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.setFileTime(kWritten, QFileDevice::FileModificationTime);
        file.setFileTime(kAccessed, QFileDevice::FileAccessTime);
    }
}

// The document with its last CR LF checked and every CR LF made LF, the tree's own path made "TREE" and the
// creation times the file system chose (today's) made "BIRTH".
QString Normalised(const QByteArray& bytes, const QString& tree)
{
    EXPECT_TRUE(bytes.endsWith("\r\n"));
    QString text = DecodeWin1252(bytes).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(tree, QStringLiteral("TREE"));
    QString spaced = tree;
    text.replace(spaced.replace(u' ', QStringLiteral("%20")), QStringLiteral("TREE"));
    const QString today = QDate::currentDate().toString(QStringLiteral("yyyy/MM/dd"));
    const QString yesterday = QDate::currentDate().addDays(-1).toString(QStringLiteral("yyyy/MM/dd"));
    static const QRegularExpression birth(QStringLiteral("<creation>(\\d{4}/\\d\\d/\\d\\d) \\d\\d:\\d\\d:\\d\\d</creation>"));
    QString out;
    qsizetype from = 0;
    for (auto it = birth.globalMatch(text); it.hasNext();) {
        const auto m = it.next();
        out += text.mid(from, m.capturedStart() - from);
        const bool now = m.captured(1) == today || m.captured(1) == yesterday;
        out += now ? QStringLiteral("<creation>BIRTH</creation>") : m.captured(0);
        from = m.capturedEnd();
    }
    return out + text.mid(from);
}

QByteArray Export(const QString& folder, const XmlExportOptions& options)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    static const Captions captions = Captions::English();
    XmlExport writer(buffer, options, captions);
    writer.ExportXmlDirectory(ExportStartPath(folder));
    return buffer.data();
}

// A layout file carrying an XMP packet, as Photoshop writes one.
QByteArray LayoutWithXmp()
{
    return QByteArray("8BPS\0\1 header bytes 8BIM\4\x24")
           + "<?xpacket begin='\xEF\xBB\xBF' id='W5M0MpCehiHzreSzNTczkc9d'?>\n"
             "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
             "<rdf:Description xmlns:pdf='http://ns.adobe.com/pdf/1.3/' pdf:Creator='Layout and Co'/>"
             "</rdf:RDF></x:xmpmeta>\n<?xpacket end='w'?> trailing bytes";
}

// Builds the tree of the golden document: every family, an encrypted PDF, names without
// and ending with a dot, blanks, a read-only and a hidden file, a folder named .svn that
// must not be entered, an empty folder, comment streams. False when the file system keeps
// no extended attributes (the comments are then missing).
bool BuildTree(const QString& root)
{
    const auto write = [&](const QString& name, const QByteArray& bytes) {
        QDir().mkpath(QFileInfo(root + u'/' + name).absolutePath());
        QFile file(root + u'/' + name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    };
    const auto copy = [&](const QString& name, const QString& source) { write(name, ReadFile(SourceFile(source))); };
    write(QStringLiteral("README"), "hello\n");
    write(QStringLiteral("ends with dot."), "");
    write(QStringLiteral(".profile"), "hidden");
    write(QStringLiteral("layout.psd"), LayoutWithXmp());
    copy(QStringLiteral("budget.doc"), QStringLiteral("samples/documents/budget.doc"));
    copy(QStringLiteral("harbour.jpg"), QStringLiteral("samples/documents/harbour.jpg"));
    copy(QStringLiteral("notes.sxw"), QStringLiteral("samples/documents/notes.sxw"));
    copy(QStringLiteral("prices.html"), QStringLiteral("samples/documents/prices.html"));
    copy(QStringLiteral("My Docs/report.pdf"), QStringLiteral("samples/documents/report.pdf"));
    copy(QStringLiteral("My Docs/a b.doc"), QStringLiteral("samples/documents/budget.doc"));
    copy(QStringLiteral("My Docs/locked.pdf"), QStringLiteral("fuzz/corpus/pdf_fuzzer/crlf-encrypted.pdf"));
    write(QStringLiteral(".svn/entries"), "never read");
    QDir().mkpath(root + QStringLiteral("/empty"));
    QFile(root + QStringLiteral("/README")).setPermissions(QFileDevice::ReadOwner);
    const QByteArray comment("N\0o\0t\0e\0\t\0M\0a\0c\0 \0&\0 \0c\0o\0", 26);
    const bool streams = !WriteNamedStream(root + QStringLiteral("/ends with dot."), QStringLiteral("Comments"), comment)
                         && !WriteNamedStream(root + QStringLiteral("/My Docs"), QStringLiteral("xdg.comment"),
                                              QByteArray("Caf\xC3\xA9 <docs>"));
    FixTimes(root);
    return streams;
}

}  // namespace

TEST(XmlExport, TreeMatchesTheGoldenDocument)
{
    TempFolder folder;
    const QString root = folder.file(QStringLiteral("tree"));
    if (!BuildTree(root))
        GTEST_SKIP() << "this file system keeps no extended attributes";
    const QString document = Normalised(Export(root, XmlExportOptions{}), root);
    const QString golden = QString::fromUtf8(ReadFile(SourceFile(QStringLiteral("tests/export/golden/tree.xml"))));
    EXPECT_EQ(document, golden);
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
    const XmlFamilies all;
    const XmlFamilies none{false, false, false, false, false};
    XmlFamilies onlyXmp = none;
    onlyXmp.xmp = true;
    XmlFamilies noOffice = all;
    noOffice.office = false;
    struct Row {
        XmlFamilies families;
        const char* file;
        const char* blocks;
    };
    const Row rows[] = {
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
    for (const Row& row : rows)
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
    EXPECT_FALSE(done.writeError);
    EXPECT_EQ(done.directories, 3);
    EXPECT_EQ(done.files, 11);
    const QByteArray document = ReadFile(output);
    static const QRegularExpression head(QStringLiteral(
        "^<\\?xml version=\"1.0\" encoding=\"ISO-8859-1\" \\?>\r\n<!-- Created with Brindar Pro version \\d+\\.\\d+\\.\\d+ "
        "\\[Quorvane\\] -->\r\n<involume name=\"[^\"]*\" filesystem=\"[A-Z0-9_-]+\" dategeneration = \"November 15, 2026 "
        "14:05\">\r\n<dir>\r\n"));
    EXPECT_TRUE(head.match(QString::fromLatin1(document)).hasMatch()) << document.left(300).toStdString();
    EXPECT_TRUE(document.endsWith("</dir>\r\n</dir>\r\n</involume>\r\n"));
    const QString xmllint = QStandardPaths::findExecutable(QStringLiteral("xmllint"));
    if (!xmllint.isEmpty()) {
        QProcess check;
        check.start(xmllint, {QStringLiteral("--noout"), output});
        ASSERT_TRUE(check.waitForFinished(60000));
        EXPECT_EQ(check.exitCode(), 0) << check.readAllStandardError().toStdString();
    }

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
    const XmlExportResult failed =
        WriteXmlExport(root, folder.file(QStringLiteral("none/export.xml")), XmlExportOptions{}, captions, now);
    EXPECT_TRUE(failed.writeError);
}

TEST(XmlExport, RepairUtf8AccentsAndFileSystemDates)
{
    const QChar A = CharOfCode(195);
    const std::pair<QString, QString> repairs[] = {
        {QString(A) + CharOfCode(169) + u't' + A + CharOfCode(169), QStringLiteral("\u00E9t\u00E9")},
        {QStringLiteral("\u00C2\u00A0x"), QString(CharOfCode(160)) + QStringLiteral("x")},  // every Â goes
        {QStringLiteral("caf") + A, QStringLiteral("caf")},                    // a last Ã is dropped
        {QStringLiteral("plain"), QStringLiteral("plain")},
    };
    for (const auto& [in, out] : repairs)
        EXPECT_EQ(RepairUtf8Accents(in), out) << in.toStdString();
    EXPECT_EQ(FileSystemDate(LocalTime{2004, 3, 7, 9, 5, 0}), QStringLiteral("2004/03/07 09:05:00"));
    EXPECT_EQ(FileSystemDate(LocalTime{}), QString());
}
