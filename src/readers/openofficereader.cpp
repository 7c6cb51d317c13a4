// The OpenOffice.org reader: the text of meta.xml found by a byte search in the raw zip,
// its elements, statistics and user-defined fields cut out by substring searches.
#include "readers/openofficereader.h"

#include "readers/pagedfile.h"
#include "readers/text.h"

#include <QByteArrayView>
#include <QStringView>

#include <algorithm>
#include <optional>

namespace brindar {
namespace {

// The zip is never unpacked: these bytes occur in the file only when meta.xml is stored
// without compression.
constexpr QByteArrayView kMetaOpen = "<office:meta>";
constexpr QByteArrayView kMetaClose = "</office:meta>";

// The meta text is cut at this size before it is decoded: no real meta.xml comes near
// it, and a file whose markers lie far apart must not take gigabytes.
constexpr qint64 kMetaLimit = 32 * 1024 * 1024;

constexpr QStringView kLineEnd = u"\r\n";

using R = OpenOfficeResult;

struct Item {
    QStringView source;   // element or attribute name in meta.xml
    QStringView element;  // element of the metadata fragment
    QString R::*field;
    bool date = false;  // goes to the date fragment of the XML export
};

// Elements of office:meta, appended to the fragment in this order.
const Item kElements[] = {
    {u"meta:generator", u"application", &R::generator},
    {u"dc:title", u"title", &R::title},
    {u"dc:description", u"comments", &R::description},
    {u"dc:subject", u"subject", &R::subject},
    {u"meta:keyword", u"keywords", &R::keyword},
    {u"meta:initial-creator", u"author", &R::initialCreator},
    {u"dc:creator", u"lastauthor", &R::creator},
    {u"meta:printed-by", u"printed-by", &R::printedBy},
    {u"meta:creation-date", u"creation", &R::creationDate, true},
    {u"dc:date", u"lastsave", &R::date, true},
    {u"meta:print-date", u"lastprint", &R::printDate, true},
    {u"meta:template", u"template", &R::templateName},
    {u"dc:language", u"language", &R::language},
    {u"meta:editing-cycles", u"revisions", &R::editingCycles},
    {u"meta:editing-duration", u"totaledit", &R::editingDuration, true},
};

// Attributes of meta:document-statistic, appended after the elements in this order.
const Item kStatistics[] = {
    {u"meta:page-count", u"pages", &R::pageCount},
    {u"meta:table-count", u"tables", &R::tableCount},
    {u"meta:draw-count", u"draws", &R::drawCount},
    {u"meta:ole-object-count", u"ole-objects", &R::oleObjectCount},
    {u"meta:paragraph-count", u"paragraphs", &R::paragraphCount},
    {u"meta:word-count", u"words", &R::wordCount},
    {u"meta:character-count", u"chars", &R::characterCount},
    {u"meta:row-count", u"rows", &R::rowCount},
    {u"meta:cell-count", u"cells", &R::cellCount},
    {u"meta:object-count", u"objects", &R::objectCount},
};

constexpr QStringView kUserDefinedOpen = u"<meta:user-defined";
constexpr QStringView kUserDefinedClose = u"</meta:user-defined>";
constexpr QStringView kNameAttribute = u"meta:name=\"";

// Whether the file is taken as a zip: its first byte is "P" or its second is "K" (either
// is enough). A one-byte file has no second byte. Only these two bytes are read: a file
// that is no zip costs nothing more, and cannot fail a longer read.
bool LooksLikeZip(PagedFile& file)
{
    const QByteArray signature = file.head(2);
    return signature.startsWith('P') || (signature.size() >= 2 && signature[1] == 'K');
}

// The bytes between the first "<office:meta>" and the first "</office:meta>" after it;
// nothing when either is missing.
std::optional<QByteArray> MetaBytes(PagedFile& file)
{
    const qint64 open = file.find(0, kMetaOpen);
    if (open < 0)
        return std::nullopt;
    const qint64 start = open + kMetaOpen.size();
    const qint64 close = file.find(start, kMetaClose);
    if (close < 0)
        return std::nullopt;
    return file.bytes(start, std::min(close - start, kMetaLimit));
}

void AppendElement(QString& fragment, QStringView element, const QString& value)
{
    fragment.append(u'<').append(element).append(u'>').append(XmlEscape(value));
    fragment.append(u"</").append(element).append(u'>').append(kLineEnd);
}

// The first occurrence of the attribute name, the first `="` from there, and the text
// from after it up to the next double quote (an empty value ends at once).
std::optional<QString> StatisticValue(const QString& meta, QStringView source)
{
    const qsizetype p = meta.indexOf(source);
    if (p < 0)
        return std::nullopt;
    const qsizetype q = meta.indexOf(u"=\"", p);
    if (q < 0)
        return std::nullopt;
    const qsizetype start = q + 2;
    const qsizetype r = meta.indexOf(u'"', start);
    if (r < 0)
        return std::nullopt;
    return meta.sliced(start, r - start);
}

// Every "<meta:user-defined" from the start: the name after `meta:name="` up to the next
// double quote, the value after the next ">" (after the name) up to
// "</meta:user-defined>"; the next field is looked for after that closing tag. Reading
// stops when the table is full or when a field cannot be read whole.
void ReadUserDefined(const QString& meta, OpenOfficeResult& result)
{
    qsizetype from = 0;
    while (result.userDefined.size() < kUserDefinedTableSize) {
        const qsizetype tag = meta.indexOf(kUserDefinedOpen, from);
        if (tag < 0)
            return;
        const qsizetype nameAt = meta.indexOf(kNameAttribute, tag);
        if (nameAt < 0)
            return;
        const qsizetype nameStart = nameAt + kNameAttribute.size();
        const qsizetype nameEnd = meta.indexOf(u'"', nameStart);
        if (nameEnd < 0)
            return;
        const qsizetype tagEnd = meta.indexOf(u'>', nameEnd);
        if (tagEnd < 0)
            return;
        const qsizetype close = meta.indexOf(kUserDefinedClose, tagEnd + 1);
        if (close < 0)
            return;
        const QString name = meta.sliced(nameStart, nameEnd - nameStart);
        const QString value = meta.sliced(tagEnd + 1, close - (tagEnd + 1));
        result.userDefined.append({name, value});
        if (!name.isEmpty()) {
            QString element;
            element.append(u"<userprop>").append(kLineEnd);
            element.append(u"<nameprop>").append(XmlEscape(name)).append(u"</nameprop>").append(kLineEnd);
            element.append(u"<valueprop>").append(XmlEscape(value)).append(u"</valueprop>").append(kLineEnd);
            element.append(u"</userprop>").append(kLineEnd);
            result.fragment.append(element);
            result.summaryFragment.append(element);
        }
        from = close + kUserDefinedClose.size();
    }
}

}  // namespace

OpenOfficeResult ReadOpenOfficeMeta(const QString& path)
{
    PagedFile file(path);
    return ReadOpenOfficeMeta(file);
}

OpenOfficeResult ReadOpenOfficeMeta(PagedFile& file)
{
    OpenOfficeResult result;
    if (!file.isOpen() || file.size() <= 0 || !LooksLikeZip(file)) {
        result.shortRead = file.shortRead();
        return result;
    }
    const auto bytes = MetaBytes(file);
    result.shortRead = file.shortRead();
    if (!bytes)
        return result;

    const QString meta = XmlUnescape(Utf8Decode(*bytes));
    // Every value found is stored and appended, an empty one included.
    for (const Item& item : kElements) {
        if (auto value = ElementText(meta, item.source)) {
            result.*item.field = value->toString();
            AppendElement(result.fragment, item.element, result.*item.field);
            AppendElement(item.date ? result.dateFragment : result.summaryFragment, item.element,
                          result.*item.field);
        }
    }
    for (const Item& item : kStatistics) {
        if (auto value = StatisticValue(meta, item.source)) {
            result.*item.field = *value;
            AppendElement(result.fragment, item.element, *value);
            AppendElement(result.summaryFragment, item.element, *value);
        }
    }
    ReadUserDefined(meta, result);
    return result;
}

}  // namespace brindar
