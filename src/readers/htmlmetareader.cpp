// The HTML meta reader: the page's head read line by line, its title and its META tags.
#include "readers/htmlmetareader.h"

#include "core/codepage.h"
#include "readers/pagedfile.h"
#include "readers/text.h"

#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <vector>

namespace brindar {
namespace {

// The head is read in pieces of this size, so a huge page with a short head costs
// only its head, and a file that changes while read never holds more than a piece.
constexpr qint64 kChunkSize = 64 * 1024;
// A page whose head never ends is read no further than this many characters (the text
// and its upper-case copy then take 1 GiB): a huge file that is not really HTML must
// not exhaust memory. What was read is used as if the file ended there.
constexpr qsizetype kHeadLimit = 256 * 1024 * 1024;

// One row of the META name table: the texts looked for in the upper-case tag, the
// result field and the fragment element. A text that ends without its closing quote
// also takes every longer name that begins with it ("DC.TITLE.ALTERNATIVE").
struct MetaName {
    QStringView tested[2];
    QString HtmlMetaResult::*field;
    QStringView element;
};

// Tested in this order; the first row that matches a tag wins, which is why the
// keywords row comes before the subject row ("DC.SUBJECT.KEYWORDS").
const MetaName kMetaNames[] = {
    {{u"NAME=\"TITLE\"", u"NAME=\"DC.TITLE"}, &HtmlMetaResult::metaTitle, u"title"},
    {{u"NAME=\"AUTHOR\"", u"NAME=\"DC.CREATOR"}, &HtmlMetaResult::creator, u"creator"},
    {{u"NAME=\"KEYWORDS\"", u"NAME=\"DC.SUBJECT.KEYWORDS\""}, &HtmlMetaResult::subjectKeywords, u"subject.keywords"},
    {{u"NAME=\"SUBJECT\"", u"NAME=\"DC.SUBJECT"}, &HtmlMetaResult::subject, u"subject"},
    {{u"NAME=\"DESCRIPTION\"", u"NAME=\"DC.DESCRIPTION"}, &HtmlMetaResult::description, u"description"},
    {{u"NAME=\"PUBLISHER\"", u"NAME=\"DC.PUBLISHER"}, &HtmlMetaResult::publisher, u"publisher"},
    {{u"NAME=\"CONTRIBUTOR\"", u"NAME=\"DC.CONTRIBUTOR"}, &HtmlMetaResult::contributor, u"contributor"},
    {{u"NAME=\"DATE\"", u"NAME=\"DC.DATE"}, &HtmlMetaResult::date, u"date"},
    {{u"NAME=\"TYPE\"", u"NAME=\"DC.TYPE"}, &HtmlMetaResult::type, u"type"},
    {{u"NAME=\"FORMAT\"", u"NAME=\"DC.FORMAT"}, &HtmlMetaResult::format, u"format"},
    {{u"NAME=\"IDENTIFIER\"", u"NAME=\"DC.IDENTIFIER"}, &HtmlMetaResult::identifier, u"identifier"},
    {{u"NAME=\"SOURCE\"", u"NAME=\"DC.SOURCE"}, &HtmlMetaResult::source, u"source"},
    {{u"NAME=\"LANGUAGE\"", u"NAME=\"DC.LANGUAGE"}, &HtmlMetaResult::language, u"language"},
    {{u"NAME=\"RELATION\"", u"NAME=\"DC.RELATION"}, &HtmlMetaResult::relation, u"relation"},
    {{u"NAME=\"COVERAGE\"", u"NAME=\"DC.COVERAGE"}, &HtmlMetaResult::coverage, u"coverage"},
    {{u"NAME=\"RIGHTS\"", u"NAME=\"DC.RIGHTS"}, &HtmlMetaResult::rights, u"rights"},
    {{u"NAME=\"GENERATOR\"", {}}, &HtmlMetaResult::generator, u"generator"},
    {{u"NAME=\"CATEGORY\"", {}}, &HtmlMetaResult::category, u"category"},
};

struct Entity {
    QStringView name;
    QStringView character;
};

// Replaced in this order. "&amp;" and the other entities stay as they are: the
// fragment escapes them once more.
const Entity kEntities[] = {
    {u"&Eacute;", u"\u00C9"}, {u"&Egrave;", u"\u00C8"}, {u"&ccedil;", u"\u00E7"},
    {u"&ntilde;", u"\u00F1"}, {u"&szlig;", u"\u00DF"}, {u"&aacute;", u"\u00E1"},
    {u"&agrave;", u"\u00E0"}, {u"&acirc;", u"\u00E2"}, {u"&auml;", u"\u00E4"},
    {u"&eacute;", u"\u00E9"}, {u"&egrave;", u"\u00E8"}, {u"&ecirc;", u"\u00EA"},
    {u"&euml;", u"\u00EB"}, {u"&iacute;", u"\u00ED"}, {u"&igrave;", u"\u00EC"},
    {u"&icirc;", u"\u00EE"}, {u"&iuml;", u"\u00EF"}, {u"&oacute;", u"\u00F3"},
    {u"&ograve;", u"\u00F2"}, {u"&ocirc;", u"\u00F4"}, {u"&ouml;", u"\u00F6"},
    {u"&uacute;", u"\u00FA"}, {u"&ugrave;", u"\u00F9"}, {u"&ucirc;", u"\u00FB"},
    {u"&uuml;", u"\u00FC"}, {u"&nbsp;", u" "},
};

constexpr QStringView kContentAttribute = u"CONTENT=\"";
constexpr QStringView kNameAttribute = u"NAME=\"";

void ReplaceAll(QString& text, QStringView before, QStringView after)
{
    text.replace(before.data(), before.size(), after.data(), after.size());
}

// Upper case one character at a time: every position found in the copy is a position
// in the text as written (QString::toUpper would turn "ß" into "SS").
QString UpperCopy(const QString& text)
{
    QString upper = text;
    for (QChar& c : upper) {
        const char16_t code = c.unicode();
        if (code >= u'a' && code <= u'z')
            c = QChar(char16_t(code - (u'a' - u'A')));
        else if (code >= 128)  // pages are mostly ASCII, which needs no table look-up
            c = c.toUpper();
    }
    return upper;
}

// Tabs and line breaks become blanks, each double blank one blank (a single pass, so
// three blanks leave two), then the blanks at both ends go.
QString CleanValue(QStringView raw)
{
    QString value = raw.toString();
    for (QChar& c : value) {
        if (c == u'\t' || c == u'\r' || c == u'\n')
            c = u' ';
    }
    ReplaceAll(value, u"  ", u" ");
    return TrimBlanks(value).toString();
}

// A plain comparison: the table's texts are short, and this runs for each row and tag.
bool StartsWith(QStringView text, QStringView prefix)
{
    return text.size() >= prefix.size() && std::equal(prefix.begin(), prefix.end(), text.begin());
}

void AppendElement(QString& fragment, QStringView element, const QString& value)
{
    fragment.append(u'<').append(element).append(u'>').append(XmlEscape(value));
    fragment.append(u"</").append(element).append(u'>');
}

// Each byte's character (Windows-1252) and that character upper-cased on its own, as
// UpperCopy does, looked up once.
struct ByteCharacters {
    std::array<QChar, 256> written;
    std::array<QChar, 256> upper;
};

const ByteCharacters& CharactersOfBytes()
{
    static const ByteCharacters table = [] {
        ByteCharacters t;
        for (int code = 0; code < 256; ++code) {
            t.written[code] = CharOfCode(static_cast<unsigned char>(code));
            t.upper[code] = t.written[code].toUpper();
        }
        return t;
    }();
    return table;
}

// Where a keyword would end if it never occurs.
constexpr qsizetype kNever = std::numeric_limits<qsizetype>::max();

// The first occurrence of a keyword in an upper-case text that only grows. Each look
// covers only what was appended since the previous one (and the keyword's length less
// one before it, for an occurrence cut by the append), so a long head is searched once
// in all, with the same result as a search of the whole text.
struct GrowingSearch {
    QStringView keyword;
    qsizetype from = 0;  // the first start position not yet ruled out
    qsizetype found = -1;

