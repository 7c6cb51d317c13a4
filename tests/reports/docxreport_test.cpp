// The word-processor report read back by libzip and Qt's XML reader, python-docx and LibreOffice.
#include "reports/docxreport.h"

#include "core/configuration.h"
#include "core/inifile.h"
#include "core/language.h"
#include "readers/pdfreader.h"

#include "support/tempfolder.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QXmlStreamReader>
#include <gtest/gtest.h>
#include <numeric>
#include <zip.h>

using namespace brindar;
using brindar::test::ReadFile;
using brindar::test::TempFolder;

namespace {

const QString kTitle = QStringLiteral("15 November 2026");
constexpr const char* kMain = "http://schemas.openxmlformats.org/wordprocessingml/2006/main";

// Document, Title, Author, Subject, Keywords, Template, Comments, Pages, Company: nine
// columns, each cell "rRcC".
GridModel Grid(int rows)
{
    GridModel grid(BuildColumns(IniDocument("[Proprietes]\r\nTitre=1\r\nAuteur=1\r\nSujet=1\r\nMotsCles=1\r\n"
                                            "Modele=1\r\nCommentaires=1\r\nPages=1\r\nCompagnie=1\r\n"),
                                Captions::English(), true),
                   ReadConfiguration(IniDocument(""), true));
    QList<GridRow> cells(rows);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < grid.columnCount(); ++c)
            cells[r].cells.append(QStringLiteral("r%1c%2").arg(r).arg(c));
    grid.appendRows(cells);
    return grid;
}

// Every part of the zip file, read with libzip; empty when it is no zip file.
QMap<QString, QByteArray> Unzip(const QString& path)
{
    QMap<QString, QByteArray> parts;
    zip_t* archive = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY | ZIP_CHECKCONS, nullptr);
    for (zip_uint64_t i = 0; archive && i < zip_uint64_t(zip_get_num_entries(archive, 0)); ++i) {
        zip_stat_t stat;
        zip_file_t* file = zip_stat_index(archive, i, 0, &stat) == 0 ? zip_fopen_index(archive, i, 0) : nullptr;
        QByteArray bytes(file ? qsizetype(stat.size) : 0, '\0');
        if (file && zip_fread(file, bytes.data(), stat.size) == zip_int64_t(stat.size))
            parts.insert(QString::fromUtf8(stat.name), bytes);
        if (file)
            zip_fclose(file);
    }
    if (archive)
        zip_discard(archive);
    return parts;
}

// What a word processor would make of document.xml, read with Qt's XML reader.
struct Body {
    QString error;  // the reader's complaint when the XML is not well-formed
    QString title;  // text of the paragraph before the table
    QList<QStringList> rows;
    QList<int> emphasis;  // per row: bold runs, shaded cells and w:tblHeader (repeated on each page)
    QList<int> gridColumns, firstRowWidths;  // w:gridCol and the first row's w:tcW
    QStringList page;                        // w:pgSz w, h and orient
};

Body ReadBody(const QByteArray& xml)
{
    Body body;
    QXmlStreamReader reader(xml);
    QString* text = &body.title;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QStringView name = reader.name();
        const auto attribute = [&](const char* local) {
            return reader.attributes().value(QLatin1String(kMain), QLatin1String(local)).toString();
        };
        if (name == u"tr") {
            body.rows.append(QStringList());
            body.emphasis.append(0);
        } else if (name == u"tc") {
            body.rows.last().append(QString());
            text = &body.rows.last().last();
        } else if (name == u"t") {
            // Word trims a text run that does not ask for its blanks to be kept.
            const bool keep = reader.attributes().value(QStringLiteral("xml:space")) == u"preserve";
            const QString run = reader.readElementText();
            *text += keep ? run : run.trimmed();
        } else if (name == u"br" || name == u"tab") {
            *text += name == u"br" ? u'\n' : u'\t';
        } else if ((name == u"b" || name == u"shd" || name == u"tblHeader") && !body.rows.isEmpty()) {
            ++body.emphasis.last();
        } else if (name == u"gridCol" || (name == u"tcW" && body.rows.size() == 1)) {
            (name == u"tcW" ? body.firstRowWidths : body.gridColumns).append(attribute("w").toInt());
        } else if (name == u"pgSz") {
            body.page = {attribute("w"), attribute("h"), attribute("orient")};
        }
    }
    if (reader.hasError())
        body.error = reader.errorString() + QStringLiteral(" at line %1").arg(reader.lineNumber());
    return body;
}

