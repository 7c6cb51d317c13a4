// The IPTC reader on JPEG and TIFF-like files built here, against a literal search, and on real images.
#include "readers/iptcreader.h"

#include "core/codepage.h"
#include "readers/pagedfile.h"
#include "support/tempfolder.h"

#include <QFile>
#include <gtest/gtest.h>

#include <random>

using namespace brindar;
using brindar::test::CorpusFile;
using brindar::test::TempFolder;

namespace {

QString S(const char* utf8) { return QString::fromUtf8(utf8); }

// Bytes of a literal, zero bytes included.
template <size_t N>
QByteArray B(const char (&text)[N]) { return QByteArray(text, N - 1); }

QByteArray Be16(int n) { return QByteArray(1, char(n >> 8)) + char(n & 0xFF); }
QByteArray Be32(qint64 n) { return Be16(int(n >> 16)) + Be16(int(n & 0xFFFF)); }

// One dataset: tag marker, record, dataset number, 16-bit length, value.
QByteArray Tag(int dataset, const QByteArray& value, int record = 2)
{
    return QByteArray("\x1C") + char(record) + char(dataset) + Be16(int(value.size())) + value;
}

// A Photoshop image resource as Photoshop writes it: the name as a Pascal string padded
// to an even length, a 32-bit size (`declaredSize` when given), the data padded to even.
QByteArray Resource(const QByteArray& data, const QByteArray& name = {}, int id = 0x0404, qint64 declaredSize = -1)
{
    QByteArray pascal = char(name.size()) + name;
    if (pascal.size() % 2)
        pascal += '\0';
    QByteArray block = "8BIM" + Be16(id) + pascal + Be32(declaredSize < 0 ? data.size() : declaredSize) + data;
    return data.size() % 2 ? block + '\0' : block;
}

QByteArray App13(const QByteArray& resources)
{
    const QByteArray body = B("Photoshop 3.0\0") + resources;
    return "\xFF\xED" + Be16(int(body.size()) + 2) + body;
}

QByteArray Jpeg(const QByteArray& segments)
{
    return "\xFF\xD8" + B("\xFF\xE0\x00\x10JFIF\0\x01\x02\x00\x00\x01\x00\x01\x00\x00") + segments + "\xFF\xD9";
}

// A TIFF header, then bytes that are no resource, the resources, more filler.
QByteArray TiffLike(const QByteArray& resources)
{
    return B("II*\0\x08\0\0\0") + QByteArray(40, '\x11') + resources + QByteArray(40, '\x22');
}

IptcResult Read(const QByteArray& bytes, bool macintoshAccents = false)
{
    TempFolder folder;
    return ReadIptc(folder.write(QStringLiteral("image.jpg"), bytes), macintoshAccents);
}

// One file rewritten in place and cut to its new size: creating a file per search, or
// truncating one to nothing, can cost the file system far more than the search.
qint64 Find(const TempFolder& folder, const QByteArray& bytes)
{
    const QString path = folder.file(QStringLiteral("search.bin"));
    QFile out(path);
    EXPECT_TRUE(out.open(QIODevice::ReadWrite) && out.write(bytes) == bytes.size() && out.resize(bytes.size()));
    out.close();
    PagedFile file(path);
    return FindIptcResource(file);
}

// The search for the resource block transcribed literally, for comparison only: 1-based
// positions, a window per APP13 marker in a JPEG and per position otherwise, the stop
// when j + 5 reaches the size; a byte past the end ends the search. Returns the 1-based
// j of "8BIM", 0 when none is found.
qint64 LiteralSearch(const QByteArray& bytes)
{
    const qint64 size = bytes.size();
    auto b = [&](qint64 x) { return x >= 1 && x <= size ? int(static_cast<unsigned char>(bytes[x - 1])) : -1; };
    if (size <= 0)
        return 0;
    const bool jpeg = b(1) == 0xFF || b(2) == 0xD8;
    for (qint64 i = 1; i <= size - 1; ++i) {
        qint64 windowEnd = size - 5;
        if (jpeg) {
            if (b(i) != 0xFF || b(i + 1) != 0xED)
                continue;
            if (b(i + 2) < 0 || b(i + 3) < 0)
                return 0;
            windowEnd = i + b(i + 2) * 256 + b(i + 3);
        }
        for (qint64 j = i + 4; j <= windowEnd; ++j) {
            if (j + 5 >= size)
                return 0;
            if (b(j) == '8' && b(j + 1) == 'B' && b(j + 2) == 'I' && b(j + 3) == 'M' && b(j + 4) == 4 && b(j + 5) == 4)
                return j;
        }
    }
    return 0;
}

using R = IptcResult;
using Field = QString R::*;
const Field kFields[] = {&R::objectName, &R::editStatus, &R::priority, &R::category, &R::supplementalCategory,
    &R::fixtureIdentifier, &R::keywords, &R::releaseDate, &R::releaseTime, &R::specialInstructions,
    &R::referenceService, &R::referenceDate, &R::referenceNumber, &R::createdDate, &R::createdTime,
    &R::originatingProgram, &R::programVersion, &R::objectCycle, &R::byline, &R::bylineTitle, &R::city,
    &R::provinceState, &R::countryCode, &R::country, &R::originalTransmissionReference, &R::headline, &R::credit,
    &R::source, &R::copyright, &R::contact, &R::caption, &R::localCaption, &R::captionWriter, &R::imageType};

}  // namespace