    void update(QStringView text)
    {
        if (found >= 0 || from < 0)
            return;
        found = text.indexOf(keyword, from);
        if (found < 0)
            from = std::max(from, text.size() - keyword.size() + 1);
    }
    qsizetype end() const { return found < 0 ? kNever : found + keyword.size(); }
};

// The head as it is read: the lines joined without their line breaks, and the
// upper-case copy the keywords are looked for in.
class HeadText {
public:
    // Appends a piece of the file, whose bytes are characters of Windows-1252 and
    // whose lines end at CR LF, CR or LF (a CR LF counts as a line end followed by an
    // empty line, which changes nothing). True when reading stops within the piece:
    // the text then ends with the line that stopped it; the rest was never read.
    bool append(QByteArrayView bytes)
    {
        const ByteCharacters& chars = CharactersOfBytes();
        const qsizetype base = text_.size();
        text_.resize(base + bytes.size());
        upper_.resize(base + bytes.size());
        QChar* const written = text_.data();
        QChar* const upper = upper_.data();
        qsizetype used = base;
        lineEnds_.clear();
        for (const char byte : bytes) {
            const auto code = static_cast<unsigned char>(byte);
            if (code == '\r' || code == '\n') {
                lineEnds_.push_back(used);
                continue;
            }
            written[used] = chars.written[code];
            upper[used] = chars.upper[code];
            ++used;
        }
        text_.resize(used);
        upper_.resize(used);

        titleOpen_.update(upper_);
        if (titleOpen_.found >= 0 && titleClose_.from < 0)
            titleClose_.from = titleOpen_.end();
        titleClose_.update(upper_);
        headEnd_.update(upper_);
        bodyStart_.update(upper_);
        for (const qsizetype lineEnd : lineEnds_) {
            if (stopsAt(lineEnd)) {
                text_.resize(lineEnd);
                upper_.resize(lineEnd);
                return true;
            }
        }
        return false;
    }

