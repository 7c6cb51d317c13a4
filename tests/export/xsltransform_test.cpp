// The XSL step: batch transformation, viewer file names, the SVG page, and the wording of every failure.
#include "export/xmlviewer.h"
#include "export/xsltransform.h"

#include "support/tempfolder.h"
#include "version.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

#include <thread>

using namespace brindar;
using brindar::test::ReadFile;
using brindar::test::TempFolder;

namespace {

const Captions& English() { return Captions::English(); }

const QByteArray kProlog = "<?xml version=\"1.0\"?>\n";

// The stylesheet element opens line 2 of the file, so `body` starts on line 3.
QByteArray Stylesheet(const QByteArray& body, const QByteArray& before = {}, const QByteArray& after = {},
                      const QByteArray& prolog = kProlog)
{
    return prolog + before + "<xsl:stylesheet version=\"1.0\" xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\">\n" +
           body + "\n</xsl:stylesheet>\n" + after;
}

QByteArray TextStylesheet(const QByteArray& templateBody, const QByteArray& prolog = kProlog)
{
    return Stylesheet("<xsl:output method=\"text\" encoding=\"UTF-8\"/>\n<xsl:template match=\"/\">" + templateBody +
                          "</xsl:template>", {}, {}, prolog);
}

// An export as the program writes it: Windows-1252 bytes under an ISO-8859-1 declaration.
const QByteArray kExport = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n"
                           "<involume>\r\n<dir><name>Docs</name>\r\n<file><name>a.pdf</name></file>\r\n</dir>\r\n</involume>\r\n";

const QByteArray kListXsl = Stylesheet(
    "<xsl:output method=\"html\" encoding=\"UTF-8\"/>\n"
    "<xsl:template match=\"/\"><html><body><p><xsl:value-of select=\"//dir/name\"/>: "
    "<xsl:value-of select=\"//file/name\"/></p></body></html></xsl:template>");
const QByteArray kListOutput = "<html><body><p>Docs: a.pdf</p></body></html>\n\r\n";

QStringList Files(const TempFolder& folder) { return QDir(folder.path()).entryList(QDir::Files, QDir::Name); }

}  // namespace

TEST(XslTransform, BatchWritesTheResultAndReplacesTheOldOutput)
{
    TempFolder folder;
    const QString xml = folder.write(QStringLiteral("exp.xml"), kExport);
    const QString output = folder.write(QStringLiteral("out/report.htm"), QByteArray(5000, 'x'));
    EXPECT_EQ(TransformXmlFile(folder.write(QStringLiteral("list.xsl"), kListXsl), xml, output, English()), std::nullopt);
    EXPECT_EQ(ReadFile(output), kListOutput);

    // Windows-1252 bytes under ISO-8859-1 in both documents: 0x80 is the euro sign, 0x81 loads.
    const QString w = folder.write(QStringLiteral("w.xml"), "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<a>\x80\x81\xE9</a>\n");
    const QString wXsl = folder.write(QStringLiteral("w.xsl"), TextStylesheet("[\x80]<xsl:value-of select=\"a\"/>",
                                                                              "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n"));
    EXPECT_EQ(TransformXmlFile(wXsl, w, output, English()), std::nullopt);
    EXPECT_EQ(ReadFile(output), "[\xE2\x82\xAC]\xE2\x82\xAC\xC2\x81\xC3\xA9\r\n");

    // Stylesheets named relatively from a folder with a blank, and msxsl:node-set of the
    // Windows parser.
    folder.write(QStringLiteral("my xsl/common.xsl"),
                 Stylesheet("<xsl:template name=\"n\"><xsl:param name=\"v\"/>[<xsl:value-of select=\"$v\"/>]</xsl:template>"));
    const QString main = folder.write(
        QStringLiteral("my xsl/main.xsl"),
        Stylesheet("<xsl:include href=\"common.xsl\"/><xsl:output method=\"text\"/>\n"
                   "<xsl:variable name=\"t\"><i>x</i><i>y</i></xsl:variable>\n"
                   "<xsl:template match=\"/\"><xsl:for-each select=\"msxsl:node-set($t)/i\" "
                   "xmlns:msxsl=\"urn:schemas-microsoft-com:xslt\"><xsl:call-template name=\"n\">"
                   "<xsl:with-param name=\"v\" select=\".\"/></xsl:call-template></xsl:for-each></xsl:template>"));
    EXPECT_EQ(TransformXmlFile(main, xml, output, English()), std::nullopt);
    EXPECT_EQ(ReadFile(output), "[x][y]\r\n");
}