// Cells as they come from files' metadata: markup characters, controls, line breaks,
// characters beyond the BMP, broken UTF-16 and very long text; and what a reader gets back.
const QList<QStringList> kAwkward = {
    {QStringLiteral("<a href=\"x\"> & 'b' ]]>"), QStringLiteral("<a href=\"x\"> & 'b' ]]>")},
    {QStringLiteral("a\x01" "b\x0B" "c\x1F" "d\x7F"), QStringLiteral("a b c d\x7F")},
    {QStringLiteral("one\r\ntwo\rthree\nfour"), QStringLiteral("one\ntwo\nthree\nfour")},
    {QStringLiteral("\ttab\tbed"), QStringLiteral("\ttab\tbed")},
    {QStringLiteral("  two  blanks  "), QStringLiteral("  two  blanks  ")},
    {QStringLiteral("\u00E9t\u00E9 \u6F22\u5B57 \U0001F600"), QStringLiteral("\u00E9t\u00E9 \u6F22\u5B57 \U0001F600")},
    {QString(QChar(0xD800)) + u'x' + QChar(0xDC00) + QChar(0xFFFF) + u'y', QStringLiteral(" x  y")},
    {QString(), QString()},
    {QString(200000, u'w'), QString(200000, u'w')},
};
const QString kAwkwardTitle = QStringLiteral("15 <November> & \"2026\"");

GridModel AwkwardGrid()
{
    GridModel grid = Grid(0);
    for (qsizetype i = 0; i < kAwkward.size(); ++i)
        grid.appendRow({{QStringLiteral("row%1").arg(i), kAwkward[i][0]}, false});
    return grid;
}

// Empty when `program` ran to a clean end within two minutes, else why not.
QString RunTool(const QString& program, const QStringList& arguments, QProcess& process)
{
    process.start(program, arguments);
    const bool done = process.waitForFinished(120000);
    return done && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0
               ? QString()
               : program + QStringLiteral(" failed: ") + QString::fromUtf8(process.readAllStandardError());
}

}  // namespace

TEST(DocxReport, TableFollowsTheReportOrderAndSkipsHiddenColumns)
{
    const struct {
        QList<int> hidden, order;
        QList<int> shown;  // the grid columns expected, left to right
        bool landscape;
    } cases[] = {
        {{2}, {8, 7, 6, 5, 4, 3, 2, 1, 0}, {8, 7, 6, 5, 4, 3, 1, 0}, true},
        // Seven shown columns turn the page, six keep it upright.
        {{1, 5}, {3, 0, 2, 1, 8, 4, 6, 5, 7}, {3, 0, 2, 8, 4, 6, 7}, true},
        {{1, 5, 8}, {3, 0, 2, 1, 8, 4, 6, 5, 7}, {3, 0, 2, 4, 6, 7}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "case " << &c - cases);
        GridModel grid = Grid(3);
        for (const int column : c.hidden)
            grid.setWidth(column, 0);
        TempFolder folder;
        const QString path = folder.write(QStringLiteral("Report.docx"), "an older report");
        ASSERT_EQ(WriteDocxReport(path, kTitle, grid, c.order), std::nullopt);

        const QMap<QString, QByteArray> parts = Unzip(path);
        EXPECT_EQ(parts.keys(), QStringList({"[Content_Types].xml", "_rels/.rels", "docProps/app.xml", "docProps/core.xml",
                                             "word/_rels/document.xml.rels", "word/document.xml", "word/styles.xml"}));
        for (auto part = parts.begin(); part != parts.end(); ++part)
            EXPECT_EQ(ReadBody(part.value()).error, QString()) << part.key().toStdString();
        EXPECT_TRUE(parts.value("docProps/core.xml").contains("<dcterms:created xsi:type=\"dcterms:W3CDTF\">20"));

        const Body body = ReadBody(parts.value("word/document.xml"));
        ASSERT_EQ(body.error, QString());
        EXPECT_EQ(body.title, kTitle);
        ASSERT_EQ(body.rows.size(), 4);
        for (int r = -1; r < 3; ++r) {
            QStringList cells;
            for (const int column : c.shown)
                cells << (r < 0 ? grid.header(column) : QStringLiteral("r%1c%2").arg(r).arg(column));
            EXPECT_EQ(body.rows[r + 1], cells);
        }
        EXPECT_TRUE(body.rows[0][c.shown.indexOf(0)].startsWith(u"  "));  // padding blanks kept
        EXPECT_EQ(body.emphasis, QList<int>({2 * int(c.shown.size()) + 1, 0, 0, 0}));

        // A4 less 2 cm margins, the same in the table grid and in the cells.
        const int textWidth = (c.landscape ? 16838 : 11906) - 2 * 1134;
        EXPECT_EQ(std::accumulate(body.gridColumns.begin(), body.gridColumns.end(), 0), textWidth);
        EXPECT_EQ(body.firstRowWidths, body.gridColumns);
        EXPECT_EQ(body.page, c.landscape ? QStringList({"16838", "11906", "landscape"}) : QStringList({"11906", "16838", ""}));
    }
}