TEST(IptcReader, DatasetsFillTheirFieldAndElement)
{
    struct Row { int dataset; Field field; const char* element; bool repeated; };
    // A kept and a repeated dataset, the numbered fragment-only ranges and their edges.
    const Row rows[] = {
        {5, &R::objectName, "objectname", false}, {25, &R::keywords, "keyword", true},
        {95, &R::provinceState, "province-state", false}, {122, &R::captionWriter, "captionwriter", true},
        {200, nullptr, "customfield1", false}, {219, nullptr, "customfield20", false},
        {220, nullptr, "segment220", false}, {230, nullptr, "imagenotes", false}, {1, nullptr, "segment1", false},
    };
    for (const Row& row : rows) {
        // Two occurrences: a repeated field joins them, any other keeps the last.
        const IptcResult result = Read(Jpeg(App13(Resource(Tag(row.dataset, "one") + Tag(row.dataset, "two")))));
        const QString element = QLatin1String(row.element);
        EXPECT_EQ(result.fragment, u'<' + element + S(">one</") + element + S("><") + element + S(">two</") + element + u'>')
            << row.dataset;
        for (const Field field : kFields)
            EXPECT_EQ(result.*field, field != row.field ? QString() : row.repeated ? S("one; two") : S("two")) << row.dataset;
    }
}

TEST(IptcReader, DatasetValueRules)
{
    struct Row { const char* what; QByteArray datasets; bool macintoshAccents; Field field; QString value; QString fragment; };
    const Row rows[] = {
        {"keywords", Tag(25, "sea") + Tag(25, "sun"), false, &R::keywords, S("sea; sun"),
         S("<keyword>sea</keyword><keyword>sun</keyword>")},
        {"escaped in the fragment only", Tag(120, "A & B"), false, &R::caption, S("A & B"), S("<caption>A &amp; B</caption>")},
        {"record version", Tag(0, B("\x00\x02")), false, nullptr, {}, S("<segment0>02</segment0>")},
        {"record version, decimal", Tag(0, B("\x01\x0C")), false, nullptr, {}, S("<segment0>112</segment0>")},
        // The second byte is taken even when the length says 1: it is the next tag's 0x1C.
        {"record version of length 1", Tag(0, B("\x07")) + Tag(90, "Oslo"), false, &R::city, S("Oslo"),
         S("<segment0>728</segment0><city>Oslo</city>")},
        {"custom field", Tag(202, "x"), false, nullptr, {}, S("<customfield3>x</customfield3>")},
        {"cut at a zero byte", Tag(120, B("ab\0cd")), false, &R::caption, S("ab"), S("<caption>ab</caption>")},
        // An empty first value leaves the field empty, so no separator comes before the next.
        {"empty first occurrence", Tag(80, B("\0x")) + Tag(80, "y"), false, &R::byline, S("y"),
         S("<byline></byline><byline>y</byline>")},
        {"zero length stops", Tag(120, "a") + B("\x1C\x02\x69\x00\x00") + Tag(105, "b"), false, &R::headline, {},
         S("<caption>a</caption>")},
        {"other records are passed over", Tag(90, "x", 1) + Tag(90, "Paris"), false, &R::city, S("Paris"),
         S("<city>Paris</city>")},
        // The look for the next tag resumes at length + 1 after the tag: inside the value,
        // where a headline tag starts (its length's low byte follows the value).
        {"next tag looked for inside the value", B("\x1C\x02\x78\x00\x05" "a\x1C\x02\x69\x00" "\x01H"), false,
         &R::headline, S("H"), S("<caption>a  i</caption><headline>H</headline>")},
        {"accents off", Tag(120, "caf\x8E gar\x8Don"), false, &R::caption, S("caf\u017D gar\u008Don"),
         S("<caption>caf\u017D gar\u008Don</caption>")},
        {"accents on", Tag(120, "caf\x8E gar\x8Don"), true, &R::caption, S("café garçon"), S("<caption>café garçon</caption>")},
        // ç (231) becomes Á, then the placeholder of 141 becomes ç; a literal placeholder
        // is taken too; é (233) becomes È, which the earlier row 200 can no longer touch.
        {"placeholder chain on", Tag(120, "\xE7\x8D&eacute;\xE9\xC8\x96"), true, &R::caption, S("ÁçéÈ»ñ"),
         S("<caption>ÁçéÈ»ñ</caption>")},
        {"placeholder chain off", Tag(120, "\xE7\x8D&eacute;\xE9\xC8\x96"), false, &R::caption,
         S("ç\u008D&eacute;éÈ\u2013"), S("<caption>ç\u008D&amp;eacute;éÈ-</caption>")},
    };
    for (const Row& row : rows) {
        const IptcResult result = Read(Jpeg(App13(Resource(row.datasets))), row.macintoshAccents);
        EXPECT_EQ(result.fragment, row.fragment) << row.what;
        if (row.field) {
            EXPECT_EQ(result.*row.field, row.value) << row.what;
        }
        EXPECT_FALSE(result.shortRead) << row.what;
    }
}

