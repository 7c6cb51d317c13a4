// The shared text helpers: escaping order, control characters, UTF-8 as the readers see it.
#include "core/codepage.h"
#include "readers/text.h"

#include <gtest/gtest.h>

using namespace brindar;

namespace {

QString S(const char* utf8) { return QString::fromUtf8(utf8); }
const QString kEnDash = QString(QChar(0x2013));

}  // namespace

TEST(TextHelpers, CleaningAndEscaping)
{
    EXPECT_EQ(CutAtNul(S("abc") + QChar(0) + S("xyz")), u"abc");
    EXPECT_EQ(CutAtNul(S("abc")), u"abc");
    EXPECT_EQ(TrimTrailingNuls(S("ab") + QChar(0) + S("c") + QChar(0) + QChar(0)), S("ab") + QChar(0) + S("c"));
    EXPECT_EQ(TrimTrailingBlanks(S(" a\tb\t\n \r\n ")), S(" a\tb\t"));
    EXPECT_EQ(CleanForGrid(S("a") + QChar(0) + S("b") + kEnDash + S("c")), u"a b-c");

    struct Row { QString input; QString xml; QString html; };
    const Row rows[] = {
        {S("<b> & c"), S("&lt;b&gt; &amp; c"), S("&lt;b&gt; &amp; c")},
        {S("it's \"so\""), S("it&apos;s &quot;so&quot;"), S("it's &quot;so&quot;")},
        {S("a") + QChar(1) + QChar(12) + QChar(27) + QChar(28) + QChar(21) + QChar(0) + S("b"), S("a      b"), S("a      b")},
        {S("tab\tand\nline"), S("tab\tand\nline"), S("tab\tand\nline")},
        {S("1") + kEnDash + S("2"), S("1-2"), S("1-2")},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(XmlEscape(row.input), row.xml) << row.input.toStdString();
        EXPECT_EQ(HtmlEscape(row.input), row.html) << row.input.toStdString();
    }
    EXPECT_EQ(XmlControlClean(S("<a>") + QChar(2) + kEnDash), u"<a> -");
    EXPECT_EQ(XmlUnescape(S("&lt;b&gt; &amp; &quot;c&quot; &apos;d&apos;")), S("<b> & \"c\" 'd'"));
    EXPECT_EQ(XmlUnescape(S("&amp;lt;")), u"<");  // "&amp;" first
}

TEST(TextHelpers, Utf8AsTheReadersDecodeIt)
{
    const std::pair<QByteArray, QString> rows[] = {
        {"caf\xC3\xA9 \xE2\x82\xAC", S("café €")},
        {"\xC3", QString(CharOfCode(0xC3))},  // cut by the end
        {"\xE2\x82", QString(CharOfCode(0xE2)) + CharOfCode(0x82)},
        {"\x80x", QString(CharOfCode(0x80)) + u'x'},  // stray continuation byte
        {"\xF0\x9F\x98\x80", QString(CharOfCode(0xF0)) + CharOfCode(0x9F) + CharOfCode(0x98) + CharOfCode(0x80)},
        {"\xC3" "A", QString(QChar(0xC1))},  // continuation bits are not checked
    };
    for (const auto& [bytes, text] : rows)
        EXPECT_EQ(Utf8Decode(bytes), text) << bytes.toHex().constData();
}
