// The XMP reader: where the packet is, how it is decoded, the four property forms, real files.
#include "readers/xmpreader.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

#include <numeric>

using namespace brindar;
using brindar::test::CorpusFile;
using brindar::test::TempFolder;

namespace {

QString S(const QByteArray& utf8) { return QString::fromUtf8(utf8); }

using R = XmpResult;
using Field = QString R::*;
const Field kFields[] = {&R::authorsPosition, &R::captionWriter, &R::headline, &R::instructions, &R::credit, &R::source,
    &R::city, &R::state, &R::country, &R::dateCreated, &R::transmissionReference, &R::author, &R::baseUrl, &R::creationDate,
    &R::creator, &R::keywords, &R::modificationDate, &R::pdfVersion, &R::producer, &R::description, &R::title,
    &R::creatorTool, &R::dcTitle, &R::dcCreator, &R::dcDescription, &R::rights, &R::dcSubject};

// A packet as Adobe's XMP toolkit writes it: single quotes, a UTF-8 byte-order mark.
QByteArray Packet(const QByteArray& body)
{
    return "<?xpacket begin='\xEF\xBB\xBF' id='W5M0MpCehiHzreSzNTczkc9d'?>" + body + "<?xpacket end='w'?>";
}

XmpResult ReadBytes(const QByteArray& bytes)
{
    TempFolder folder;
    return ReadXmp(folder.write(QStringLiteral("file.eps"), bytes));
}

// Bytes of every value, as the binary parts of a PSD or an EPS preview hold them.
QByteArray Binary()
{
    QByteArray bytes(256, '\0');
    std::iota(bytes.begin(), bytes.end(), char(0));
    return bytes;
}

void ExpectOnly(const XmpResult& result, Field field, const QString& value, const QByteArray& context)
{
    for (const Field f : kFields)
        EXPECT_EQ(result.*f, f == field ? value : QString()) << context.constData();
}

}  // namespace

TEST(XmpReader, SourcesAreReadInTheirFormsOnly)
{
    // A: attribute, E: element, L: list of "<rdf:li>" items, X: x-default item.
    struct Row { const char* name; Field field; const char* forms; };
    // One source of each combination of forms the table uses.
    const Row rows[] = {{"photoshop:City", &R::city, "E"}, {"pdf:Producer", &R::producer, "AE"}, {"xap:Keywords", &R::keywords, "L"},
                        {"xap:Title", &R::title, "X"}, {"dc:title", &R::dcTitle, "AX"}, {"dc:subject", &R::dcSubject, "AL"}};
    for (const Row& row : rows) {
        const QByteArray n = row.name;
        const std::pair<char, QByteArray> forms[] = {{'A', "<rdf:Description " + n + "='V'/>"}, {'E', "<" + n + ">V</" + n + ">"},
            {'L', "<" + n + "><rdf:Bag><rdf:li>V</rdf:li></rdf:Bag></" + n + ">"},
            {'X', "<" + n + "><rdf:Alt><rdf:li xml:lang='x-default'>V</rdf:li></rdf:Alt></" + n + ">"}};
        for (const auto& [form, xml] : forms) {
            const XmpResult result = ReadBytes(Packet(xml));
            if (QByteArray(row.forms).contains(form)) {
                ExpectOnly(result, row.field, S("V"), xml);
                EXPECT_TRUE(result.hasXmp) << xml.constData();
            } else {
                EXPECT_NE(result.*row.field, S("V")) << xml.constData();
            }
        }
    }
}

