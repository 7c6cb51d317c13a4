// The HTML meta reader: title cleaning, the META name table, where reading stops, real pages.
#include "readers/htmlmetareader.h"

#include "readers/text.h"
#include "support/tempfolder.h"

#include <QFile>
#include <gtest/gtest.h>

#include <utility>

using namespace brindar;
using brindar::test::CorpusFile;
using brindar::test::TempFolder;

namespace {

QString S(const char* utf8) { return QString::fromUtf8(utf8); }

HtmlMetaResult ReadPage(const QByteArray& bytes)
{
    TempFolder folder;
    return ReadHtmlMeta(folder.write(QStringLiteral("page.html"), bytes));
}

QString UpperOf(QString text)
{
    for (QChar& c : text)
        c = c.toUpper();
    return text;
}

using R = HtmlMetaResult;
using Field = QString R::*;
// Every field a META name can fill, to check that a tag fills one field and no other.
const Field kMetaFields[] = {&R::metaTitle, &R::creator, &R::subjectKeywords, &R::subject, &R::description,
    &R::publisher, &R::contributor, &R::date, &R::type, &R::format, &R::identifier, &R::source, &R::language,
    &R::relation, &R::coverage, &R::rights, &R::generator, &R::category};

using MetaTags = QList<std::pair<QString, QString>>;

}  // namespace

TEST(HtmlMetaReader, TitleIsCleanedAndDecoded)
{
    struct Row { QByteArray page; QString title; };
    const Row rows[] = {
        {"<html><head><TITLE>Caf&eacute;  au\tlait</TITLE></head>", S("Café au lait")},
        {"<title>  a   b  </title>", S("a  b")},         // one pass: three blanks leave two
        {"<title>a&nbsp;&nbsp;b</title>", S("a  b")},    // decoded after the blanks are folded
        {"<title>&Eacute;t&eacute; &EACUTE; &eacute &amp;</title>", S("Été &EACUTE; &eacute &amp;")},
        {"<title>Caf\xE9 \x80 5</title>", S("Café € 5")},  // Windows-1252 bytes
        {"<title>Hello\r\nWorld</title>", S("HelloWorld")},  // line breaks are not kept
        {"<title>Hello \nWorld</title>", S("Hello World")},
        {"<title>a\rb\nc\r\nd\n\r\ne</title>", S("abcde")},
        {"<tit\nle>x</ti\r\ntle>", S("x")},  // keywords cut by a line break
        {"<TiTlE>Mixed</tItLe>", S("Mixed")},
        {"<title>one</title><title>two</title>", S("one")},
        {"</title><title>after</title>", S("after")},
        {"<title> \t </title>", QString()},
        {"<title>never closed</head><body>text", QString()},
        {"<html><head></head><body>no title", QString()},
    };
    for (const Row& row : rows) {
        const HtmlMetaResult result = ReadPage(row.page);
        EXPECT_EQ(result.title, row.title) << row.page.constData();
        EXPECT_EQ(result.fragment, row.title.isEmpty() ? QString() : S("<title>") + XmlEscape(row.title) + S("</title>"))
            << row.page.constData();
    }
}

TEST(HtmlMetaReader, OpenTitleIsReadPastTheEndOfTheHead)
{
    // Once "<TITLE>" is read, lines are read until "</TITLE>", and then the stop at
    // "</HEAD>" applies: the META tag read on the way counts, the one after does not.
    const HtmlMetaResult result = ReadPage(
        "<head><title>a\n</head>\n<meta name=\"author\" content=\"x\">\n<body>b</title>\n"
        "<meta name=\"generator\" content=\"g\">\n");
    EXPECT_EQ(result.title, S("a</head><meta name=\"author\" content=\"x\"><body>b"));
    EXPECT_EQ(result.creator, u"x");
    EXPECT_EQ(result.generator, QString());
}

