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
        // Only the accented letters' names and "&nbsp;" are decoded, case and ";" counting.
        {"<title>&Eacute;t&eacute; &EACUTE; &eacute &amp;eacute; &lt;&Agrave;&#233;cr&egrave;me</title>",
         S("Été &EACUTE; &eacute &amp;eacute; &lt;&Agrave;&#233;crème")},
        {"<title>Caf\xE9 \x80 5</title>", S("Café € 5")},  // Windows-1252 bytes
        {"<title>a\rb\nc\r\nd\n\r\ne</title>", S("abcde")},  // line breaks are not kept
        {"<tit\nle>x</ti\r\ntle>", S("x")},  // keywords cut by a line break
        {"<title>one</title><title>two</title>", S("one")}, {"</title><title>after</title>", S("after")},
        {"<title> \t </title>", {}}, {"<title>never closed</head><body>text", {}},
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
        {"title", &R::metaTitle, "title"}, {"DC.TITLE.ALTERNATIVE", &R::metaTitle, "title"},  // a prefix is enough
        {"Author", &R::creator, "creator"}, {"dc.creator.personalName", &R::creator, "creator"},
        {"KEYWORDS", &R::subjectKeywords, "subject.keywords"},
        {"DC.Subject.Keywords", &R::subjectKeywords, "subject.keywords"},  // tested before the subject row
        {"DC.Subject.KeywordsX", &R::subject, "subject"},                  // the keywords name needs its quote
        {"description", &R::description, "description"}, {"DC.Relation.IsPartOf", &R::relation, "relation"},
        {"DC.Rights", &R::rights, "rights"}, {"Generator", &R::generator, "generator"}, {"category", &R::category, "category"},
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

TEST(HtmlMetaReader, MetaTagsNeedDoubleQuotesAndOneTagInTheHead)
{
    struct Row { QByteArray page; QString creator; };
    const Row rows[] = {
        {"<meta name='author' content=\"x\">", {}}, {"<meta name=\"author\" content='x'>", {}},
        // The tag ends at the first ">", and without one there is no tag.
        {"<meta name=\"author\" content=\"a>b\">", {}}, {"<meta name=\"author\" content=\"x\"\n", {}},
        {"<META NAME=\"AUTHOR\" CONTENT=\"x\">", S("x")}, {"<meta content=\"x\" name=\"author\">", S("x")},
        // " = " becomes "=" after two blanks fold to one; three leave two.
        {"<meta name = \"author\" content = \"x\">", S("x")}, {"<meta name  =  \"author\" content=\"x\">", S("x")},
        {"<meta name   =   \"author\" content=\"x\">", {}},
        {"<meta name=\"author\" content=\"MiXeD\r\n  Case\">", S("MiXeD Case")},  // lines joined without blanks
        // The head's fold, then the value's: tabs become blanks only in the second.
        {"<meta name=\"author\" content=\"  a\t\tb        c  \">", S("a b  c")},
        {"<meta name=\"author\" content=\"Caf&eacute; &amp;\">", S("Caf&eacute; &amp;")},  // not decoded
        {"<meta name=\"author\" data-content=\"x\" content=\"y\">", S("x")},  // the first CONTENT=" wherever it is
        // "ß" keeps its one position in the upper-case copy.
        {"<title>Gro\xDF</title><meta name=\"author\" content=\"Jo\">", S("Jo")},
        {"<meta name=\"author\" lang=\"\xDF\xDF\" content=\"Jo\">", S("Jo")},
        // Reading stops at the line that brings "</HEAD>" (over two lines too) or "<BODY>", read whole.
        {"<head>\n</head>\n<meta name=\"author\" content=\"x\">\n", {}}, {"<html>\n<BODY>\n<meta name=\"author\" content=\"x\">", {}},
        {"<head>\n</he\nad>\n<meta name=\"author\" content=\"x\">\n", {}},
        {"<head>\n</headx>\n<meta name=\"author\" content=\"x\">\n", S("x")},
        {"<head>\n</head><meta name=\"author\" content=\"x\">\n<meta name=\"author\" content=\"y\">", S("x")},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ReadPage(row.page).creator, row.creator) << row.page.constData();
}