TEST(XmpReader, FormsAndOverwrites)
{
    struct Row { QByteArray xml; Field field; QString value; };
    const Row rows[] = {
        {"<dc:subject><rdf:li>a</rdf:li><rdf:li></rdf:li><rdf:li>c</rdf:li></dc:subject>", &R::dcSubject, S("a; ; c")},
        {"<dc:subject><rdf:li></rdf:li><rdf:li>b</rdf:li></dc:subject>", &R::dcSubject, S("b")},  // no text, no "; "
        {"<dc:creator><rdf:li xml:lang='en'>x</rdf:li><rdf:li>y</rdf:li></dc:creator>", &R::dcCreator, S("y")},
        {"<dc:creator><rdf:Seq></rdf:Seq></dc:creator>", &R::dcCreator, QString()},  // found, empty
        {"<dc:creator><rdf:li>open</dc:creator>", &R::dcCreator, QString()},
        {"<dc:title><rdf:Alt><rdf:li xml:lang='fr'>Titre</rdf:li><rdf:li xml:lang='x-default'>Title</rdf:li></rdf:Alt></dc:title>", &R::dcTitle, S("Title")},
        {"<xap:Author>A</xap:Author><rdf:Description pdf:Author='B'/>", &R::author, S("B")},
        {"<rdf:Description pdf:Author='B'/><xap:Author>A</xap:Author>", &R::author, S("B")},  // source order, not file order
        {"<xap:Author>A</xap:Author><rdf:Description pdf:Author=\"B\"/>", &R::author, S("A")},  // single quotes only
        {"<pdf:Author>E</pdf:Author><rdf:Description pdf:Author='T'/>", &R::author, S("T")},  // attribute tried first
        {"<xap:Keywords><rdf:li>k</rdf:li></xap:Keywords><pdf:Keywords>p</pdf:Keywords>", &R::keywords, S("p")},
        {"<xapRights:Copyright>c</xapRights:Copyright><dc:rights><rdf:li>r</rdf:li></dc:rights>", &R::rights, S("c")},
        {"<photoshop:City> a\n b </photoshop:City>", &R::city, S(" a\n b ")},  // untrimmed
        {"<photoshop:City><b>x</b></photoshop:City><photoshop:City>2</photoshop:City>", &R::city, S("<b>x</b>")},
        {"</photoshop:City>x<photoshop:City>y", &R::city, QString()},  // the closing tag comes after the opening
        {"<x xpdf:Author='Z'/>", &R::author, S("Z")},                  // a plain substring search
        {"<photoshop:City>a &lt;/photoshop:City&gt; b</photoshop:City>", &R::city, S("a ")},  // unescaped first
        {"<photoshop:City>&amp;lt;&quot;&apos;&gt;</photoshop:City>", &R::city, S("<\"'>")},
        {"<photoshop:City>Montr\xC3\xA9" "al \xE2\x82\xAC</photoshop:City>", &R::city, S("Montréal €")},
    };
    for (const Row& row : rows)
        ExpectOnly(ReadBytes(Packet(row.xml)), row.field, row.value, row.xml);
}

TEST(XmpReader, PacketIsTheFirstCompleteSingleQuotedOne)
{
    const QByteArray city = "<photoshop:City>C</photoshop:City>";
    const QByteArray psd = QByteArray("8BPS\x00\x01", 6) + Binary() + "8BIM\x04\x24" + Packet(city) + Binary();
    // Each marker straddles a page end of the paged reading (64 KiB), by one byte.
    QByteArray straddling;
    const auto across = [&](qint64 pageEnd, const QByteArray& marker, char fill, qint64 before) {
        straddling += QByteArray(pageEnd - before - straddling.size(), fill) + marker;
    };
    across(65536, "<?xpacket begin='", 'x', 16);
    across(2 * 65536, "'?>\n" + city, 'i', 1);
    across(3 * 65536, "<?xpacket end='", ' ', 1);
    across(4 * 65536, "'?>", 'w', 2);
    struct Row { const char* name; QByteArray file; QString packet; };
    const Row rows[] = {
        {"psd", psd, S(city)},
        {"dos eps", "\xC5\xD0\xD3\xC6" + Binary() + "%!PS-Adobe-3.0 EPSF-3.0\n" + Packet("\r\n" + city + "\n  \r\n \n"), S("\r\n" + city)},
        {"straddling", straddling, S("\n" + city)},
        {"first of two", Packet(city) + Packet("<photoshop:City>D</photoshop:City>"), S(city)},
        {"double quotes", "<?xpacket begin=\"\" id=\"x\"?>" + city + "<?xpacket end=\"w\"?>", {}},
        {"end double-quoted", "<?xpacket begin='' id='x'?>" + city + "<?xpacket end=\"w\"?>", {}},
        // The begin instruction then ends at the end instruction's "'?>".
        {"begin unfinished", "<?xpacket begin='' id=\"x\"?>" + city + "<?xpacket end='w'?>", {}},
        {"own quote", "<?xpacket begin='?>" + city + "<?xpacket end='w'?>", {}},
        {"end unfinished", "<?xpacket begin='' id='x'?>" + city + "<?xpacket end='w\"?>", {}},
        {"no end", "<?xpacket begin='' id='x'?>" + city, {}},
        {"blank packet", Packet(" \r\n \n"), {}}, {"empty packet", Packet({}), {}}, {"empty file", {}, {}},
    };
    for (const Row& row : rows) {
        const XmpResult result = ReadBytes(row.file);
        EXPECT_EQ(result.packet, row.packet) << row.name;
        EXPECT_EQ(result.city, row.packet.isEmpty() ? QString() : S("C")) << row.name;
        EXPECT_EQ(result.hasXmp, !row.packet.isEmpty()) << row.name;
        EXPECT_FALSE(result.shortRead) << row.name;
    }
}