TEST(HtmlMetaReader, MetaNamesFollowTheTableOrder)
{
    struct Row { const char* name; Field field; const char* element; };
    const Row rows[] = {
        {"title", &R::metaTitle, "title"}, {"DC.Title", &R::metaTitle, "title"},
        {"DC.TITLE.ALTERNATIVE", &R::metaTitle, "title"},  // a prefix is enough
        {"Author", &R::creator, "creator"}, {"dc.creator.personalName", &R::creator, "creator"},
        {"KEYWORDS", &R::subjectKeywords, "subject.keywords"},
        {"DC.Subject.Keywords", &R::subjectKeywords, "subject.keywords"},  // tested before the subject row
        {"DC.Subject.KeywordsX", &R::subject, "subject"},                  // the keywords name needs its quote
        {"subject", &R::subject, "subject"}, {"DC.Subject.Classification", &R::subject, "subject"},
        {"description", &R::description, "description"}, {"DC.Description.Abstract", &R::description, "description"},
        {"publisher", &R::publisher, "publisher"}, {"DC.Publisher", &R::publisher, "publisher"},
        {"contributor", &R::contributor, "contributor"}, {"DC.Contributor", &R::contributor, "contributor"},
        {"date", &R::date, "date"}, {"DC.Date.Created", &R::date, "date"},
        {"type", &R::type, "type"}, {"DC.Type", &R::type, "type"},
        {"format", &R::format, "format"}, {"DC.Format.Medium", &R::format, "format"},
        {"identifier", &R::identifier, "identifier"}, {"DC.Identifier", &R::identifier, "identifier"},
        {"source", &R::source, "source"}, {"DC.Source", &R::source, "source"},
        {"language", &R::language, "language"}, {"DC.Language", &R::language, "language"},
        {"relation", &R::relation, "relation"}, {"DC.Relation.IsPartOf", &R::relation, "relation"},
        {"coverage", &R::coverage, "coverage"}, {"DC.Coverage", &R::coverage, "coverage"},
        {"rights", &R::rights, "rights"}, {"DC.Rights", &R::rights, "rights"},
        {"Generator", &R::generator, "generator"}, {"category", &R::category, "category"},
        // Names no row takes.
        {"dc:title", nullptr, nullptr}, {"DC.Author", nullptr, nullptr}, {"DC.Generator", nullptr, nullptr},
        {"DC.Category", nullptr, nullptr}, {"titles", nullptr, nullptr}, {"keyword", nullptr, nullptr},
    };
    for (const Row& row : rows) {
        const QByteArray page = QByteArray("<head><meta name=\"") + row.name + "\" content=\"Value\"></head>";
        const HtmlMetaResult result = ReadPage(page);
        for (const Field field : kMetaFields)
            EXPECT_EQ(result.*field, field == row.field ? S("Value") : QString()) << row.name;
        const QString element = row.element ? S(row.element) : QString();
        EXPECT_EQ(result.fragment, row.element ? u'<' + element + S(">Value</") + element + u'>' : QString()) << row.name;
        // Whatever the row, the tag is kept by name.
        EXPECT_EQ(result.metaTags, (MetaTags{{S(row.name), S("Value")}})) << row.name;
    }
}

TEST(HtmlMetaReader, MetaTagsNeedDoubleQuotesAndOneTag)
{
    struct Row { QByteArray page; QString creator; };
    const Row rows[] = {
        {"<meta name=author content=\"x\">", QString()},
        {"<meta name='author' content=\"x\">", QString()},
        {"<meta name=\"author\" content=x>", QString()},
        {"<meta name=\"author\" content='x'>", QString()},
        {"<meta name=\"author\" content=\"\">", QString()},
        {"<meta name=\"author\" content=\"a>b\">", QString()},  // the tag ends at the first ">"
        {"<meta name=\"author\" content=\"x\"\n", QString()},   // and without one there is no tag
        {"<META NAME=\"AUTHOR\" CONTENT=\"x\">", S("x")},
        {"<meta content=\"x\" name=\"author\">", S("x")},
        {"<meta name = \"author\" content = \"x\">", S("x")},
        {"<meta name  =  \"author\" content=\"x\">", S("x")},  // two blanks fold to one, then " = "
        {"<meta name   =   \"author\" content=\"x\">", QString()},  // three leave two
        {"<meta\nname=\"author\"\ncontent=\"x\">", S("x")},  // over several lines, joined without blanks
        {"<meta name=\"author\" content=\"MiXeD\r\n  Case\">", S("MiXeD Case")},
        // The head's fold, then the value's: tabs become blanks only in the second.
        {"<meta name=\"author\" content=\"  a\t\tb        c  \">", S("a b  c")},
        {"<meta name=\"author\" content=\"Caf&eacute; &amp;\">", S("Caf&eacute; &amp;")},  // not decoded
        {"<meta name=\"author\" content=\"Caf\xE9\">", S("Café")},
        // "ß" keeps its one position in the upper-case copy.
        {"<title>Gro\xDF</title><meta name=\"author\" content=\"Jo\">", S("Jo")},
        {"<meta name=\"author\" lang=\"\xDF\xDF\" content=\"Jo\">", S("Jo")},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ReadPage(row.page).creator, row.creator) << row.page.constData();
}