TEST(HtmlMetaReader, FragmentAndMetaTagsKeepEveryValueFound)
{
    // Each matching tag stores its value, an empty one too; the fragment gets the title,
    // then each value that is not empty, in file order. Every tag with a quoted name and
    // content is kept, by its name as written. (A ">" would end the tag.)
    const HtmlMetaResult result = ReadPage(
        "<head>\n<meta charset=\"utf-8\">\n<meta http-equiv=\"refresh\" content=\"5\">\n<meta property=\"og:title\" content=\"OG\">\n"
        "<meta name=\" Viewport\" content=\" width = device \">\n<meta name=\"author\" content=\"A &amp; B <c 'd'\">\n"
        "<title>Tom's \"best\" <b></title>\n<meta name=\"DC.Creator\" content=\"B\">\n<meta name=\"Stra\xDF" "e\" content=\"W\">\n"
        "<meta name=\"author\" content=\"\">\n<meta name=\"unquoted\" content=x>\n<meta name=bare content=\"y\">\n</head>");
    EXPECT_EQ(result.title, S("Tom's \"best\" <b>"));
    EXPECT_EQ(result.creator, QString());
    EXPECT_EQ(result.fragment, S("<title>Tom&apos;s &quot;best&quot; &lt;b&gt;</title>"
                                 "<creator>A &amp;amp; B &lt;c &apos;d&apos;</creator><creator>B</creator>"));
    EXPECT_EQ(result.metaTags, (MetaTags{{S(" Viewport"), S("width=device")}, {S("author"), S("A &amp; B <c 'd'")},
                                         {S("DC.Creator"), S("B")}, {S("Straße"), S("W")}, {S("author"), QString()}}));
}

TEST(HtmlMetaReader, LongHeadsAndKeywordsCutByTheReadPieces)
{
    // The file is read in pieces of 64 KiB; a keyword that straddles two pieces is found
    // all the same.
    constexpr int kPiece = 64 * 1024;
    for (int cut = 0; cut <= 8; ++cut) {
        const QByteArray comment = "<head>\n<!--" + QByteArray(kPiece - cut - 15, 'x') + "-->\n";
        ASSERT_EQ(comment.size(), kPiece - cut);
        EXPECT_EQ(ReadPage(comment + "</head>\n<meta name=\"author\" content=\"late\">\n").creator, QString()) << cut;
        const QByteArray text(kPiece - cut - 13, 'a');
        EXPECT_EQ(ReadPage("<head><title>" + text + "</title>\r\n</head>\r\n").title, QString::fromLatin1(text)) << cut;
    }
    // A head of many pieces is read whole, and no further.
    constexpr int kLines = 200000;
    QByteArray page = "<html>\r\n<head>\r\n<title>Big</title>\r\n";
    for (int i = 0; i < kLines; ++i)
        page += "<meta name=\"n" + QByteArray::number(i) + "\" content=\"v" + QByteArray::number(i) + "\">\r\n";
    page += "<meta name=\"author\" content=\"Last\">\r\n</head>\r\n<body>\r\n<meta name=\"author\" content=\"Body\">\r\n";
    const HtmlMetaResult result = ReadPage(page);
    ASSERT_EQ(result.metaTags.size(), kLines + 1);
    EXPECT_EQ(result.metaTags[kLines - 1], (std::pair{S("n199999"), S("v199999")}));
    EXPECT_EQ(result.fragment, S("<title>Big</title><creator>Last</creator>"));
}

TEST(HtmlMetaReader, UnreadableFilesGiveTheClearedResult)
{
    TempFolder folder;
    for (const QString& path : {folder.file(QStringLiteral("missing.html")), folder.path(), folder.write(QStringLiteral("e"), {})}) {
        const HtmlMetaResult result = ReadHtmlMeta(path);
        EXPECT_TRUE(result.fragment.isEmpty() && result.metaTags.isEmpty() && !result.shortRead) << path.toStdString();
    }
}