TEST(XmpReader, PacketTextIsCleanedButValuesAreNot)
{
    // Control characters become blanks and the en dash "-" in the packet text only.
    const XmpResult result = ReadBytes(Packet("<photoshop:City>a\x01" "b\x0C\xE2\x80\x93</photoshop:City> \r\n"));
    EXPECT_EQ(result.packet, S("<photoshop:City>a b -</photoshop:City>"));
    EXPECT_EQ(result.city, S("a\x01" "b\x0C–"));
    EXPECT_FALSE(ReadXmp(QStringLiteral("/nonexistent/file.psd")).hasXmp);
}

TEST(XmpReader, RealFiles)
{
    struct Row { const char* file; QList<std::pair<Field, const char*>> values; bool packet; };
    const Row rows[] = {
        // One packet (bytes 8228-9604); ExifTool reads the same CreateDate, CreatorTool, ModifyDate.
        {"xmp/exiftool__InDesign.indd", {{&R::dateCreated, "2007-06-30T00:19:02Z"},
            {&R::creatorTool, "Adobe InDesign 3.0"}, {&R::modificationDate, "2007-06-30T00:19:17Z"}}, true},
        // The first packet (bytes 172036-210725) runs over binary data into the XMP of the
        // placed images: the first xap: elements are the document's, dc:creator comes from
        // neddy.tif (one rdf:li at body offset 4681), dc:title "logo" from a later image.
        {"xmp/formatcorpus__Neddy_Flyer_HeatherRyan.indd", {{&R::dateCreated, "2006-06-28T16:22:29Z"},
            {&R::creatorTool, "Adobe InDesign 3.0"}, {&R::modificationDate, "2006-09-01T11:57:37Z"},
            {&R::dcCreator, "2001 SNOWBOUND, ALL RIGHTS RESERVED"}, {&R::dcTitle, "logo"}}, true},
        // The first of two packets is single-quoted; ExifTool's XMP-dc:Title is the same.
        {"xmp/exiv2__eps-flat_minimal_xmp_exiftool-8.56.eps", {{&R::dcTitle, "TEST-Exiftool"}}, true},
        // Only xmpNote:HasExtendedXMP: ExifTool's pdf: values come from outside any packet.
        {"xmp/exiftool__ExtendedXMP.jpg", {}, true},
        // Double-quoted packets, a UTF-16 packet, a mix of quotes, no packet at all.
        {"xmp/exiv2__eps-flat_minimal_xmp.eps", {}, false}, {"xmp/exiftool__XMP.jpg", {}, false},
        {"xmp/exiv2__eps-flat_minimal_xmp-singlequote-begin.eps", {}, false},
        {"xmp/exiv2__eps-flat_minimal_xmp-singlequote-end.eps", {}, false}, {"xmp/tika__testAI_PS.ai", {}, false},
    };
    for (const Row& row : rows) {
        const XmpResult result = ReadXmp(CorpusFile(QString::fromLatin1(row.file)));
        for (const Field field : kFields) {
            const auto it = std::find_if(row.values.begin(), row.values.end(), [&](const auto& v) { return v.first == field; });
            EXPECT_EQ(result.*field, it == row.values.end() ? QString() : S(it->second)) << row.file;
        }
        EXPECT_EQ(result.hasXmp, row.values.size() > 0) << row.file;
        EXPECT_EQ(!result.packet.isEmpty(), row.packet) << row.file;
        EXPECT_FALSE(result.shortRead) << row.file;
    }
    const XmpResult indd = ReadXmp(CorpusFile(QStringLiteral("xmp/exiftool__InDesign.indd")));
    EXPECT_TRUE(indd.packet.startsWith(S("<x:xmpmeta xmlns:x='adobe:ns:meta/'")));
    EXPECT_TRUE(indd.packet.endsWith(S("</rdf:RDF>\n</x:xmpmeta>")));
}
