// Windows-1252 in both directions, best fit included.
#include "core/codepage.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;

TEST(CodePage, BytesBecomeTheirWindowsCharactersAndComeBack)
{
    const struct { unsigned char byte; char16_t expected; } rows[] = {
        {0x41, u'A'}, {0x80, 0x20AC}, {0x9F, 0x0178}, {0xE9, 0x00E9},
        // The five unassigned bytes become the C1 control of the same value.
        {0x81, 0x0081}, {0x8D, 0x008D}, {0x8F, 0x008F}, {0x90, 0x0090}, {0x9D, 0x009D},
    };
    for (const auto& row : rows)
        EXPECT_EQ(CharOfCode(row.byte).unicode(), row.expected) << int(row.byte);

    QByteArray all;
    for (int i = 0; i < 256; ++i)
        all.append(char(i));
    EXPECT_TRUE(FitsWin1252(DecodeWin1252(all)));
    EXPECT_EQ(EncodeWin1252(DecodeWin1252(all)), all);
}

TEST(CodePage, CharactersWithoutAByteTakeTheirBestFitOrAQuestionMark)
{
    const struct { QString text; QByteArray bytes; bool fits; } rows[] = {
        {QStringLiteral("\u0142\u00F3d\u017A"), "l\xF3" "dz", false},  // łódź
        {QStringLiteral("\u221E"), "8", false},       // infinity
        {QStringLiteral("\uFF28\uFF49"), "Hi", false}, // full-width letters
        {QStringLiteral("\u2019\u20AC"), "\x92\x80", true},
        {QStringLiteral("\u4E2D"), "?", false},       // no best fit
        {QStringLiteral("\u0080"), "?", false},       // a C1 control that code page 1252 does not hold
        {QString::fromUtf8("\xF0\x9F\x98\x80"), "?", false},  // one character outside the BMP
    };
    for (const auto& row : rows) {
        EXPECT_EQ(EncodeWin1252(row.text), row.bytes) << row.text.toStdString();
        EXPECT_EQ(FitsWin1252(row.text), row.fits) << row.text.toStdString();
    }
}