TEST(IptcReader, MacintoshAccentsTable)
{
    // The six letters written through placeholders, next to the codes that would
    // replace them again if they were written directly.
    const QByteArray codes = "\x80\x8D\x8E\x8F\x91\x95\x99\xE7\xE8\xE9\xEB\xEF\xF4";
    const QString text = DecodeWin1252(codes);
    EXPECT_EQ(MacRomanToAnsi(text, true), S("ÄçéèëïôÁËÈÎÔÙ"));
    EXPECT_EQ(MacRomanToAnsi(text, false), text);
    // Codes outside the table and the letters the placeholders stand for stay; the
    // placeholders themselves become letters only with the setting on.
    const QString others = DecodeWin1252("\x8C\x81\xFF abc &ccedil;&egrave;&euml;&iuml;&ocirc;&amp;");
    EXPECT_EQ(MacRomanToAnsi(others, true), DecodeWin1252("\x8C\x81\xFF abc \xE7\xE8\xEB\xEF\xF4&amp;"));
    EXPECT_EQ(MacRomanToAnsi(others, false), others);
}

TEST(IptcReader, ResourceBlockLayout)
{
    const QByteArray datasets = Tag(120, "first") + Tag(105, "second");
    const QString both = S("<caption>first</caption><headline>second</headline>");
    const QByteArray tail = Tag(120, "kept") + Tag(105, "cut off");
    const QByteArray withNul = Tag(120, "kept") + Tag(105, B("ab\0cdefg"));
    const QByteArray fullTiff = TiffLike(Resource(datasets, {}, 0x0404, 0xFFFF));
    const QByteArray loose = Jpeg(QByteArray(20, ' ') + Resource(datasets)).mid(2);  // without its first two bytes
    // The file cut `extra` bytes after the start of `marker`.
    auto cut = [](const QByteArray& file, const char* marker, int extra) { return file.left(file.indexOf(marker) + extra); };
    struct Row { const char* what; QByteArray file; QString fragment; };
    const Row rows[] = {
        {"odd name", Jpeg(App13(Resource(datasets, "A"))), both},
        {"odd name of 3", Jpeg(App13(Resource(datasets, "ABC"))), both},
        // An even name's padding byte is not counted: the size is read one byte early,
        // so a small block reads as empty ...
        {"even name", Jpeg(App13(Resource(datasets, "AB"))), {}},
        // ... and a size of 0x0267 as 2: the data end, counted from 12 bytes after
        // "8BIM", then falls on the first tag, which is still read.
        {"even name, size 0x0267", Jpeg(App13(Resource(Tag(120, "first") + Tag(105, QByteArray(600, 'x')), "AB"))),
         S("<caption>first</caption>")},
        // The tag that starts right at the end of the data is read, not the next one.
        {"end of data", Jpeg(App13(Resource(Tag(120, "a") + Tag(105, "b") + Tag(90, "c"), {}, 0x0404, 6))),
         S("<caption>a</caption><headline>b</headline>")},
        {"other resources first", Jpeg(App13(Resource(B("\0\0\0\0"), {}, 0x03ED) + Resource(datasets))), both},
        {"only the first block", Jpeg(App13(Resource(datasets) + Resource(Tag(90, "Oslo")))), both},
        {"only the first APP13", Jpeg(App13(Resource(datasets)) + App13(Resource(Tag(90, "Oslo")))), both},
        {"IPTC in the second APP13", Jpeg(App13(Resource("xx", {}, 0x0425)) + App13(Resource(datasets))), both},
        {"other resource id only", Jpeg(App13(Resource(datasets, {}, 0x0405))), {}},
        {"TIFF-like", TiffLike(Resource(datasets)), both},
        // The declared size runs past the end of the file: the datasets up to the end.
        {"size past the end", fullTiff.left(fullTiff.size() - 40), both},
        // The file ends inside a value, or inside a tag: what came before stays.
        {"value cut by the end", cut(Jpeg(App13(Resource(tail))), "cut", 3), S("<caption>kept</caption>")},
        {"tag cut by the end", cut(Jpeg(App13(Resource(tail))), "\x1C\x02\x69", 3), S("<caption>kept</caption>")},
        // A zero byte before the end completes the value.
        {"value ended by a zero byte before the end", cut(Jpeg(App13(Resource(withNul))), "cd", 0),
         S("<caption>kept</caption><headline>ab</headline>")},
        // A JPEG (either of its first two bytes says so) is searched inside APP13 only.
        {"resource outside APP13", B("\xFF\xD8") + loose, {}},
        {"JPEG by its second byte", B("\x00\xD8") + loose, {}},
        {"JPEG by its first byte", B("\xFF\x00") + loose, {}},
        {"neither byte", B("\x00\x00") + loose, both},
        {"empty file", {}, {}},
    };
    for (const Row& row : rows) {
        const IptcResult result = Read(row.file);
        EXPECT_EQ(result.fragment, row.fragment) << row.what;
        EXPECT_FALSE(result.shortRead) << row.what;
    }
}

