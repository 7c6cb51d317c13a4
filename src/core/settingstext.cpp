// Encoding detection for INI and language files.
#include "core/settingstext.h"

#include "core/codepage.h"

namespace brindar {
namespace {

// Strict UTF-8 check (no overlong forms, no surrogates, nothing above U+10FFFF);
// also tells whether any multi-byte sequence was seen.
bool IsUtf8(const QByteArray& bytes, bool* sawMultiByte)
{
    *sawMultiByte = false;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.constData());
    const auto* end = p + bytes.size();
    while (p < end) {
        const unsigned char c = *p;
        if (c < 0x80) {
            ++p;
            continue;
        }
        int length = 0;
        unsigned char low = 0x80, high = 0xBF;
        if (c >= 0xC2 && c <= 0xDF) {
            length = 2;
        } else if (c >= 0xE0 && c <= 0xEF) {
            length = 3;
            if (c == 0xE0)
                low = 0xA0;
            else if (c == 0xED)
                high = 0x9F;
        } else if (c >= 0xF0 && c <= 0xF4) {
            length = 4;
            if (c == 0xF0)
                low = 0x90;
            else if (c == 0xF4)
                high = 0x8F;
        } else {
            return false;
        }
        if (end - p < length)
            return false;
        if (p[1] < low || p[1] > high)
            return false;
        for (int i = 2; i < length; ++i)
            if ((p[i] & 0xC0) != 0x80)
                return false;
        *sawMultiByte = true;
        p += length;
    }
    return true;
}

}  // namespace

SettingsText DecodeSettingsText(const QByteArray& bytes)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return {QString::fromUtf8(bytes.mid(3)), SettingsEncoding::Utf8WithBom};
    bool multiByte = false;
    if (IsUtf8(bytes, &multiByte) && multiByte)
        return {QString::fromUtf8(bytes), SettingsEncoding::Utf8};
    return {DecodeWin1252(bytes), SettingsEncoding::Win1252};
}

QByteArray EncodeSettingsText(const QString& text, SettingsEncoding encoding)
{
    switch (encoding) {
    case SettingsEncoding::Utf8WithBom:
        return QByteArray("\xEF\xBB\xBF") + text.toUtf8();
    case SettingsEncoding::Utf8:
        return text.toUtf8();
    case SettingsEncoding::Win1252:
        break;
    }
    if (FitsWin1252(text))
        return EncodeWin1252(text);
    return text.toUtf8();
}

bool IsBlankOrTab(QChar c) { return c == u' ' || c == u'\t'; }

QStringView TrimBlanksAndTabs(QStringView text)
{
    qsizetype begin = 0, end = text.size();
    while (begin < end && IsBlankOrTab(text[begin]))
        ++begin;
    while (end > begin && IsBlankOrTab(text[end - 1]))
        --end;
    return text.sliced(begin, end - begin);
}

}  // namespace brindar
