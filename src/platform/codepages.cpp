// Code page decoding: the program's own Windows-1252 table, Qt for Unicode, iconv for the rest.
#include "platform/codepages.h"

#include "core/codepage.h"

#include <QStringDecoder>
#include <iconv.h>

namespace brindar {
namespace {

std::optional<QString> Iconv(QByteArrayView bytes, const char* name)
{
    const iconv_t cd = iconv_open("UTF-8", name);
    if (cd == reinterpret_cast<iconv_t>(-1))
        return std::nullopt;
    QByteArray out(bytes.size() * 4 + 16, '\0');
    char* in = const_cast<char*>(bytes.data());
    size_t inLeft = size_t(bytes.size());
    char* to = out.data();
    size_t outLeft = size_t(out.size());
    while (inLeft > 0) {
        if (iconv(cd, &in, &inLeft, &to, &outLeft) != size_t(-1))
            continue;
        if (outLeft < 4)
            break;
        // A byte the code page does not define: a replacement character, and on.
        *to++ = '\xEF', *to++ = '\xBF', *to++ = '\xBD';
        outLeft -= 3;
        ++in;
        --inLeft;
    }
    iconv_close(cd);
    out.truncate(out.size() - qsizetype(outLeft));
    return QString::fromUtf8(out);
}

const char* IconvName(int codePage, QByteArray& storage)
{
    switch (codePage) {
    case 10000: return "MACINTOSH";
    case 20127: return "ASCII";
    case 28591: return "ISO-8859-1";
    default:
        storage = "CP" + QByteArray::number(codePage);
        return storage.constData();
    }
}

}  // namespace

std::optional<QByteArray> EncodeCodePage(const QString& text, int codePage)
{
    switch (codePage) {
    case 1252:
        return FitsWin1252(text) ? std::optional<QByteArray>(EncodeWin1252(text)) : std::nullopt;
    case 1200:
        return QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
    case 65001:
        return text.toUtf8();
    default:
        break;
    }
    QByteArray storage;
    const iconv_t cd = iconv_open(IconvName(codePage, storage), "UTF-8");
    if (cd == reinterpret_cast<iconv_t>(-1))
        return std::nullopt;
    QByteArray in = text.toUtf8();
    QByteArray out(in.size() * 4 + 16, '\0');
    char* from = in.data();
    size_t inLeft = size_t(in.size());
    char* to = out.data();
    size_t outLeft = size_t(out.size());
    const bool ok = iconv(cd, &from, &inLeft, &to, &outLeft) != size_t(-1) && inLeft == 0;
    iconv_close(cd);
    if (!ok)
        return std::nullopt;
    out.truncate(out.size() - qsizetype(outLeft));
    return out;
}

std::optional<QString> DecodeCodePage(QByteArrayView bytes, int codePage)
{
    switch (codePage) {
    case 1252:
        return DecodeWin1252(bytes);
    case 1200:
        return QStringDecoder(QStringDecoder::Utf16LE).decode(bytes);
    case 1201:
        return QStringDecoder(QStringDecoder::Utf16BE).decode(bytes);
    case 65001:
        return QString::fromUtf8(bytes);
    default:
        break;
    }
    QByteArray storage;
    return Iconv(bytes, IconvName(codePage, storage));
}

}  // namespace brindar