TEST(IptcReader, SearchWindows)
{
    TempFolder folder;
    const QByteArray sig = B("8BIM\x04\x04");
    // Outside a JPEG, "8BIM" is looked for from the fifth byte on, and only while a
    // byte follows the resource number.
    EXPECT_EQ(Find(folder, B("\0\0\0\0") + sig), -1);
    EXPECT_EQ(Find(folder, B("\0\0\0\0") + sig + '\0'), 4);
    EXPECT_EQ(Find(folder, B("\0\0\0") + sig + QByteArray(9, '\0')), -1);
    EXPECT_EQ(Find(folder, QByteArray(300, 'z') + sig + sig + '\0'), 300);
    // In a JPEG the window of an APP13 marker at i runs from i + 4 to i + its length.
    const QByteArray head = B("\xFF\xD8\xFF\xED");
    const QByteArray rest = B("xxxx") + sig + B("\0\0\0\0\0\0");
    EXPECT_EQ(Find(folder, head + Be16(0) + rest), -1);
    EXPECT_EQ(Find(folder, head + Be16(8) + rest), 10);  // "8BIM" at the window's last position
    EXPECT_EQ(Find(folder, head + Be16(7) + rest), -1);
    EXPECT_EQ(Find(folder, head + Be16(6) + sig + B("\0")), 6);  // at its first
    // Overlapping windows: the second marker's window reaches further than the first's.
    EXPECT_EQ(Find(folder, head + Be16(8) + B("\xFF\xED") + Be16(12) + B("zzzz") + sig + B("\0\0")), 14);
}

TEST(IptcReader, ForwardSearchMatchesTheLiteralSearch)
{
    // Small files made of the bytes the search looks at, half of them JPEG by one of
    // their first two bytes, with APP13 markers of short lengths whose windows overlap;
    // each is searched both ways.
    std::mt19937 random(20240229);
    const QByteArray pieces[] = {B("8BIM\x04\x04"), B("8BIM\x04"), B("\xFF\xED"), B("\xFF"), B("\xED"),
                                 B("\x04"), B("\0"), B("8"), B("B"), B("I"), B("M")};
    const QByteArray jpegStarts[] = {B("\xFF\xD8"), B("\xFF\0"), B("\0\xD8")};
    TempFolder folder;
    int found = 0, jpegsFound = 0;
    for (int n = 0; n < 5000; ++n) {
        QByteArray file = n % 2 ? jpegStarts[random() % 3] : QByteArray();
        const int count = int(random() % 14);
        for (int p = 0; p < count; ++p) {
            const unsigned pick = random() % 16;
            if (pick < std::size(pieces))
                file += pieces[pick];
            else if (pick < 14)
                file += B("\xFF\xED\0") + char(random() % 24);
            else
                file += char(random() % 256);
        }
        const qint64 literal = LiteralSearch(file);
        ASSERT_EQ(Find(folder, file) + 1, literal) << file.toHex().constData();
        found += literal > 0;
        jpegsFound += literal > 0 && n % 2;
    }
    // The files must exercise both outcomes and both kinds of search.
    EXPECT_GT(found, 500);
    EXPECT_GT(jpegsFound, 200);
}