TEST(DocxReport, AwkwardCellsEmptyGridsAndFailedWrites)
{
    TempFolder folder;
    const GridModel big = AwkwardGrid();
    const QString bigPath = folder.file(QStringLiteral("Big.docx"));
    ASSERT_EQ(WriteDocxReport(bigPath, kAwkwardTitle, big, {1, 0}), std::nullopt);
    const QMap<QString, QByteArray> parts = Unzip(bigPath);
    EXPECT_EQ(ReadBody(parts.value("docProps/core.xml")).error, QString());
    const QByteArray xml = parts.value("word/document.xml");
    EXPECT_TRUE(xml.contains("&lt;a href=&quot;x&quot;&gt; &amp; 'b' ]]&gt;"));
    for (char control = 0; control < 0x20; ++control)
        EXPECT_EQ(xml.indexOf(control, xml.indexOf("<w:body>")), -1) << int(control);
    EXPECT_TRUE(parts.value("docProps/core.xml").contains("<dc:title>15 &lt;November&gt; &amp; &quot;2026&quot;</dc:title>"));

    const Body body = ReadBody(xml);
    ASSERT_EQ(body.error, QString());
    EXPECT_EQ(body.title, kAwkwardTitle);
    ASSERT_EQ(body.rows.size(), kAwkward.size() + 1);
    for (qsizetype i = 0; i < kAwkward.size(); ++i)
        EXPECT_EQ(body.rows[i + 1], QStringList({kAwkward[i][1], QStringLiteral("row%1").arg(i)})) << i;

    // No shown column: the title alone, on an upright page.
    const QString emptyPath = folder.file(QStringLiteral("Empty.docx"));
    ASSERT_EQ(WriteDocxReport(emptyPath, kTitle, big, {}), std::nullopt);
    const Body empty = ReadBody(Unzip(emptyPath).value("word/document.xml"));
    EXPECT_EQ(QList<QVariant>({empty.error, empty.title, empty.rows.size(), empty.page.value(0)}),
              QList<QVariant>({QString(), kTitle, 0, "11906"}));

    // A missing folder is not created; a target that is a folder stays one; neither
    // leaves a temporary file behind.
    const QString missing = folder.file(QStringLiteral("no such folder/Report.docx"));
    EXPECT_TRUE(WriteDocxReport(missing, kTitle, big, {0}).value_or(QString()).contains(missing));
    const QString taken = folder.write(QStringLiteral("Taken.docx/inside"), "kept");
    EXPECT_NE(WriteDocxReport(folder.file(QStringLiteral("Taken.docx")), kTitle, big, {0}), std::nullopt);
    EXPECT_EQ(ReadFile(taken), "kept");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList({"Big.docx", "Empty.docx", "Taken.docx"}));
}

