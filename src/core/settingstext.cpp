// Encoding detection for INI and language files.
#include "core/settingstext.h"

#include "core/codepage.h"
#include "platform/filenames.h"

namespace brindar {
namespace {

// Strict UTF-8 (no overlong forms, no surrogates, nothing above U+10FFFF); also tells
// whether any multi-byte sequence was seen.
bool IsUtf8(const QByteArray& bytes, bool* sawMultiByte)
{
    *sawMultiByte = false;
    for (qsizetype at = 0; at < bytes.size();) {
        if (static_cast<unsigned char>(bytes[at]) < 0x80) {
            ++at;
            continue;
        }
        const int length = Utf8SequenceLength(bytes, at);
        if (length == 0)
            return false;
        *sawMultiByte = true;
        at += length;
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
