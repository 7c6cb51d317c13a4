// The PDF reader on files built here and on real files of other projects' test suites.
#include "readers/pdfreader.h"

#include "support/tempfolder.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::CorpusFile;
using brindar::test::TempFolder;

namespace {

QByteArray Offset10(qint64 offset) { return QByteArray::number(offset).rightJustified(10, '0'); }

// A classic PDF: objects numbered from 1, one cross-reference section, one trailer.
// `eol` separates every line, so files with CR, LF and CR LF can be built alike.
QByteArray BuildPdf(const QList<QByteArray>& objects, const QByteArray& trailer, const QByteArray& eol = "\n",
                    const QByteArray& header = "%PDF-1.4")
{
    QByteArray pdf = header + eol;
    QList<qint64> offsets;
    for (int i = 0; i < objects.size(); ++i) {
        offsets << pdf.size();
        pdf += QByteArray::number(i + 1) + " 0 obj" + eol + objects[i] + eol + "endobj" + eol;
    }
    const qint64 xref = pdf.size();
    pdf += "xref" + eol + "0 " + QByteArray::number(objects.size() + 1) + eol + "0000000000 65535 f " + eol;
    for (qint64 offset : offsets)
        pdf += Offset10(offset) + " 00000 n " + eol;
    pdf += "trailer" + eol + "<< /Size " + QByteArray::number(objects.size() + 1) + " " + trailer + " >>" + eol;
    pdf += "startxref" + eol + QByteArray::number(xref) + eol + "%%EOF" + eol;
    return pdf;
}

// An incremental update: `objects` replace or add objects numbered from `first`.
QByteArray AppendUpdate(const QByteArray& base, int first, const QList<QByteArray>& objects, const QByteArray& trailer)
{
    QByteArray pdf = base;
    const qint64 previous = base.mid(base.lastIndexOf("startxref") + 10).trimmed().split('\n').first().toLongLong();
    QList<qint64> offsets;
    for (int i = 0; i < objects.size(); ++i) {
        offsets << pdf.size();
        pdf += QByteArray::number(first + i) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const qint64 xref = pdf.size();
    pdf += "xref\n" + QByteArray::number(first) + " " + QByteArray::number(objects.size()) + "\n";
    for (qint64 offset : offsets)
        pdf += Offset10(offset) + " 00000 n \n";
    pdf += "trailer\n<< " + trailer + "\n/Prev " + QByteArray::number(previous) + "\n>>\nstartxref\n"
           + QByteArray::number(xref) + "\n%%EOF\n";
    return pdf;
}

const QByteArray kCatalog = "<< /Type /Catalog /Pages 3 0 R >>";
const QByteArray kPages = "<< /Type /Pages /Kids [4 0 R] /Count 1 >>";
const QByteArray kPage = "<< /Type /Page /Parent 3 0 R >>";
const QByteArray kTrailer = "/Root 1 0 R /Info 2 0 R";

PdfInfo Read(const QByteArray& bytes)
{
    TempFolder folder;
    return ReadPdfInfo(folder.write(QStringLiteral("test.pdf"), bytes));
}

PdfInfo ReadInfo(const QByteArray& dictionary, const QByteArray& eol = "\n")
{
    return Read(BuildPdf({kCatalog, dictionary, kPages, kPage}, kTrailer, eol));
}

}  // namespace

TEST(PdfReader, InfoDictionaryValues)
{
    const QByteArray dictionary = "<< /Title (Report \\(draft\\))\n"
                                  "/Author (A. Smith)\n"
                                  "/Producer <FEFF00410042>\n"
                                  "/Subject (Caf\\351)\n"
                                  "/Creator (line one\\\ncontinued\\nhere)\n"
                                  "/CreationDate (D:20040312153000+01'00')\n"
                                  "/ModDate (D:200403)\n"
                                  "/Keywords (a\\\\b)\n"
                                  ">>";
    for (const QByteArray& eol : {QByteArray("\n"), QByteArray("\r\n"), QByteArray("\r")}) {
        QByteArray dict = dictionary;
        dict.replace("\n", eol);
        const PdfInfo info = ReadInfo(dict, eol);
        EXPECT_TRUE(info.isPdf);
        EXPECT_EQ(info.version, u"1.4");
        EXPECT_FALSE(info.encrypted);
        EXPECT_EQ(info.title, u"Report (draft)");
        EXPECT_EQ(info.author, u"A. Smith");
        EXPECT_EQ(info.producer, u"AB");              // hexadecimal, then the UTF-16 mark
        EXPECT_EQ(info.subject, QStringLiteral("Caf\u00E9"));  // octal 351 is 233
        EXPECT_EQ(info.creator, u"line onecontinuedhere");  // continued line and "\n" vanish
        EXPECT_EQ(info.creationDate, u"2004/03/12 15:30:00");
        EXPECT_EQ(info.modificationDate, u"2004/03/ ::");  // missing parts stay empty
        EXPECT_EQ(info.keywords, u"a\\b");
        EXPECT_EQ(info.pages, u"1");
        EXPECT_FALSE(info.shortRead);
    }
}

TEST(PdfReader, ValueRulesKeptAsTheyAre)
{
    struct Row { QByteArray dictionary; QString PdfInfo::*field; QString expected; };
    const Row rows[] = {
        // Entries separated by blanks only run on to the closing ">".
        {"<< /Title (Report \\(draft\\)) /Author (A. Smith) >>", &PdfInfo::title,
         QStringLiteral("Report (draft)) /Author (A. Smith) ")},
        // A value whose text ends in ")" loses it before ")/".
        {"<< /Title (a (b))/Author (x) >>", &PdfInfo::title, QStringLiteral("a (b")},
        {"<< /Title ()/Author (x) >>", &PdfInfo::title, QString()},
        {"<< /Author (x)/Title <48656C6C6F>/Subject (y) >>", &PdfInfo::title, QStringLiteral("Hello")},
        // The last entry runs to the first ">": a blank before ">>" stays in the value.
        {"<< /Title (x) >>", &PdfInfo::title, QStringLiteral("x) ")},
        {"<< /Title (\\101\\013\\031\\222)>>", &PdfInfo::title, QStringLiteral("A '\u2122")},
        {"<< /Title (T\\777)/Author (kept)>>", &PdfInfo::title, QString()},  // abandoned
        {"<< /Title (T\\777)/Author (kept)>>", &PdfInfo::author, QStringLiteral("kept")},
        {"<< /CreationDate (D:2004) >>", &PdfInfo::creationDate, QStringLiteral("2004")},
        {"<< /CreationDate (20040312) >>", &PdfInfo::creationDate, QStringLiteral("2004/03/12 ::")},
        {"<< /CreationDate (yesterday) >>", &PdfInfo::creationDate, QStringLiteral("yesterday")},
        {"<< /ModDate ) >>", &PdfInfo::modificationDate, QString()},
        {"<< /Title (\\376\\377\\000A\\000\\351)>>", &PdfInfo::title, QStringLiteral("A\u00E9")},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ReadInfo(row.dictionary).*(row.field), row.expected) << row.dictionary.constData();
}

TEST(PdfReader, StringHelpers)
{
    EXPECT_EQ(PdfRestoreParens(QStringLiteral("\x01" "a\x02")), u"(a)");
    struct Hex { const char* in; QString out; };
    for (const Hex& row : {Hex{"4142", QStringLiteral("AB")}, Hex{"414", QStringLiteral("A")},
                           Hex{"4G", QString(QChar(4))}, Hex{"G4", QString(QChar(0))},
                           Hex{"  41", QString(QChar(0)) + u'A'}, Hex{"80", QStringLiteral("\u20AC")}})
        EXPECT_EQ(PdfHexDecode(QLatin1String(row.in)), row.out) << row.in;
    struct Escape { const char* in; std::optional<QString> out; };
    for (const Escape& row : {Escape{"a\\nb", QStringLiteral("ab")}, Escape{"a\\\\b", QStringLiteral("a\\b")},
                              Escape{"\\x", QStringLiteral("\\x")}, Escape{"\\(a\\)", QStringLiteral("(a)")},
                              Escape{"\\12", QStringLiteral("\n")}, Escape{"\\400", std::nullopt}})
        EXPECT_EQ(PdfUnescape(QLatin1String(row.in)), row.out) << row.in;
}

TEST(PdfReader, WhatIsNotAReadablePdf)
{
    EXPECT_FALSE(Read("").isPdf);
    EXPECT_FALSE(Read("%PD").isPdf);
    EXPECT_FALSE(Read("GIF89a").isPdf);
    EXPECT_FALSE(ReadPdfInfo(QStringLiteral("/no/such/file.pdf")).isPdf);

    // No trailer: the version and nothing else.
    const PdfInfo bare = Read("%PDF-1.3\n1 0 obj << /Title (x) >> endobj\n");
    EXPECT_TRUE(bare.isPdf);
    EXPECT_EQ(bare.version, u"1.3");
    EXPECT_FALSE(bare.encrypted);
    EXPECT_EQ(bare.title, QString());
    EXPECT_EQ(Read("%PDF-1").version, u"1");  // fewer than 9 bytes

    // Keywords by the hundred thousand with no value end after them: each is looked at,
    // and the file is still read in one pass (a reader that rescans would never end).
    QByteArray storm = "%PDF-1.4\n";
    while (storm.size() < 4 * 1024 * 1024)
        storm += "/Info 7/Root 8/Prev 9 startxref ";
    storm += "/Linearized";
    const PdfInfo stormy = Read(storm);
    EXPECT_TRUE(stormy.isPdf);
    EXPECT_EQ(stormy.title, QString());

    // A trailer whose xref offset points nowhere still tells the encryption.
    const PdfInfo encrypted = Read("%PDF-1.6\ntrailer << /Encrypt 5 0 R /Info 2 0 R >>\nstartxref\n999999\n%%EOF\n");
    EXPECT_TRUE(encrypted.encrypted);
    EXPECT_EQ(encrypted.title, QString());
}

TEST(PdfReader, PageCountIsASixteenBitNumber)
{
    auto pages = [](const QByteArray& count) {
        return Read(BuildPdf({kCatalog, "<< /Title (T)>>", "<< /Type /Pages /Count " + count + " >>"}, kTrailer));
    };
    EXPECT_EQ(pages("0012").pages, u"12");
    EXPECT_EQ(pages("32767").pages, u"32767");
    const PdfInfo tooMany = pages("40000");
    EXPECT_EQ(tooMany.pages, QString());
    EXPECT_EQ(tooMany.title, u"T");  // the rest of the result stands
    EXPECT_EQ(pages("many").pages, QString());
}

TEST(PdfReader, IncrementalUpdatesFollowThePreviousSections)
{
    const QByteArray base = BuildPdf({kCatalog, "<< /Title (Old)>>", kPages, kPage}, kTrailer);
    // The newest section holds neither the Info nor the root object: both come from the
    // older section, reached through /Prev.
    const QByteArray updated = AppendUpdate(base, 4, {kPage}, "/Size 5 /Root 1 0 R /Info 2 0 R");
    EXPECT_EQ(Read(updated).title, u"Old");
    EXPECT_EQ(Read(updated).pages, u"1");

    // The newest trailer names an Info object no section holds; the older trailer's
    // /Info, read on the way, names the one that is found.
    const QByteArray renamed = AppendUpdate(base, 4, {kPage}, "/Size 9 /Root 1 0 R /Info 8 0 R");
    EXPECT_EQ(Read(renamed).title, u"Old");

    // A /Prev that points at its own section ends the chain.
    QByteArray loop = base;
    const qint64 xref = loop.lastIndexOf("xref\n");
    loop.replace("/Size 5 /Root 1 0 R /Info 2 0 R", "/Size 5 /Info 9 0 R /Prev " + QByteArray::number(xref));
    EXPECT_EQ(Read(loop).title, QString());
}

TEST(PdfReader, LinearizedFileReadsItsFirstPageTrailer)
{
    // Header, linearization dictionary, the first-page section (objects 2 to 4) and its
    // trailer, the objects, then an empty main section whose trailer names nothing.
    const QByteArray head = "%PDF-1.4\n1 0 obj << /Linearized 1 >> endobj\n";
    const QList<QByteArray> objects = {"<< /Title (Linear)>>", "<< /Type /Catalog /Pages 4 0 R >>",
                                       "<< /Type /Pages /Count 7 >>"};
    const QByteArray firstTrailer = "trailer\n<< /Size 5 /Info 2 0 R /Root 3 0 R >>\n";
    const qint64 sectionSize = QByteArray("xref\n2 3\n").size() + 3 * 20 + firstTrailer.size();
    QByteArray body;
    QList<qint64> offsets;
    for (int i = 0; i < objects.size(); ++i) {
        offsets << head.size() + sectionSize + body.size();
        body += QByteArray::number(i + 2) + " 0 obj " + objects[i] + " endobj\n";
    }
    QByteArray section = "xref\n2 3\n";
    for (qint64 offset : offsets)
        section += Offset10(offset) + " 00000 n \n";
    section += firstTrailer;
    ASSERT_EQ(section.size(), sectionSize);
    QByteArray pdf = head + section + body;
    pdf += "xref\n0 1\n0000000000 65535 f \ntrailer\n<< /Size 5 >>\nstartxref\n"
           + QByteArray::number(head.size()) + "\n%%EOF\n";
    const PdfInfo info = Read(pdf);
    EXPECT_EQ(info.title, u"Linear");
    EXPECT_EQ(info.pages, u"7");
}

TEST(PdfReader, ALargeFileCostsOnlyItsTail)
{
    // 40 MB of page content before the objects: the reader needs the first bytes and
    // the tail, not the middle.
    QByteArray filler(40 * 1024 * 1024, ' ');
    const QByteArray pdf = BuildPdf({"<< /Filler (" + filler + ") >>", kCatalog, "<< /Title (Big)>>", kPages},
                                    "/Root 2 0 R /Info 3 0 R");
    filler.clear();
    const PdfInfo info = Read(pdf);
    EXPECT_EQ(info.title, u"Big");
    EXPECT_LT(info.bytesRead, 1024 * 1024);
}

TEST(PdfReader, RealFiles)
{
    struct Row {
        const char* file;
        const char* version;
        bool encrypted;
        QString title;
        QString author;
        QString created;
        QString pages;
    };
    // Values checked by hand against each file's own Info dictionary and trailer.
    const Row rows[] = {
        // Info split over lines as "/Author (...)\n/Creator (Firefox) /CreationDate ...":
        // the author ends at ")/", the creator runs on as entries separated by blanks do.
        {"pdf/tika__testPDF.pdf", "1.3", false, QStringLiteral("Apache Tika - Apache Tika) "),
         QStringLiteral("Bertrand Delacr\u00E9taz"), QStringLiteral("2007/09/15 11:02:31"), QStringLiteral("1")},
        // No Info dictionary at all.
        {"pdf/exiftool__PDF2.pdf", "1.3", false, QString(), QString(), QString(), QStringLiteral("1")},
        // The update names the same Info object; the root lives only in the older section,
        // whose entry for the Info object is read last: the older dictionary wins.
        {"pdf/poi__quick.pdf", "1.3", false, QString(), QString(), QStringLiteral("2005/05/26 20:52:58"),
         QStringLiteral("1")},
    };
    for (const Row& row : rows) {
        const QString path = CorpusFile(QLatin1String(row.file));
        if (!QFile::exists(path))
            GTEST_SKIP() << "shared corpus not found: " << path.toStdString();
        const PdfInfo info = ReadPdfInfo(path);
        EXPECT_TRUE(info.isPdf) << row.file;
        EXPECT_EQ(info.version, QLatin1String(row.version)) << row.file;
        EXPECT_EQ(info.encrypted, row.encrypted) << row.file;
        EXPECT_EQ(info.title, row.title) << row.file;
        EXPECT_EQ(info.author, row.author) << row.file;
        EXPECT_EQ(info.creationDate, row.created) << row.file;
        EXPECT_EQ(info.pages, row.pages) << row.file;
    }
}
