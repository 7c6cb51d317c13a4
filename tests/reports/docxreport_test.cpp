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

constexpr int kPortraitTextWidth = 11906 - 2 * 1134;
constexpr int kLandscapeTextWidth = 16838 - 2 * 1134;
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
    for (int r = 0; r < rows; ++r) {
        GridRow row;
        for (int c = 0; c < grid.columnCount(); ++c)
            row.cells.append(QStringLiteral("r%1c%2").arg(r).arg(c));
        grid.appendRow(row);
    }
    return grid;
}

// Every part of the zip file, read with libzip; empty when it is no zip file.
QMap<QString, QByteArray> Unzip(const QString& path)
{
    QMap<QString, QByteArray> parts;
    int error = 0;
    zip_t* archive = zip_open(QFile::encodeName(path).constData(), ZIP_RDONLY | ZIP_CHECKCONS, &error);
    if (!archive)
        return parts;
    for (zip_int64_t i = 0; i < zip_get_num_entries(archive, 0); ++i) {
        zip_stat_t stat;
        zip_file_t* file = nullptr;
        if (zip_stat_index(archive, zip_uint64_t(i), 0, &stat) != 0 || !(file = zip_fopen_index(archive, zip_uint64_t(i), 0)))
            continue;
        QByteArray bytes(qsizetype(stat.size), '\0');
        if (zip_fread(file, bytes.data(), stat.size) == zip_int64_t(stat.size))
            parts.insert(QString::fromUtf8(stat.name), bytes);
        zip_fclose(file);
    }
    zip_discard(archive);
    return parts;
}

// What a word processor would make of document.xml, read with Qt's XML reader.
struct Body {
    QString error;  // the reader's complaint when the XML is not well-formed
    QString title;  // text of the paragraph before the table
    QList<QStringList> rows;
    QList<bool> repeated;  // per row: w:tblHeader
    QList<int> emphasis;   // per row: bold runs and shaded cells
    QList<int> gridColumns, firstRowWidths;  // w:gridCol and the first row's w:tcW
    QString tableWidth, layout, orient;
    int pageWidth = 0, pageHeight = 0;
};

Body ReadBody(const QByteArray& xml)
{
    Body body;
    QXmlStreamReader reader(xml);
    bool inTable = false;
    QString* text = &body.title;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isEndElement() && reader.name() == u"tbl")
            inTable = false;
        if (!reader.isStartElement())
            continue;
        const QStringView name = reader.name();
        const auto attribute = [&](const char* local) {
            return reader.attributes().value(QLatin1String(kMain), QLatin1String(local)).toString();
        };
        if (name == u"tbl") {
            inTable = true;
        } else if (name == u"tr") {
            body.rows.append(QStringList());
            body.repeated.append(false);
            body.emphasis.append(0);
        } else if (name == u"tc") {
            body.rows.last().append(QString());
            text = &body.rows.last().last();
        } else if (name == u"t") {
            // Word trims a text run that does not ask for its blanks to be kept.
            const bool keep = reader.attributes().value(QStringLiteral("xml:space")) == u"preserve";
            const QString run = reader.readElementText();
            *text += keep ? run : run.trimmed();
        } else if (name == u"br" && inTable) {
            *text += u'\n';
        } else if (name == u"tab" && inTable) {
            *text += u'\t';
        } else if (name == u"tblHeader") {
            body.repeated.last() = true;
        } else if ((name == u"b" || name == u"shd") && inTable) {
            ++body.emphasis.last();
        } else if (name == u"gridCol") {
            body.gridColumns.append(attribute("w").toInt());
        } else if (name == u"tcW" && body.rows.size() == 1) {
            body.firstRowWidths.append(attribute("w").toInt());
        } else if (name == u"tblW") {
            body.tableWidth = attribute("type") + u':' + attribute("w");
        } else if (name == u"tblLayout") {
            body.layout = attribute("type");
        } else if (name == u"pgSz") {
            body.pageWidth = attribute("w").toInt();
            body.pageHeight = attribute("h").toInt();
            body.orient = attribute("orient");
        }
    }
    if (reader.hasError())
        body.error = reader.errorString() + QStringLiteral(" at line %1").arg(reader.lineNumber());
    return body;
}