TEST(HtmlMetaReader, FragmentHoldsEveryValueFoundEscaped)
{
    // Each matching tag stores its value, an empty one too; the fragment gets the title,
    // then each value that is not empty, in file order. (A ">" would end the tag.)
    const HtmlMetaResult result = ReadPage(
        "<head>\n<meta name=\"author\" content=\"A &amp; B <c 'd'\">\n<title>Tom's \"best\" <b></title>\n"
        "<meta name=\"DC.Creator\" content=\"B\">\n<meta name=\"author\" content=\"\">\n</head>");
    EXPECT_EQ(result.title, S("Tom's \"best\" <b>"));
    EXPECT_EQ(result.creator, QString());
    EXPECT_EQ(result.fragment, S("<title>Tom&apos;s &quot;best&quot; &lt;b&gt;</title>"
                                 "<creator>A &amp;amp; B &lt;c &apos;d&apos;</creator><creator>B</creator>"));
}

TEST(HtmlMetaReader, ReadingStopsAtTheEndOfTheHead)
{
    struct Row { QByteArray page; QString creator; };
    const Row rows[] = {
        {"<head>\n</head>\n<meta name=\"author\" content=\"x\">\n", QString()},
        {"<html>\n<BODY>\n<meta name=\"author\" content=\"x\">\n", QString()},
        {"<head><title>t</title></head>\r\n<body><meta name=\"author\" content=\"x\">", QString()},
        {"<head>\n</he\nad>\n<meta name=\"author\" content=\"x\">\n", QString()},  // "</HEAD>" over two lines
        {"<head>\n</headx>\n<meta name=\"author\" content=\"x\">\n", S("x")},
        // Lines are read whole: the rest of the line that ends the head is read too.
        {"<head>\n</head><meta name=\"author\" content=\"x\">\n<meta name=\"author\" content=\"y\">", S("x")},
    };
    for (const Row& row : rows) {
        const HtmlMetaResult result = ReadPage(row.page);
        EXPECT_EQ(result.creator, row.creator) << row.page.constData();
        EXPECT_EQ(result.metaTags.size(), row.creator.isEmpty() ? 0 : 1) << row.page.constData();
    }
}

TEST(HtmlMetaReader, KeywordsCutByTheReadPieces)
{
    // The file is read in pieces of 64 KiB; a keyword that straddles two pieces is found
    // all the same.
    constexpr int kPiece = 64 * 1024;
    for (int cut = 0; cut <= 8; ++cut) {
        QByteArray head = "<head>\n<!--";
        head += QByteArray(kPiece - cut - head.size() - 4, 'x') + "-->\n";
        ASSERT_EQ(head.size(), kPiece - cut);
        const HtmlMetaResult ended = ReadPage(head + "</head>\n<meta name=\"author\" content=\"late\">\n");
        EXPECT_EQ(ended.creator, QString()) << cut;

        QByteArray title = "<head><title>";
        const qsizetype textSize = kPiece - cut - title.size();
        title += QByteArray(textSize, 'a');
        const HtmlMetaResult titled = ReadPage(title + "</title>\r\n</head>\r\n");
        EXPECT_EQ(titled.title, QString(textSize, u'a')) << cut;
    }
}

TEST(HtmlMetaReader, LongHeadIsReadWhole)
{
    constexpr int kLines = 200000;
    QByteArray page = "<html>\r\n<head>\r\n<title>Big</title>\r\n";
    for (int i = 0; i < kLines; ++i)
        page += "<meta name=\"n" + QByteArray::number(i) + "\" content=\"v" + QByteArray::number(i) + "\">\r\n";
    page += "<meta name=\"author\" content=\"Last\">\r\n</head>\r\n<body>\r\n<meta name=\"author\" content=\"Body\">\r\n";
    const HtmlMetaResult result = ReadPage(page);
    EXPECT_EQ(result.title, u"Big");
    EXPECT_EQ(result.creator, u"Last");
    ASSERT_EQ(result.metaTags.size(), kLines + 1);
    EXPECT_EQ(result.metaTags[0], (std::pair{S("n0"), S("v0")}));
    EXPECT_EQ(result.metaTags[kLines - 1], (std::pair{S("n199999"), S("v199999")}));
    EXPECT_EQ(result.fragment, S("<title>Big</title><creator>Last</creator>"));
}

