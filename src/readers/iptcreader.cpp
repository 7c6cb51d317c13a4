// The IPTC reader: one forward search for the resource block, then its datasets walked
// through the dataset table.
#include "readers/iptcreader.h"

#include "core/codepage.h"
#include "readers/pagedfile.h"
#include "readers/text.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <optional>

namespace brindar {
namespace {

using R = IptcResult;

// One row of the dataset table: the dataset numbers it covers, the fragment element,
// and the field it fills (none for the datasets that go to the fragment only). A
// numbered row's element carries the number dataset - numberFrom ("customfield3").
struct DatasetRow {
    int first;
    int last;
    QStringView element;
    QString R::*field;
    bool repeated;
    int numberFrom = -1;  // -1: the element as it is
};

// Looked up from the top; the last row takes every dataset the others leave.
const DatasetRow kDatasets[] = {
    {5, 5, u"objectname", &R::objectName, false},
    {7, 7, u"editstatus", &R::editStatus, false},
    {10, 10, u"priority", &R::priority, false},
    {15, 15, u"category", &R::category, false},
    {20, 20, u"supplementalcategory", &R::supplementalCategory, true},
    {22, 22, u"fixtureidentifier", &R::fixtureIdentifier, false},
    {25, 25, u"keyword", &R::keywords, true},
    {30, 30, u"releasedate", &R::releaseDate, false},
    {35, 35, u"releasetime", &R::releaseTime, false},
    {40, 40, u"specialinstructions", &R::specialInstructions, false},
    {45, 45, u"referenceservice", &R::referenceService, true},
    {47, 47, u"referencedate", &R::referenceDate, true},
    {50, 50, u"referencenumber", &R::referenceNumber, true},
    {55, 55, u"createddate", &R::createdDate, false},
    {60, 60, u"createdtime", &R::createdTime, false},
    {65, 65, u"originatingprogram", &R::originatingProgram, false},
    {70, 70, u"programversion", &R::programVersion, false},
    {75, 75, u"objectcycle", &R::objectCycle, false},
    {80, 80, u"byline", &R::byline, true},
    {85, 85, u"bylinetitle", &R::bylineTitle, true},
    {90, 90, u"city", &R::city, false},
    {95, 95, u"province-state", &R::provinceState, false},
    {100, 100, u"countrycode", &R::countryCode, false},
    {101, 101, u"country", &R::country, false},
    {103, 103, u"originaltransmissionreference", &R::originalTransmissionReference, false},
    {105, 105, u"headline", &R::headline, false},
    {110, 110, u"credit", &R::credit, false},
    {115, 115, u"source", &R::source, false},
    {116, 116, u"copyright", &R::copyright, false},
    {118, 118, u"contact", &R::contact, false},
    {120, 120, u"caption", &R::caption, false},
    {121, 121, u"localcaption", &R::localCaption, false},
    {122, 122, u"captionwriter", &R::captionWriter, true},
    {130, 130, u"imagetype", &R::imageType, false},
    {200, 219, u"customfield", nullptr, false, 199},
    {230, 230, u"imagenotes", nullptr, false},
    {0, 255, u"segment", nullptr, false, 0},
};

// One row of the Macintosh accents table: the character a Mac OS Roman byte becomes
// when read as Windows-1252, and what replaces it. Six letters have Windows-1252 codes
// that later rows replace again, so their rows write a placeholder first; the row of
// the letter's own code then turns that placeholder into the letter.
struct MacAccent {
    unsigned char code;
    QStringView becomes;
    QStringView placeholder = {};  // becomes the character of `code` once this row ran
};

// Applied in this order, one whole-text replacement per row.
const MacAccent kMacAccents[] = {
    {128, u"\u00C4"}, {131, u"\u00C9"}, {133, u"\u00D6"}, {134, u"\u00DC"}, {136, u"\u00E0"},
    {137, u"\u00E2"}, {138, u"\u00E4"}, {139, u"\u00E3"}, {141, u"&ccedil;"}, {142, u"&eacute;"},
    {143, u"&egrave;"}, {144, u"\u00EA"}, {145, u"&euml;"}, {148, u"\u00EE"}, {149, u"&iuml;"},
    {150, u"\u00F1"}, {153, u"&ocirc;"}, {154, u"\u00F6"}, {155, u"\u00F5"}, {157, u"\u00F9"},
    {158, u"\u00FB"}, {159, u"\u00FC"}, {213, u"'"}, {189, u"\""}, {161, u"\u00B0"},
    {199, u"\u00AB"}, {200, u"\u00BB"}, {229, u"\u00C2"}, {230, u"\u00CA"},
    {231, u"\u00C1", u"&ccedil;"}, {232, u"\u00CB", u"&egrave;"}, {233, u"\u00C8", u"&eacute;"},
    {235, u"\u00CE", u"&euml;"}, {236, u"\u00CF"}, {239, u"\u00D4", u"&iuml;"}, {243, u"\u00DB"},
    {244, u"\u00D9", u"&ocirc;"},
};

constexpr char kSignature[] = {'8', 'B', 'I', 'M', 0x04, 0x04};  // the resource 0x0404
constexpr char kApp13[] = {'\xFF', '\xED'};

// Whether `pattern` starts at `pos`, looking in `page` (which starts at `pageStart`)
// while it lasts and in the file after it.
bool MatchesAt(PagedFile& file, const QByteArray& page, qint64 pageStart, qint64 pos, QByteArrayView pattern)
{
    const qint64 inPage = std::min<qint64>(pattern.size(), pageStart + page.size() - pos);
    const char* bytes = page.constData() + (pos - pageStart);
    for (qsizetype n = 0; n < pattern.size(); ++n) {
        if ((n < inPage ? bytes[n] : char(file.at(pos + n))) != pattern[n])
            return false;
    }
    return true;
}

// The first start of `pattern` (two bytes or more) from `begin` to `lastStart`, where
// the bytes from `begin` to lastStart + the pattern's size are at hand, or null. memchr
// leaps to the next byte that could start it; a run of such bytes (a uniform area of an
// image) is stepped through, most of its bytes failing on the second byte.
const char* FindInBytes(const char* begin, const char* lastStart, QByteArrayView pattern)
{
    const char first = pattern[0], second = pattern[1];
    for (const char* at = begin; at <= lastStart; ++at) {
        if (*at != first) {
            at = static_cast<const char*>(std::memchr(at, first, size_t(lastStart - at + 1)));
            if (!at)
                return nullptr;
        }
        if (at[1] == second && std::memcmp(at, pattern.data(), size_t(pattern.size())) == 0)
            return at;
    }
    return nullptr;
}

// The first position from `from` to `last` where `pattern` starts, or -1. The caller
// makes sure the whole pattern fits in the file from `last`. Each page is searched once,
// so a long search costs about what reading the file does.
qint64 FindPattern(PagedFile& file, qint64 from, qint64 last, QByteArrayView pattern)
{
    while (from <= last) {
        qint64 pageStart = 0;
        // A shared copy: a look into the next page may drop this one from the cache.
        const QByteArray page = file.pageAt(from, &pageStart);
        const qint64 pageEnd = pageStart + page.size();
        const qint64 pageLast = std::min(last, pageEnd - 1);
        // First the starts whose whole pattern lies in this page ...
        const qint64 wholeLast = std::min(pageLast, pageEnd - pattern.size());
        if (from <= wholeLast) {
            const char* bytes = page.constData();
            if (const char* hit = FindInBytes(bytes + (from - pageStart), bytes + (wholeLast - pageStart), pattern))
                return pageStart + (hit - bytes);
        }
        // ... then the few whose pattern runs into the next page.
        for (qint64 pos = std::max(from, wholeLast + 1); pos <= pageLast; ++pos) {
            if (MatchesAt(file, page, pageStart, pos, pattern))
                return pos;
        }
        from = pageLast + 1;
    }
    return -1;
}

// A byte of the file; none past its end. The reader stops at the first byte it needs
// and the file does not have: a block that runs past the end ends the reading.
std::optional<unsigned> ByteAt(PagedFile& file, qint64 pos)
{
    if (pos < 0 || pos >= file.size())
        return std::nullopt;
    return file.at(pos);
}

const DatasetRow& RowOf(int dataset)
{
    return *std::find_if(std::begin(kDatasets), std::end(kDatasets),
        [dataset](const DatasetRow& row) { return dataset >= row.first && dataset <= row.last; });
}

void Store(IptcResult& result, int dataset, const QString& value, bool macintoshAccents)
{
    const DatasetRow& row = RowOf(dataset);
    const QString converted = MacRomanToAnsi(value, macintoshAccents);
    if (row.field) {
        QString& field = result.*row.field;
        if (row.repeated && !field.isEmpty())
            field += QStringLiteral("; ") + converted;
        else
            field = converted;
    }
    QString element = row.element.toString();
    if (row.numberFrom >= 0)
        element += QString::number(dataset - row.numberFrom);
    result.fragment += u'<' + element + u'>' + XmlEscape(converted) + QStringLiteral("</") + element + u'>';
}

// The value of the dataset whose tag is at `tag`: for dataset 0 (the record version)
// its two bytes as decimal numbers joined ("02"); for the others the bytes as
// characters, cut at the first zero byte. None when the value runs past the end of
// the file before a zero byte ends it.
std::optional<QString> ValueAt(PagedFile& file, qint64 tag, unsigned dataset, qint64 length)
{
    const qint64 start = tag + 5;
    if (dataset == 0) {
        const auto first = ByteAt(file, start), second = ByteAt(file, start + 1);
        if (!first || !second)
            return std::nullopt;
        return QString::number(*first) + QString::number(*second);
    }
    const QByteArray bytes = file.bytes(start, length);
    const qsizetype nul = bytes.indexOf('\0');
    if (nul < 0 && bytes.size() < length)
        return std::nullopt;
    // The value is cut at its first zero byte, so none is left for the blank that a
    // zero byte would become.
    return DecodeWin1252(nul < 0 ? QByteArrayView(bytes) : QByteArrayView(bytes).first(nul));
}

// The datasets of the resource block whose "8BIM" is at `block`. The data size is
// read after a name padded only when the name is empty (an even name length misses
// its padding byte and takes the size one byte early), yet the data is always read
// from 12 bytes after "8BIM". Tags are looked for byte by byte; after a value the
// look resumes at tag + length + 1, inside the value.
void ReadDatasets(PagedFile& file, qint64 block, bool macintoshAccents, IptcResult& result)
{
    // FindIptcResource only returns blocks whose name length byte is in the file.
    const unsigned nameLength = file.at(block + 6);
    const qint64 sizeAt = block + (nameLength == 0 ? 10 : nameLength + 9);
    const auto sizeHigh = ByteAt(file, sizeAt), sizeLow = ByteAt(file, sizeAt + 1);
    if (!sizeHigh || !sizeLow)
        return;
    const qint64 dataEnd = block + 12 + (*sizeHigh * 256 + *sizeLow);

    for (qint64 k = block + 12; k <= dataEnd && k + 1 < file.size();) {
        if (file.at(k) != 0x1C || file.at(k + 1) != 2) {
            ++k;
            continue;
        }
        const auto dataset = ByteAt(file, k + 2), lengthHigh = ByteAt(file, k + 3), lengthLow = ByteAt(file, k + 4);
        if (!dataset || !lengthHigh || !lengthLow)
            return;
        const qint64 length = *lengthHigh * 256 + *lengthLow;
        if (length == 0)
            return;
        const std::optional<QString> value = ValueAt(file, k, *dataset, length);
        if (!value)
            return;
        Store(result, int(*dataset), *value, macintoshAccents);
        k += length + 1;
    }
}

}  // namespace

// The search by its rule, with 1-based positions i and j: for each i
// that opens a window (in a JPEG the APP13 markers FF ED, the window running to i plus
// the segment length; in any other file every i, the window running to size - 5), j
// goes from i + 4 to the window's end; the search stops for good when j + 5 reaches
// the size, and ends at the first j where "8BIM" 04 04 starts.
//
// Done that way, a file without the resource costs a window per position. The same
// answer comes from one forward pass, because:
// - whether "8BIM" 04 04 starts at j does not depend on the window that reaches j;
// - windows open in increasing order of i, so every earlier window started before the
//   current one: the positions of the current window that earlier windows reached are
//   exactly those from its start to the furthest earlier end (`reached`). Each of them
//   was tested and passed over - neither a match nor the stop, or the search would
//   have ended - and testing it again changes nothing, so the window is searched from
//   reached + 1 on. Every position is tested once at most;
// - from the position where j + 5 reaches the size on, the stop comes before any
//   match: a window is searched up to the position before (`lastTested`), and a
//   window that reaches further and found nothing ends the search;
// - outside a JPEG, the first window (i = 1) runs from 5 to size - 5 and so always
//   ends the search: it finds the first match from position 5 on, or stops. A file of
//   fewer than 10 bytes has only empty windows and no match.
// Here positions are 0-based: "8BIM" at p is j = p + 1, and j + 5 reaches the size
// when p >= size - 6.
qint64 FindIptcResource(PagedFile& file)
{
    const qint64 size = file.size();
    if (size <= 0)
        return -1;
    // Either byte makes a JPEG; a one-byte file has no second byte.
    const bool jpeg = file.at(0) == 0xFF || (size > 1 && file.at(1) == 0xD8);
    const qint64 lastTested = size - 7;
    qint64 reached = -1;
    for (qint64 start = 0; start <= size - 2; ++start) {
        qint64 windowEnd = size - 6;
        if (jpeg) {
            // Only APP13 markers open windows: on to the next one.
            start = FindPattern(file, start, size - 2, QByteArrayView(kApp13, sizeof kApp13));
            // A marker whose length bytes are not both in the file opens its window
            // past the stop, as every later marker would: nothing more can be found.
            if (start < 0 || start + 3 >= size)
                return -1;
            windowEnd = start + (file.at(start + 2) * 256 + file.at(start + 3));
        }
        const qint64 windowStart = start + 4;
        if (windowStart > windowEnd)
            continue;
        const qint64 from = std::max(windowStart, reached + 1);
        const qint64 to = std::min(windowEnd, lastTested);
        if (from <= to) {
            const qint64 found = FindPattern(file, from, to, QByteArrayView(kSignature, sizeof kSignature));
            if (found >= 0)
                return found;
        }
        if (windowEnd > lastTested)
            return -1;
        reached = std::max(reached, windowEnd);
    }
    return -1;
}

IptcResult ReadIptc(const QString& path, bool macintoshAccents)
{
    PagedFile file(path);
    return ReadIptc(file, macintoshAccents);
}

IptcResult ReadIptc(PagedFile& file, bool macintoshAccents)
{
    IptcResult result;
    if (!file.isOpen() || file.size() <= 0)
        return result;
    if (const qint64 block = FindIptcResource(file); block >= 0)
        ReadDatasets(file, block, macintoshAccents, result);
    result.shortRead = file.shortRead();
    result.bytesRead = file.bytesRead();
    return result;
}

QString MacRomanToAnsi(const QString& text, bool macintoshAccents)
{
    if (!macintoshAccents)
        return text;
    // Every row replaces a character from code 128 up, and every placeholder starts
    // with "&": a text with neither is left as it is, without 43 passes over it.
    if (std::none_of(text.begin(), text.end(), [](QChar c) { return c.unicode() >= 128 || c == u'&'; }))
        return text;
    QString converted = text;
    for (const MacAccent& row : kMacAccents) {
        const QChar character = CharOfCode(row.code);
        converted.replace(character, row.becomes.toString());
        if (!row.placeholder.isEmpty())
            converted.replace(row.placeholder.toString(), QString(character));
    }
    return converted;
}

}  // namespace brindar