// The error of the first part whose XML is not well-formed; empty when all are.
QString XmlError(const QMap<QString, QByteArray>& parts)
{
    for (auto part = parts.begin(); part != parts.end(); ++part) {
        QXmlStreamReader reader(part.value());
        while (!reader.atEnd())
            reader.readNext();
        if (reader.hasError())
            return part.key() + QStringLiteral(": ") + reader.errorString();
    }
    return {};
}

// The Python with python-docx installed, or empty (Debian's python3-docx goes with the
// system's python3, which may not be the first one on the path).
QString PythonWithDocx()
{
    for (const QString& python :
         {QStringLiteral("/usr/bin/python3"), QStandardPaths::findExecutable(QStringLiteral("python3"))}) {
        QProcess probe;
        probe.start(python, {QStringLiteral("-c"), QStringLiteral("import docx")});
        if (probe.waitForFinished(60000) && probe.exitStatus() == QProcess::NormalExit && probe.exitCode() == 0)
            return python;
    }
    return {};
}

}  // namespace

TEST(DocxReport, TableFollowsTheReportOrderAndSkipsHiddenColumns)
{
    const struct {
        QList<int> hidden;
        QList<int> order;
        QList<int> shown;  // the grid columns expected, left to right
        bool landscape;
    } cases[] = {
        {{}, {0, 1, 2, 3, 4, 5, 6, 7, 8}, {0, 1, 2, 3, 4, 5, 6, 7, 8}, true},
        {{2}, {8, 7, 6, 5, 4, 3, 2, 1, 0}, {8, 7, 6, 5, 4, 3, 1, 0}, true},
        // Seven shown columns turn the page, six keep it upright.
        {{1, 5}, {3, 0, 2, 1, 8, 4, 6, 5, 7}, {3, 0, 2, 8, 4, 6, 7}, true},
        {{1, 5, 8}, {3, 0, 2, 1, 8, 4, 6, 5, 7}, {3, 0, 2, 4, 6, 7}, false},
        {{1, 2, 3, 4, 5, 6, 7}, {8, 0}, {8, 0}, false},
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
        for (const char* name : {"[Content_Types].xml", "_rels/.rels", "word/document.xml", "word/styles.xml",
                                 "word/_rels/document.xml.rels", "docProps/core.xml", "docProps/app.xml"})
            EXPECT_TRUE(parts.contains(QLatin1String(name))) << name;
        EXPECT_EQ(XmlError(parts), QString());
        for (const char* declared : {"/word/document.xml", "/word/styles.xml", "/docProps/core.xml", "/docProps/app.xml"})
            EXPECT_TRUE(parts.value("[Content_Types].xml").contains(declared)) << declared;
        EXPECT_TRUE(parts.value("_rels/.rels").contains("Target=\"word/document.xml\""));
        EXPECT_TRUE(parts.value("docProps/core.xml").contains("<dc:title>15 November 2026</dc:title>"));
        EXPECT_TRUE(parts.value("docProps/core.xml").contains("<dcterms:created xsi:type=\"dcterms:W3CDTF\">20"));
        EXPECT_TRUE(parts.value("docProps/app.xml").contains("<Application>Brindar Pro</Application>"));

        const Body body = ReadBody(parts.value("word/document.xml"));
        ASSERT_EQ(body.error, QString());
        EXPECT_EQ(body.title, kTitle);
        ASSERT_EQ(body.rows.size(), 4);
        QStringList headers;
        for (const int column : c.shown)
            headers << grid.header(column);
        EXPECT_EQ(body.rows[0], headers);
        EXPECT_TRUE(body.rows[0][c.shown.indexOf(0)].startsWith(u"  "));  // padding blanks kept
        for (int r = 0; r < 3; ++r) {
            QStringList cells;
            for (const int column : c.shown)
                cells << QStringLiteral("r%1c%2").arg(r).arg(column);
            EXPECT_EQ(body.rows[r + 1], cells);
        }
        EXPECT_EQ(body.repeated, QList<bool>({true, false, false, false}));
        EXPECT_EQ(body.emphasis, QList<int>({2 * int(c.shown.size()), 0, 0, 0}));

        // The columns share the text width in the grid's proportions (the document column
        // is twice as wide as the others), the same in the grid and in the cells.
        const int textWidth = c.landscape ? kLandscapeTextWidth : kPortraitTextWidth;
        EXPECT_EQ(std::accumulate(body.gridColumns.begin(), body.gridColumns.end(), 0), textWidth);
        EXPECT_EQ(body.firstRowWidths, body.gridColumns);
        const int unit = textWidth / int(c.shown.size() + 1);
        for (qsizetype i = 0; i < c.shown.size(); ++i)
            EXPECT_NEAR(body.gridColumns.value(i), c.shown[i] == 0 ? 2 * unit : unit, c.shown.size()) << i;
        EXPECT_EQ(body.tableWidth, u"pct:5000");
        EXPECT_EQ(body.layout, u"fixed");
        EXPECT_EQ(QList<int>({body.pageWidth, body.pageHeight}),
                  c.landscape ? QList<int>({16838, 11906}) : QList<int>({11906, 16838}));
        EXPECT_EQ(body.orient, c.landscape ? u"landscape" : u"");
    }
}

