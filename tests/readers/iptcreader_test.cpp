// The IPTC reader on JPEG and TIFF-like files built here, and on real images.
#include "readers/iptcreader.h"

#include "core/codepage.h"
#include "readers/pagedfile.h"
#include "support/tempfolder.h"

#include <QFile>
#include <gtest/gtest.h>


using namespace brindar;
using brindar::test::CorpusFile;
using brindar::test::TempFolder;

namespace {

QString S(const char* utf8) { return QString::fromUtf8(utf8); }
// Bytes of a literal, zero bytes included.
template <size_t N>
QByteArray B(const char (&text)[N]) { return QByteArray(text, N - 1); }
QByteArray Be16(qint64 n) { return QByteArray(1, char(n >> 8)) + char(n & 0xFF); }

// One dataset: tag marker, record, dataset number, 16-bit length, value.
QByteArray Tag(int dataset, const QByteArray& value, int record = 2)
{
    return QByteArray("\x1C") + char(record) + char(dataset) + Be16(value.size()) + value;
}

// A Photoshop image resource: the name as a Pascal string padded to even, a 32-bit size, the data padded to even.
QByteArray Resource(const QByteArray& data, const QByteArray& name = {}, int id = 0x0404, qint64 size = -1)
{
    size = size < 0 ? data.size() : size;
    return "8BIM" + Be16(id) + char(name.size()) + name + QByteArray(1 - name.size() % 2, '\0') + Be16(size >> 16)
           + Be16(size) + data + QByteArray(data.size() % 2, '\0');
}

QByteArray App13(const QByteArray& resources)
{
    return "\xFF\xED" + Be16(resources.size() + 16) + B("Photoshop 3.0\0") + resources;
}

QByteArray Jpeg(const QByteArray& segments)
{
    return "\xFF\xD8" + B("\xFF\xE0\x00\x10JFIF\0\x01\x02\0\0\x01\0\x01\0\0") + segments + "\xFF\xD9";
}

QByteArray JpegOf(const QByteArray& datasets) { return Jpeg(App13(Resource(datasets))); }

// A TIFF header, then bytes that are no resource, the resources, more filler.
QByteArray TiffLike(const QByteArray& resources)
{
    return B("II*\0\x08\0\0\0") + QByteArray(40, '\x11') + resources + QByteArray(40, '\x22');
}

IptcResult Read(const QByteArray& bytes)
{
    TempFolder folder;
    return ReadIptc(folder.write(QStringLiteral("image.jpg"), bytes), false);
}

using R = IptcResult;

}  // namespace

TEST(IptcReader, DatasetsFillTheirFieldAndElement)
{
    struct Row { int dataset; QString R::*field; const char* element; bool repeated; };
    // A kept and a repeated dataset, the numbered fragment-only ranges and their edges.
    const Row rows[] = {
        {5, &R::objectName, "objectname", false}, {25, &R::keywords, "keyword", true},
        {95, &R::provinceState, "province-state", false}, {122, &R::captionWriter, "captionwriter", true},
        {200, nullptr, "customfield1", false}, {219, nullptr, "customfield20", false},
        {220, nullptr, "segment220", false}, {230, nullptr, "imagenotes", false}, {1, nullptr, "segment1", false},
    };
    for (const Row& row : rows) {
        // Two occurrences: a repeated field joins them, any other keeps the last.
        const IptcResult result = Read(JpegOf(Tag(row.dataset, "one") + Tag(row.dataset, "two")));
        const QString e = QLatin1String(row.element);
        EXPECT_EQ(result.fragment, u'<' + e + S(">one</") + e + S("><") + e + S(">two</") + e + u'>') << row.dataset;
        if (row.field) {
            EXPECT_EQ(result.*row.field, row.repeated ? S("one; two") : S("two")) << row.dataset;
        }
    }
}

TEST(IptcReader, MacintoshAccentsTable)
{
    // The six letters written through placeholders, next to the codes that would replace them again.
    EXPECT_EQ(MacRomanToAnsi(DecodeWin1252("\x80\x8D\x8E\x8F\x91\x95\x99\xE7\xE8\xE9\xEB\xEF\xF4"), true),
              S("ÄçéèëïôÁËÈÎÔÙ"));
    // Codes outside the table and the placeholders' letters stay; the placeholders become letters.
    EXPECT_EQ(MacRomanToAnsi(DecodeWin1252("\x8C\x81\xFF abc &ccedil;&egrave;&euml;&iuml;&ocirc;&amp;"), true),
              DecodeWin1252("\x8C\x81\xFF abc \xE7\xE8\xEB\xEF\xF4&amp;"));
}

