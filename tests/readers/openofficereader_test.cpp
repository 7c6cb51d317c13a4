// The OpenOffice.org reader: zips built here (meta.xml stored or deflated), the item tables, user fields, real files.
#include "readers/openofficereader.h"

#include "support/tempfolder.h"

#include <QList>
#include <gtest/gtest.h>

#include <utility>

using namespace brindar;
using brindar::test::CorpusFile;
using brindar::test::TempFolder;

namespace {

QString S(const QByteArray& utf8) { return QString::fromUtf8(utf8); }

using R = OpenOfficeResult;
using Field = QString R::*;
using Fields = QList<std::pair<QString, QString>>;

QByteArray Le(quint32 value, int bytes)
{
    QByteArray out;
    for (int i = 0; i < bytes; ++i)
        out += char((value >> (8 * i)) & 0xFF);
    return out;
}

quint32 Crc32(const QByteArray& bytes)
{
    quint32 crc = 0xFFFFFFFF;
    for (const char c : bytes) {
        crc ^= static_cast<unsigned char>(c);
        for (int k = 0; k < 8; ++k)
            crc = (crc >> 1) ^ (0xEDB88320 & (0u - (crc & 1)));
    }
    return ~crc;
}

struct Member {
    QByteArray name;
    QByteArray data;
    bool deflated = false;
};

// A zip as OpenOffice.org 1.x writes it: local headers and data, then the central
// directory and its end record. qCompress gives zlib data: without its 4-byte size, its
// 2-byte header and its Adler-32 it is the raw deflate data of method 8.
QByteArray Zip(const QList<Member>& members)
{
    QByteArray zip, directory;
    for (const Member& m : members) {
        const QByteArray zlib = qCompress(m.data, 9);
        const QByteArray stored = m.deflated ? zlib.mid(6, zlib.size() - 10) : m.data;
        const QByteArray common = Le(m.deflated ? 8 : 0, 2) + Le(0, 2) + Le(0x21, 2) + Le(Crc32(m.data), 4)
                                  + Le(stored.size(), 4) + Le(m.data.size(), 4) + Le(m.name.size(), 2) + Le(0, 2);
        directory += "PK\x01\x02" + Le(20, 2) + Le(20, 2) + Le(0, 2) + common + Le(0, 2) + Le(0, 2) + Le(0, 2)
                     + Le(0, 4) + Le(zip.size(), 4) + m.name;
        zip += "PK\x03\x04" + Le(20, 2) + Le(0, 2) + common + m.name + stored;
    }
    return zip + directory + "PK\x05\x06" + Le(0, 4) + Le(members.size(), 2) + Le(members.size(), 2)
           + Le(directory.size(), 4) + Le(zip.size(), 4) + Le(0, 2);
}

QByteArray MetaXml(const QByteArray& meta)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<office:document-meta "
           "xmlns:office=\"http://openoffice.org/2000/office\" office:version=\"1.0\"><office:meta>"
           + meta + "</office:meta></office:document-meta>";
}

// An SXW: mimetype first and stored, content.xml deflated, a stored picture, then meta.xml.
QByteArray Sxw(const QByteArray& meta, bool deflated = false, const QByteArray& picture = "\x89PNG")
{
    return Zip({{"mimetype", "application/vnd.sun.xml.writer"},
        {"content.xml", "<office:document-content><text:p>Hello</text:p></office:document-content>", true},
        {"Pictures/1.png", picture}, {"meta.xml", MetaXml(meta), deflated}});
}

OpenOfficeResult ReadBytes(const QByteArray& bytes)
{
    TempFolder folder;
    return ReadOpenOfficeMeta(folder.write(QStringLiteral("file.sxw"), bytes));
}

}  // namespace

TEST(OpenOfficeReader, ItemsFollowTheTableOrder)
{
    struct Row { QByteArray source; Field field; QByteArray element; bool statistic; };
    const Row rows[] = {
        {"meta:generator", &R::generator, "application", false}, {"dc:title", &R::title, "title", false},
        {"dc:description", &R::description, "comments", false}, {"dc:subject", &R::subject, "subject", false},
        {"meta:keyword", &R::keyword, "keywords", false}, {"meta:initial-creator", &R::initialCreator, "author", false},
        {"dc:creator", &R::creator, "lastauthor", false}, {"meta:printed-by", &R::printedBy, "printed-by", false},
        {"meta:creation-date", &R::creationDate, "creation", false}, {"dc:date", &R::date, "lastsave", false},
        {"meta:print-date", &R::printDate, "lastprint", false}, {"meta:template", &R::templateName, "template", false},
        {"dc:language", &R::language, "language", false}, {"meta:editing-cycles", &R::editingCycles, "revisions", false},
        {"meta:editing-duration", &R::editingDuration, "totaledit", false},
        {"meta:page-count", &R::pageCount, "pages", true}, {"meta:table-count", &R::tableCount, "tables", true},
        {"meta:draw-count", &R::drawCount, "draws", true}, {"meta:ole-object-count", &R::oleObjectCount, "ole-objects", true},
        {"meta:paragraph-count", &R::paragraphCount, "paragraphs", true}, {"meta:word-count", &R::wordCount, "words", true},
        {"meta:character-count", &R::characterCount, "chars", true}, {"meta:row-count", &R::rowCount, "rows", true},
        {"meta:cell-count", &R::cellCount, "cells", true}, {"meta:object-count", &R::objectCount, "objects", true},
    };
    // Written in reverse: the fragment follows the tables, not the document.
    QByteArray meta, statistics, fragment;
    for (int i = 0; i < int(std::size(rows)); ++i) {
        const Row& row = rows[i];
        const QByteArray value = "v" + QByteArray::number(i);
        if (row.statistic)
            statistics.prepend(" " + row.source + "=\"" + value + "\"");
        else
            meta.prepend("<" + row.source + ">" + value + "</" + row.source + ">\n");
        fragment += "<" + row.element + ">" + value + "</" + row.element + ">\r\n";
    }
    const OpenOfficeResult result = ReadBytes(Sxw(meta + "<meta:document-statistic" + statistics + "/>"));
    for (int i = 0; i < int(std::size(rows)); ++i)
        EXPECT_EQ(result.*rows[i].field, u'v' + QString::number(i)) << rows[i].source.constData();
    EXPECT_EQ(result.fragment, S(fragment));
}