// Cells as they come from files' metadata: markup characters, controls, line breaks,
// characters beyond the BMP, broken UTF-16 and very long text.
struct Awkward {
    QString cell;
    QString read;  // what a reader gets back
};
const QList<Awkward> kAwkward = {
    {QStringLiteral("<a href=\"x\"> & 'b' ]]>"), QStringLiteral("<a href=\"x\"> & 'b' ]]>")},
    {QStringLiteral("a\x01" "b\x0B" "c\x1F" "d\x7F"), QStringLiteral("a b c d\x7F")},
    {QStringLiteral("one\r\ntwo\rthree\nfour"), QStringLiteral("one\ntwo\nthree\nfour")},
    {QStringLiteral("\ttab\tbed"), QStringLiteral("\ttab\tbed")},
    {QStringLiteral("  two  blanks  "), QStringLiteral("  two  blanks  ")},
    {QStringLiteral("\u00E9t\u00E9 \u6F22\u5B57 \U0001F600"), QStringLiteral("\u00E9t\u00E9 \u6F22\u5B57 \U0001F600")},
    {QString(QChar(0xD800)) + u'x' + QChar(0xDC00) + QChar(0xFFFF) + u'y',
     QStringLiteral(" x  y")},
    {QString(), QString()},
    {QString(200000, u'w'), QString(200000, u'w')},
};
const QString kAwkwardTitle = QStringLiteral("15 <November> & \"2026\"");

GridModel AwkwardGrid()
{
    GridModel grid = Grid(0);
    for (qsizetype i = 0; i < kAwkward.size(); ++i)
        grid.appendRow({{QStringLiteral("row%1").arg(i), kAwkward[i].cell}, false});
    return grid;
}

TEST(DocxReport, AwkwardCellsStayWellFormedAndReadBackAsWritten)
{
    TempFolder folder;
    const QString path = folder.file(QStringLiteral("Awkward.docx"));
    ASSERT_EQ(WriteDocxReport(path, kAwkwardTitle, AwkwardGrid(), {1, 0}), std::nullopt);
    const QMap<QString, QByteArray> parts = Unzip(path);
    EXPECT_EQ(XmlError(parts), QString());
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
        EXPECT_EQ(body.rows[i + 1], QStringList({kAwkward[i].read, QStringLiteral("row%1").arg(i)})) << i;
}

