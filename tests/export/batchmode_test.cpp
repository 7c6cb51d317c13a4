// The batch mode: option grammar, every refusal in its order, the log page, and the
// transformation step with its failures.
#include "export/batchmode.h"

#include "support/tempfolder.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::ReadFile;
using brindar::test::SourceFile;
using brindar::test::TempFolder;

TEST(BatchMode, OptionGrammar)
{
    struct Row {
        const char* line;
        char letter;
        std::optional<QString> value;
    };
    const Row rows[] = {
        {"-d /tmp/x -x /tmp/y.xml", 'd', QStringLiteral("/tmp/x")},
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
    for (const Row& row : rows)
        EXPECT_EQ(CommandLineOption(QString::fromUtf8(row.line), row.letter), row.value) << row.line;

    EXPECT_EQ(RebuildCommandLine({QStringLiteral("-d"), QStringLiteral("/tmp/My Docs"), QStringLiteral("-t"), QString()}),
              QStringLiteral("-d \"/tmp/My Docs\" -t \"\""));
    const XmlFamilies pi = FamiliesOfLetters(QStringLiteral("pi"));
    EXPECT_TRUE(pi.pdf && pi.iptc && !pi.office && !pi.openOffice && !pi.xmp);
}

namespace {

struct BatchRun {
    int status = -1;
    QStringList messages;  // "title: text"
    QString log;
};

struct Batch {
    TempFolder settings;
    TempFolder work;
    QString tree;
    Batch()
    {
        tree = work.file(QStringLiteral("tree"));
        work.write(QStringLiteral("tree/notes.txt"), "notes");
        work.write(QStringLiteral("tree/sub/page.html"), "<html><head><title>Page</title></head></html>");
        work.write(QStringLiteral("style.xsl"),
                   R"(<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
<xsl:output method="text"/>
<xsl:template match="/"><xsl:for-each select="//file"><xsl:value-of select="name"/>;</xsl:for-each></xsl:template>
</xsl:stylesheet>)");
    }
    BatchRun run(const QString& line) const
    {
        const Session session = StartSession(settings.path(), SourceFile(QStringLiteral("share")), SystemInfo{});
        BatchRun result;
        BatchCallbacks callbacks;
        callbacks.onMessage = [&](const QString& title, const QString& text) { result.messages << title + QStringLiteral(": ") + text; };
        result.status = RunBatchMode(line, session, callbacks);
        result.log = QString::fromLatin1(ReadFile(settings.file(QStringLiteral("Brindar Pro Log.htm"))));
        return result;
    }
};

}  // namespace

TEST(BatchMode, RefusesInTheOrderOfItsChecks)
{
    Batch batch;
    const QString t = batch.tree, w = batch.work.path();
    const QString title = MessageTitle() + QStringLiteral(": ");
    struct Row {
        QString line;
        QString message;
    };
    const Row rows[] = {
        {QStringLiteral("-D %1 -x %2/a.xml").arg(t, w), QStringLiteral("Missing directory to analyze [option -d]")},
        {QStringLiteral("-d %1/none -x %2/a.xml").arg(w, w), QStringLiteral("Unknown directory to analyze:\r\n%1/none").arg(w)},
        {QStringLiteral("-d \"%1 -x %2/a.xml").arg(t, w), QStringLiteral("Unknown directory to analyze:\r\n")},
        {QStringLiteral("-d %1").arg(t), QStringLiteral("XML output filename missing [option -x]")},
        {QStringLiteral("-d %1 -x a.xml").arg(t), QStringLiteral("Invalid XML output filename\r\na.xml")},
        {QStringLiteral("-d %1 -x %2/none/a.xml").arg(t, w),
         QStringLiteral("Unknown directory to store XML output file\r\n%1/none").arg(w)},
        {QStringLiteral("-d %1 -x %2/a?.xml").arg(t, w), QStringLiteral("Invalid XML output filename: \r\na?.xml")},
        {QStringLiteral("-d %1 -x %2/a.xml -t %2/none.xsl").arg(t, w),
         QStringLiteral("Unknown XSL transformation:\r\n%1/none.xsl").arg(w)},
        {QStringLiteral("-d %1 -x %2/a.xml -t %2/style.xsl -h out.htm").arg(t, w),
         QStringLiteral("Invalid transformed output filename\r\nout.htm")},
        {QStringLiteral("-d %1 -x %2/a.xml -h %2/none/out.htm").arg(t, w),
         QStringLiteral("Unknown directory to store transformed output file\r\n%1/none").arg(w)},
        {QStringLiteral("-d %1 -x %2/a.xml -h \"%2/o|ut.htm\"").arg(t, w),
         QStringLiteral("Invalid transformed output filename: \r\no|ut.htm")},
    };
    for (const Row& row : rows) {
        const BatchRun run = batch.run(row.line);
        EXPECT_EQ(run.status, kBatchInvalid) << row.line.toStdString();
        EXPECT_EQ(run.messages, QStringList{title + row.message}) << row.line.toStdString();
        EXPECT_TRUE(run.log.contains(QStringLiteral("command line: %1<br>").arg(row.line)));
        EXPECT_TRUE(run.log.endsWith(row.message + QStringLiteral("<br>\r\n</body>\r\n</html>\r\n")))
            << run.log.toStdString();
        EXPECT_FALSE(QFile::exists(w + QStringLiteral("/a.xml")));
    }
}

TEST(BatchMode, ExportsTransformsAndLogs)
{
    Batch batch;
    const QString w = batch.work.path();
    const BatchRun run = batch.run(
        QStringLiteral("-t %1/style.xsl -o m -d \"%2\" -x %1/export.xml -h %1/export.txt").arg(w, batch.tree));
    EXPECT_EQ(run.status, kBatchDone) << run.messages.join(u'\n').toStdString();
    EXPECT_TRUE(run.messages.isEmpty());
    const QByteArray xml = ReadFile(w + QStringLiteral("/export.xml"));
    EXPECT_TRUE(xml.startsWith("<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\r\n<!-- Created with Brindar Pro"));
    EXPECT_TRUE(xml.endsWith("</dir>\r\n</dir>\r\n</involume>\r\n"));
    // -o m keeps the HTML family: the page's title is in the document.
    EXPECT_TRUE(xml.contains("<html><title>Page</title></html>"));
    EXPECT_EQ(ReadFile(w + QStringLiteral("/export.txt")), QByteArray("notes.txt;page.html;\r\n"));
    const QStringList steps = {QStringLiteral("<title>Log for Brindar Pro</title>"), QStringLiteral("command line: "),
                               QStringLiteral("start XML generation at "), QStringLiteral("end XML generation at "),
                               QStringLiteral("start XSL transformation at "), QStringLiteral("end XSL transformation at "),
                               QStringLiteral("</body>\r\n</html>\r\n")};
    qsizetype at = 0;
    for (const QString& step : steps) {
        at = run.log.indexOf(step, at);
        EXPECT_GE(at, 0) << step.toStdString() << " missing or out of order in\n" << run.log.toStdString();
    }

    // -t without -h (or -h without -t) transforms nothing, silently.
    QFile::remove(w + QStringLiteral("/export.txt"));
    EXPECT_EQ(batch.run(QStringLiteral("-d %1 -x %2/export.xml -t %2/style.xsl").arg(batch.tree, w)).status, kBatchDone);
    EXPECT_FALSE(QFile::exists(w + QStringLiteral("/export.txt")));
}

TEST(BatchMode, TransformationFailuresKeepTheExport)
{
    Batch batch;
    const QString w = batch.work.path();
    batch.work.write(QStringLiteral("broken.xsl"), "<xsl:stylesheet version=\"1.0\"\n xmlns:xsl=\"http://www.w3.org/1999/XSL/Transform\">\n<oops>\n</xsl:stylesheet>\n");
    batch.work.write(QStringLiteral("stops.xsl"),
                     R"(<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform">
<xsl:template match="/"><xsl:message terminate="yes">no, thanks</xsl:message></xsl:template>
</xsl:stylesheet>)");
    struct Row {
        QString xsl;
        QString title;
    };
    const Row rows[] = {
        {QStringLiteral("broken.xsl"), QStringLiteral("Error loading the Transform")},
        {QStringLiteral("stops.xsl"), QStringLiteral("Error executing the XSL transformation")},
    };
    for (const Row& row : rows) {
        const BatchRun run = batch.run(
            QStringLiteral("-d %1 -x %2/export.xml -t %2/%3 -h %2/out.htm").arg(batch.tree, w, row.xsl));
        EXPECT_EQ(run.status, kBatchTransformFailed) << row.xsl.toStdString();
        ASSERT_EQ(run.messages.size(), 1);
        EXPECT_TRUE(run.messages[0].startsWith(row.title + QStringLiteral(": "))) << run.messages[0].toStdString();
        EXPECT_TRUE(ReadFile(w + QStringLiteral("/export.xml")).endsWith("</involume>\r\n"));
        EXPECT_FALSE(QFile::exists(w + QStringLiteral("/out.htm")));
        EXPECT_TRUE(run.log.contains(QStringLiteral("start XSL transformation at ")));
        EXPECT_FALSE(run.log.contains(QStringLiteral("end XSL transformation at ")));
    }
}
