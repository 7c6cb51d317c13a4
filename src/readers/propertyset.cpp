// Property-set parsing through one bounded cursor: sections, code page, dictionary, values.
#include "readers/propertyset.h"

#include "core/codepage.h"
#include "readers/text.h"

#include <QtEndian>
#include <algorithm>

namespace brindar {
namespace {

// The sections this program reads and writes.
const QUuid kKnownSections[] = {kSummaryInformation, kDocumentSummaryInformation, kUserDefinedProperties};

// No real section holds more properties than this; a larger count is damage.
constexpr quint32 kPropertyLimit = 4096;
constexpr quint32 kVectorLimit = 4096;

// Reads little-endian values from a byte range; a read past the end fails and marks
// the cursor bad, so the caller checks once.
class Cursor {
public:
    Cursor(const QByteArray& bytes, qsizetype begin, qsizetype end)
        : data_(bytes.constData()), pos_(begin), end_(std::min(end, bytes.size()))
    {
        if (begin < 0 || begin > end_)
            ok_ = false;
    }
    bool ok() const { return ok_; }
    qsizetype pos() const { return pos_; }
    qsizetype left() const { return ok_ ? end_ - pos_ : 0; }

    template <class T>
    T read()
    {
        if (!take(sizeof(T)))
            return T{};
        return qFromLittleEndian<T>(data_ + pos_ - qsizetype(sizeof(T)));
    }
    QByteArrayView bytes(quint64 n)
    {
        if (!take(n))
            return {};
        return QByteArrayView(data_ + pos_ - qsizetype(n), qsizetype(n));
    }
    void align4()
    {
        const qsizetype pad = (4 - (pos_ % 4)) % 4;
        pos_ = std::min(pos_ + pad, end_);
    }

private:
    bool take(quint64 n)
    {
        if (!ok_ || n > quint64(end_ - pos_)) {
            ok_ = false;
            return false;
        }
        pos_ += qsizetype(n);
        return true;
    }
    const char* data_;
    qsizetype pos_;
    qsizetype end_;
    bool ok_ = true;
};

QString Decode(QByteArrayView bytes, int codePage)
{
    return CutAtNul(DecodeCodePage(bytes, codePage).value_or(DecodeCodePage(bytes, 1252).value_or(QString())));
}

// A code-page string: a byte count, then the bytes (UTF-16 when the set's code page
// is 1200).
QString ReadLpstr(Cursor& c, int codePage)
{
    const quint32 size = c.read<quint32>();
    return Decode(c.bytes(size), codePage);
}

QString ReadLpwstr(Cursor& c)
{
    const quint32 chars = c.read<quint32>();
    return Decode(c.bytes(quint64(chars) * 2), 1200);
}

std::optional<PropertyValue> ReadValue(Cursor& c, int codePage, bool inVector = false);

std::optional<PropertyValue> ReadScalar(Cursor& c, quint16 type, int codePage)
{
    PropertyValue v;
    v.type = type;
    switch (type) {
    case VT_EMPTY: break;
    case VT_I2: v.value = qint64(c.read<qint16>()); break;
    case VT_UI2: v.value = qint64(c.read<quint16>()); break;
    case VT_I1: v.value = qint64(c.read<qint8>()); break;
    case VT_UI1: v.value = qint64(c.read<quint8>()); break;
    case VT_I4: case VT_INT: v.value = qint64(c.read<qint32>()); break;
    case VT_UI4: case VT_UINT: v.value = qint64(c.read<quint32>()); break;
    case VT_I8: v.value = c.read<qint64>(); break;
    case VT_UI8: v.value = qint64(c.read<quint64>()); break;
    case VT_FILETIME: v.value = qint64(c.read<quint64>()); break;
    case VT_BOOL: v.value = c.read<qint16>() != 0; break;
    case VT_R4: v.value = double(c.read<float>()); break;
    case VT_R8: case VT_DATE: v.value = c.read<double>(); break;
    case VT_LPSTR: v.value = ReadLpstr(c, codePage); break;
    case VT_LPWSTR: v.value = ReadLpwstr(c); break;
    default: return std::nullopt;  // a type no document property here needs
    }
    c.align4();
    if (!c.ok())
        return std::nullopt;
    return v;
}

std::optional<PropertyValue> ReadValue(Cursor& c, int codePage, bool inVector)
{
    const quint16 type = c.read<quint16>();
    c.read<quint16>();  // padding
    if (!c.ok())
        return std::nullopt;
    if (!(type & VT_VECTOR))
        return ReadScalar(c, type, codePage);
    if (inVector)
        return std::nullopt;
    const quint16 element = type & ~VT_VECTOR;
    const quint32 count = c.read<quint32>();
    if (count > kVectorLimit)
        return std::nullopt;
    QStringList strings;
    for (quint32 i = 0; i < count && c.ok(); ++i) {
        std::optional<PropertyValue> item;
        if (element == VT_VARIANT) {
            item = ReadValue(c, codePage, true);
        } else {
            item = ReadScalar(c, element, codePage);
        }
        if (!item)
            return std::nullopt;
        strings << item->value.toString();
    }
    PropertyValue vector;
    vector.type = type;
    vector.value = strings;
    return vector;
}

std::optional<PropertySection> ReadSection(const QByteArray& stream, const QUuid& formatId, quint32 offset)
{
    Cursor header(stream, offset, stream.size());
    const quint32 size = header.read<quint32>();
    const quint32 count = header.read<quint32>();
    if (!header.ok() || size < 8 || quint64(offset) + size > quint64(stream.size()) || count > kPropertyLimit
        || quint64(count) * 8 > size - 8)
        return std::nullopt;
    const qsizetype end = qsizetype(offset) + qsizetype(size);
    QList<std::pair<quint32, quint32>> entries;
    for (quint32 i = 0; i < count; ++i) {
        const quint32 id = header.read<quint32>();
        const quint32 at = header.read<quint32>();
        entries.append({id, at});
    }
    PropertySection section;
    section.formatId = formatId;
    // A value runs to the next value's offset (or the section's end): its stored bytes.
    QList<quint32> offsets;
    for (const auto& [id, at] : entries)
        offsets.append(at);
    std::sort(offsets.begin(), offsets.end());
    const auto extent = [&](quint32 at) {
        const auto next = std::upper_bound(offsets.cbegin(), offsets.cend(), at);
        return (next == offsets.cend() ? size : *next) - at;
    };
    // The code page first: every string of the section depends on it.
    for (const auto& [id, at] : entries) {
        if (id != 1)
            continue;
        Cursor c(stream, qsizetype(offset) + at, end);
        if (auto v = ReadValue(c, 1252))
            section.codePage = int(quint16(v->value.toLongLong()));
    }
    for (const auto& [id, at] : entries) {
        if (at >= size || id == 1 || section.values.contains(id))
            continue;
        Cursor c(stream, qsizetype(offset) + at, end);
        if (id == 0) {
            const quint32 names = c.read<quint32>();
            for (quint32 i = 0; i < names && i < kPropertyLimit && c.ok(); ++i) {
                const quint32 nameId = c.read<quint32>();
                const quint32 length = c.read<quint32>();
                const bool wide = section.codePage == 1200;
                const QByteArrayView bytes = c.bytes(wide ? quint64(length) * 2 : length);
                if (!c.ok())
                    break;
                if (wide)
                    c.align4();
                section.dictionary.append({nameId, Decode(bytes, section.codePage)});
            }
            continue;
        }
        const QByteArray raw = stream.mid(qsizetype(offset) + at, qsizetype(extent(at)));
        if (raw.size() < 4)
            continue;
        PropertyValue value = ReadValue(c, section.codePage).value_or(PropertyValue{});
        // A type this reader does not decode is kept as stored, for writing back.
        value.type = qFromLittleEndian<quint16>(raw.constData());
        value.raw = raw;
        section.values.insert(id, value);
        section.order.append(id);
    }
    return section;
}

}  // namespace

std::optional<PropertySet> ParsePropertySet(const QByteArray& stream)
{
    Cursor c(stream, 0, stream.size());
    const quint16 byteOrder = c.read<quint16>();
    c.read<quint16>();  // version
    c.read<quint32>();  // system identifier
    c.bytes(16);        // class id
    const quint32 sections = c.read<quint32>();
    if (!c.ok() || byteOrder != 0xFFFE || sections > 16)
        return std::nullopt;
    PropertySet result;
    result.header = stream.left(24);
    for (quint32 i = 0; i < sections; ++i) {
        const QByteArrayView id = c.bytes(16);
        const quint32 offset = c.read<quint32>();
        if (!c.ok())
            break;
        // Stored as a little-endian GUID, not in the RFC's byte order.
        QUuid guid(qFromLittleEndian<quint32>(id.data()), qFromLittleEndian<quint16>(id.data() + 4),
                   qFromLittleEndian<quint16>(id.data() + 6), uchar(id[8]), uchar(id[9]), uchar(id[10]),
                   uchar(id[11]), uchar(id[12]), uchar(id[13]), uchar(id[14]), uchar(id[15]));
        // Some writers store it in the RFC's order: a known section all the same, or its
        // values would be lost to this program and a second such section written. When
        // it is written back, it is in the usual order, which every reader finds.
        const QUuid swapped = QUuid::fromRfc4122(id);
        if (std::find(std::begin(kKnownSections), std::end(kKnownSections), swapped) != std::end(kKnownSections))
            guid = swapped;
        if (auto section = ReadSection(stream, guid, offset))
            result.sections.append(*section);
    }
    return result;
}

}  // namespace brindar