TEST(DocxReport, PythonDocxReadsTheTitleAndTheTable)
{
    const QString python = PythonWithDocx();
    if (python.isEmpty())
        GTEST_SKIP() << "python3-docx is not installed";
    TempFolder folder;
    const QString path = folder.file(QStringLiteral("Awkward.docx"));
    GridModel grid = AwkwardGrid();
    grid.setWidth(3, 0);  // eight shown columns: landscape
    ASSERT_EQ(WriteDocxReport(path, kAwkwardTitle, grid, {8, 7, 6, 5, 4, 3, 2, 1, 0}), std::nullopt);

    QProcess read;
    read.start(python, {QStringLiteral("-c"), QStringLiteral(R"(
import docx, json, sys
d = docx.Document(sys.argv[1])
s = d.sections[0]
print(json.dumps({"title": d.core_properties.title, "first": d.paragraphs[0].text,
                  "style": d.paragraphs[0].style.name, "tables": len(d.tables),
                  "landscape": s.orientation == docx.enum.section.WD_ORIENT.LANDSCAPE,
                  "wider": s.page_width > s.page_height,
                  "rows": [[c.text for c in r.cells] for r in d.tables[0].rows]}))
)"),
                        path});
    ASSERT_TRUE(read.waitForFinished(120000));
    ASSERT_EQ(read.exitCode(), 0) << read.readAllStandardError().toStdString();
    const QJsonObject got = QJsonDocument::fromJson(read.readAllStandardOutput()).object();
    EXPECT_EQ(got.value("title").toString(), kAwkwardTitle);
    EXPECT_EQ(got.value("first").toString(), kAwkwardTitle);
    EXPECT_EQ(got.value("style").toString(), u"Title");
    EXPECT_EQ(got.value("tables").toInt(), 1);
    EXPECT_TRUE(got.value("landscape").toBool());
    EXPECT_TRUE(got.value("wider").toBool());
    const QJsonArray rows = got.value("rows").toArray();
    ASSERT_EQ(rows.size(), kAwkward.size() + 1);
    QStringList headers;
    for (const int column : {8, 7, 6, 5, 4, 2, 1, 0})
        headers << grid.header(column);
    EXPECT_EQ(rows[0].toVariant().toStringList(), headers);
    for (qsizetype i = 0; i < kAwkward.size(); ++i)
        EXPECT_EQ(rows[i + 1].toVariant().toStringList(),
                  QStringList({"", "", "", "", "", "", kAwkward[i].read, QStringLiteral("row%1").arg(i)}))
            << i;
}

TEST(DocxReport, LibreOfficeConvertsTheReportToPdf)
{
    QString office = QStandardPaths::findExecutable(QStringLiteral("libreoffice"));
    if (office.isEmpty())
        office = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (office.isEmpty())
        GTEST_SKIP() << "LibreOffice is not installed";
    TempFolder folder;
    const QString path = folder.file(QStringLiteral("Report.docx"));
    GridModel grid = Grid(150);
    grid.appendRows({{{QStringLiteral("<&>"), QStringLiteral("a\r\nb"), QStringLiteral("\x01")}, false}});
    ASSERT_EQ(WriteDocxReport(path, kTitle, grid, {0, 1, 2, 3, 4, 5, 6, 7, 8}), std::nullopt);

    QProcess convert;
    convert.setWorkingDirectory(folder.path());
    // A profile of its own, so runs side by side do not wait for each other's lock.
    convert.start(office, {QStringLiteral("-env:UserInstallation=file://") + folder.path() + QStringLiteral("/profile"),
                           QStringLiteral("--headless"), QStringLiteral("--convert-to"), QStringLiteral("pdf"),
                           QStringLiteral("--outdir"), folder.path() + QStringLiteral("/pdf"), path});
    if (!convert.waitForFinished(120000)) {
        convert.kill();
        convert.waitForFinished();
        FAIL() << "LibreOffice did not finish within two minutes";
    }
    EXPECT_EQ(convert.exitCode(), 0) << convert.readAllStandardError().toStdString();
    const QString pdfPath = folder.path() + QStringLiteral("/pdf/Report.pdf");
    const QByteArray pdf = ReadFile(pdfPath);
    ASSERT_FALSE(pdf.isEmpty()) << convert.readAllStandardOutput().toStdString();
    // LibreOffice carried the core title over and laid 151 rows out on A4 landscape pages.
    const PdfInfo info = ReadPdfInfo(pdfPath);
    EXPECT_TRUE(info.isPdf);
    EXPECT_EQ(info.title, kTitle);
    EXPECT_GE(info.pages.toInt(), 3);
    const QRegularExpression box(QStringLiteral(R"(/MediaBox\s*\[\s*0 0 ([0-9.]+) ([0-9.]+)\s*\])"));
    int boxes = 0;
    for (const QRegularExpressionMatch& size : box.globalMatch(QString::fromLatin1(pdf))) {
        ++boxes;
        EXPECT_NEAR(size.captured(1).toDouble(), 841.9, 1) << "not landscape A4";
        EXPECT_NEAR(size.captured(2).toDouble(), 595.3, 1) << "not landscape A4";
    }
    EXPECT_GE(boxes, 1);

    // With poppler's pdftotext at hand: the header row opens the second page too.
    const QString pdftotext = QStandardPaths::findExecutable(QStringLiteral("pdftotext"));
    if (pdftotext.isEmpty())
        return;
    QProcess text;
    text.start(pdftotext, {QStringLiteral("-f"), QStringLiteral("2"), QStringLiteral("-l"), QStringLiteral("2"),
                           pdfPath, QStringLiteral("-")});
    ASSERT_TRUE(text.waitForFinished(60000));
    const QString page = QString::fromUtf8(text.readAllStandardOutput());
    EXPECT_TRUE(page.contains(u"Company") && page.contains(u"Document")) << page.left(400).toStdString();
    EXPECT_FALSE(page.contains(u"r0c0"));
}

