// Code pages through the C library's iconv.
#include "platform/iconv.h"

#include <iconv.h>

namespace brindar {
namespace {

// The iconv name of a Windows code page number.
QByteArray IconvName(int codePage)
{
    switch (codePage) {
    case 10000: return "MACINTOSH";
    case 20127: return "ASCII";
    case 28591: return "ISO-8859-1";
    default: return "CP" + QByteArray::number(codePage);
    }
}

}  // namespace

std::optional<QString> IconvDecode(QByteArrayView bytes, int codePage)
{
    const iconv_t cd = iconv_open("UTF-8", IconvName(codePage).constData());
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

std::optional<QByteArray> IconvEncode(const QString& text, int codePage)
{
    const iconv_t cd = iconv_open(IconvName(codePage).constData(), "UTF-8");
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

}  // namespace brindar