// Real pages from other projects' test suites, read in place; the expected values were
// read off each file by hand.
TEST(HtmlMetaReader, RealPages)
{
    // Lines 10-41 hold 32 META tags named "dc:..." (a colon, not "DC."), "ncc:..." and
    // "prod:...", which no row takes; line 19 is dc:subject.
    const HtmlMetaResult daisy = ReadHtmlMeta(CorpusFile(QStringLiteral("html/exiftool__HTML.html")));
    EXPECT_EQ(daisy.fragment, S("<title>ExifTool HTML Test</title>"));
    for (const Field field : kMetaFields)
        EXPECT_EQ(daisy.*field, QString());
    ASSERT_EQ(daisy.metaTags.size(), 32);
    EXPECT_EQ(daisy.metaTags[0], (std::pair{S("dc:title"), S("ExifTool HTML Test")}));
    EXPECT_EQ(daisy.metaTags[9], (std::pair{S("dc:subject"), S("Greek: &alpha; &beta; &gamma;")}));
    EXPECT_EQ(daisy.metaTags[31], (std::pair{S("prod:recEngineer"), S("P Harvey")}));

    // A hand-written head (lines 4-27), then a Joomla head (lines 28-35) that repeats keywords
    // (empty), title, author and description (empty); its second <title> is ignored.
    const HtmlMetaResult joomla = ReadHtmlMeta(CorpusFile(QStringLiteral("html/htmldate__hundeverein-querfurt.de.html")));
    const QString verein = S("Querfurter Hundesportverein e.V.");
    EXPECT_EQ(joomla.title, verein);
    EXPECT_EQ(joomla.metaTitle, u"Termine");
    EXPECT_EQ(joomla.creator, u"Administrator");
    EXPECT_EQ(joomla.subjectKeywords, QString());
    EXPECT_EQ(joomla.description, QString());
    EXPECT_EQ(joomla.publisher, u"Hundeverein");
    EXPECT_EQ(joomla.rights, verein);
    EXPECT_EQ(joomla.generator, u"Joomla! 1.5 - Open Source Content Management");
    // The fragment keeps every value found, the overwritten ones too, in file order.
    EXPECT_TRUE(joomla.fragment.startsWith(S("<title>") + verein + S("</title><description>") + verein
                                           + S(" - Bei uns sind Hunde aller Rassen sowie Mischlinge willkommen!")));
    EXPECT_EQ(joomla.fragment.count(S("<creator>")), 3);
    EXPECT_TRUE(joomla.fragment.contains(S("F&amp;auml;hrtenarbeit")));  // META values are not decoded
    EXPECT_TRUE(joomla.fragment.endsWith(S("<title>Termine</title><creator>Administrator</creator>"
                                           "<generator>Joomla! 1.5 - Open Source Content Management</generator>")));

    // UTF-8 bytes ("ß" is C3 9F, "ü" C3 BC, "ö" C3 B6) in the description of line 8; the
    // <title> on line 37 after 20 named META tags (one inside a comment); "DC.author" is no row's.
    const HtmlMetaResult utf8 = ReadHtmlMeta(CorpusFile(QStringLiteral("html/htmldate__jan-grosser.de.xum1541.html")));
    const QString title = S("XUM1541: Dateien zwischen Linux und C64 austauschen");
    EXPECT_EQ(utf8.title, title);
    EXPECT_EQ(utf8.metaTitle, title);
    EXPECT_EQ(utf8.creator, u"Jan");
    EXPECT_EQ(utf8.description,
        S("Fertiger XUM1541-Adapter zum Anschlu\u00C3\u0178 eines Commodore Disketten-Laufwerks \u00C3\u00BCber USB "
          "Es gibt verschiedene M\u00C3\u00B6glichkeiten, Dateien zwischen einem \u00C3\u00BCber 30"));
    EXPECT_EQ(utf8.subject, u"linux, c64, retro, 1541, diskette");
    EXPECT_EQ(utf8.generator, u"PerlPress");
    EXPECT_EQ(utf8.metaTags.size(), 20);
    EXPECT_TRUE(utf8.fragment.startsWith(S("<title>") + title + S("</title><creator>Jan</creator>")));
}