TEST(OpenOfficeReader, ValueRules)
{
    struct Row { QByteArray meta; Field field; const char* value; QByteArray fragment; };
    const Row rows[] = {
        {"<meta:document-statistic meta:page-count=\"3\" meta:word-count=\"9\"/>", &R::pageCount, "3", "<pages>3</pages>\r\n<words>9</words>\r\n"},
        {"<dc:title>A &amp; B</dc:title>", &R::title, "A & B", "<title>A &amp; B</title>\r\n"},
        {"<dc:title>&amp;lt;b&gt; \xC3\xA9\x01</dc:title>", &R::title, "<b> \xC3\xA9\x01", "<title>&lt;b&gt; \xC3\xA9 </title>\r\n"},
        {"<meta:keyword>one</meta:keyword><meta:keyword>two</meta:keyword>", &R::keyword, "one", "<keywords>one</keywords>\r\n"},
        {"<dc:title></dc:title>", &R::title, "", "<title></title>\r\n"},  // an empty value is written too
        {"<dc:title/>", &R::title, "", ""},
        {"</dc:title>x<dc:title>", &R::title, "", ""},
        {"<x meta:page-count=\"\" meta:word-count=\"9\"/>", &R::pageCount, "", "<pages></pages>\r\n<words>9</words>\r\n"},
        // The value follows the first `="` after the name, wherever that is.
        {"<x meta:page-count = \"3\" meta:row-count=\"4\"/>", &R::pageCount, "4", "<pages>4</pages>\r\n<rows>4</rows>\r\n"},
        {"<x meta:ole-object-count=\"2\"/>", &R::objectCount, "", "<ole-objects>2</ole-objects>\r\n"},
        {"<x meta:page-count=\"3/>", &R::pageCount, "", ""},
    };
    for (const Row& row : rows) {
        const OpenOfficeResult result = ReadBytes(Sxw(row.meta));
        EXPECT_EQ(result.*row.field, S(row.value)) << row.meta.constData();
        EXPECT_EQ(result.fragment, S(row.fragment)) << row.meta.constData();
    }
}

TEST(OpenOfficeReader, UserDefinedFields)
{
    const auto field = [](const char* name, const char* value) {
        return "<meta:user-defined meta:name=\"" + QByteArray(name) + "\">" + value + "</meta:user-defined>";
    };
    QByteArray many;
    for (int i = 0; i < kUserDefinedTableSize + 5; ++i)
        many += field("n", "v");
    struct Row { QByteArray meta; Fields fields; QByteArray fragment; };
    const Row rows[] = {
        {field("Info 1", "abc"), {{S("Info 1"), S("abc")}}, "<userprop>\r\n<nameprop>Info 1</nameprop>\r\n<valueprop>abc</valueprop>\r\n</userprop>\r\n"},
        {field("", "x") + field("R&amp;D", "<b>"), {{S(""), S("x")}, {S("R&D"), S("<b>")}},
         "<userprop>\r\n<nameprop>R&amp;D</nameprop>\r\n<valueprop>&lt;b&gt;</valueprop>\r\n</userprop>\r\n"},
        {"<meta:user-defined meta:name=\"a>b\" meta:type=\"float\">1.5</meta:user-defined>", {{S("a>b"), S("1.5")}},
         "<userprop>\r\n<nameprop>a&gt;b</nameprop>\r\n<valueprop>1.5</valueprop>\r\n</userprop>\r\n"},
        // An empty field is written without closing tag: its value then runs to the next one's.
        {"<meta:user-defined meta:name=\"Info 1\"/>" + field("Info 2", "x"), {{S("Info 1"), S("<meta:user-defined meta:name=\"Info 2\">x")}},
         "<userprop>\r\n<nameprop>Info 1</nameprop>\r\n<valueprop>&lt;meta:user-defined meta:name=&quot;Info 2&quot;&gt;x</valueprop>\r\n</userprop>\r\n"},
        {"<meta:user-defined meta:name=\"Info 1\"/><meta:user-defined meta:name=\"Info 2\"/>", {}, ""},
        {"<meta:user-defined>v</meta:user-defined>", {}, ""},
    };
    for (const Row& row : rows) {
        const OpenOfficeResult result = ReadBytes(Sxw(row.meta));
        EXPECT_EQ(result.userDefined, row.fields) << row.meta.constData();
        EXPECT_EQ(result.fragment, S(row.fragment)) << row.meta.constData();
    }
    EXPECT_EQ(ReadBytes(Sxw(many)).userDefined.size(), kUserDefinedTableSize);
}

