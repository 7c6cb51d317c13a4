// The XMP reader: the packet found by a forward byte search, its properties cut out of
// the decoded text by substring searches (no XML parsing).
#include "readers/xmpreader.h"

#include "readers/pagedfile.h"
#include "readers/text.h"

#include <QByteArrayView>
#include <QStringView>

#include <algorithm>
#include <optional>

namespace brindar {
namespace {

// Only single-quoted processing instructions open and close a packet: packets written
// with double quotes are not recognised.
constexpr QByteArrayView kPacketBegin = "<?xpacket begin='";
constexpr QByteArrayView kPacketEnd = "<?xpacket end='";
// How both instructions end: the closing quote of their last attribute, then "?>".
constexpr QByteArrayView kInstructionEnd = "'?>";

// A packet body is cut at this size before it is decoded: no real packet comes near it,
// and a begin near the start of a huge file with an end near its end must not take
// gigabytes (the body is decoded, unescaped and cleaned, each a copy).
constexpr qint64 kPacketLimit = 32 * 1024 * 1024;

// The forms a source is read in. The attribute form is tried first; the element's
// content is then taken as it is, as a list of "<rdf:li>" items, or as its x-default item.
enum Form : unsigned {
    kAttribute = 1u << 0,
    kElement = 1u << 1,
    kList = 1u << 2,
    kLanguageAlternative = 1u << 3,
};

struct Source {
    QStringView name;
    unsigned forms;
    QString XmpResult::*field;
};

using R = XmpResult;

// Read in this order: where two sources share a field, the later one, when found,
// overwrites the earlier.
const Source kSources[] = {
    {u"photoshop:AuthorsPosition", kElement, &R::authorsPosition},
    {u"photoshop:CaptionWriter", kElement, &R::captionWriter},
    {u"photoshop:Headline", kElement, &R::headline},
    {u"photoshop:Instructions", kElement, &R::instructions},
    {u"photoshop:Credit", kElement, &R::credit},
    {u"photoshop:Source", kElement, &R::source},
    {u"photoshop:City", kElement, &R::city},
    {u"photoshop:State", kElement, &R::state},
    {u"photoshop:Country", kElement, &R::country},
    {u"xap:CreateDate", kElement, &R::dateCreated},
    {u"photoshop:DateCreated", kElement, &R::dateCreated},
    {u"photoshop:TransmissionReference", kElement, &R::transmissionReference},
    {u"xap:Author", kElement, &R::author},
    {u"pdf:Author", kAttribute | kElement, &R::author},
    {u"pdf:BaseURL", kAttribute | kElement, &R::baseUrl},
    {u"pdf:CreationDate", kAttribute | kElement, &R::creationDate},
    {u"pdf:Creator", kAttribute | kElement, &R::creator},
    {u"xap:Keywords", kList, &R::keywords},
    {u"pdf:Keywords", kAttribute | kElement, &R::keywords},
    {u"xap:ModifyDate", kElement, &R::modificationDate},
    {u"pdf:ModDate", kAttribute | kElement, &R::modificationDate},
    {u"pdf:PDFVersion", kAttribute | kElement, &R::pdfVersion},
    {u"pdf:Producer", kAttribute | kElement, &R::producer},
    {u"xap:Description", kLanguageAlternative, &R::description},
    {u"pdf:Subject", kAttribute | kElement, &R::description},
    {u"xap:Title", kLanguageAlternative, &R::title},
    {u"pdf:Title", kAttribute | kElement, &R::title},
    {u"xap:CreatorTool", kElement, &R::creatorTool},
    {u"pdf:CreatorTool", kAttribute | kElement, &R::creatorTool},
    {u"dc:title", kAttribute | kLanguageAlternative, &R::dcTitle},
    {u"dc:creator", kAttribute | kList, &R::dcCreator},
    {u"dc:description", kAttribute | kLanguageAlternative, &R::dcDescription},
    {u"xapRights:Copyright", kElement, &R::rights},
    {u"dc:rights", kAttribute | kLanguageAlternative, &R::rights},
    {u"dc:subject", kAttribute | kList, &R::dcSubject},
};

constexpr QStringView kItemOpen = u"<rdf:li>";
constexpr QStringView kItemClose = u"</rdf:li>";
constexpr QStringView kDefaultItemOpen = u"<rdf:li xml:lang='x-default'>";

// The body of the first packet: after the end of the instruction that opens it, up to
// the instruction that closes it, which must be complete. Empty when there is none.
QByteArray PacketBody(PagedFile& file)
{
    const qint64 begin = file.find(0, kPacketBegin);
    if (begin < 0)
        return {};
    // The quote that opens the begin attribute's value cannot also close it: the
    // instruction's end is looked for after it.
    const qint64 beginEnd = file.find(begin + kPacketBegin.size(), kInstructionEnd);
    if (beginEnd < 0)
        return {};
    const qint64 bodyStart = beginEnd + kInstructionEnd.size();
    const qint64 end = file.find(bodyStart, kPacketEnd);
    if (end < 0 || file.find(end + kPacketEnd.size(), kInstructionEnd) < 0)
        return {};
    return file.bytes(bodyStart, std::min(end - bodyStart, kPacketLimit));
}

// Attribute form: the value between "name='" and the next "'".
std::optional<QString> AttributeValue(const QString& packet, QStringView name)
{
    const QString key = name.toString().append(u"='");
    const qsizetype p = packet.indexOf(key);
    if (p < 0)
        return std::nullopt;
    const qsizetype start = p + key.size();
    const qsizetype q = packet.indexOf(u'\'', start);
    if (q < 0)
        return std::nullopt;
    return packet.sliced(start, q - start);
}

// Each "<rdf:li>" item of the content, in order, appended to the field and joined with
// "; " when the field already holds text (so an empty item adds no separator).
void AppendItems(QStringView content, QString& field)
{
    qsizetype from = 0;
    for (;;) {
        const qsizetype p = content.indexOf(kItemOpen, from);
        if (p < 0)
            return;
        const qsizetype start = p + kItemOpen.size();
        const qsizetype q = content.indexOf(kItemClose, start);
        if (q < 0)
            return;
        if (!field.isEmpty())
            field += u"; ";
        field += content.sliced(start, q - start);
        from = q + kItemClose.size();
    }
}

// The x-default item of a language alternative; the other languages are ignored.
std::optional<QString> DefaultItem(QStringView content)
{
    if (auto item = TextBetween(content, kDefaultItemOpen, kItemClose))
        return item->toString();
    return std::nullopt;
}

// One source in its forms; true when it was found (and its field set).
bool ReadSource(const QString& packet, const Source& source, XmpResult& result)
{
    QString& field = result.*source.field;
    if (source.forms & kAttribute) {
        if (auto value = AttributeValue(packet, source.name)) {
            field = *value;
            return true;
        }
    }
    const auto content = ElementText(packet, source.name);
    if (!content)
        return false;
    if (source.forms & kElement) {
        field = content->toString();
        return true;
    }
    if (source.forms & kList) {
        // The element is found even when it holds no item.
        AppendItems(*content, field);
        return true;
    }
    if (auto value = DefaultItem(*content)) {
        field = *value;
        return true;
    }
    return false;
}

}  // namespace

XmpResult ReadXmp(const QString& path)
{
    PagedFile file(path);
    return ReadXmp(file);
}

XmpResult ReadXmp(PagedFile& file)
{
    XmpResult result;
    if (!file.isOpen() || file.size() <= 0)
        return result;
    const QByteArray body = PacketBody(file);
    result.shortRead = file.shortRead();

    // Unescaped before any search, so an escaped "<" in a value can cut an element short.
    const QString packet = TrimTrailingBlanks(XmlUnescape(Utf8Decode(body)));
    result.packet = XmlControlClean(packet);
    if (packet.isEmpty())
        return result;
    // The properties are cut out of the packet as decoded, before the control-character
    // step, which only the packet text written by the XML export goes through.
    for (const Source& source : kSources) {
        if (ReadSource(packet, source, result))
            result.hasXmp = true;
    }
    return result;
}

}  // namespace brindar
