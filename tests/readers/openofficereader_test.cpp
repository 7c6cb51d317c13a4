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

QByteArray MetaXml(const QByteArray& meta)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<office:document-meta "
           "xmlns:office=\"http://openoffice.org/2000/office\" office:version=\"1.0\"><office:meta>"
           + meta + "</office:meta></office:document-meta>";
}

// An SXW as far as the reader sees it: local headers and data, mimetype first and stored,
// content.xml deflated, a stored picture, then meta.xml. qCompress gives zlib data:
// without its 4-byte size, its 2-byte header and its Adler-32 it is raw deflate data.
QByteArray Sxw(const QByteArray& meta, bool deflated = false, const QByteArray& picture = "\x89PNG")
{
    const auto member = [](const QByteArray& name, const QByteArray& data, bool deflate) {
        const QByteArray zlib = qCompress(data, 9);
        return "PK\x03\x04" + name + (deflate ? zlib.mid(6, zlib.size() - 10) : data);
    };
    return member("mimetype", "application/vnd.sun.xml.writer", false)
           + member("content.xml", "<office:document-content><text:p>Hello</text:p></office:document-content>", true)
           + member("Pictures/1.png", picture, false) + member("meta.xml", MetaXml(meta), deflated) + "PK\x05\x06";
}

OpenOfficeResult ReadBytes(const QByteArray& bytes)
{
    TempFolder folder;
    return ReadOpenOfficeMeta(folder.write(QStringLiteral("file.sxw"), bytes));
}

QByteArray UserProp(const QByteArray& name, const QByteArray& value)
{
    return "<userprop>\r\n<nameprop>" + name + "</nameprop>\r\n<valueprop>" + value + "</valueprop>\r\n</userprop>\r\n";
}

}  // namespace