TEST(OpenOfficeReader, OnlyStoredMetaTextInTakenFilesIsRead)
{
    const QByteArray meta = "<dc:title>T</dc:title>";
    const QByteArray loose = MetaXml(meta);
    // A picture sized so that "<office:meta>" straddles the second 64 KiB page end.
    QByteArray picture(70000, '\x89');
    picture += QByteArray(2 * 65536 - 6 - Sxw(meta, false, picture).indexOf("<office:meta>"), '\x89');
    struct Row { const char* name; QByteArray file; bool found; };
    const Row rows[] = {
        {"stored", Sxw(meta), true}, {"deflated", Sxw(meta, true), false}, {"pages", Sxw(meta, false, picture), true},
        {"P only", "Px" + loose, true}, {"K only", "xK" + loose, true}, {"one byte", "P", false},
        {"neither", "KP" + loose, false}, {"no close", "PK<office:meta><dc:title>T</dc:title>", false},
        {"close first", "PK</office:meta>" + loose.left(loose.indexOf("</office:meta>")), false}, {"empty", "", false},
    };
    for (const Row& row : rows) {
        const OpenOfficeResult result = ReadBytes(row.file);
        EXPECT_EQ(result.title, row.found ? S("T") : QString()) << row.name;
        EXPECT_EQ(result.fragment, row.found ? S("<title>T</title>\r\n") : QString()) << row.name;
        EXPECT_FALSE(result.shortRead) << row.name;
    }
    EXPECT_EQ(ReadOpenOfficeMeta(QStringLiteral("/nonexistent/file.sxw")).fragment, QString());
}

TEST(OpenOfficeReader, RealFiles)
{
    // meta.xml of ooopy__test.sxw is stored at offset 3731 (reference-values.json, ooo_meta);
    // the values are its elements and document-statistic attributes as written there. Its
    // four user-defined fields are empty elements without closing tag, so none is read.
    const OpenOfficeResult sxw = ReadOpenOfficeMeta(CorpusFile(QStringLiteral("ooo/ooopy__test.sxw")));
    EXPECT_EQ(sxw.generator, S("OpenOffice.org 1.1.2 (Linux)"));
    EXPECT_EQ(sxw.characterCount, S("317"));
    EXPECT_EQ(sxw.fragment, S("<application>OpenOffice.org 1.1.2 (Linux)</application>\r\n"
        "<creation>2005-03-04T15:14:26</creation>\r\n<lastsave>2005-04-11T11:49:23</lastsave>\r\n"
        "<language>en-US</language>\r\n<revisions>8</revisions>\r\n<totaledit>PT1H20M53S</totaledit>\r\n"
        "<pages>1</pages>\r\n<tables>1</tables>\r\n<paragraphs>37</paragraphs>\r\n<words>54</words>\r\n"
        "<chars>317</chars>\r\n<objects>0</objects>\r\n"));
    EXPECT_TRUE(sxw.userDefined.isEmpty());

    // The StarOffice 6 drawing writes its meta.xml over several indented lines, with zero
    // dates (ooo_meta fields: dc:date and meta:print-date "0-00-00T00:00:00", object-count 16).
    const OpenOfficeResult sxd = ReadOpenOfficeMeta(CorpusFile(QStringLiteral("ooo/tika__testStarOffice-6.0-draw.sxd")));
    EXPECT_EQ(sxd.printDate, S("0-00-00T00:00:00"));
    EXPECT_EQ(sxd.objectCount, S("16"));
    EXPECT_EQ(sxd.editingDuration, S("PT0S"));

    // The OODoc template carries title, description, subject and both creators
    // (ooo_meta fields; meta.xml is the last member, at offset 4826).
    const OpenOfficeResult sxt = ReadOpenOfficeMeta(CorpusFile(QStringLiteral("ooo/oodoc__template.sxw")));
    EXPECT_EQ(sxt.title, S("OpenOffice::OODoc Text Template"));
    EXPECT_EQ(sxt.initialCreator, S("OpenOffice::OODoc Project"));
    EXPECT_EQ(sxt.subject, S("Template for the Perl Open Document Connector"));
    EXPECT_EQ(sxt.description, S("OpenOffice.org 1.0 format"));
    EXPECT_EQ(sxt.pageCount, S("1"));

    // Stubs that hold a mimetype member only (ooo_meta: meta_xml null).
    EXPECT_EQ(ReadOpenOfficeMeta(CorpusFile(QStringLiteral("ooo/fileformat__sample.sxw"))).fragment, QString());
}
