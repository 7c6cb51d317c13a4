// The directory scan on folders built by the tests: filters, routing, values, cache, order.
#include "platform/namedstreams.h"
#include "readers/compoundfile.h"
#include "scan/columnvalues.h"
#include "scan/directoryscan.h"

#include "support/tempfolder.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::SourceFile;
using brindar::test::ReadFile;
using brindar::test::TempFolder;

namespace {

// A settings folder holding one configuration, and a session started on it.
struct Fixture {
    TempFolder settings;
    TempFolder documents;
    TempFolder cache;
    explicit Fixture(const QByteArray& configuration)
    {
        qputenv("XDG_CACHE_HOME", cache.path().toUtf8());
        settings.write(QStringLiteral("Brindar.ini"), configuration);
    }
    Session session() const
    {
        return StartSession(settings.path(), SourceFile(QStringLiteral("share")), SystemInfo{});
    }
    QList<GridRow> scan(ScanResult* result = nullptr, bool rescan = false, int threads = 0) const
    {
        QList<GridRow> rows;
        const Session s = session();
        const ScanResult r =
            ScanDirectory(s, ScanRequest{documents.path(), rescan, threads}, [&](const GridRow& row) { rows.append(row); });
        if (result)
            *result = r;
        return rows;
    }
    // The cells of the row of `name`, by column code.
    QMap<QString, QString> row(const QString& name) const
    {
        const Session s = session();
        QMap<QString, QString> cells;
        for (const GridRow& row : scan())
            if (row.cells.value(0) == name)
                for (int c = 1; c < s.columns.columns.size(); ++c)
                    cells.insert(s.columns.columns[c].code, row.cells.value(c));
        return cells;
    }
};

QStringList Names(const QList<GridRow>& rows)
{
    QStringList names;
    for (const GridRow& row : rows)
        names << row.cells.value(0);
    return names;
}

const QByteArray kAllColumns =
    "[Configuration]\nInclureTout=1\nLocalTime=0\n"
    "[Proprietes]\nApplication=1\nTitre=1\nAuteur=1\nSujet=1\nMotsCles=1\nCommentaires=1\nPages=1\nCree=1\n"
    "TempsEdition=1\nCompagnie=1\n"
    "[Personnelles]\ntextPerso0=Client\nchkPerso0=1\n"
    "[OpenOffice]\nOOLanguage=1\n[HTMLMeta]\nPublisher=1\n[PDF]\nPDFVersion=1\nPDFProducer=1\n"
    "[IPTC]\nIPTCCity=1\nIPTCCopyright=1\n";

}  // namespace