TEST(IptcReader, DatasetAndBlockRules)
{
    const QByteArray datasets = Tag(120, "first") + Tag(105, "second");
    const QString both = S("<caption>first</caption><headline>second</headline>");
    const QByteArray tail = Tag(120, "kept") + Tag(105, "cut off");
    const QByteArray fullTiff = TiffLike(Resource(datasets, {}, 0x0404, 0xFFFF));
    // The file cut `extra` bytes after the start of `marker`.
    auto cut = [](const QByteArray& file, const char* marker, int extra) { return file.left(file.indexOf(marker) + extra); };
    struct Row { const char* what; QByteArray file; QString fragment; };
    const Row rows[] = {
        // The record version's two bytes in decimal; the second is taken even when the length says 1.
        {"record version of length 1", JpegOf(Tag(0, B("\x07")) + Tag(90, "Oslo")), S("<segment0>728</segment0><city>Oslo</city>")},
        {"cut at a zero byte", JpegOf(Tag(120, B("ab\0cd"))), S("<caption>ab</caption>")},
        {"zero length stops", JpegOf(Tag(120, "a") + B("\x1C\x02\x69\x00\x00") + Tag(105, "b")), S("<caption>a</caption>")},
        {"other records are passed over", JpegOf(Tag(90, "x", 1) + Tag(90, "Paris")), S("<city>Paris</city>")},
        // The next tag is looked for from length + 1 after the tag: inside the value, where a headline starts.
        {"next tag looked for inside the value", JpegOf(B("\x1C\x02\x78\x00\x05" "a\x1C\x02\x69\x00" "\x01H")),
         S("<caption>a  i</caption><headline>H</headline>")},
        {"Windows-1252, accents off", JpegOf(Tag(120, "\xE7\x8D&eacute;\xE9\xC8\x96")),
         S("<caption>ç\u008D&amp;eacute;éÈ-</caption>")},
        {"odd name", Jpeg(App13(Resource(datasets, "ABC"))), both},
        // An even name's padding byte is not counted: the size is read one byte early, so 0x0267 reads as 2;
        // the data end, counted from 12 bytes after "8BIM", then falls on the first tag, which is still read.
        {"even name", Jpeg(App13(Resource(Tag(120, "first") + Tag(105, QByteArray(600, 'x')), "AB"))), S("<caption>first</caption>")},
        // The tag that starts right at the end of the data is read, not the next one.
        {"end of data", Jpeg(App13(Resource(Tag(120, "a") + Tag(105, "b") + Tag(90, "c"), {}, 0x0404, 6))),
         S("<caption>a</caption><headline>b</headline>")},
        {"other resources first", Jpeg(App13(Resource(B("\0\0\0\0"), {}, 0x03ED) + Resource(datasets))), both},
        {"only the first block", Jpeg(App13(Resource(datasets) + Resource(Tag(90, "Oslo")))), both},
        {"other resource id only", Jpeg(App13(Resource(datasets, {}, 0x0405))), {}},
        {"resource outside APP13", Jpeg(QByteArray(20, ' ') + Resource(datasets)), {}},
        {"TIFF-like", TiffLike(Resource(datasets)), both},
        {"size past the end", fullTiff.left(fullTiff.size() - 40), both},  // the datasets up to the end
        // The file ends inside a value, or inside a tag: what came before stays; a zero byte completes a value.
        {"value cut by the end", cut(JpegOf(tail), "cut", 3), S("<caption>kept</caption>")},
        {"tag cut by the end", cut(JpegOf(tail), "\x1C\x02\x69", 3), S("<caption>kept</caption>")},
        {"value ended by a zero byte before the end", cut(JpegOf(Tag(120, "kept") + Tag(105, B("ab\0cdefg"))), "cd", 0),
         S("<caption>kept</caption><headline>ab</headline>")},
        {"empty file", {}, {}},
    };
    for (const Row& row : rows) {
        const IptcResult result = Read(row.file);
        EXPECT_EQ(result.fragment, row.fragment) << row.what;
        EXPECT_FALSE(result.shortRead) << row.what;
    }
    // Fields hold values unescaped; an empty first value adds no separator before the next.
    const IptcResult fields = Read(JpegOf(Tag(80, B("\0x")) + Tag(80, "y") + Tag(120, "A & B")));
    EXPECT_EQ(fields.byline, S("y"));
    EXPECT_EQ(fields.caption, S("A & B"));
    EXPECT_EQ(fields.fragment, S("<byline></byline><byline>y</byline><caption>A &amp; B</caption>"));
}

