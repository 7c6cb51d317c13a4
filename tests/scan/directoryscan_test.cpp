// The directory scan on folders built by the tests: filters, routing, values, cache, order.
#include "platform/filenames.h"
#include "platform/namedstreams.h"
#include "readers/compoundfile.h"
#include "scan/directoryscan.h"

#include "support/tempfolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace brindar;
using namespace Qt::StringLiterals;
using brindar::test::TempFolder;

namespace {

QByteArray Sample(const QString& name) { return test::ReadFile(test::SourceFile(u"samples/documents/"_s + name)); }

// A settings folder holding one configuration, the folder to scan, and a cache of their own.
struct Fixture {
    TempFolder settings, documents, cache;
    // What the last scan delivered: file names, cells by name and column code ("report.pdf.TI").
    QStringList names;
    QMap<QString, QString> cells;
    explicit Fixture(const QByteArray& configuration)
    {
        qputenv("XDG_CACHE_HOME", cache.path().toUtf8());
        settings.write(u"Brindar.ini"_s, configuration);
    }
    Session session() const { return StartSession(settings.path(), test::SourceFile(u"share"_s), SystemInfo{}); }
    ScanResult scan(bool rescan = false, int threads = 0)
    {
        const Session s = session();
        names.clear();
        cells.clear();
        ScanCallbacks callbacks;
        callbacks.onRows = [&](const QList<GridRow>& rows) {
            for (const GridRow& row : rows) {
                names << row.cells.value(0);
                for (int c = 1; c < s.columns.columns.size(); ++c)
                    cells.insert(row.cells.value(0) + s.columns.columns[c].code, row.cells.value(c));
            }
        };
        return ScanDirectory(s, ScanRequest{documents.path(), rescan, threads}, callbacks);
    }
};

}  // namespace