namespace brindar {
namespace {

void Put32(QByteArray& out, quint32 v)
{
    char b[4];
    qToLittleEndian(v, b);
    out.append(b, 4);
}

void Put16(QByteArray& out, quint16 v)
{
    char b[2];
    qToLittleEndian(v, b);
    out.append(b, 2);
}

void Pad4(QByteArray& out)
{
    while (out.size() % 4)
        out.append('\0');
}

void PutFormatId(QByteArray& out, const PropertySection& section)
{
    const QUuid& id = section.formatId;
    Put32(out, id.data1);
    Put16(out, id.data2);
    Put16(out, id.data3);
    out.append(reinterpret_cast<const char*>(id.data4), 8);
}

QByteArray Utf16(const QString& text)
{
    return QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
}

// A string value: in the section's code page when it holds the text, else wide.
QByteArray EncodeString(const QString& text, quint16 type, int codePage)
{
    QByteArray out;
    std::optional<QByteArray> bytes = type == VT_LPSTR ? EncodeCodePage(text, codePage) : std::nullopt;
    if (bytes) {
        Put16(out, VT_LPSTR);
        Put16(out, 0);
        bytes->append(codePage == 1200 ? QByteArray(2, '\0') : QByteArray(1, '\0'));
        Put32(out, quint32(bytes->size()));
        out.append(*bytes);
    } else {
        Put16(out, VT_LPWSTR);
        Put16(out, 0);
        Put32(out, quint32(text.size() + 1));
        out.append(Utf16(text));
        out.append(QByteArray(2, '\0'));
    }
    Pad4(out);
    return out;
}

QByteArray EncodeValue(const PropertyValue& v, int codePage)
{
    if (!v.raw.isEmpty())
        return v.raw;
    QByteArray out;
    switch (v.type) {
    case VT_LPSTR:
    case VT_LPWSTR:
        return EncodeString(v.value.toString(), v.type, codePage);
    case VT_I2:
        Put16(out, VT_I2), Put16(out, 0), Put16(out, quint16(v.value.toLongLong())), Put16(out, 0);
        return out;
    case VT_BOOL:
        Put16(out, VT_BOOL), Put16(out, 0), Put16(out, v.value.toBool() ? 0xFFFF : 0), Put16(out, 0);
        return out;
    case VT_I4:
        Put16(out, VT_I4), Put16(out, 0), Put32(out, quint32(v.value.toLongLong()));
        return out;
    case VT_FILETIME: {
        Put16(out, VT_FILETIME), Put16(out, 0);
        const quint64 ticks = quint64(v.value.toLongLong());
        Put32(out, quint32(ticks)), Put32(out, quint32(ticks >> 32));
        return out;
    }
    case VT_R8:
    case VT_DATE: {
        Put16(out, v.type), Put16(out, 0);
        char b[8];
        qToLittleEndian(v.value.toDouble(), b);
        out.append(b, 8);
        return out;
    }
    default:
        // Nothing else is ever created; an empty value keeps the id.
        Put16(out, VT_EMPTY), Put16(out, 0);
        return out;
    }
}

QByteArray EncodeDictionary(const PropertySection& section)
{
    QByteArray out;
    Put32(out, quint32(section.dictionary.size()));
    for (const auto& [id, name] : section.dictionary) {
        Put32(out, id);
        if (section.codePage == 1200) {
            Put32(out, quint32(name.size() + 1));
            out.append(Utf16(name));
            out.append(QByteArray(2, '\0'));
            Pad4(out);
        } else {
            // Names that the code page cannot hold were refused before they got here.
            QByteArray bytes = EncodeCodePage(name, section.codePage).value_or(EncodeWin1252(name));
            bytes.append('\0');
            Put32(out, quint32(bytes.size()));
            out.append(bytes);
        }
    }
    Pad4(out);
    return out;
}

QByteArray EncodeSection(const PropertySection& section)
{
    QList<std::pair<quint32, QByteArray>> values;
    if (!section.dictionary.isEmpty() || section.formatId == kUserDefinedProperties)
        values.append({0, EncodeDictionary(section)});
    PropertyValue codePage;
    codePage.type = VT_I2;
    codePage.value = qint64(qint16(quint16(section.codePage)));
    values.append({1, EncodeValue(codePage, section.codePage)});
    for (quint32 id : section.order)
        if (auto it = section.values.constFind(id); it != section.values.cend())
            values.append({id, EncodeValue(*it, section.codePage)});

    const quint32 tableSize = 8 + 8 * quint32(values.size());
    QByteArray body;
    QByteArray table;
    for (const auto& [id, bytes] : values) {
        Put32(table, id);
        Put32(table, tableSize + quint32(body.size()));
        body.append(bytes);
        Pad4(body);
    }
    QByteArray out;
    Put32(out, tableSize + quint32(body.size()));
    Put32(out, quint32(values.size()));
    return out + table + body;
}

}  // namespace

PropertySection* PropertySet::section(const QUuid& id)
{
    for (PropertySection& s : sections)
        if (s.formatId == id)
            return &s;
    return nullptr;
}

QByteArray SerializePropertySet(const PropertySet& set)
{
    QByteArray out = set.header.left(24);
    if (out.size() < 24)
        out = NewPropertySet({}).header;
    Put32(out, quint32(set.sections.size()));
    QList<QByteArray> bodies;
    for (const PropertySection& section : set.sections)
        bodies.append(EncodeSection(section));
    quint32 offset = quint32(out.size() + 20 * set.sections.size());
    for (int i = 0; i < set.sections.size(); ++i) {
        PutFormatId(out, set.sections[i]);
        Put32(out, offset);
        offset += quint32(bodies[i].size());
    }
    for (const QByteArray& body : bodies)
        out.append(body);
    return out;
}

PropertySet NewPropertySet(const QList<QUuid>& sections)
{
    PropertySet set;
    Put16(set.header, 0xFFFE);
    Put16(set.header, 0);
    Put32(set.header, 0x00020006);  // written on a 32-bit Windows system, as Office does
    set.header.append(QByteArray(16, '\0'));
    for (const QUuid& id : sections) {
        PropertySection section;
        section.formatId = id;
        set.sections.append(section);
    }
    return set;
}

}  // namespace brindar