TEST(DirectoryScan, EveryFamilyFillsItsColumns)
{
    Fixture f(kAllColumns);
    for (const QString& name : QDir(SourceFile(QStringLiteral("samples/documents"))).entryList(QDir::Files))
        f.documents.write(name, ReadFile(SourceFile(QStringLiteral("samples/documents/") + name)));
    f.documents.write(QStringLiteral("zero.sxw"), ReadFile(SourceFile(QStringLiteral("samples/documents/notes.sxw")))
                                                      .replace("page-count=\"2\"", "page-count=\"0\""));

    struct Row { const char* file; const char* code; QString value; };
    const Row rows[] = {
        {"report.pdf", ".TI", QStringLiteral("Annual report 2026")},
        {"report.pdf", ".AP", QStringLiteral("Word")},  // "Microsoft " removed
        {"report.pdf", ".CD", QStringLiteral("2026/03/15 09:30:00")},
        {"report.pdf", ".VE", QStringLiteral("1.4")},
        {"report.pdf", ".PA", QStringLiteral("1")},
        {"prices.html", ".TI", QStringLiteral("Price list \u00E9t\u00E9 2026")},
        {"prices.html", ".KW", QStringLiteral("prices; summer")},  // dc.subject
        {"prices.html", ".PU", QStringLiteral("Brindar &amp; Co")},
        {"prices.html", ".P0", QStringLiteral("Dupont")},  // a META tag named like the slot
        {"harbour.jpg", ".TI", QStringLiteral("Harbour at dawn")},  // headline
        {"harbour.jpg", ".AU", QStringLiteral("Jeanne Petit")},     // byline
        {"harbour.jpg", ".KW", QStringLiteral("sea; boats")},
        {"harbour.jpg", ".CM", QStringLiteral("Boats in the harbour")},
        {"harbour.jpg", ".CI", QStringLiteral("Honfleur")},
        {"notes.sxw", ".AU", QStringLiteral("Marie Curie")},  // initial creator
        {"notes.sxw", ".CD", QStringLiteral("2026/02/01 10:15:00")},
        {"notes.sxw", ".ED", QStringLiteral("1 h 05 min")},
        {"notes.sxw", ".LG", QStringLiteral("fr-FR")},
        {"notes.sxw", ".PA", QStringLiteral("2")},
        {"zero.sxw", ".PA", QString()},  // a count of zero shows empty
        {"zero.sxw", ".TI", QStringLiteral("Meeting notes")},
        {"budget.doc", ".TI", QStringLiteral("Title")},
        {"budget.doc", ".CY", QStringLiteral("ACME")},
        {"budget.doc", ".ED", QStringLiteral("0 h 07 min")},
        {"budget.doc", ".PA", QStringLiteral("12")},
        {"budget.doc", ".P0", QStringLiteral("Dupont")},
        {"readme.txt", ".TI", QString()},
    };
    for (const Row& row : rows)
        EXPECT_EQ(f.row(QLatin1String(row.file)).value(QLatin1String(row.code)), row.value)
            << row.file << " " << row.code;

    ScanResult result;
    const QList<GridRow> all = f.scan(&result);
    EXPECT_EQ(result.files, 7);
    EXPECT_EQ(result.documents, 6);  // readme.txt has no metadata
    EXPECT_EQ(Names(all), (QStringList{QStringLiteral("budget.doc"), QStringLiteral("harbour.jpg"),
                                       QStringLiteral("notes.sxw"), QStringLiteral("prices.html"),
                                       QStringLiteral("readme.txt"), QStringLiteral("report.pdf"),
                                       QStringLiteral("zero.sxw")}));
    EXPECT_EQ(CountsText(f.session().captions, result.files, result.documents), u"7 files - 6 documents");
}

TEST(DirectoryScan, FiltersAndSwitches)
{
    struct Row { QByteArray configuration; QStringList listed; };
    const QByteArray pdfColumn = "[PDF]\nPDFVersion=1\n";
    const Row rows[] = {
        // A substring test on the selection: "x.oc" passes "pdf,doc".
        {"[Configuration]\nInclureExtensions=1\nExtensionsSelected=pdf, doc\n" + pdfColumn,
         {QStringLiteral(".hidden.pdf"), QStringLiteral("report.PDF"), QStringLiteral("x.oc")}},
        {"[Configuration]\nInclureExtensions=1\nExtensionsExcluded=txt\nInclureCaches=0\n" + pdfColumn,
         {QStringLiteral("report.PDF"), QStringLiteral("x.oc"), QStringLiteral("z.sxw")}},
        {"[Configuration]\nInclureCaches=0\n" + pdfColumn,
         {QStringLiteral("notes.txt"), QStringLiteral("readme"), QStringLiteral("report.PDF"), QStringLiteral("x.oc"),
          QStringLiteral("z.sxw")}},
        {"[Configuration]\n" + pdfColumn,
         {QStringLiteral(".hidden.pdf"), QStringLiteral("notes.txt"), QStringLiteral("readme"),
          QStringLiteral("report.PDF"), QStringLiteral("x.oc"), QStringLiteral("z.sxw")}},
    };
    for (const Row& row : rows) {
        Fixture f(row.configuration);
        for (const char* name : {"report.PDF", "readme", "x.oc", "notes.txt", ".hidden.pdf", "z.sxw"})
            f.documents.write(QLatin1String(name), "%PDF-1.3\n");
        f.documents.write(QStringLiteral("folder/inner.pdf"), "%PDF-1.3\n");  // folders are not listed
        EXPECT_EQ(Names(f.scan()), row.listed) << row.configuration.constData();
    }

    // Only the PDF switch on: a PDF gets its values, an SXW only its name.
    Fixture f("[Configuration]\nInclureTout=0\nInclurePDF=1\n[OpenOffice]\nOOLanguage=1\n" + pdfColumn);
    f.documents.write(QStringLiteral("a.pdf"), "%PDF-1.7\n");
    f.documents.write(QStringLiteral("b.sxw"), ReadFile(SourceFile(QStringLiteral("samples/documents/notes.sxw"))));
    const QList<GridRow> scanned = f.scan();
    ASSERT_EQ(scanned.size(), 2);
    EXPECT_EQ(scanned[0].cells, (QStringList{QStringLiteral("a.pdf"), QString(), QStringLiteral("1.7")}));
    EXPECT_EQ(scanned[1].cells, (QStringList{QStringLiteral("b.sxw"), QString(), QString()}));
    EXPECT_FALSE(scanned[1].hasMetadata);
}