TEST(DirectoryScan, EveryFamilyFillsItsColumns)
{
    Fixture f("[Configuration]\nInclureTout=1\nLocalTime=0\n[Proprietes]\nApplication=1\nTitre=1\nAuteur=1\nMotsCles=1\n"
              "Pages=1\nCree=1\nTempsEdition=1\nCompagnie=1\n[Personnelles]\ntextPerso0=Client\nchkPerso0=1\n"
              "[HTMLMeta]\nPublisher=1\n[PDF]\nPDFVersion=1\n[IPTC]\nIPTCCity=1\n");
    for (const QString& name : QDir(test::SourceFile(u"samples/documents"_s)).entryList(QDir::Files))
        f.documents.write(name, Sample(name));
    f.documents.write(u"zero.sxw"_s, Sample(u"notes.sxw"_s).replace("page-count=\"2\"", "page-count=\"0\""));
    const ScanResult result = f.scan();
    // "Microsoft " leaves the application name; a count of zero shows empty; .P0, the slot named "Client", is
    // filled by a META tag or an Office property of that name. HTML keywords come from dc.subject, the JPEG
    // title from the headline, the SXW author from the initial creator.
    const struct { const char* cell; const char* value; } rows[] = {
        {"report.pdf.AP", "Word"}, {"report.pdf.CD", "2026/03/15 09:30:00"}, {"report.pdf.VE", "1.4"},
        {"prices.html.KW", "prices; summer"}, {"prices.html.PU", "Brindar &amp; Co"}, {"prices.html.P0", "Dupont"},
        {"harbour.jpg.TI", "Harbour at dawn"}, {"harbour.jpg.KW", "sea; boats"}, {"harbour.jpg.CI", "Honfleur"},
        {"notes.sxw.AU", "Marie Curie"}, {"notes.sxw.CD", "2026/02/01 10:15:00"}, {"notes.sxw.ED", "1 h 05 min"},
        {"notes.sxw.PA", "2"}, {"zero.sxw.PA", ""}, {"zero.sxw.TI", "Meeting notes"}, {"budget.doc.CY", "ACME"},
        {"budget.doc.ED", "0 h 07 min"}, {"budget.doc.PA", "12"}, {"budget.doc.P0", "Dupont"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(f.cells.value(QLatin1String(row.cell)), QLatin1String(row.value)) << row.cell;
    EXPECT_EQ(CountsText(f.session().captions, result.files, result.documents), u"7 files - 6 documents");
}

TEST(DirectoryScan, FiltersAndSwitches)
{
    const QByteArray pdfColumn = "[PDF]\nPDFVersion=1\n";
    const struct { QByteArray configuration; const char* listed; } rows[] = {
        // A substring test on the selection: "x.oc" passes "pdf,doc".
        {"[Configuration]\nInclureExtensions=1\nExtensionsSelected=pdf, doc\n", ".hidden.pdf report.PDF x.oc"},
        {"[Configuration]\nInclureExtensions=1\nExtensionsExcluded=txt\nInclureCaches=0\n", "report.PDF x.oc z.sxw"},
        {"[Configuration]\n", ".hidden.pdf notes.txt readme report.PDF x.oc z.sxw"},
    };
    for (const auto& row : rows) {
        Fixture f(row.configuration + pdfColumn);
        for (const char* name : {"report.PDF", "readme", "x.oc", "notes.txt", ".hidden.pdf", "z.sxw"})
            f.documents.write(QLatin1String(name), "%PDF-1.3\n");
        f.documents.write(u"folder/inner.pdf"_s, "%PDF-1.3\n");  // folders are not listed
        f.scan();
        EXPECT_EQ(f.names.join(u' '), QLatin1String(row.listed)) << row.configuration.constData();
    }

    // Only the PDF switch on: a PDF gets its values, an SXW only its name.
    Fixture f("[Configuration]\nInclureTout=0\nInclurePDF=1\n[OpenOffice]\nOOLanguage=1\n" + pdfColumn);
    f.documents.write(u"a.pdf"_s, "%PDF-1.7\n");
    f.documents.write(u"b.sxw"_s, Sample(u"notes.sxw"_s));
    EXPECT_EQ(f.scan().documents, 1);
    EXPECT_EQ(f.cells, (QMap<QString, QString>{{u"a.pdf.LG"_s, QString()}, {u"a.pdf.VE"_s, u"1.7"_s},
                                               {u"b.sxw.LG"_s, QString()}, {u"b.sxw.VE"_s, QString()}}));
}

TEST(DirectoryScan, CacheServesTheSameColumnsUntilRefresh)
{
    Fixture f("[Configuration]\nUseNTFSCache=1\n[Proprietes]\nTitre=1\n");
    const QString pdf = f.documents.write(u"a.pdf"_s, Sample(u"report.pdf"_s));
    const ScanResult first = f.scan();
    EXPECT_EQ(f.cells.value(u"a.pdf.TI"_s), u"Annual report 2026");
    EXPECT_FALSE(first.fromCache);
    EXPECT_TRUE(first.cacheStatus.startsWith(u"writing cache"));

    // The file changes; the cache does not know: no file is opened the second time.
    QFile::remove(pdf);
    f.documents.write(u"a.pdf"_s, "%PDF-1.4\n");
    const ScanResult second = f.scan();
    EXPECT_EQ(f.cells.value(u"a.pdf.TI"_s), u"Annual report 2026");
    EXPECT_TRUE(second.fromCache);
    EXPECT_TRUE(second.cacheStatus.startsWith(u"reading cache"));

    // Refresh reads the files again; another column set has a cache of its own.
    EXPECT_FALSE(f.scan(true).fromCache);
    EXPECT_EQ(f.cells.value(u"a.pdf.TI"_s), QString());
    f.settings.write(u"Brindar.ini"_s, "[Configuration]\nUseNTFSCache=1\n[Proprietes]\nTitre=1\nAuteur=1\n");
    EXPECT_FALSE(f.scan().fromCache);
    // The scan writes no setting: remembering the folder is its caller's.
    EXPECT_EQ(f.session().configuration.repertoire, QString());
}

TEST(DirectoryScan, RowsArriveInListingOrderWhateverTheThreads)
{
    Fixture f("[Proprietes]\nTitre=1\n");
    QStringList expected = {u"a.pdf"_s, u"B.pdf"_s};  // upper-cased names compared: A before B
    for (const QString& name : expected)
        f.documents.write(name, "x");
    for (int i = 0; i < 300; ++i) {
        expected << u"f%1.pdf"_s.arg(i, 3, 10, QChar(u'0'));
        f.documents.write(expected.last(), "%PDF-1.4\ntrailer\n<< /Info 1 0 R >>\n");
    }
    for (int threads : {1, 4}) {
        f.scan(false, threads);
        EXPECT_EQ(f.names, expected) << threads;
    }

    // A stop takes effect at once: no row after it, the result counts what was delivered.
    // A folder that cannot be listed gives no row.
    std::atomic<bool> stop{false};
    int delivered = 0, afterStop = 0;
    const Session s = f.session();
    ScanCallbacks callbacks;
    callbacks.onRows = [&](const QList<GridRow>& rows) {
        afterStop += stop ? 1 : 0;
        delivered += int(rows.size());
        stop = true;
    };
    const ScanResult result = ScanDirectory(s, ScanRequest{f.documents.path(), false, 2}, callbacks, &stop);
    EXPECT_TRUE(result.stopped);
    EXPECT_EQ(afterStop, 0);
    EXPECT_EQ(result.files, delivered);
    EXPECT_LE(delivered, 256);
    const ScanResult none = ScanDirectory(s, ScanRequest{f.documents.file(u"absent"_s), false, 0}, {});
    EXPECT_FALSE(none.listed);
    EXPECT_EQ(none.files, 0);
}

TEST(DirectoryScan, AnyFileShowsThePropertySetsOfItsNamedStreams)
{
    Fixture f("[Proprietes]\nTitre=1\nCompagnie=1\n[PDF]\nPDFVersion=1\n");
    const QString pdf = f.documents.write(u"a.pdf"_s, Sample(u"report.pdf"_s));
    const QString text = f.documents.write(u"b.txt"_s, "text");
    // The document summary of the project's small compound document, kept as a named stream.
    QString why;
    auto document = CompoundFile::Open(test::SourceFile(u"fuzz/corpus/ole_fuzzer/minimal.doc"_s), &why);
    ASSERT_TRUE(document.has_value()) << why.toStdString();
    const auto stream = document->rootStream(u"\u0005DocumentSummaryInformation"_s);
    ASSERT_TRUE(stream.has_value());
    for (const QString& path : {pdf, text})
        if (WriteNamedStream(path, u"\u0005DocumentSummaryInformation"_s, *stream))
            GTEST_SKIP() << "this file system keeps no extended attributes";
    f.scan();
    EXPECT_EQ(f.cells.value(u"a.pdf.TI"_s), u"Annual report 2026");
    EXPECT_EQ(f.cells.value(u"a.pdf.CY"_s), u"ACME");
    EXPECT_EQ(f.cells.value(u"b.txt.CY"_s), u"ACME");
}

TEST(DirectoryScan, EveryFileMeetsTheOfficeComponent)
{
    // A compound document that reads as an HTML page too (its bytes hold a title): both
    // readers give their values, the page's title first.
    Fixture f("[Proprietes]\nTitre=1\nAuteur=1\nCompagnie=1\n");
    f.documents.write(u"page.html"_s, test::ReadFile(test::SourceFile(u"fuzz/corpus/ole_fuzzer/minimal.doc"_s))
                                          + "<html><head><title>Web page</title></head>");
    f.scan();
    EXPECT_EQ(f.cells.value(u"page.html.TI"_s), u"Web page");
    EXPECT_EQ(f.cells.value(u"page.html.AU"_s), u"Author");
    EXPECT_EQ(f.cells.value(u"page.html.CY"_s), u"ACME");
}

TEST(DirectoryScan, NamesAndCommentsAsTheFileSystemKeepsThem)
{
    // A name that is not UTF-8, in a folder whose name is not either: listed, read, cached
    // and read back from the cache under the same bytes.
    Fixture f("[Configuration]\nUseNTFSCache=1\n[Proprietes]\nCommentairesMacintosh=1\n[PDF]\nPDFVersion=1\n");
    const QString folder = f.documents.path() + u'/' + DecodeFileName("dossier\xE9");
    ASSERT_FALSE(MakeFolders(folder));
    ASSERT_TRUE(test::WriteFileAtBytes(EncodeFileName(folder) + "/caf\xE9.pdf", "%PDF-1.6\n"));
    // Names sort by their characters' upper case one to one: "ß" is not "SS".
    for (const char* name : {"a\xC3\x9F.pdf", "aSt.pdf"})
        ASSERT_TRUE(test::WriteFileAtBytes(EncodeFileName(folder) + '/' + name, "%PDF-1.5\n"));
    // A Macintosh comment is the whole stream, a NUL shown as a blank.
    const QString commented = folder + DecodeFileName("/aSt.pdf");
    const QByteArray comment(reinterpret_cast<const char*>(u"first\0second"), 24);
    if (WriteNamedStream(commented, u"Comments"_s, comment))
        GTEST_SKIP() << "this file system keeps no extended attributes";
    const Session s = f.session();
    for (bool fromCache : {false, true}) {
        QList<GridRow> rows;
        ScanCallbacks callbacks;
        callbacks.onRows = [&](const QList<GridRow>& batch) { rows += batch; };
        const ScanResult result = ScanDirectory(s, ScanRequest{folder, false, 1}, callbacks);
        ASSERT_TRUE(result.listed);
        EXPECT_EQ(result.fromCache, fromCache);
        ASSERT_EQ(rows.size(), 3);
        EXPECT_EQ(EncodeFileName(rows[0].cells[0]), "aSt.pdf");
        EXPECT_EQ(rows[0].cells[1], u"first second");
        EXPECT_EQ(EncodeFileName(rows[1].cells[0]), "a\xC3\x9F.pdf");
        EXPECT_EQ(EncodeFileName(rows[2].cells[0]), "caf\xE9.pdf");
        EXPECT_EQ(rows[2].cells[2], u"1.6");
    }
}

TEST(DirectoryScan, ASignatureTestReadsNoMoreThanTheSignature)
{
    // A file that claims more bytes than it gives (the system's own files do) is no zip:
    // its two first bytes say so, and the reader asks nothing more that could fail.
    QString shortFile;
    for (const char* candidate : {"/sys/kernel/mm/transparent_hugepage/enabled", "/sys/devices/system/cpu/online",
                                  "/sys/kernel/mm/transparent_hugepage/defrag"})
        if (QFileInfo(QLatin1String(candidate)).size() == 4096 && test::ReadFile(QLatin1String(candidate)).size() < 4096)
            shortFile = QLatin1String(candidate);
    if (shortFile.isEmpty())
        GTEST_SKIP() << "no system file that is shorter than its size";
    Fixture f("[Proprietes]\nTitre=1\n");
    ASSERT_TRUE(QFile::link(shortFile, f.documents.file(u"system.sxw"_s)));
    QStringList messages;
    const ScanContext context(f.session());
    ScanFile(f.documents.path(), DirectoryEntry{u"system.sxw"_s, false, {}}, context, &messages);
    EXPECT_EQ(messages, QStringList());
}

TEST(DirectoryScan, TheCacheDeliversInBatchesAndStopsToo)
{
    Fixture f("[Configuration]\nUseNTFSCache=1\n[Proprietes]\nTitre=1\n");
    for (int i = 0; i < 600; ++i)
        f.documents.write(u"f%1.txt"_s.arg(i, 3, 10, QChar(u'0')), "x");
    f.scan();
    std::atomic<bool> stop{false};
    QList<int> sizes;
    ScanCallbacks callbacks;
    callbacks.onRows = [&](const QList<GridRow>& rows) {
        sizes << int(rows.size());
        stop = sizes.size() == 2;
    };
    const ScanResult result = ScanDirectory(f.session(), ScanRequest{f.documents.path(), false, 0}, callbacks, &stop);
    EXPECT_TRUE(result.fromCache);
    EXPECT_EQ(sizes, (QList<int>{256, 256}));
    EXPECT_TRUE(result.stopped);
    EXPECT_EQ(result.files, 512);
}