TEST(HtmlMetaReader, MetaTagsKeepEveryQuotedNameAndContent)
{
    const HtmlMetaResult result = ReadPage(
        "<head>\n"
        "<meta charset=\"utf-8\">\n"
        "<meta http-equiv=\"refresh\" content=\"5\">\n"
        "<meta name=\" Viewport\" content=\" width = device \">\n"  // the name as written
        "<meta property=\"og:title\" content=\"OG\">\n"
        "<meta name=\"Author\" content=\"Ann\">\n"
        "<meta name=\"Stra\xDF" "e\" content=\"Weg\">\n"
        "<meta name=\"empty\" content=\"\">\n"
        "<meta name=\"unquoted\" content=x>\n"
        "<meta name=bare content=\"y\">\n"
        "</head>\n");
    EXPECT_EQ(result.metaTags,
        (MetaTags{{S(" Viewport"), S("width=device")}, {S("Author"), S("Ann")}, {S("Straße"), S("Weg")},
            {S("empty"), QString()}}));
    EXPECT_EQ(result.creator, u"Ann");
    EXPECT_EQ(result.fragment, S("<creator>Ann</creator>"));
}

TEST(HtmlMetaReader, UnreadableFilesGiveTheClearedResult)
{
    TempFolder folder;
    for (const QString& path : {folder.file(QStringLiteral("missing.html")), folder.path(),
             folder.write(QStringLiteral("empty.html"), QByteArray())}) {
        const HtmlMetaResult result = ReadHtmlMeta(path);
        EXPECT_EQ(result.fragment, QString()) << path.toStdString();
        EXPECT_TRUE(result.metaTags.isEmpty()) << path.toStdString();
        EXPECT_FALSE(result.shortRead) << path.toStdString();
    }
    // Linux opens a process's memory but refuses to read its unmapped first page.
    const QString memory = QStringLiteral("/proc/self/mem");
    if (QFile(memory).open(QIODevice::ReadOnly)) {
        EXPECT_TRUE(ReadHtmlMeta(memory).shortRead);
    }
}

TEST(HtmlMetaReader, MetaContentCutsTheFirstQuotedContent)
{
    struct Row { QString tag; QString value; };
    const Row rows[] = {
        {S("<meta content=\"x\">"), S("x")},
        {S("<meta Content=\"MiXeD\">"), S("MiXeD")},
        {S("<meta content=\"\">"), QString()},
        {S("<meta content=\"x>"), QString()},
        {S("<meta content=x>"), QString()},
        {S("<meta name=\"a\">"), QString()},
        {S("<meta content=\"  a\tb\r\nc  \">"), S("a b c")},
        {S("<meta content=\"a    b\">"), S("a  b")},
        {S("<meta content=\"&eacute; &amp;\">"), S("&eacute; &amp;")},
        {S("<meta data-content=\"x\" content=\"y\">"), S("x")},  // the first CONTENT=" wherever it is
        {S("<meta content=\"\u00DF\u00DF\" name=\"x\">"), S("\u00DF\u00DF")},
    };
    for (const Row& row : rows)
        EXPECT_EQ(MetaContent(row.tag, UpperOf(row.tag)), row.value) << row.tag.toStdString();
}

TEST(HtmlMetaReader, HtmlEntityDecodeKnowsAccentsAndNbspOnly)
{
    for (const char* kept : {"&amp;", "&lt;&gt;&quot;", "&Agrave;", "&EACUTE;", "&eacute", "&#233;", "&amp;eacute;"})
        EXPECT_EQ(HtmlEntityDecode(S(kept)), S(kept)) << kept;
    EXPECT_EQ(HtmlEntityDecode(S("Caf&eacute;&nbsp;cr&egrave;me")), S("Café crème"));
}

// Real pages from other projects' test suites, read in place. The expected values were
// read off each file by hand.

