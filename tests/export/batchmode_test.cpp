// The batch mode: option grammar, every refusal in its order, the log page, and the
// transformation step with its failures.
#include "export/batchmode.h"
#include "version.h"

#include "support/tempfolder.h"

#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::ReadFile;
using brindar::test::SourceFile;
using brindar::test::TempFolder;

TEST(BatchMode, OptionGrammar)
{
    const struct {
        const char* line;
        char letter;
        std::optional<QString> value;
    } rows[] = {
        {"-x /tmp/y.xml -d /tmp/x", 'd', QStringLiteral("/tmp/x")},
        // A value with blanks must be quoted; without quotes it ends at the first blank.
        {"-d \"/tmp/My Docs\" -x a", 'd', QStringLiteral("/tmp/My Docs")},
        {"-d /tmp/My Docs -x a", 'd', QStringLiteral("/tmp/My")},
        // An unterminated quote gives an empty value.
        {"-d \"/tmp/My Docs -x a", 'd', QString()},
        // Letters are case-sensitive, and the first occurrence wins.
        {"-D /tmp/x", 'd', std::nullopt},
        {"-d /a -d /b", 'd', QStringLiteral("/a")},
        // An option glued to the one before it is not an option.
        {"-x/tmp/a-d /b", 'd', std::nullopt},
        {"-o", 'o', QString()},
        {"  -o   pi  ", 'o', QStringLiteral("pi")},
    };
    for (const auto& row : rows)
        EXPECT_EQ(CommandLineOption(QString::fromUtf8(row.line), row.letter), row.value) << row.line;

    EXPECT_EQ(RebuildCommandLine({"-d", "/tmp/My Docs", "-t", ""}), QStringLiteral("-d \"/tmp/My Docs\" -t \"\""));
    // White space other than blanks is quoted too: the trimmed line would lose it at an end.
    EXPECT_EQ(CommandLineOption(RebuildCommandLine({"-d", "/tmp/dir\r"}), 'd'), QStringLiteral("/tmp/dir\r"));
    const XmlFamilies pi = FamiliesOfLetters(QStringLiteral("pi"));
    EXPECT_TRUE(pi.pdf && pi.iptc && !pi.office && !pi.openOffice && !pi.xmp);
    // Only the letters count: the dotless i and the ligature fi upper-case to "I" and "FI".
    EXPECT_FALSE(FamiliesOfLetters(QStringLiteral("p\u0131\uFB01")).iptc);
}

namespace {

struct BatchRun {
    int status = -1;
    QStringList messages;  // "title: text"
    QString log;
};

// A tree of a text file and a page, and a stylesheet listing the files' names.
struct Batch {
    TempFolder settings, work;
    const QString tree = QFileInfo(work.write(QStringLiteral("tree/notes.txt"), "notes")).path(), w = work.path();
    Batch()
    {
        work.write(QStringLiteral("tree/sub/page.html"), "<html><head><title>Page</title></head></html>");
        work.write(QStringLiteral("style.xsl"), R"(<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
<xsl:output method="text"/>
<xsl:template match="/"><xsl:for-each select="//file"><xsl:value-of select="name"/>;</xsl:for-each></xsl:template>
</xsl:stylesheet>)");
    }
    BatchRun run(const QString& line) const
    {
        BatchRun result;
        BatchCallbacks callbacks;
        callbacks.onMessage = [&](const QString& title, const QString& text) { result.messages << title + QStringLiteral(": ") + text; };
        result.status = RunBatchMode(line, StartSession(settings.path(), SourceFile(QStringLiteral("share")), SystemInfo{}), callbacks);
        result.log = QString::fromLatin1(ReadFile(settings.file(QStringLiteral("Brindar Pro Log.htm"))));
        return result;
    }
};

}  // namespace

