// The HTML report and the list page against golden pages, and the rules of their cells.
#include "core/configuration.h"
#include "core/inifile.h"
#include "core/columnorder.h"
#include "reports/csvreport.h"
#include "reports/htmlreport.h"

#include "support/tempfolder.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace brindar;
using namespace Qt::StringLiterals;
using brindar::test::ReadFile;
using brindar::test::SourceFile;
using brindar::test::TempFolder;

namespace {

// The grid the reports are made of: Document, Title, Revision number, Pages (numeric),
// Client (a user-defined property); escapes, numbers by the French rules, a hidden
// column (Revision), a cell of blanks, sorted by Title. Or the same columns without rows.
GridModel Grid(const Configuration& configuration, bool filled = true)
{
    GridModel grid(BuildColumns(IniDocument("[Proprietes]\r\nPages=1\r\nRevision=1\r\nTitre=1\r\n"
                                            "[Personnelles]\r\ntextPerso2=Client\r\nchkPerso2=1\r\n"),
                                Captions::English(), true),
                   configuration);
    if (!filled)
        return grid;
    grid.appendRows({
        {{"a&b.doc", "Tom & \"Jerry\" <2>", "1", "1,5", "  "}, true},
        {{"notes.txt", "Line\r\nbreak \u2013 dash", "2", "12", "Dupont; fils \u65E5\U0001F600"}, true},
        {{"z.pdf", "", "", "", ""}, false},
    });
    grid.sortByColumn(1);
    return grid;
}

// A folder "My Docs" beside two images, and the configuration of section HTML `html`
// ("IMAGES" standing for the images' folder).
struct Page {
    TempFolder folder;
    QString documents = folder.file(QStringLiteral("My Docs"));
    Configuration configuration;
    Substitutions substitutions;
    ReportsList list;
    Captions captions = Captions::English();
    SystemInfo system{true, QStringLiteral("Debian"), QStringLiteral("marie"), QStringLiteral("atelier")};

    explicit Page(const QByteArray& html)
    {
        QDir().mkpath(documents);
        folder.write(QStringLiteral("images/back.gif"), "GIF89a-back");
        folder.write(QStringLiteral("images/logo.png"), "PNG-logo");
        configuration = ReadConfiguration(
            IniDocument(QByteArray("[Configuration]\r\nLargeur2=0\r\n[HTML]\r\n" + html).replace("IMAGES", folder.file(QStringLiteral("images")).toUtf8())), true);
    }
    ReportContext context() const
    {
        return {configuration, captions, system, substitutions, list, QDateTime(QDate(2026, 11, 15), QTime(14, 5)), true,
                QLocale(QLocale::French, QLocale::France)};
    }
    // The page with the folder's path made "DIR", CR LF checked and made LF.
    QString read(const QString& path) const
    {
        const QByteArray bytes = ReadFile(path);
        EXPECT_TRUE(bytes.endsWith("\r\n"));
        return QString::fromLatin1(bytes).replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(folder.path(), QStringLiteral("DIR"));
    }
};

QString Golden(const char* name) { return QString::fromLatin1(ReadFile(SourceFile(QStringLiteral("tests/reports/golden/") + QLatin1String(name)))); }

}  // namespace

TEST(HtmlReport, PageMatchesTheGolden)
{
    Page page("PrefixeTableau=Rapport\r\nAjouterDate=1\r\nImagesSuivent=1\r\nImageFond=IMAGES/back.gif\r\n"
              "ImageEnTete=IMAGES/gone.png\r\nImageDebutTableau=IMAGES/logo.png\r\nCouleurTitre=16711680\r\n"
              "TexteEnTete=<h2>Made on %Date at %time</h2>\r\nTexteEnTete2=<p>by %USER</p>\r\n"
              "TextePied=<i>%Computer</i>\r\n");
    page.list = {{page.documents, QStringLiteral("Projects"), true}};
    page.substitutions = {{page.folder.path() + QStringLiteral("/MY DOCS"), QStringLiteral("http://server/docs")}};
    // An older report of the prefix goes; another prefix's report stays.
    page.folder.write(QStringLiteral("My Docs/Rapport old.html"), "old");
    page.folder.write(QStringLiteral("My Docs/Other.html"), "other");

    const ReportOutcome outcome =
        WriteHtmlReport(Grid(page.configuration), NaturalColumnOrder(5), page.documents + u'/', page.context());
    ASSERT_FALSE(outcome.error) << outcome.error->toStdString();
    EXPECT_EQ(outcome.path, page.documents + QStringLiteral("/Rapport November 15, 2026 - 14 h 05.html"));
    EXPECT_EQ(page.read(outcome.path), Golden("report.html"));
    EXPECT_FALSE(QFile::exists(page.documents + QStringLiteral("/Rapport old.html")));
    EXPECT_TRUE(QFile::exists(page.documents + QStringLiteral("/Other.html")));
    EXPECT_EQ(ReadFile(page.documents + QStringLiteral("/Rapport-background.gif")), QByteArray("GIF89a-back"));
    EXPECT_EQ(ReadFile(page.documents + QStringLiteral("/Rapport-headerReport.png")), QByteArray("PNG-logo"));
}