TEST(OpenOfficeReader, ItemsFollowTheTableOrder)
{
    // The items none of the real files below holds, elements before statistics.
    struct Row { QByteArray source; Field field; QByteArray element; bool statistic; };
    const Row rows[] = {
        {"meta:keyword", &R::keyword, "keywords", false}, {"meta:printed-by", &R::printedBy, "printed-by", false},
        {"meta:template", &R::templateName, "template", false}, {"meta:draw-count", &R::drawCount, "draws", true},
        {"meta:ole-object-count", &R::oleObjectCount, "ole-objects", true}, {"meta:row-count", &R::rowCount, "rows", true},
        {"meta:cell-count", &R::cellCount, "cells", true},
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
        // Unescaped once, "&amp;" first; UTF-8; escaped again in the fragment only.
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
    using Fields = QList<std::pair<QString, QString>>;
    struct Row { QByteArray meta; Fields fields; QByteArray fragment; };
    const Row rows[] = {
        // A field with an empty name is kept, but not written.
        {field("", "x") + field("R&amp;D", "<b>"), {{S(""), S("x")}, {S("R&D"), S("<b>")}}, UserProp("R&amp;D", "&lt;b&gt;")},
        {"<meta:user-defined meta:name=\"a>b\" meta:type=\"float\">1.5</meta:user-defined>", {{S("a>b"), S("1.5")}},
         UserProp("a&gt;b", "1.5")},
        // An empty field is written without closing tag: its value then runs to the next one's.
        {"<meta:user-defined meta:name=\"Info 1\"/>" + field("Info 2", "x"), {{S("Info 1"), S("<meta:user-defined meta:name=\"Info 2\">x")}},
         UserProp("Info 1", "&lt;meta:user-defined meta:name=&quot;Info 2&quot;&gt;x")},
        {"<meta:user-defined meta:name=\"Info 1\"/><meta:user-defined meta:name=\"Info 2\"/>", {}, ""},
        {"<meta:user-defined>v</meta:user-defined>", {}, ""},
    };
    for (const Row& row : rows) {
        const OpenOfficeResult result = ReadBytes(Sxw(row.meta));
        EXPECT_EQ(result.userDefined, row.fields) << row.meta.constData();
        EXPECT_EQ(result.fragment, S(row.fragment)) << row.meta.constData();
    }
    QByteArray many;
    for (int i = 0; i < kUserDefinedTableSize + 5; ++i)
        many += field("n", "v");
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
    // Each fragment written by hand from the file's meta.xml (unzip -p), in the order of
    // the item tables; none has a user-defined field with a closing tag, so none is read.
    struct Row { const char* file; const char* fragment; QList<std::pair<Field, const char*>> fields; };
    const Row rows[] = {
        {"ooo/ooopy__test.sxw", "<application>OpenOffice.org 1.1.2 (Linux)</application>\r\n"
         "<creation>2005-03-04T15:14:26</creation>\r\n<lastsave>2005-04-11T11:49:23</lastsave>\r\n<language>en-US</language>\r\n"
         "<revisions>8</revisions>\r\n<totaledit>PT1H20M53S</totaledit>\r\n<pages>1</pages>\r\n<tables>1</tables>\r\n"
         "<paragraphs>37</paragraphs>\r\n<words>54</words>\r\n<chars>317</chars>\r\n<objects>0</objects>\r\n",
         {{&R::generator, "OpenOffice.org 1.1.2 (Linux)"}, {&R::characterCount, "317"}}},
        // Written over several indented lines, with zero dates.
        {"ooo/tika__testStarOffice-6.0-draw.sxd", "<application>OpenOffice.org 632 (Linux)</application>\r\n"
         "<creation>2001-07-18T14:03:21</creation>\r\n<lastsave>0-00-00T00:00:00</lastsave>\r\n"
         "<lastprint>0-00-00T00:00:00</lastprint>\r\n<language>en-US</language>\r\n<revisions>1</revisions>\r\n"
         "<totaledit>PT0S</totaledit>\r\n<objects>16</objects>\r\n",
         {{&R::printDate, "0-00-00T00:00:00"}, {&R::objectCount, "16"}, {&R::editingDuration, "PT0S"}}},
        // meta.xml is the last member; "meta:image-count" is no item.
        {"ooo/oodoc__template.sxw", "<application>OpenOffice.org/2.4$Linux OpenOffice.org_project/680m12$Build-9286</application>\r\n"
         "<title>OpenOffice::OODoc Text Template</title>\r\n<comments>OpenOffice.org 1.0 format</comments>\r\n"
         "<subject>Template for the Perl Open Document Connector</subject>\r\n<author>OpenOffice::OODoc Project</author>\r\n"
         "<lastauthor>OpenOffice::OODoc Project</lastauthor>\r\n<creation>2008-05-18T20:15:33</creation>\r\n"
         "<lastsave>2008-05-18T20:15:33</lastsave>\r\n<revisions>0</revisions>\r\n<totaledit>PT0M0S</totaledit>\r\n"
         "<pages>1</pages>\r\n<tables>0</tables>\r\n<paragraphs>0</paragraphs>\r\n<words>0</words>\r\n<chars>0</chars>\r\n"
         "<objects>0</objects>\r\n",
         {{&R::title, "OpenOffice::OODoc Text Template"}, {&R::description, "OpenOffice.org 1.0 format"},
          {&R::initialCreator, "OpenOffice::OODoc Project"}, {&R::pageCount, "1"}}},
        {"ooo/fileformat__sample.sxw", "", {}},  // a stub that holds a mimetype member only
    };
    for (const Row& row : rows) {
        const OpenOfficeResult result = ReadOpenOfficeMeta(CorpusFile(QLatin1String(row.file)));
        EXPECT_EQ(result.fragment, S(row.fragment)) << row.file;
        EXPECT_TRUE(result.userDefined.isEmpty()) << row.file;
        for (const auto& [field, value] : row.fields)
            EXPECT_EQ(result.*field, S(value)) << row.file;
    }
}