TEST(BatchMode, RefusesInTheOrderOfItsChecks)
{
    const Batch batch;
    const QString &t = batch.tree, &w = batch.w;
    const std::pair<QString, QString> rows[] = {
        {QStringLiteral("-D %1 -x %2/a.xml").arg(t, w), QStringLiteral("Missing directory to analyze [option -d]")},
        {QStringLiteral("-d %1/none -x %2/a.xml").arg(w, w), QStringLiteral("Unknown directory to analyze:\r\n%1/none").arg(w)},
        {QStringLiteral("-d %1").arg(t), QStringLiteral("XML output filename missing [option -x]")},
        {QStringLiteral("-d %1 -x a.xml").arg(t), QStringLiteral("Invalid XML output filename\r\na.xml")},
        {QStringLiteral("-d %1 -x %2/none/a.xml").arg(t, w), QStringLiteral("Unknown directory to store XML output file\r\n%1/none").arg(w)},
        {QStringLiteral("-d %1 -x %2/a?.xml").arg(t, w), QStringLiteral("Invalid XML output filename: \r\na?.xml")},
        {QStringLiteral("-d %1 -x %2/a.xml -t %2/none.xsl").arg(t, w), QStringLiteral("Unknown XSL transformation:\r\n%1/none.xsl").arg(w)},
        {QStringLiteral("-d %1 -x %2/a.xml -t %2/style.xsl -h out.htm").arg(t, w),
         QStringLiteral("Invalid transformed output filename\r\nout.htm")},
        {QStringLiteral("-d %1 -x %2/a.xml -h %2/none/out.htm").arg(t, w),
         QStringLiteral("Unknown directory to store transformed output file\r\n%1/none").arg(w)},
        {QStringLiteral("-d %1 -x %2/a.xml -h \"%2/o|ut.htm\"").arg(t, w), QStringLiteral("Invalid transformed output filename: \r\no|ut.htm")},
    };
    for (const auto& [line, message] : rows) {
        SCOPED_TRACE(line.toStdString());
        const BatchRun run = batch.run(line);
        EXPECT_EQ(run.status, kBatchInvalid);
        EXPECT_EQ(run.messages, QStringList{MessageTitle() + QStringLiteral(": ") + message});
        EXPECT_TRUE(run.log.contains(QStringLiteral("command line: %1<br>").arg(line)));
        // The page ends with the message that stopped the run.
        EXPECT_TRUE(run.log.endsWith(message + QStringLiteral("<br>\r\n"))) << run.log.toStdString();
        EXPECT_FALSE(QFile::exists(w + QStringLiteral("/a.xml")));
    }
}

TEST(BatchMode, ExportsTransformsAndLogsOrKeepsTheExportOfAFailedTransformation)
{
    const Batch batch;
    const QString& w = batch.w;
    const BatchRun run = batch.run(QStringLiteral("-t %1/style.xsl -o m -d \"%2\" -x %1/export.xml -h %1/export.txt").arg(w, batch.tree));
    EXPECT_EQ(run.status, kBatchDone) << run.messages.join(u'\n').toStdString();
    EXPECT_TRUE(run.messages.isEmpty());
    const QByteArray xml = ReadFile(w + QStringLiteral("/export.xml"));
    EXPECT_TRUE(xml.startsWith("<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\r\n<!-- Created with Brindar Pro"));
    EXPECT_TRUE(xml.endsWith("</dir>\r\n</dir>\r\n</involume>\r\n"));
    // -o m keeps the HTML family: the page's title is in the document.
    EXPECT_TRUE(xml.contains("<html><title>Page</title></html>"));
    EXPECT_EQ(ReadFile(w + QStringLiteral("/export.txt")), QByteArray("notes.txt;page.html;\r\n"));
    qsizetype at = 0;
    for (const char* step : {"<title>Log for Brindar Pro</title>", "command line: ", "start XML generation at ", "end XML generation at ",
                             "start XSL transformation at ", "end XSL transformation at ", "</body>\r\n</html>\r\n"}) {
        at = run.log.indexOf(QLatin1String(step), at);
        EXPECT_GE(at, 0) << step << " missing or out of order in\n" << run.log.toStdString();
    }

    // -t without -h (or -h without -t) transforms nothing, silently.
    QFile::remove(w + QStringLiteral("/export.txt"));
    EXPECT_EQ(batch.run(QStringLiteral("-d %1 -x %2/export.xml -t %2/style.xsl").arg(batch.tree, w)).status, kBatchDone);
    EXPECT_FALSE(QFile::exists(w + QStringLiteral("/export.txt")));

    // A stylesheet that does not load or stops the transformation: the export stays.
    const QByteArray open = "<xsl:stylesheet version=\"1.0\" xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\">";
    for (const auto& [xsl, title] : {std::pair(open + "\n<oops>\n</xsl:stylesheet>", "Error loading the Transform"),
                                     std::pair(open + "<xsl:template match=\"/\"><xsl:message terminate=\"yes\">no</xsl:message>"
                                                      "</xsl:template></xsl:stylesheet>", "Error executing the XSL transformation")}) {
        SCOPED_TRACE(title);
        batch.work.write(QStringLiteral("t.xsl"), xsl);
        const BatchRun failed = batch.run(QStringLiteral("-d %1 -x %2/export.xml -t %2/t.xsl -h %2/out.htm").arg(batch.tree, w));
        EXPECT_EQ(failed.status, kBatchTransformFailed);
        ASSERT_EQ(failed.messages.size(), 1);
        EXPECT_TRUE(failed.messages[0].startsWith(QLatin1String(title) + QStringLiteral(": "))) << failed.messages[0].toStdString();
        EXPECT_TRUE(ReadFile(w + QStringLiteral("/export.xml")).endsWith("</involume>\r\n"));
        EXPECT_FALSE(QFile::exists(w + QStringLiteral("/out.htm")));
        EXPECT_TRUE(failed.log.contains(QStringLiteral("start XSL transformation at ")));
        EXPECT_FALSE(failed.log.contains(QStringLiteral("end XSL transformation at ")));
    }
}