TEST(HtmlReport, OlderReportsMatchThePrefixAsTyped)
{
    // No character of the prefix is a wildcard; names compare without regard to case; the
    // report's own extension ends the name.
    Page page("PrefixeTableau=R[ab]*\r\n");
    const struct { const char* name; bool goes; } files[] = {
        {"R[ab]* old.html", true}, {"r[AB]* x.HTML", true},
        {"Ra.html", false}, {"Rb old.html", false}, {"R[ab] old.html", false}, {"R[ab]* old.csv", false},
        {"R[ab]* old.html.bak", false},
    };
    for (const auto& file : files)
        page.folder.write(QStringLiteral("My Docs/") + QLatin1String(file.name), "old");
    const ReportOutcome outcome = WriteHtmlReport(Grid(page.configuration), NaturalColumnOrder(5), page.documents, page.context());
    ASSERT_FALSE(outcome.error);
    for (const auto& file : files)
        EXPECT_EQ(QFile::exists(page.documents + u'/' + QLatin1String(file.name)), !file.goes) << file.name;
    EXPECT_TRUE(QFile::exists(outcome.path));
}

TEST(HtmlReport, CellRulesAndEmptyGrids)
{
    // Numbers as the locale writes them are centred; words are not, "nan" and "inf" included.
    const QLocale french(QLocale::French, QLocale::France), english(QLocale::English, QLocale::UnitedStates);
    const struct { const char16_t* text; const QLocale& locale; bool number; } cells[] = {
        {u"1,5", french, true}, {u" 12 ", french, true}, {u"1\u202F234,5", french, true}, {u"-3", french, true},
        {u"1,234.5", english, true}, {u"1e5", english, true},
        {u"nan", english, false}, {u"inf", french, false}, {u"-Infinity", english, false},
        {u"12 pages", english, false}, {u"-", english, false}, {u"", english, false},
    };
    for (const auto& cell : cells)
        EXPECT_EQ(IsLocaleNumber(QString::fromUtf16(cell.text), cell.locale), cell.number) << QString::fromUtf16(cell.text).toStdString();


    // 255 gets one "00" only and stays malformed; digits-only values are padded.
    const std::pair<qint32, const char*> colours[] = {{255, "FF00"}, {65535, "FFFF00"}, {0x123456, "563412"}, {0x123, "230100"}};
    for (const auto& [value, text] : colours)
        EXPECT_EQ(HeaderColour(value), QLatin1String(text)) << value;
    EXPECT_EQ(EscapeCellText(QStringLiteral("a\r\nb\u0001c\u2013d&<\">")), QStringLiteral("a b c-d&amp;&lt;&quot;&gt;"));

    Page page("EffacerAnciensTableaux=1\r\n");
    page.configuration.prefixeTableau.clear();  // the options dialog can leave it empty
    page.folder.write(QStringLiteral("My Docs/keep.html"), "keep");
    const GridModel empty = Grid(page.configuration, false);
    const ReportOutcome none = WriteHtmlReport(empty, NaturalColumnOrder(5), page.documents, page.context());
    EXPECT_TRUE(none.nothingToReport);
    EXPECT_EQ(none.error, QStringLiteral("No file in this directory: no HTML report created"));
    EXPECT_EQ(WriteCsvReport(empty, NaturalColumnOrder(5), page.documents, page.context()).error,
              QStringLiteral("No file in this directory: no CSV report created"));
    // An empty prefix deletes nothing, even with the option on.
    EXPECT_EQ(WriteHtmlReport(Grid(page.configuration), NaturalColumnOrder(5), page.documents, page.context()).path,
              page.documents + QStringLiteral("/.html"));
    EXPECT_TRUE(QFile::exists(page.documents + QStringLiteral("/keep.html")));

    // An unwritable target folder: the reason, not a crash.
    const ReportOutcome failed = WriteHtmlReport(Grid(page.configuration), NaturalColumnOrder(5),
                                                 page.folder.write(QStringLiteral("plain"), "a file") + QStringLiteral("/x"), page.context());
    EXPECT_TRUE(failed.error && !failed.nothingToReport);
}

