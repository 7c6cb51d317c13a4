// The PDF reader on files built here and on real files of other projects' test suites.
#include "readers/pdfreader.h"

#include "support/tempfolder.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::CorpusFile;
using brindar::test::TempFolder;

namespace {

// Appends `objects`, numbered from `first`, their classic cross-reference section (with the free entry 0 when
// `first` is 1) and its trailer, whose /Prev names the section `pdf` already has; `eol` separates every line.
QByteArray AddSection(QByteArray pdf, int first, const QList<QByteArray>& objects, QByteArray trailer,
                      const QByteArray& eol = "\n")
{
    if (const qsizetype last = pdf.lastIndexOf("startxref"); last >= 0)
        trailer += eol + "/Prev " + pdf.mid(last + 10).trimmed().split('\n').first() + eol;
    QByteArray xref = "xref" + eol + QByteArray::number(first == 1 ? 0 : first) + ' '
                      + QByteArray::number(objects.size() + (first == 1)) + eol;
    if (first == 1)
        xref += "0000000000 65535 f " + eol;
    for (int i = 0; i < objects.size(); ++i) {
        xref += QByteArray::number(pdf.size()).rightJustified(10, '0') + " 00000 n " + eol;
        pdf += QByteArray::number(first + i) + " 0 obj" + eol + objects[i] + eol + "endobj" + eol;
    }
    const QByteArray start = QByteArray::number(pdf.size());
    return pdf + xref + "trailer" + eol + "<< " + trailer + " >>" + eol + "startxref" + eol + start + eol + "%%EOF" + eol;
}

QByteArray BuildPdf(const QList<QByteArray>& objects, const QByteArray& trailer, const QByteArray& eol = "\n")
{
    return AddSection("%PDF-1.4" + eol, 1, objects, "/Size " + QByteArray::number(objects.size() + 1) + " " + trailer, eol);
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
    const QByteArray dictionary = "<< /Title (Report \\(draft\\))\n/Author (A. Smith)\n/Producer <FEFF00410042>\n"
                                  "/Subject (Caf\\351)\n/Creator (line one\\\ncontinued\\nhere)\n"
                                  "/CreationDate (D:20040312153000+01'00')\n/ModDate (D:200403)\n/Keywords (a\\\\b)\n>>";
    for (const QByteArray& eol : {QByteArray("\n"), QByteArray("\r\n"), QByteArray("\r")}) {
        const PdfInfo info = ReadInfo(QByteArray(dictionary).replace("\n", eol), eol);
        EXPECT_EQ(info.version, u"1.4");
        EXPECT_FALSE(info.encrypted);
        EXPECT_EQ(info.title, u"Report (draft)");
        EXPECT_EQ(info.author, u"A. Smith");
        EXPECT_EQ(info.producer, u"AB");                        // hexadecimal, then the UTF-16 mark
        EXPECT_EQ(info.subject, QStringLiteral("Caf\u00E9"));    // octal 351 is 233
        EXPECT_EQ(info.creator, u"line onecontinuedhere");      // continued line and "\n" vanish
        EXPECT_EQ(info.creationDate, u"2004/03/12 15:30:00");
        EXPECT_EQ(info.modificationDate, u"2004/03/ ::");       // missing parts stay empty
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
        {"<< /Title (Report \\(draft\\)) /Author (A. Smith) >>", &PdfInfo::title, QStringLiteral("Report (draft)) /Author (A. Smith) ")},
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
        {"<< /Title (\\x\\12)>>", &PdfInfo::title, QStringLiteral("\\x\n")},  // an unknown escape stays
        // Hexadecimal pairs count as far as they are valid, blanks skipped; a last single digit is dropped.
        {"<< /Title <414>/Author (x)>>", &PdfInfo::title, QStringLiteral("A")},
        {"<< /Title <4GG4 44180>/Author (x)>>", &PdfInfo::title, QString(QChar(4)) + QChar(0) + QChar(4) + QStringLiteral("A\u20AC")},
    };
    for (const Row& row : rows)
        EXPECT_EQ(ReadInfo(row.dictionary).*(row.field), row.expected) << row.dictionary.constData();
}

TEST(PdfReader, WhatIsNotAReadablePdf)
{
    EXPECT_FALSE(Read("").isPdf);
    EXPECT_FALSE(Read("%PD").isPdf);
    EXPECT_FALSE(Read("GIF89a").isPdf);
    EXPECT_FALSE(ReadPdfInfo(QStringLiteral("/no/such/file.pdf")).isPdf);
    EXPECT_EQ(Read("%PDF-1").version, u"1");  // fewer than 9 bytes

    // No trailer: the version and nothing else.
    const PdfInfo bare = Read("%PDF-1.3\n1 0 obj << /Title (x) >> endobj\n");
    EXPECT_EQ(bare.version, u"1.3");
    EXPECT_FALSE(bare.encrypted);
    EXPECT_EQ(bare.title, QString());

    // Keywords by the hundred thousand with no value end after them: each is looked at, and the
    // file is still read in one pass (a reader that rescans would never end).
    QByteArray storm = "%PDF-1.4\n";
    while (storm.size() < 4 * 1024 * 1024)
        storm += "/Info 7/Root 8/Prev 9 startxref ";
    EXPECT_EQ(Read(storm + "/Linearized").title, QString());

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
    EXPECT_EQ(pages("many").pages, QString());
    const PdfInfo tooMany = pages("40000");
    EXPECT_EQ(tooMany.pages, QString());
    EXPECT_EQ(tooMany.title, u"T");  // the rest of the result stands
}

TEST(PdfReader, CrossReferenceChains)
{
    const QByteArray base = BuildPdf({kCatalog, "<< /Title (Old)>>", kPages, kPage}, kTrailer);
    // The newest section holds neither the Info nor the root object: both come from the older one.
    const PdfInfo updated = Read(AddSection(base, 4, {kPage}, "/Size 5 /Root 1 0 R /Info 2 0 R"));
    EXPECT_EQ(updated.title, u"Old");
    EXPECT_EQ(updated.pages, u"1");
    // The newest trailer names an Info object no section holds; the older trailer's, read on the way, is found.
    EXPECT_EQ(Read(AddSection(base, 4, {kPage}, "/Size 9 /Root 1 0 R /Info 8 0 R")).title, u"Old");
    // A /Prev that points at its own section ends the chain.
    const QByteArray own = "/Size 5 /Info 9 0 R /Prev " + QByteArray::number(base.indexOf("\nxref\n") + 1) + "\n";
    EXPECT_EQ(Read(QByteArray(base).replace("/Size 5 /Root 1 0 R /Info 2 0 R", own)).title, QString());

    // Linearized: the last trailer names nothing; its startxref leads to the first-page section, read forwards.
    QByteArray linear = AddSection("%PDF-1.4\n1 0 obj << /Linearized 1 >> endobj\n", 2,
                                   {"<< /Title (Linear)>>", "<< /Type /Catalog /Pages 4 0 R >>", "<< /Type /Pages /Count 7 >>"},
                                   "/Size 5 /Info 2 0 R /Root 3 0 R");
    linear += "xref\n0 1\n0000000000 65535 f \ntrailer\n<< /Size 5 >>\nstartxref\n"
              + QByteArray::number(linear.indexOf("xref\n2 3")) + "\n%%EOF\n";
    const PdfInfo info = Read(linear);
    EXPECT_EQ(info.title, u"Linear");
    EXPECT_EQ(info.pages, u"7");
}

TEST(PdfReader, ALargeFileCostsOnlyItsTail)
{
    // 40 MB of page content before the objects: the reader needs the first bytes and the tail only.
    const PdfInfo info = Read(BuildPdf({"<< /Filler (" + QByteArray(40 * 1024 * 1024, ' ') + ") >>", kCatalog,
                                        "<< /Title (Big)>>", kPages}, "/Root 2 0 R /Info 3 0 R"));
    EXPECT_EQ(info.title, u"Big");
    EXPECT_LT(info.bytesRead, 1024 * 1024);
}

TEST(PdfReader, RealFiles)
{
    struct Row { const char* file; QString title; QString author; QString created; };
    // Checked by hand against each file's Info dictionary and trailer: unencrypted one-page PDF 1.3 files.
    const Row rows[] = {
        // Info split over lines as "/Author (...)\n/Creator (Firefox) /CreationDate ...":
        // the author ends at ")/", the creator runs on as entries separated by blanks do.
        {"pdf/tika__testPDF.pdf", QStringLiteral("Apache Tika - Apache Tika) "), QStringLiteral("Bertrand Delacr\u00E9taz"),
         QStringLiteral("2007/09/15 11:02:31")},
        {"pdf/exiftool__PDF2.pdf", QString(), QString(), QString()},  // no Info dictionary at all
        // The update names the same Info object; the root lives only in the older section, whose
        // entry for the Info object is read last: the older dictionary wins.
        {"pdf/poi__quick.pdf", QString(), QString(), QStringLiteral("2005/05/26 20:52:58")},
    };
    for (const Row& row : rows) {
        const QString path = CorpusFile(QLatin1String(row.file));
        if (!QFile::exists(path))
            GTEST_SKIP() << "shared corpus not found: " << path.toStdString();
        const PdfInfo info = ReadPdfInfo(path);
        EXPECT_EQ(info.version, u"1.3") << row.file;
        EXPECT_FALSE(info.encrypted) << row.file;
        EXPECT_EQ(info.title, row.title) << row.file;
        EXPECT_EQ(info.author, row.author) << row.file;
        EXPECT_EQ(info.creationDate, row.created) << row.file;
        EXPECT_EQ(info.pages, u"1") << row.file;
    }
}