TEST(DirectoryScan, CacheServesTheSameColumnsUntilRefresh)
{
    Fixture f("[Configuration]\nUseNTFSCache=1\n[Proprietes]\nTitre=1\n");
    const QString pdf = f.documents.write(QStringLiteral("a.pdf"), ReadFile(SourceFile(QStringLiteral("samples/documents/report.pdf"))));
    ScanResult first, second, refreshed, otherColumns;
    EXPECT_EQ(f.scan(&first).value(0).cells.value(1), u"Annual report 2026");
    EXPECT_FALSE(first.fromCache);
    EXPECT_TRUE(first.cacheStatus.startsWith(u"writing cache"));

    // The file changes; the cache does not know: no file is opened the second time.
    QFile::remove(pdf);
    f.documents.write(QStringLiteral("a.pdf"), "%PDF-1.4\n");
    EXPECT_EQ(f.scan(&second).value(0).cells.value(1), u"Annual report 2026");
    EXPECT_TRUE(second.fromCache);
    EXPECT_TRUE(second.cacheStatus.startsWith(u"reading cache"));

    // Refresh reads the files again.
    EXPECT_EQ(f.scan(&refreshed, true).value(0).cells.value(1), QString());
    EXPECT_FALSE(refreshed.fromCache);

    // Another column set has a cache of its own.
    f.settings.write(QStringLiteral("Brindar.ini"), "[Configuration]\nUseNTFSCache=1\n[Proprietes]\nTitre=1\nAuteur=1\n");
    f.scan(&otherColumns);
    EXPECT_FALSE(otherColumns.fromCache);
    // The scan remembered the folder it showed.
    EXPECT_EQ(f.session().configuration.repertoire, f.documents.path());
}

TEST(DirectoryScan, RowsArriveInListingOrderWhateverTheThreads)
{
    Fixture f("[Proprietes]\nTitre=1\n");
    QStringList expected;
    for (int i = 0; i < 300; ++i) {
        const QString name = QStringLiteral("f%1.pdf").arg(i, 3, 10, QChar(u'0'));
        f.documents.write(name, "%PDF-1.4\ntrailer\n<< /Info 1 0 R >>\n");
        expected << name;
    }
    f.documents.write(QStringLiteral("B.pdf"), "x");
    f.documents.write(QStringLiteral("a.pdf"), "x");
    expected.prepend(QStringLiteral("B.pdf"));
    expected.prepend(QStringLiteral("a.pdf"));  // upper-cased names compared: A before B
    for (int threads : {1, 4})
        EXPECT_EQ(Names(f.scan(nullptr, false, threads)), expected) << threads;

    // Stopping ends the scan early.
    std::atomic<bool> stop{false};
    int delivered = 0;
    const Session s = f.session();
    const ScanResult result = ScanDirectory(s, ScanRequest{f.documents.path(), false, 2}, [&](const GridRow&) {
        if (++delivered == 10)
            stop = true;
    }, {}, &stop);
    EXPECT_TRUE(result.stopped);
    EXPECT_EQ(result.files, 10);

    ScanResult missing;
    const ScanResult none = ScanDirectory(s, ScanRequest{f.documents.file(QStringLiteral("absent")), false, 0},
                                          [](const GridRow&) {});
    EXPECT_FALSE(none.listed);
    EXPECT_EQ(none.files, 0);
}