TEST(XslTransform, ViewerNamesItsOutputAfterBothFiles)
{
    // The last top-level "extension=" comment wins, trimmed of tabs and line ends.
    const QByteArray svgXsl = Stylesheet("<xsl:output method=\"xml\" encoding=\"UTF-8\" omit-xml-declaration=\"yes\"/>\n"
                                         "<xsl:template match=\"/\"><svg/></xsl:template>",
                                         "<!-- extension=png -->\n", "<!--\textension= svg \n-->\n");
    const struct {
        const char *xml, *xsl;
        QByteArray xslBytes;
        QStringList written;  // first the output, then the page
        QByteArray output;
    } rows[] = {
        {"my.export.xml", "two.dots.xsl", kListXsl, {"my.export {two.dots}.htm"}, kListOutput},
        {"exp.xml", "chart.xsl", svgXsl, {"exp {chart}.svg", "exp {chart}.htm"}, "<svg/>\n\r\n"},
        {"exp.xml", "upper.xsl", QByteArray(svgXsl).replace("svg \n", "SVG \n"), {"exp {upper}.SVG", "exp {upper}.htm"},
         "<svg/>\n\r\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.xsl);
        TempFolder repository;
        repository.write(QLatin1String(row.xml), kExport);
        repository.write(QLatin1String(row.xsl), row.xslBytes);
        QStringList steps, written;
        const ViewerOutcome outcome = RunXmlViewer(repository.path(), QLatin1String(row.xml), QLatin1String(row.xsl),
                                                   English(), [&](const QString& text) { steps << text; });
        ASSERT_FALSE(outcome.failure) << outcome.failure->text.toStdString();
        for (const QString& name : row.written)
            written << repository.file(name);
        EXPECT_EQ(outcome.written, written);
        EXPECT_EQ(outcome.displayPath, written.back());
        EXPECT_EQ(repository.read(row.written.front()), row.output);
        EXPECT_EQ(steps, QStringList({"Parsing XSL file. Please wait...", "Parsing XML file. Please wait...",
                                      "Applying XSL transformation. Please wait...", "Processing complete. Displaying..."}));
        if (row.written.size() == 2) {
            EXPECT_EQ(repository.read(row.written.back()),
                      "<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.0 Transitional//EN\">\r\n<HTML>\r\n<HEAD></HEAD>\r\n"
                      "<BODY>\r\n<OBJECT data=\"" + row.written.front().toUtf8() +
                          "\" height=\"16300\" width=\"980\" type=\"image/svg-xml\">\r\n</OBJECT>\r\n</BODY>\r\n</HTML>\r\n");
        }
    }

    // "<none>" shows the export itself and writes nothing; a missing export is a validation message.
    TempFolder repository;
    repository.write(QStringLiteral("exp.xml"), kExport);
    ViewerOutcome outcome = RunXmlViewer(repository.path(), QStringLiteral("exp.xml"), QStringLiteral("<none>"), English());
    EXPECT_EQ(outcome.displayPath, repository.file(QStringLiteral("exp.xml")));
    EXPECT_TRUE(outcome.written.isEmpty() && !outcome.failure);
    EXPECT_EQ(Files(repository), QStringList{QStringLiteral("exp.xml")});
    outcome = RunXmlViewer(repository.path(), QStringLiteral("gone.xml"), QStringLiteral("list.xsl"), English());
    ASSERT_TRUE(outcome.failure);
    EXPECT_EQ(outcome.failure->title, QLatin1String(kProgramTitle) + QStringLiteral(" - ") + QLatin1String(kProgramVersion));
    EXPECT_EQ(outcome.failure->text, QStringLiteral("XML export file unknown:\r\ngone.xml"));
    EXPECT_FALSE(outcome.failure->critical);
    EXPECT_TRUE(outcome.displayPath.isEmpty());
}

// Every failure, in the batch and in the viewer: title, the lines of the message, and no
// output file. %XSL% and %XML% stand for the first line's file, which the two modes name
// differently; %DIR% for the test's folder.
TEST(XslTransform, FailuresAreWordedAndLeaveNoOutput)
{
    const QByteArray dtdDocument = "<?xml version=\"1.0\"?>\n<!DOCTYPE a [\n<!ELEMENT a (b)>\n<!ELEMENT b EMPTY>\n]>\n"
                                   "<a>\n  <c/>\n</a>\n";
    const struct {
        const char* name;
        QByteArray xsl, xml;
        int title;
        const char* text;
    } rows[] = {
        {"xsl not well-formed", Stylesheet("<xsl:template match=\"/\">\n  <p>\xC3\xA9</q>\n</xsl:template>"), kExport, 45,
         "XSL file: %XSL%\r\nXML parser error 76\r\nOpening and ending tag mismatch: p line 4 and q line: 4 col: 11 text:   <p>\u00E9</q>"},
        // The source line is decoded in the document's own encoding.
        {"another encoding", "<?xml version=\"1.0\" encoding=\"ISO-8859-15\"?>\n<a>\n<b>\xA4</c>\n</a>\n", kExport, 45,
         "XSL file: %XSL%\r\nXML parser error 76\r\nOpening and ending tag mismatch: b line 3 and c line: 3 col: 9 text: <b>\u20AC</c>"},
        // A warning of libxslt refuses the stylesheet too.
        {"unknown xsl element", Stylesheet("<xsl:template match=\"/\">\n  <xsl:foo/>\n</xsl:template>"), kExport, 45,
         "XSL file: %XSL%\r\nXSLT compilation error\r\nxsltStylePreCompute: unknown xsl:foo line: 4 col: 0 text:   <xsl:foo/>"},
        {"export stopped half-way", kListXsl,
         "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n<involume>\r\n<dir><name>\xC9t\xE9</name>\r\n<file><name>\x80</name></file>",
         46, "XML file: %XML%\r\nXML parser error 77\r\nPremature end of data in tag dir line 3 line: 4 col: 28 text: "
             "<file><name>\u20AC</name></file>"},
        {"dtd violated", kListXsl, dtdDocument, 46,
         "XML file: %XML%\r\nDTD validation error 534\r\nNo declaration for element c line: 7 col: 7 text:   <c/>"},
        {"missing xml", kListXsl, {}, 46, "XML file: %XML%\r\nI/O error\r\nNo such file or directory line: 0 col: 0 text: "},
        {"xsl:message terminate", TextStylesheet("x<xsl:message>note</xsl:message><xsl:message terminate=\"yes\">Stop "
                                                 "here</xsl:message>"),
         kExport, 33, "XSLT transformation stopped by xsl:message\r\nStop here line: 0 col: 0 text: "},
        {"unknown function", Stylesheet("<xsl:template match=\"/\">\n<xsl:message>note</xsl:message><xsl:value-of "
                                        "select=\"foo()\"/></xsl:template>"),
         kExport, 33,
         "XSLT runtime error\r\nxmlXPathCompOpEval: function foo not found; Unregistered function; XPath evaluation returned "
         "no result. line: 4 col: 0 text: <xsl:message>note</xsl:message><xsl:value-of select=\"foo()\"/></xsl:template>"},
        {"writing a file", TextStylesheet("<xsl:document href=\"%DIR%/evil.txt\">x</xsl:document>"), kExport, 33,
         "XSLT runtime error\r\nFile write for %DIR%/evil.txt refused line: 4 col: 0 text: <xsl:template "
         "match=\"/\"><xsl:document href=\"%DIR%/evil.txt\">x</xsl:document></xsl:template>"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        TempFolder folder;
        const QString xsl = folder.write(QStringLiteral("t.xsl"), QByteArray(row.xsl).replace("%DIR%", folder.path().toUtf8()));
        QString text = QString::fromUtf8(row.text).replace(QLatin1String("%DIR%"), folder.path());
        const QString xml = row.xml.isEmpty() ? folder.file(QStringLiteral("exp.xml")) : folder.write(QStringLiteral("exp.xml"), row.xml);
        const QString output = folder.write(QStringLiteral("old.htm"), "old");
        const auto failure = TransformXmlFile(xsl, xml, output, English());
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->title, English().text(CaptionSection::Xml, row.title));
        EXPECT_EQ(failure->text, QString(text).replace(QLatin1String("%XSL%"), xsl).replace(QLatin1String("%XML%"), xml));
        EXPECT_TRUE(failure->critical);
        EXPECT_FALSE(QFile::exists(output));
        EXPECT_FALSE(QFile::exists(folder.file(QStringLiteral("evil.txt"))));

        if (row.xml.isEmpty())
            continue;  // the viewer never gets that far without its export
        const ViewerOutcome outcome = RunXmlViewer(folder.path(), QStringLiteral("exp.xml"), QStringLiteral("t.xsl"), English());
        ASSERT_TRUE(outcome.failure);
        EXPECT_EQ(outcome.failure->title, English().text(CaptionSection::Xml, row.title));
        EXPECT_EQ(outcome.failure->text, text.replace(QLatin1String("%XSL%"), folder.path() + QStringLiteral("/t.xsl"))
                                             .replace(QLatin1String("%XML%"), QStringLiteral("exp.xml")));
        EXPECT_TRUE(outcome.written.isEmpty() && outcome.displayPath.isEmpty());
        EXPECT_EQ(Files(folder), QStringList({"exp.xml", "t.xsl"}));
    }

    // The same DTD satisfied, and a document without any DTD, load.
    TempFolder folder;
    const QString xsl = folder.write(QStringLiteral("t.xsl"), TextStylesheet("ok"));
    for (const QByteArray& xml : {QByteArray(dtdDocument).replace("<c/>", "<b/>"), QByteArray("<a><c/></a>")}) {
        EXPECT_EQ(TransformXmlFile(xsl, folder.write(QStringLiteral("ok.xml"), xml), folder.file(QStringLiteral("out.txt")), English()),
                  std::nullopt) << xml.constData();
        EXPECT_EQ(folder.read(QStringLiteral("out.txt")), "ok\r\n");
    }
}

// Errors are gathered per thread: two stylesheets failing at once keep their own errors.
// The XPath error behind libxslt's "could not compile" comes first in the reason.
TEST(XslTransform, ParallelTransformationsKeepTheirOwnErrors)
{
    TempFolder folder;
    const QString xml = folder.write(QStringLiteral("exp.xml"), kExport);
    const QString badPath = folder.write(QStringLiteral("path.xsl"), Stylesheet("<xsl:template match=\"/\"><xsl:value-of select=\"((\"/></xsl:template>"));
    const QString stop = folder.write(QStringLiteral("stop.xsl"), TextStylesheet("<xsl:message terminate=\"yes\">A</xsl:message>"));
    const auto run = [&](const QString& xsl, const QString& expected) {
        for (int i = 0; i < 300; ++i) {
            const auto failure = TransformXmlFile(xsl, xml, xsl + QStringLiteral(".out"), English());
            EXPECT_EQ(failure ? failure->text.section(QStringLiteral("\r\n"), -2) : QString(), expected);
        }
    };
    std::thread other(run, badPath, QStringLiteral("XSLT compilation error\r\nInvalid expression; xsl:value-of : could not compile "
                                                   "select expression '((' line: 3 col: 0 text: <xsl:template match=\"/\">"
                                                   "<xsl:value-of select=\"((\"/></xsl:template>"));
    run(stop, QStringLiteral("XSLT transformation stopped by xsl:message\r\nA line: 0 col: 0 text: "));
    other.join();
}