TEST(HtmlMetaReaderCorpus, ExifToolDaisyNamesAreNotDublinCore)
{
    // exiftool__HTML.html: <title>ExifTool HTML Test</title> on line 6; lines 10-41 hold
    // 32 META tags named "dc:..." (a colon, not "DC."), "ncc:..." and "prod:...", which no
    // row takes; line 19 is dc:subject "Greek: &alpha; &beta; &gamma;".
    const HtmlMetaResult result = ReadHtmlMeta(CorpusFile(QStringLiteral("html/exiftool__HTML.html")));
    EXPECT_EQ(result.title, u"ExifTool HTML Test");
    EXPECT_EQ(result.fragment, S("<title>ExifTool HTML Test</title>"));
    for (const Field field : kMetaFields)
        EXPECT_EQ(result.*field, QString());
    ASSERT_EQ(result.metaTags.size(), 32);
    EXPECT_EQ(result.metaTags[0], (std::pair{S("dc:title"), S("ExifTool HTML Test")}));
    EXPECT_EQ(result.metaTags[9], (std::pair{S("dc:subject"), S("Greek: &alpha; &beta; &gamma;")}));
    EXPECT_EQ(result.metaTags[31], (std::pair{S("prod:recEngineer"), S("P Harvey")}));
}

TEST(HtmlMetaReaderCorpus, HundevereinLaterTagsWin)
{
    // htmldate__hundeverein-querfurt.de.html: a hand-written head (lines 4-27) followed by
    // a Joomla head (lines 28-35) that repeats keywords (empty), title "Termine", author
    // "Administrator" and description (empty); the second <title> on line 35 is ignored.
    const HtmlMetaResult result = ReadHtmlMeta(CorpusFile(QStringLiteral("html/htmldate__hundeverein-querfurt.de.html")));
    const QString verein = S("Querfurter Hundesportverein e.V.");
    const QString welcome = verein + S(" - Bei uns sind Hunde aller Rassen sowie Mischlinge willkommen!");
    EXPECT_EQ(result.title, verein);
    EXPECT_EQ(result.metaTitle, u"Termine");
    EXPECT_EQ(result.creator, u"Administrator");
    EXPECT_EQ(result.subjectKeywords, QString());
    EXPECT_EQ(result.description, QString());
    EXPECT_EQ(result.publisher, u"Hundeverein");
    EXPECT_EQ(result.rights, verein);
    EXPECT_EQ(result.generator, u"Joomla! 1.5 - Open Source Content Management");
    // The fragment keeps every value found, the overwritten ones too, in file order.
    EXPECT_TRUE(result.fragment.startsWith(S("<title>") + verein + S("</title><description>") + welcome));
    EXPECT_EQ(result.fragment.count(S("<creator>")), 3);
    EXPECT_TRUE(result.fragment.contains(S("F&amp;auml;hrtenarbeit")));  // META values are not decoded
    EXPECT_TRUE(result.fragment.endsWith(S("<title>Termine</title><creator>Administrator</creator>"
                                           "<generator>Joomla! 1.5 - Open Source Content Management</generator>")));
}

TEST(HtmlMetaReaderCorpus, JanGrosserUtf8IsReadAsWindows1252)
{
    // htmldate__jan-grosser.de.xum1541.html: UTF-8 bytes ("ß" is C3 9F, "ü" C3 BC, "ö"
    // C3 B6) in the description of line 8, its <title> on line 37 after 20 named META
    // tags (one of them, line 30, inside a comment). "DC.author" is no row's name.
    const HtmlMetaResult result = ReadHtmlMeta(CorpusFile(QStringLiteral("html/htmldate__jan-grosser.de.xum1541.html")));
    EXPECT_EQ(result.title, u"XUM1541: Dateien zwischen Linux und C64 austauschen");
    EXPECT_EQ(result.metaTitle, u"XUM1541: Dateien zwischen Linux und C64 austauschen");
    EXPECT_EQ(result.creator, u"Jan");
    EXPECT_EQ(result.description,
        S("Fertiger XUM1541-Adapter zum Anschlu\u00C3\u0178 eines Commodore Disketten-Laufwerks \u00C3\u00BCber USB "
          "Es gibt verschiedene M\u00C3\u00B6glichkeiten, Dateien zwischen einem \u00C3\u00BCber 30"));
    EXPECT_EQ(result.subject, u"linux, c64, retro, 1541, diskette");
    EXPECT_EQ(result.generator, u"PerlPress");
    EXPECT_EQ(result.metaTags.size(), 20);
    EXPECT_TRUE(result.fragment.startsWith(S("<title>XUM1541: Dateien zwischen Linux und C64 austauschen</title><creator>Jan</creator>")));
}