    const QString& text() const { return text_; }
    const QString& upper() const { return upper_; }

    // The text between "<TITLE>" and the "</TITLE>" after it, when both were read.
    std::optional<QStringView> title() const
    {
        if (titleClose_.end() > text_.size())
            return std::nullopt;
        return QStringView(text_).sliced(titleOpen_.end(), titleClose_.found - titleOpen_.end());
    }

private:
    // Whether reading stops at the end of the line that ends at `lineEnd`, judging by
    // the text up to there: once "<TITLE>" is in it, lines are read until "</TITLE>"
    // follows, even past the end of the head; otherwise reading stops at the first
    // line that brings "</HEAD>" or "<BODY>". The keywords were found in one search
    // per piece; a keyword is in the text up to a line end when it ends before it.
    bool stopsAt(qsizetype lineEnd) const
    {
        const bool headEnded = std::min(headEnd_.end(), bodyStart_.end()) <= lineEnd;
        const bool titlePending = titleOpen_.end() <= lineEnd && titleClose_.end() > lineEnd;
        return headEnded && !titlePending;
    }

    QString text_;
    QString upper_;
    std::vector<qsizetype> lineEnds_;  // of the piece being appended
    GrowingSearch titleOpen_{u"<TITLE>"};
    GrowingSearch titleClose_{u"</TITLE>", -1};  // searched after "<TITLE>" only
    GrowingSearch headEnd_{u"</HEAD>"};
    GrowingSearch bodyStart_{u"<BODY>"};
};

// Reads pieces of the file until the head text says to stop, or to the end.
void ReadHead(PagedFile& file, HeadText& head)
{
    for (qint64 at = 0; at < file.size(); at += kChunkSize) {
        const QByteArray chunk = file.bytes(at, kChunkSize);
        if (head.append(chunk) || head.text().size() >= kHeadLimit)
            return;
    }
}

// One META tag: the first table row it matches fills its field and, when the value is
// not empty, adds its element to the fragment. Any tag with a quoted name and content
// is also kept by name.
void ReadMetaTag(const QString& tag, const QString& upperTag, HtmlMetaResult& result)
{
    // Every tested text begins with NAME=", so a tag holds one exactly when what follows
    // one of its NAME=" begins with the rest of it: only those places need a look.
    QVarLengthArray<QStringView, 4> afterNames;
    for (qsizetype at = upperTag.indexOf(kNameAttribute); at >= 0; at = upperTag.indexOf(kNameAttribute, at + 1))
        afterNames.append(QStringView(upperTag).sliced(at + kNameAttribute.size()));
    if (afterNames.isEmpty())
        return;

    const QString value = MetaContent(tag, upperTag);
    for (const MetaName& row : kMetaNames) {
        const bool matches = std::any_of(std::begin(row.tested), std::end(row.tested), [&](QStringView tested) {
            if (tested.isEmpty())
                return false;
            const QStringView rest = tested.sliced(kNameAttribute.size());
            return std::any_of(afterNames.begin(), afterNames.end(),
                [&](QStringView afterName) { return StartsWith(afterName, rest); });
        });
        if (!matches)
            continue;
        result.*row.field = value;
        if (!value.isEmpty())
            AppendElement(result.fragment, row.element, value);
        break;
    }

    const qsizetype nameStart = afterNames.front().data() - upperTag.data();
    const qsizetype nameEnd = upperTag.indexOf(u'"', nameStart);
    const qsizetype content = upperTag.indexOf(kContentAttribute);
    if (nameEnd < 0 || content < 0 || upperTag.indexOf(u'"', content + kContentAttribute.size()) < 0)
        return;
    result.metaTags.append({tag.sliced(nameStart, nameEnd - nameStart), value});
}

// Every "<META" of the head, from left to right; a tag runs to the next ">", and the
// next tag is looked for after it. A "<META" with no ">" after it is no tag.
//
// Before the tags are cut, double blanks become one blank (one pass) and " = " becomes
// "=" in the head. Both replacements touch runs of blanks and "=" only, which never
// hold the "<" of "<META" nor a ">", so they neither make nor break a tag and give each
// tag what they give the whole head: they are done tag by tag, sparing a long head two
// passes over all of it.
void ReadMetaTags(const QString& text, const QString& upper, HtmlMetaResult& result)
{
    qsizetype start = upper.indexOf(u"<META");
    while (start >= 0) {
        const qsizetype end = upper.indexOf(u'>', start);
        if (end < 0)
            break;
        QString tag = text.sliced(start, end + 1 - start);
        ReplaceAll(tag, u"  ", u" ");
        ReplaceAll(tag, u" = ", u"=");
        ReadMetaTag(tag, UpperCopy(tag), result);
        start = upper.indexOf(u"<META", end + 1);
    }
}

}  // namespace

HtmlMetaResult ReadHtmlMeta(const QString& path)
{
    // The head is read once, front to back: two pages kept are enough.
    PagedFile file(path, 2);
    return ReadHtmlMeta(file);
}

HtmlMetaResult ReadHtmlMeta(PagedFile& file)
{
    HtmlMetaResult result;
    if (!file.isOpen())
        return result;
    HeadText head;
    ReadHead(file, head);
    result.shortRead = file.shortRead();

    // The title is trimmed where it is cut out; CleanValue's own trim covers that.
    if (const auto raw = head.title()) {
        result.title = HtmlEntityDecode(CleanValue(*raw));
        if (!result.title.isEmpty())
            AppendElement(result.fragment, u"title", result.title);
    }
    ReadMetaTags(head.text(), head.upper(), result);
    return result;
}

QString MetaContent(const QString& tag, const QString& upperTag)
{
    const qsizetype p = upperTag.indexOf(kContentAttribute);
    if (p < 0)
        return {};
    const qsizetype start = p + kContentAttribute.size();
    const qsizetype q = upperTag.indexOf(u'"', start);
    if (q <= start)
        return {};
    // The upper-case copy is expected to be as long as the tag; mid() keeps a shorter
    // tag from being read past its end.
    return CleanValue(QStringView(tag).mid(start, q - start));
}

QString HtmlEntityDecode(const QString& text)
{
    QString decoded = text;
    for (const Entity& entity : kEntities)
        ReplaceAll(decoded, entity.name, entity.character);
    return decoded;
}

}  // namespace brindar
