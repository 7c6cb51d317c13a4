// Text helpers: buffer cleaning, escaping for XML and HTML, UTF-8 decoding.
#include "readers/text.h"

#include "core/codepage.h"

namespace brindar {
namespace {

const QChar kEnDash = CharOfCode(150);

QString ControlClean(QString text)
{
    for (QChar& c : text) {
        switch (c.unicode()) {
        case 0: case 1: case 2: case 3: case 12: case 21: case 27: case 28:
            c = u' ';
            break;
        default:
            if (c == kEnDash)
                c = u'-';
        }
    }
    return text;
}

}  // namespace

QString CutAtNul(const QString& text)
{
    const qsizetype nul = text.indexOf(QChar(0));
    return nul < 0 ? text : text.left(nul);
}

QString TrimTrailingNuls(const QString& text)
{
    qsizetype end = text.size();
    while (end > 0 && text[end - 1] == QChar(0))
        --end;
    return text.left(end);
}

QStringView TrimBlanks(QStringView text)
{
    while (!text.isEmpty() && text.front() == u' ')
        text = text.sliced(1);
    while (!text.isEmpty() && text.back() == u' ')
        text.chop(1);
    return text;
}

QString TrimTrailingBlanks(const QString& text)
{
    qsizetype end = text.size();
    while (end > 0 && (text[end - 1] == u'\n' || text[end - 1] == u'\r' || text[end - 1] == u' '))
        --end;
    return text.left(end);
}

QString CleanForGrid(const QString& text)
{
    QString clean = text;
    for (QChar& c : clean) {
        if (c == QChar(0))
            c = u' ';
        else if (c == kEnDash)
            c = u'-';
    }
    return clean;
}

QString XmlControlClean(const QString& text) { return ControlClean(text); }

QString HtmlEscape(const QString& text)
{
    return ControlClean(text)
        .replace(u'&', QStringLiteral("&amp;"))
        .replace(u'"', QStringLiteral("&quot;"))
        .replace(u'<', QStringLiteral("&lt;"))
        .replace(u'>', QStringLiteral("&gt;"));
}

QString XmlEscape(const QString& text)
{
    return ControlClean(text)
        .replace(u'&', QStringLiteral("&amp;"))
        .replace(u'"', QStringLiteral("&quot;"))
        .replace(u'\'', QStringLiteral("&apos;"))
        .replace(u'<', QStringLiteral("&lt;"))
        .replace(u'>', QStringLiteral("&gt;"));
}

QString XmlUnescape(const QString& text)
{
    return QString(text)
        .replace(QStringLiteral("&amp;"), QStringLiteral("&"))
        .replace(QStringLiteral("&quot;"), QStringLiteral("\""))
        .replace(QStringLiteral("&apos;"), QStringLiteral("'"))
        .replace(QStringLiteral("&lt;"), QStringLiteral("<"))
        .replace(QStringLiteral("&gt;"), QStringLiteral(">"));
}

std::optional<QStringView> TextBetween(QStringView text, QStringView open, QStringView close)
{
    const qsizetype p = text.indexOf(open);
    if (p < 0)
        return std::nullopt;
    const qsizetype start = p + open.size();
    const qsizetype q = text.indexOf(close, start);
    if (q < 0)
        return std::nullopt;
    return text.sliced(start, q - start);
}

std::optional<QStringView> ElementText(const QString& text, QStringView name)
{
    return TextBetween(text, QString(u'<').append(name).append(u'>'), QStringLiteral("</").append(name).append(u'>'));
}

QString Utf8Decode(QByteArrayView bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    qsizetype used = 0;
    const qsizetype n = bytes.size();
    for (qsizetype i = 0; i < n;) {
        const auto b = static_cast<unsigned char>(bytes[i]);
        auto next = [&](qsizetype k) { return static_cast<unsigned char>(bytes[i + k]) & 0x3F; };
        if (b >= 194 && b <= 223 && i + 1 < n) {
            text[used++] = QChar(char16_t(((b & 0x1F) << 6) | next(1)));
            i += 2;
        } else if (b >= 224 && b <= 239 && i + 2 < n) {
            text[used++] = QChar(char16_t(((b & 0x0F) << 12) | (next(1) << 6) | next(2)));
            i += 3;
        } else {
            text[used++] = b < 128 ? QChar(char16_t(b)) : CharOfCode(b);
            ++i;
        }
    }
    text.truncate(used);
    return text;
}

}  // namespace brindar
