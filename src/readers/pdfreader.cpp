// The PDF reader: trailer found backwards from the end, objects through the classic
// cross-reference table, values cut out of the dictionary text.
#include "readers/pdfreader.h"

#include "core/codepage.h"
#include "readers/pagedfile.h"
#include "readers/text.h"

#include <QSet>
#include <array>
#include <cmath>
#include <cstring>
#include <string_view>

namespace brindar {
namespace {

constexpr unsigned char CR = 13, LF = 10;
// A number never needs more characters than this; longer runs are not numbers.
constexpr qint64 kNumberTextLimit = 4096;
// Object texts are cut at this size: no real dictionary comes near it.
constexpr qint64 kObjectTextLimit = 16 * 1024 * 1024;
constexpr qint64 kLineLimit = 4096;

bool IsSpace(QChar c) { return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n'; }

// The numeric conversion the program relies on: blanks around, a sign, digits with an
// optional decimal part and exponent.
std::optional<double> NumericValue(QStringView text)
{
    while (!text.isEmpty() && IsSpace(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && IsSpace(text.back()))
        text.chop(1);
    qsizetype i = 0;
    const qsizetype n = text.size();
    if (i < n && (text[i] == u'+' || text[i] == u'-'))
        ++i;
    qsizetype digits = 0;
    while (i < n && text[i].isDigit() && text[i].unicode() < 128)
        ++i, ++digits;
    if (i < n && text[i] == u'.') {
        ++i;
        while (i < n && text[i].isDigit() && text[i].unicode() < 128)
            ++i, ++digits;
    }
    if (digits == 0)
        return std::nullopt;
    if (i < n && (text[i] == u'e' || text[i] == u'E')) {
        qsizetype j = i + 1;
        if (j < n && (text[j] == u'+' || text[j] == u'-'))
            ++j;
        qsizetype expDigits = 0;
        while (j < n && text[j].isDigit() && text[j].unicode() < 128)
            ++j, ++expDigits;
        if (expDigits == 0)
            return std::nullopt;
        i = j;
    }
    if (i != n)
        return std::nullopt;
    bool ok = false;
    const double value = text.toString().toDouble(&ok);
    return ok && std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

// Conversion to a whole number, rounding halves to even (banker's rounding), so that a
// count written as "2.5" gives 2 and "3.5" gives 4.
std::optional<qint64> WholeNumber(QStringView text, qint64 low, qint64 high)
{
    const auto value = NumericValue(text);
    if (!value)
        return std::nullopt;
    const double rounded = std::nearbyint(*value);
    if (rounded < double(low) || rounded > double(high))
        return std::nullopt;
    return qint64(rounded);
}

std::optional<qint64> FileOffset(QStringView text)
{
    return WholeNumber(text, 0, std::numeric_limits<qint64>::max() / 2);
}

// 1-based position of `needle` in `text` from `from` (1-based), 0 when absent.
qsizetype InStr(qsizetype from, const QString& text, QStringView needle)
{
    if (from < 1)
        from = 1;
    const qsizetype at = text.indexOf(needle, from - 1);
    return at < 0 ? 0 : at + 1;
}

// Characters `start` (1-based) to `start + length - 1`, clipped like the runtime's Mid.
QString Mid(const QString& text, qsizetype start, qsizetype length = -1)
{
    if (start < 1 || start > text.size())
        return QString();
    return length < 0 ? text.mid(start - 1) : text.mid(start - 1, length);
}

// Digits of `base` read from the start of `text` (blanks dropped) as far as they are valid.
int LeadingDigits(QStringView text, int base)
{
    int value = 0;
    for (QChar c : text) {
        if (c == u' ' || c == u'\t')
            continue;
        const int digit = c.isDigit() && c.unicode() < 128 ? c.unicode() - u'0'
                          : (c.toLower() >= u'a' && c.toLower() <= u'f') ? c.toLower().unicode() - u'a' + 10
                                                                           : 99;
        if (digit >= base)
            break;
        value = value * base + digit;
    }
    return value;
}

// The state a trailer gives: where the cross-reference section is and what it names.
struct Trailer {
    qint64 xrefOffset = 0;   // 0-based file offset of "xref"
    qint64 infoNumber = 0;   // 0 = unknown
    qint64 rootNumber = 0;
    qint64 prevOffset = 0;   // 0 = none
    qint64 sectionEnd = 0;   // 1-based position just before "trailer"
};

class PdfParser {
public:
    explicit PdfParser(PagedFile& file) : file_(file), size_(file.size()) {}

    PdfInfo parse();

private:
    // 1-based byte access, as the algorithm counts.
    unsigned char b(qint64 i) { return file_.at(i - 1); }
    bool endsAt(qint64 i, std::string_view word);
    bool startsAt(qint64 i, std::string_view word);
    QString take(qint64 from, qint64 end);

    void scanBackward(Trailer& t);
    void scanForward(Trailer& t);
    bool findLinearized(qint64 upTo);
    struct Target {
        qint64* number;
        qint64 offset = 0;
    };
    void readSection(const Trailer& t, Target* targets, int count);
    // Walks `t` along the chain; the forward scans may rename the targets' objects.
    void lookUp(Trailer& t, Target* targets, int count);
    QString objectText(qint64 offset);

    void takeInfo(const QString& dictionary, PdfInfo& info);
    void takePages(const QString& root, const Trailer& start, PdfInfo& info);

    PagedFile& file_;
    qint64 size_;
    bool encrypted_ = false;
};

bool PdfParser::endsAt(qint64 i, std::string_view word)
{
    const qint64 first = i - qint64(word.size()) + 1;
    if (first < 1 || i > size_)
        return false;
    for (qint64 k = 0; k < qint64(word.size()); ++k)
        if (b(first + k) != static_cast<unsigned char>(word[k]))
            return false;
    return true;
}

bool PdfParser::startsAt(qint64 i, std::string_view word)
{
    return endsAt(i + qint64(word.size()) - 1, word);
}

// Bytes [from, end) (1-based) as text; a number never needs more than the first few.
QString PdfParser::take(qint64 from, qint64 end)
{
    return DecodeWin1252(file_.bytes(from - 1, std::min(end - from, kNumberTextLimit)));
}

// The first position at or after a given one whose byte matches. Each keyword looks
// for the end of its value this way; the finder remembers what it has seen, so a scan
// that meets thousands of keywords without a value end still reads each byte once.
class NextFinder {
public:
    template <class Match>
    qint64 next(qint64 j, qint64 size, Match match)
    {
        if (from_ > 0 && j >= from_ && j <= found_)
            return found_;
        const qint64 stop = (from_ > 0 && j < from_) ? from_ : size + 1;
        qint64 k = j;
        while (k < stop && !match(k))
            ++k;
        if (k == stop && stop == from_) {
            from_ = j;  // nothing new before what was already known
            return found_;
        }
        from_ = j;
        found_ = k;  // size + 1 when there is none
        return k;
    }

private:
    qint64 from_ = 0;
    qint64 found_ = 0;
};

bool IsLineEnd(unsigned char c) { return c == CR || c == LF; }
bool IsR(unsigned char c) { return c == 'R'; }
bool IsPrevEnd(unsigned char c) { return c == CR || c == LF || c == '/'; }

// "/Info 5 0 R" and "/Root 1 0 R": the object number before the first blank.
std::optional<qint64> ObjectNumber(const QString& collected)
{
    const QStringView text = TrimBlanks(collected);
    const qsizetype blank = text.indexOf(u' ');
    return WholeNumber(blank < 0 ? text : text.first(blank), 0, std::numeric_limits<qint64>::max() / 2);
}

void PdfParser::scanBackward(Trailer& t)
{
    // Every keyword ends in one of these letters; only there is a full comparison made.
    static const auto kEnds = [] {
        std::array<bool, 256> ends{};
        for (unsigned char c : std::string_view("fotvr"))
            ends[c] = true;
        return ends;
    }();
    NextFinder lineEnds, lineStarts, numberEnds, letterR, prevEnds;
    for (qint64 i = size_; i >= 9;) {
        qint64 pageStart = 0;
        const QByteArray page = file_.pageAt(i - 1, &pageStart);  // shared copy: at() may evict
        const char* data = page.constData();
        qint64 k = i - 1 - pageStart;
        const qint64 lowest = std::max<qint64>(0, 8 - pageStart);
        for (; k >= lowest; --k) {
            if (!kEnds[static_cast<unsigned char>(data[k])])
                continue;
            const qint64 at = pageStart + k + 1;
            if (endsAt(at, "startxref")) {
                const qint64 lineEnd = lineEnds.next(at + 1, size_, [&](qint64 j) { return IsLineEnd(b(j)); });
                const qint64 number = lineStarts.next(lineEnd, size_, [&](qint64 j) { return !IsLineEnd(b(j)); });
                const qint64 end = numberEnds.next(number, size_, [&](qint64 j) { return IsLineEnd(b(j)); });
                if (auto offset = FileOffset(take(number, end)))
                    t.xrefOffset = *offset;
            } else if (endsAt(at, "/Info") || endsAt(at, "/Root")) {
                const qint64 end = letterR.next(at + 1, size_, [&](qint64 j) { return IsR(b(j)); });
                if (auto n = ObjectNumber(take(at + 1, end)))
                    (b(at) == 'o' ? t.infoNumber : t.rootNumber) = *n;
            } else if (endsAt(at, "/Encrypt")) {
                encrypted_ = true;
            } else if (endsAt(at, "/Prev")) {
                const qint64 end = prevEnds.next(at + 1, size_, [&](qint64 j) { return IsLineEnd(b(j)); });
                if (auto offset = FileOffset(TrimBlanks(take(at + 1, end))))
                    t.prevOffset = *offset;
            } else if (endsAt(at, "trailer")) {
                t.sectionEnd = at - 7;
                return;
            }
        }
        i = pageStart + k + 1;
    }
}

// The trailer keywords read forward from the cross-reference offset, up to "%%EOF".
void PdfParser::scanForward(Trailer& t)
{
    NextFinder letterR, prevEnds;
    for (qint64 i = t.xrefOffset + 1; i <= size_ - 7; ++i) {
        const unsigned char c = b(i);
        if (c != '/' && c != '%' && c != 't')
            continue;
        if (startsAt(i, "%%EOF"))
            return;
        if (startsAt(i, "/Info") || startsAt(i, "/Root")) {
            const qint64 end = letterR.next(i + 5, size_, [&](qint64 j) { return IsR(b(j)); });
            if (auto n = ObjectNumber(take(i + 5, end)))
                (b(i + 1) == 'I' ? t.infoNumber : t.rootNumber) = *n;
        } else if (startsAt(i, "/Encrypt")) {
            encrypted_ = true;
        } else if (startsAt(i, "/Prev")) {
            const qint64 end = prevEnds.next(i + 5, size_, [&](qint64 j) { return IsPrevEnd(b(j)); });
            if (auto offset = FileOffset(TrimBlanks(take(i + 5, end))))
                t.prevOffset = *offset;
        } else if (startsAt(i, "trailer")) {
            t.sectionEnd = i - 1;
        }
    }
}

bool PdfParser::findLinearized(qint64 upTo)
{
    const qint64 last = std::min(upTo, size_);
    for (qint64 i = 5; i <= last;) {
        qint64 pageStart = 0;
        const QByteArray page = file_.pageAt(i - 1, &pageStart);  // shared copy: at() may evict
        const char* data = page.constData();
        const char* end = data + std::min<qint64>(page.size(), last - pageStart);
        const char* from = data + (i - 1 - pageStart);
        const auto* slash = static_cast<const char*>(std::memchr(from, '/', size_t(end - from)));
        if (!slash) {
            i = pageStart + (end - data) + 1;
            continue;
        }
        i = pageStart + (slash - data) + 1;
        if (startsAt(i, "/Linearized"))
            return true;
        ++i;
    }
    return false;
}

// One cross-reference section, line by line, from 5 bytes after "xref" to the section end.
void PdfParser::readSection(const Trailer& t, Target* targets, int count)
{
    const qint64 x = t.xrefOffset + 1;
    if (!startsAt(x, "xref"))
        return;
    qint64 current = 0;
    qint64 i = x + 5;
    const qint64 end = std::min(t.sectionEnd, size_);
    while (i <= end) {
        QByteArray line;
        unsigned char last = 0;
        for (; i <= end && !IsLineEnd(b(i)); ++i) {
            last = b(i);
            if (line.size() < kLineLimit)
                line.append(char(last));
        }
        ++i;  // the line end
        QString text = DecodeWin1252(line);
        if (line.size() >= kLineLimit)
            text += CharOfCode(last);  // a cut line keeps its last character
        const QStringView trimmed = TrimBlanks(text);
        if (trimmed.isEmpty())
            continue;
        const qsizetype blank = trimmed.indexOf(u' ');
        if (trimmed.back().isDigit() && trimmed.back().unicode() < 128) {
            if (blank < 0)
                continue;
            const auto first = WholeNumber(trimmed.first(blank), 0, std::numeric_limits<qint64>::max() / 2);
            if (first && NumericValue(trimmed.sliced(blank + 1)))
                current = *first;
            continue;
        }
        const QStringView offsetText = blank < 0 ? trimmed : trimmed.first(blank);
        for (int k = 0; k < count; ++k)
            if (current == *targets[k].number)
                if (auto offset = FileOffset(offsetText))
                    targets[k].offset = *offset;
        ++current;
    }
}

// Follows the chain of cross-reference sections from `t` until every target has an
// offset or no older section is named. A section named twice ends the chain, so a
// looping /Prev cannot hang the reader.
void PdfParser::lookUp(Trailer& t, Target* targets, int count)
{
    QSet<qint64> seen{t.xrefOffset};
    for (;;) {
        readSection(t, targets, count);
        bool missing = false;
        for (int k = 0; k < count; ++k)
            missing = missing || targets[k].offset == 0;
        if (!missing || t.prevOffset == 0 || seen.contains(t.prevOffset))
            return;
        t.xrefOffset = t.prevOffset;
        seen.insert(t.xrefOffset);
        t.prevOffset = 0;
        t.sectionEnd = size_;
        scanForward(t);
    }
}

QString PdfParser::objectText(qint64 offset)
{
    QByteArray bytes;
    for (qint64 i = offset + 1; i <= size_ && !startsAt(i, "endobj"); ++i) {
        if (bytes.size() >= kObjectTextLimit)
            break;
        bytes.append(char(b(i)));
    }
    return DecodeWin1252(bytes);
}

QString Normalised(QString text)
{
    text.replace(QStringLiteral("\\\r\n"), QString());
    text.replace(QStringLiteral("\\\r"), QString());
    text.replace(QStringLiteral("\\\n"), QString());
    text.replace(QStringLiteral("\\("), QString(QChar(1)));
    text.replace(QStringLiteral("\\)"), QString(QChar(2)));
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\r"));
    text.replace(u'\n', u'\r');
    text.remove(u'\r');
    return text;
}

// A text entry of the dictionary, cut between its key and the next ")/", ">/" or ">".
std::optional<QString> TextEntry(const QString& text, QStringView key)
{
    const qsizetype p = InStr(1, text, key);
    if (p == 0)
        return QString();
    const qsizetype start = p + key.size();
    const qsizetype e1 = InStr(start, text, u")/");
    const qsizetype e2 = InStr(start, text, u">/");
    qsizetype e = (e1 != 0 && e2 != 0 && e2 <= e1) ? e2 : e1;
    if (e == 0)
        e = InStr(start, text, u">");
    if (e == 0)
        return QString();
    if (e > 1 && text[e - 2] == u')')
        e -= 1;
    if (e + 1 - start <= 1)
        return QString();
    const QString value = TrimBlanks(Mid(text, start, e + 1 - start)).toString();
    QString inner = value.size() >= 2 ? value.mid(1, value.size() - 2) : QString();
    if (value.startsWith(u'<') && value.endsWith(u'>'))
        inner = PdfHexDecode(inner);
    else
        inner = PdfRestoreParens(inner);
    return PdfUnescape(inner);
}

// "/CreationDate (D:20040312153000+01'00')" gives "2004/03/12 15:30:00".
std::optional<QString> DateEntry(const QString& text, QStringView key)
{
    const qsizetype p = InStr(1, text, key);
    if (p == 0)
        return QString();
    const qsizetype o = InStr(p + 1, text, u"(");
    if (o == 0)
        return QString();
    const qsizetype c = InStr(o + 1, text, u")");
    if (c == 0 || c <= o)
        return QString();
    std::optional<QString> value = PdfUnescape(Mid(text, o + 1, c - o - 1));
    if (!value)
        return value;
    if (value->startsWith(u"D:"))
        value->remove(0, 2);
    if (value->size() > 4 && NumericValue(QStringView(*value).first(4)))
        return Mid(*value, 1, 4) + u'/' + Mid(*value, 5, 2) + u'/' + Mid(*value, 7, 2) + u' ' + Mid(*value, 9, 2)
               + u':' + Mid(*value, 11, 2) + u':' + Mid(*value, 13, 2);
    return value;
}

void PdfParser::takeInfo(const QString& dictionary, PdfInfo& info)
{
    const QString text = Normalised(dictionary);
    struct Key {
        const char16_t* name;
        QString PdfInfo::*field;
        bool date;
    };
    static const Key keys[] = {
        {u"/Author", &PdfInfo::author, false},   {u"/CreationDate", &PdfInfo::creationDate, true},
        {u"/ModDate", &PdfInfo::modificationDate, true}, {u"/Creator", &PdfInfo::creator, false},
        {u"/Producer", &PdfInfo::producer, false}, {u"/Title", &PdfInfo::title, false},
        {u"/Subject", &PdfInfo::subject, false}, {u"/Keywords", &PdfInfo::keywords, false},
    };
    for (const Key& key : keys) {
        // An escape that asks for a code above 255 abandons that value only.
        const std::optional<QString> value = key.date ? DateEntry(text, key.name) : TextEntry(text, key.name);
        info.*(key.field) = value.value_or(QString());
    }
}

void PdfParser::takePages(const QString& root, const Trailer& start, PdfInfo& info)
{
    const qsizetype p = InStr(1, root, u"/Pages");
    if (p == 0)
        return;
    const qsizetype blank = InStr(p + 7, root, u" ");
    if (blank == 0)
        return;
    const auto number = WholeNumber(Mid(root, p + 7, blank - (p + 7)), 1, std::numeric_limits<qint64>::max() / 2);
    if (!number)
        return;
    qint64 pagesNumber = *number;
    Target target{&pagesNumber};
    Trailer walk = start;
    lookUp(walk, &target, 1);
    if (target.offset == 0)
        return;
    const QString text = objectText(target.offset);
    const qsizetype c = InStr(1, text, u"/Count");
    if (c == 0)
        return;
    const qsizetype from = c + 6;
    qsizetype e = InStr(from, text, u"/");
    if (e == 0)
        e = InStr(from, text, u">");
    if (e - from <= 1)
        return;
    QString count = TrimBlanks(Mid(text, from, e - from)).toString();
    if (count.endsWith(u'\r'))
        count.chop(1);
    if (count.endsWith(u'\n'))
        count.chop(1);
    // The page count is a 16-bit integer; anything else abandons it.
    if (auto pages = WholeNumber(count, -32768, 32767))
        info.pages = QString::number(*pages);
}

PdfInfo PdfParser::parse()
{
    PdfInfo info;
    if (size_ <= 0 || file_.bytes(0, 4) != "%PDF")
        return info;
    info.isPdf = true;
    info.version = DecodeWin1252(file_.bytes(5, 3));

    Trailer t;
    scanBackward(t);
    if (t.infoNumber == 0 && findLinearized(t.xrefOffset)) {
        t.sectionEnd = size_;
        scanForward(t);
    }
    const Trailer last = t;

    if (t.infoNumber != 0 || t.rootNumber != 0) {
        Target targets[2] = {{&t.infoNumber}, {&t.rootNumber}};
        lookUp(t, targets, 2);
        if (targets[0].offset != 0)
            takeInfo(objectText(targets[0].offset), info);
        if (targets[1].offset != 0)
            takePages(objectText(targets[1].offset), last, info);
    }
    info.encrypted = encrypted_;
    return info;
}

}  // namespace

QString PdfRestoreParens(const QString& text)
{
    QString restored = text;
    restored.replace(QChar(1), u'(');
    restored.replace(QChar(2), u')');
    return restored;
}

QString PdfHexDecode(const QString& text)
{
    QString decoded;
    for (qsizetype i = 1; i <= text.size() - 1; i += 2)
        decoded += CharOfCode(static_cast<unsigned char>(LeadingDigits(Mid(text, i, 2), 16)));
    return decoded;
}

std::optional<QString> PdfUnescape(const QString& input)
{
    QString text = input;
    text.remove(QStringLiteral("\\n"));
    qsizetype pos = 1;
    for (;;) {
        const qsizetype p = InStr(pos, text, u"\\");
        if (p == 0)
            break;
        if (p < text.size() && text[p] == u'\\') {
            text.remove(p, 1);
            pos = p + 2;
            continue;
        }
        const QString digits = Mid(text, p + 1, 3);
        if (NumericValue(digits)) {
            int code = LeadingDigits(QStringView(digits), 8);
            if (code == 11)
                code = 32;
            else if (code == 25)
                code = 39;
            else if (code == 146)
                code = 153;
            if (code > 255)
                return std::nullopt;
            text.replace(p - 1, 1 + digits.size(), CharOfCode(static_cast<unsigned char>(code)));
        }
        pos = p + 1;
    }
    if (text.size() > 3 && text[0] == CharOfCode(254) && text[1] == CharOfCode(255)) {
        text.remove(0, 2);
        text.remove(QChar(0));
        text.remove(QChar(26));
        text.remove(QStringLiteral("\\\n"));
        text.remove(QStringLiteral("\\\r"));
    }
    text.replace(QStringLiteral("\\("), QStringLiteral("("));
    text.replace(QStringLiteral("\\)"), QStringLiteral(")"));
    return text;
}

PdfInfo ReadPdfInfo(const QString& path)
{
    PagedFile file(path);
    return ReadPdfInfo(file);
}

PdfInfo ReadPdfInfo(PagedFile& file)
{
    if (!file.isOpen())
        return PdfInfo();
    PdfParser parser(file);
    PdfInfo info = parser.parse();
    info.shortRead = info.isPdf && file.shortRead();
    info.bytesRead = file.bytesRead();
    return info;
}

}  // namespace brindar