TEST(CsvReport, FileMatchesTheGolden)
{
    Page page("");
    // The last position of the order is the hidden Revision column: every line ends ";".
    const ReportOutcome outcome =
        WriteCsvReport(Grid(page.configuration), QList<int>{0, 1, 3, 4, 2}, page.documents, page.context());
    ASSERT_FALSE(outcome.error);
    EXPECT_EQ(outcome.path, page.documents + QStringLiteral("/Brindar.csv"));
    EXPECT_EQ(page.read(outcome.path), Golden("report.csv"));
}

TEST(ReportsListPage, PagesWithAndWithoutIndex)
{
    for (const auto& [html, golden] : {std::pair<QByteArray, const char*>("IndexType=0\r\nImageDebutTableau=IMAGES/logo.png\r\n", "list-numbered.html"),
                                       {"IndexType=1\r\nTotalDocuments=0\r\nDisplayDirectory=0\r\n", "list-dropdown.html"}}) {
        Page page("PathListeTableaux=OUT\r\nIndexListes=1\r\n" + html);
        page.configuration.pathListeTableaux = page.folder.file(QStringLiteral("out"));
        const QString second = page.folder.file(QStringLiteral("second"));
        QDir().mkpath(page.configuration.pathListeTableaux);
        QDir().mkpath(second);
        // The second entry is inactive and the third folder is gone: numbers 1 and 2,
        // but the denominator counts every active entry.
        page.list = {{page.documents, QStringLiteral("Projects"), true}, {second, second, false},
                     {page.folder.file(QStringLiteral("gone")), QStringLiteral("Gone"), true}, {second, second, true}};
        QStringList scanned;
        const ReportOutcome outcome =
            WriteReportsListPage(page.list, NaturalColumnOrder(5), page.context(), [&](const QString& directory) {
                scanned << directory;
                return Grid(page.configuration);
            });
        ASSERT_FALSE(outcome.error);
        EXPECT_EQ(scanned.size(), 2);
        EXPECT_EQ(page.read(outcome.path), Golden(golden)) << golden;
    }
    Page empty("");
    EXPECT_EQ(WriteReportsListPage({}, NaturalColumnOrder(5), empty.context(), {}).error,
              QStringLiteral("The current reports list is empty"));
}

TEST(ReportsListPage, NoFolderProgressAndStop)
{
    Page page("");
    page.list = {{page.documents, QStringLiteral("Projects"), true}, {page.folder.path(), QStringLiteral("Top"), true}};
    const auto scan = [&](const QString&) { return Grid(page.configuration); };
    // Without a folder for the page nothing is written, not even at the root.
    const ReportOutcome nowhere = WriteReportsListPage(page.list, NaturalColumnOrder(5), page.context(), scan);
    ASSERT_TRUE(nowhere.error);
    EXPECT_TRUE(nowhere.error->contains(u"PathListeTableaux"));
    EXPECT_TRUE(nowhere.path.isEmpty());

    // Progress before each folder and at the end; a stop before the second folder writes
    // nothing and leaves the older page.
    page.configuration.pathListeTableaux = page.folder.path();
    const QString older = page.folder.write(QStringLiteral("Brindar old.html"), "older");
    std::atomic<bool> stop{false};
    QStringList seen;
    const ReportOutcome stopped = WriteReportsListPage(page.list, NaturalColumnOrder(5), page.context(), scan,
                                                       [&](const ReportsListProgress& p) {
                                                           seen << QStringLiteral("%1/%2").arg(p.done).arg(p.total);
                                                           stop = p.done == 1;
                                                       }, &stop);
    EXPECT_TRUE(stopped.stopped);
    EXPECT_FALSE(QFile::exists(stopped.path));
    EXPECT_TRUE(QFile::exists(older));
    stop = false;
    const ReportOutcome written = WriteReportsListPage(page.list, NaturalColumnOrder(5), page.context(), scan,
                                                       [&](const ReportsListProgress& p) {
                                                           seen << QStringLiteral("%1/%2").arg(p.done).arg(p.total);
                                                       }, &stop);
    EXPECT_FALSE(written.error);
    EXPECT_TRUE(QFile::exists(written.path));
    EXPECT_FALSE(QFile::exists(older));
    EXPECT_EQ(seen, (QStringList{u"0/2"_s, u"1/2"_s, u"0/2"_s, u"1/2"_s, u"2/2"_s}));
}