TEST(IptcReader, LargeFilesAreReadOnce)
{
    // Without the resource, a TIFF-like file is read once, front to back; so is a JPEG
    // whose APP13 windows all overlap, and one resource at the end is still found.
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
    // Values from the bytes of each file's 8BIM 0x0404 block (xxd), listed as stored in
    // the iptc_raw key of reference-values.json.
    struct Row { const char* file; bool macintoshAccents; QList<std::pair<Field, QString>> fields; QString fragment; };
    const Row rows[] = {
        {"iptc/exiftool__ExifTool.jpg", false,
         {{&R::caption, S("A witty caption")}, {&R::supplementalCategory, S("amazing; image; utilities")},
          {&R::source, S("I'm the source")}, {&R::priority, S("8")}, {&R::keywords, S("jambalaya")},
          {&R::createdDate, S("20040226")}, {&R::provinceState, S("Ont")}},
         S("<segment0>02</segment0><caption>A witty caption</caption><captionwriter>I wrote it</captionwriter>"
           "<headline>No headline</headline><specialinstructions>What instructions</specialinstructions>"
           "<byline>Phil Harvey</byline><bylinetitle>My Position</bylinetitle><credit>My Credit</credit>"
           "<objectname>Test IPTC picture</objectname><createddate>20040226</createddate><city>Kingston</city>"
           "<province-state>Ont</province-state><country>Canada</country>"
           "<originaltransmissionreference>What is a transmission reference</originaltransmissionreference>"
           "<category>1</category><supplementalcategory>amazing</supplementalcategory>"
           "<supplementalcategory>image</supplementalcategory><supplementalcategory>utilities</supplementalcategory>"
           "<copyright>Copyright 2004 Phil Harvey</copyright><priority>8</priority>"
           "<source>I&apos;m the source</source><keyword>jambalaya</keyword>")},
        // Its IPTC sits in TIFF tag 33723 as bare datasets, without a Photoshop resource.
        {"iptc/exiftool__ExifTool.tif", false, {}, {}},
        // Two APP13 segments with a block each (record version bytes 00 00): the first only.
        {"iptc/exiv2__iptc-psAPP13-wIPTC1-psAPP13-wIPTC2.jpg", false, {{&R::credit, S("This is credit number one")}},
         S("<segment0>00</segment0><credit>This is credit number one</credit>")},
        {"iptc/exiv2__iptc-psAPP13-noIPTC-psAPP13-wIPTC.jpg", false, {{&R::credit, S("This is a credit")}},
         S("<segment0>00</segment0><credit>This is a credit</credit>")},
        // Written by Photoshop CS2 on a Mac: "\x80ngar" is "Ängar" in Mac OS Roman;
        // "Sk\x8Cne" (å, code 140) is not in the accents table and stays "Œ".
        {"iptc/tika__testJPEG_commented_pspcs2mac.jpg", true,
         {{&R::objectName, S("Tosteberga Ängar")}, {&R::caption, S("Bird site in north eastern SkŒne, Sweden.\r(new line)")},
          {&R::byline, S("Some Tourist")}, {&R::keywords, S("grazelands; nature reserve; bird watching; coast")}},
         S("<segment0>02</segment0><caption>Bird site in north eastern SkŒne, Sweden.\r(new line)</caption>"
           "<byline>Some Tourist</byline><objectname>Tosteberga Ängar</objectname><keyword>grazelands</keyword>"
           "<keyword>nature reserve</keyword><keyword>bird watching</keyword><keyword>coast</keyword>")},
        {"iptc/tika__testJPEG_commented_pspcs2mac.jpg", false, {{&R::objectName, S("Tosteberga €ngar")}},
         S("<segment0>02</segment0><caption>Bird site in north eastern SkŒne, Sweden.\r(new line)</caption>"
           "<byline>Some Tourist</byline><objectname>Tosteberga €ngar</objectname><keyword>grazelands</keyword>"
           "<keyword>nature reserve</keyword><keyword>bird watching</keyword><keyword>coast</keyword>")},
        // A PSD is no JPEG: its resource is found among the image resources.
        {"iptc/exiftool__Photoshop.psd", false,
         {{&R::caption, S("This is a teeny weeny white square")}, {&R::captionWriter, S("Me too")},
          {&R::bylineTitle, S("Supreme leader")}, {&R::copyright, S("Free for all")}},
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