TEST(DocxReport, PythonDocxReadsTheTitleAndTheTable)
{
    // Debian's python3-docx goes with the system's python3, maybe not the first on the path.
    QString python;
    QProcess read;
    for (const QString& candidate : {QStringLiteral("/usr/bin/python3"), QStandardPaths::findExecutable("python3")})
        if (python.isEmpty() && RunTool(candidate, {"-c", "import docx"}, read).isEmpty())
            python = candidate;
    if (python.isEmpty())
        GTEST_SKIP() << "python3-docx is not installed";
    TempFolder folder;
    const QString path = folder.file(QStringLiteral("Awkward.docx"));
    GridModel grid = AwkwardGrid();
    grid.setWidth(3, 0);  // eight shown columns: landscape
    ASSERT_EQ(WriteDocxReport(path, kAwkwardTitle, grid, {8, 7, 6, 5, 4, 3, 2, 1, 0}), std::nullopt);

    ASSERT_EQ(RunTool(python, {"-c", R"(
import docx, json, sys
d = docx.Document(sys.argv[1])
s = d.sections[0]
print(json.dumps({"title": d.core_properties.title, "first": d.paragraphs[0].text,
                  "style": d.paragraphs[0].style.name, "tables": len(d.tables),
                  "landscape": s.orientation == docx.enum.section.WD_ORIENT.LANDSCAPE,
                  "wider": s.page_width > s.page_height,
                  "rows": [[c.text for c in r.cells] for r in d.tables[0].rows]}))
)", path}, read), QString());
    QStringList headers;
    for (const int column : {8, 7, 6, 5, 4, 2, 1, 0})
        headers << grid.header(column);
    QJsonArray rows = {QJsonArray::fromStringList(headers)};
    for (qsizetype i = 0; i < kAwkward.size(); ++i)
        rows.append(QJsonArray::fromStringList({"", "", "", "", "", "", kAwkward[i][1], QStringLiteral("row%1").arg(i)}));
    const QJsonObject expected = {{"title", kAwkwardTitle}, {"first", kAwkwardTitle}, {"style", "Title"}, {"tables", 1},
                                  {"landscape", true},      {"wider", true},          {"rows", rows}};
    EXPECT_EQ(QString::fromUtf8(QJsonDocument::fromJson(read.readAllStandardOutput()).toJson()),
              QString::fromUtf8(QJsonDocument(expected).toJson()));
}

TEST(DocxReport, LibreOfficeConvertsTheReportToPdf)
{
    QString office = QStandardPaths::findExecutable("libreoffice");
    if (office.isEmpty() && (office = QStandardPaths::findExecutable("soffice")).isEmpty())
        GTEST_SKIP() << "LibreOffice is not installed";
    TempFolder folder;
    const QString path = folder.file(QStringLiteral("Report.docx"));
    GridModel grid = Grid(150);
    grid.appendRows({{{QStringLiteral("<&>"), QStringLiteral("a\r\nb"), QStringLiteral("\x01")}, false}});
    ASSERT_EQ(WriteDocxReport(path, kTitle, grid, {0, 1, 2, 3, 4, 5, 6, 7, 8}), std::nullopt);

    // A profile of its own, so runs side by side do not wait for each other's lock.
    QProcess convert;
    EXPECT_EQ(RunTool(office, {"-env:UserInstallation=file://" + folder.path() + "/profile", "--headless", "--convert-to",
                               "pdf", "--outdir", folder.path() + "/pdf", path}, convert), QString());
    const QString pdfPath = folder.path() + QStringLiteral("/pdf/Report.pdf");
    const QString pdf = QString::fromLatin1(ReadFile(pdfPath));
    ASSERT_FALSE(pdf.isEmpty()) << convert.readAllStandardOutput().toStdString();
    // LibreOffice carried the core title over and laid 151 rows out on A4 landscape pages
    // (841.9 x 595.3 points).
    const PdfInfo info = ReadPdfInfo(pdfPath);
    EXPECT_EQ(QList<QVariant>({info.isPdf, info.title, info.pages.toInt() >= 3}), QList<QVariant>({true, kTitle, true}));
    const qsizetype boxes = pdf.count(QRegularExpression(QStringLiteral(R"(/MediaBox\s*\[)")));
    EXPECT_GE(boxes, 1);
    EXPECT_EQ(pdf.count(QRegularExpression(QStringLiteral(R"(/MediaBox\s*\[\s*0 0 84[12](\.\d+)? 59[456](\.\d+)?\s*\])"))),
              boxes) << "not landscape A4";
}