TEST(DirectoryScan, DatesAndDurationsAsTheGridShowsThem)
{
    struct Date { const char* in; const char* out; };
    for (const Date& row : {Date{"2026-02-01T10:15:00", "2026/02/01 10:15:00"}, Date{"2026-02-01T10:15", "2026/02/01 10:15:00"},
                            Date{"2026-02-01", "2026/02/01"}, Date{"20260201", "2026/02/01"},
                            Date{"2004/03/12 15:30:00", "2004/03/12 15:30:00"}, Date{"yesterday", "yesterday"}})
        EXPECT_EQ(GridDate(QLatin1String(row.in)), QLatin1String(row.out)) << row.in;
    EXPECT_EQ(GridDate(QDateTime(QDate(2003, 6, 26), QTime(13, 19), Qt::UTC), false), u"2003/06/26 13:19:00");
    EXPECT_EQ(GridDate(QDateTime(), false), QString());

    struct Minutes { qint64 minutes; const char* text; };
    for (const Minutes& row : {Minutes{65, "1 h 05 min"}, Minutes{9, "0 h 09 min"}, Minutes{600, "10 h 00 min"},
                               Minutes{70, "1 h 10 min"}, Minutes{0, ""}})
        EXPECT_EQ(EditingTime(row.minutes), QLatin1String(row.text)) << row.minutes;
    struct Duration { const char* iso; qint64 minutes; };
    for (const Duration& row : {Duration{"PT1H5M", 65}, Duration{"PT9M30S", 9}, Duration{"P1DT2H", 1560},
                                Duration{"PT0S", 0}, Duration{"soon", -1}, Duration{"P", -1}})
        EXPECT_EQ(DurationMinutes(QLatin1String(row.iso)), row.minutes) << row.iso;
}

TEST(DirectoryScan, AnyFileShowsThePropertySetsOfItsNamedStreams)
{
    Fixture f("[Proprietes]\nTitre=1\nCompagnie=1\n[PDF]\nPDFVersion=1\n");
    const QString pdf = f.documents.write(QStringLiteral("a.pdf"), ReadFile(SourceFile(QStringLiteral("samples/documents/report.pdf"))));
    const QString text = f.documents.write(QStringLiteral("b.txt"), "text");
    // The document summary of the project's small compound document, kept as a named stream.
    QString why;
    auto document = CompoundFile::Open(SourceFile(QStringLiteral("fuzz/corpus/ole_fuzzer/minimal.doc")), &why);
    ASSERT_TRUE(document.has_value()) << why.toStdString();
    const auto stream = document->rootStream(QStringLiteral("\u0005DocumentSummaryInformation"));
    ASSERT_TRUE(stream.has_value());
    for (const QString& path : {pdf, text})
        if (WriteNamedStream(path, QStringLiteral("\u0005DocumentSummaryInformation"), *stream))
            GTEST_SKIP() << "this file system keeps no extended attributes";
    EXPECT_EQ(f.row(QStringLiteral("a.pdf")).value(QStringLiteral(".TI")), u"Annual report 2026");
    EXPECT_EQ(f.row(QStringLiteral("a.pdf")).value(QStringLiteral(".CY")), u"ACME");
    EXPECT_EQ(f.row(QStringLiteral("b.txt")).value(QStringLiteral(".CY")), u"ACME");
}