TEST(IptcReader, LargeFilesAreReadOnce)
{
    // Without the resource, a TIFF-like file is read once, front to back; so is a JPEG whose APP13
    // windows all overlap, and one resource at the end is still found.
    QByteArray tiff = TiffLike({}) + QByteArray(3 << 20, '8');
    QByteArray jpeg = B("\xFF\xD8");
    while (jpeg.size() < (3 << 20))
        jpeg += B("\xFF\xED\xFF\xFF") + QByteArray(1000, 'M');
    for (QByteArray* file : {&tiff, &jpeg}) {
        IptcResult result = Read(*file);
        EXPECT_EQ(result.fragment, QString());
        EXPECT_EQ(result.bytesRead, file->size());
        *file += B("\xFF\xED\x00\x40") + Resource(Tag(90, "Oslo")) + QByteArray(40, ' ');
        result = Read(*file);
        EXPECT_EQ(result.city, S("Oslo"));
        EXPECT_EQ(result.bytesRead, file->size());
    }
}

TEST(IptcReader, RealImages)
{
    // Values from the bytes of each file's 8BIM 0x0404 block (xxd), as in iptc_raw of reference-values.json.
    const QString mac = S("<segment0>02</segment0><caption>Bird site in north eastern SkŒne, Sweden.\r(new line)</caption>"
                          "<byline>Some Tourist</byline><objectname>Tosteberga Ängar</objectname><keyword>grazelands</keyword>"
                          "<keyword>nature reserve</keyword><keyword>bird watching</keyword><keyword>coast</keyword>");
    struct Row { const char* file; bool macintoshAccents; QList<std::pair<QString R::*, QString>> fields; QString fragment; };
    const Row rows[] = {
        {"iptc/exiftool__ExifTool.jpg", false,
         {{&R::supplementalCategory, S("amazing; image; utilities")}, {&R::source, S("I'm the source")}},
         S("<segment0>02</segment0><caption>A witty caption</caption><captionwriter>I wrote it</captionwriter>"
           "<headline>No headline</headline><specialinstructions>What instructions</specialinstructions>"
           "<byline>Phil Harvey</byline><bylinetitle>My Position</bylinetitle><credit>My Credit</credit>"
           "<objectname>Test IPTC picture</objectname><createddate>20040226</createddate><city>Kingston</city>"
           "<province-state>Ont</province-state><country>Canada</country>"
           "<originaltransmissionreference>What is a transmission reference</originaltransmissionreference>"
           "<category>1</category><supplementalcategory>amazing</supplementalcategory>"
           "<supplementalcategory>image</supplementalcategory><supplementalcategory>utilities</supplementalcategory>"
           "<copyright>Copyright 2004 Phil Harvey</copyright><priority>8</priority><source>I&apos;m the source</source>"
           "<keyword>jambalaya</keyword>")},
        // Its IPTC sits in TIFF tag 33723 as bare datasets, without a Photoshop resource.
        {"iptc/exiftool__ExifTool.tif", false, {}, {}},
        // Two APP13 segments with a block each (record version bytes 00 00): the first only; then IPTC in the second.
        {"iptc/exiv2__iptc-psAPP13-wIPTC1-psAPP13-wIPTC2.jpg", false, {},
         S("<segment0>00</segment0><credit>This is credit number one</credit>")},
        {"iptc/exiv2__iptc-psAPP13-noIPTC-psAPP13-wIPTC.jpg", false, {}, S("<segment0>00</segment0><credit>This is a credit</credit>")},
        // Written by Photoshop CS2 on a Mac: "\x80ngar" is "Ängar" in Mac OS Roman;
        // "Sk\x8Cne" (å, code 140) is not in the accents table and stays "Œ".
        {"iptc/tika__testJPEG_commented_pspcs2mac.jpg", true,
         {{&R::objectName, S("Tosteberga Ängar")}, {&R::keywords, S("grazelands; nature reserve; bird watching; coast")}}, mac},
        {"iptc/tika__testJPEG_commented_pspcs2mac.jpg", false, {{&R::objectName, S("Tosteberga €ngar")}},
         QString(mac).replace(S("Ängar"), S("€ngar"))},
        // A PSD is no JPEG: its resource is found among the image resources.
        {"iptc/exiftool__Photoshop.psd", false, {},
         S("<segment0>02</segment0><caption>This is a teeny weeny white square</caption>"
           "<captionwriter>Me too</captionwriter><byline>Phil Harvey</byline><bylinetitle>Supreme leader</bylinetitle>"
           "<objectname>Test Picture</objectname><copyright>Free for all</copyright>")},
    };
    for (const Row& row : rows) {
        const QString path = CorpusFile(QLatin1String(row.file));
        if (!QFile::exists(path))
            GTEST_SKIP() << "shared corpus not found: " << path.toStdString();
        const IptcResult result = ReadIptc(path, row.macintoshAccents);
        for (const auto& [field, value] : row.fields)
            EXPECT_EQ(result.*field, value) << row.file;
        EXPECT_EQ(result.fragment, row.fragment) << row.file;
        EXPECT_FALSE(result.shortRead) << row.file;
    }
}