TEST(DocxReport, BigAndEmptyGridsAndFailedWrites)
{
    TempFolder folder;
    // 100,000 rows in one pass: every row arrives, in order.
    GridModel big = Grid(0);
    QList<GridRow> rows;
    for (int r = 0; r < 100000; ++r)
        rows.append({{QStringLiteral("file%1.doc").arg(r), QStringLiteral("title %1").arg(r)}, true});
    big.appendRows(rows);
    const QString bigPath = folder.file(QStringLiteral("Big.docx"));
    ASSERT_EQ(WriteDocxReport(bigPath, kTitle, big, {1, 0}), std::nullopt);
    const Body body = ReadBody(Unzip(bigPath).value("word/document.xml"));
    ASSERT_EQ(body.error, QString());
    ASSERT_EQ(body.rows.size(), 100001);
    EXPECT_EQ(body.rows[1], QStringList({"title 0", "file0.doc"}));
    EXPECT_EQ(body.rows[100000], QStringList({"title 99999", "file99999.doc"}));

    // No shown column: the title alone, on an upright page.
    const QString emptyPath = folder.file(QStringLiteral("Empty.docx"));
    ASSERT_EQ(WriteDocxReport(emptyPath, kTitle, big, {}), std::nullopt);
    const Body empty = ReadBody(Unzip(emptyPath).value("word/document.xml"));
    EXPECT_EQ(QList<QVariant>({empty.error, empty.title, empty.rows.size(), empty.pageWidth}),
              QList<QVariant>({QString(), kTitle, 0, 11906}));

    // A missing folder is not created; a target that is a folder stays one; neither
    // leaves a temporary file behind.
    const GridModel grid = Grid(2);
    const QString missing = folder.file(QStringLiteral("no such folder/Report.docx"));
    const std::optional<QString> reason = WriteDocxReport(missing, kTitle, grid, {0});
    ASSERT_TRUE(reason.has_value());
    EXPECT_TRUE(reason->contains(missing)) << reason->toStdString();
    EXPECT_FALSE(QFileInfo::exists(folder.file(QStringLiteral("no such folder"))));

    const QString taken = folder.write(QStringLiteral("Taken.docx/inside"), "kept");
    EXPECT_NE(WriteDocxReport(folder.file(QStringLiteral("Taken.docx")), kTitle, grid, {0}), std::nullopt);
    EXPECT_EQ(ReadFile(taken), "kept");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList({"Big.docx", "Empty.docx", "Taken.docx"}));
}
