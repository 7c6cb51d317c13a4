// Office property access over compound files and named streams, read and write.
#include "readers/officeproperties.h"

#include "core/codepage.h"
#include "platform/filenames.h"
#include "platform/namedstreams.h"
#include "readers/compoundfile.h"
#include "readers/compoundfilewriter.h"


namespace brindar {
namespace {

const QString kSummaryStream = QStringLiteral("\u0005SummaryInformation");
const QString kDocumentSummaryStream = QStringLiteral("\u0005DocumentSummaryInformation");

// Ticks between 1601-01-01 and 1970-01-01.
constexpr qint64 kEpochTicks = 116444736000000000LL;
constexpr qint64 kTicksPerMinute = 600000000LL;

std::optional<PropertySet> ParseStream(const std::optional<QByteArray>& stream)
{
    return stream ? ParsePropertySet(*stream) : std::nullopt;
}

const PropertySection* SectionOf(const std::optional<PropertySet>& set, const QUuid& id)
{
    if (!set)
        return nullptr;
    for (const PropertySection& section : set->sections)
        if (section.formatId == id)
            return &section;
    return nullptr;
}

PropertyValue VariantValue(const QVariant& value)
{
    PropertyValue v;
    switch (value.typeId()) {
    case QMetaType::Bool:
        v.type = VT_BOOL;
        v.value = value.toBool();
        break;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        v.type = VT_I4;
        v.value = value.toLongLong();
        break;
    case QMetaType::Double:
        v.type = VT_R8;
        v.value = value.toDouble();
        break;
    case QMetaType::QDateTime:
        v.type = VT_FILETIME;
        v.value = value.toDateTime().toMSecsSinceEpoch() * 10000 + kEpochTicks;
        break;
    default:
        v.type = VT_LPSTR;
        v.value = value.toString();
    }
    return v;
}

}  // namespace

QDateTime FileTimeToDateTime(qint64 ticks)
{
    if (ticks == 0)
        return QDateTime();
    return QDateTime::fromMSecsSinceEpoch((ticks - kEpochTicks) / 10000, Qt::UTC);
}

bool OfficeProperties::open(const QString& path, int mode, QString* error)
{
    return openWith(path, mode, true, error);
}

bool OfficeProperties::openNamedStreams(const QString& path, int mode, QString* error)
{
    return openWith(path, mode, false, error);
}

bool OfficeProperties::openWith(const QString& path, int mode, bool compoundFile, QString* error)
{
    close();
    QString why;
    std::optional<QByteArray> summary, documentSummary;
    std::optional<CompoundFile> file;
    if (compoundFile)
        file = CompoundFile::Open(path, &why);
    if (file) {
        compound_ = true;
        summary = file->rootStream(kSummaryStream);
        documentSummary = file->rootStream(kDocumentSummaryStream);
    } else if (HasNamedStreams(path)) {
        // Any file may carry property sets in its named streams.
        summary = ReadNamedStream(path, kSummaryStream);
        documentSummary = ReadNamedStream(path, kDocumentSummaryStream);
    }
    summarySet_ = ParseStream(summary);
    documentSet_ = ParseStream(documentSummary);
    // A document without property sets can still be given some when it is opened for
    // writing; opened for reading, it has nothing to give.
    writable_ = mode == kModeWrite || mode == kModeWriteTransacted;
    if (!summarySet_ && !documentSet_ && !(writable_ && IsRegularFile(path))) {
        if (error)
            *error = why.isEmpty() || compound_ ? path + QStringLiteral(": no property sets") : why;
        compound_ = false;
        return false;
    }
    path_ = path;
    open_ = true;
    listUserProperties();
    return true;
}

void OfficeProperties::close()
{
    open_ = writable_ = compound_ = summaryDirty_ = documentDirty_ = false;
    path_.clear();
    summarySet_.reset();
    documentSet_.reset();
    userProperties_.clear();
}

void OfficeProperties::listUserProperties()
{
    userProperties_.clear();
    if (const PropertySection* user = userDefined()) {
        // Values of types no reader decodes (the hyperlink blobs Office keeps there) are
        // written back untouched but are not user-visible properties.
        for (const auto& [id, name] : user->dictionary)
            if (auto it = user->values.constFind(id); it != user->values.cend() && it->value.isValid())
                userProperties_.append({name, *it});
    }
}

const PropertySection* OfficeProperties::summary() const { return SectionOf(summarySet_, kSummaryInformation); }
const PropertySection* OfficeProperties::documentSummary() const
{
    return SectionOf(documentSet_, kDocumentSummaryInformation);
}
const PropertySection* OfficeProperties::userDefined() const { return SectionOf(documentSet_, kUserDefinedProperties); }

int OfficeProperties::propertyGroups() const
{
    return (summary() ? kSummaryGroup : 0) | (documentSummary() ? kDocumentSummaryGroup : 0)
           | (!userProperties_.isEmpty() ? kUserDefinedGroup : 0);
}

const PropertyValue* OfficeProperties::find(const PropertySection* section, quint32 id) const
{
    if (!section)
        return nullptr;
    const auto it = section->values.constFind(id);
    return it == section->values.cend() ? nullptr : &*it;
}

std::optional<QString> OfficeProperties::text(const PropertySection* section, quint32 id) const
{
    const PropertyValue* v = find(section, id);
    if (!v || (v->type != VT_LPSTR && v->type != VT_LPWSTR))
        return std::nullopt;
    return v->value.toString();
}

std::optional<qint64> OfficeProperties::number(const PropertySection* section, quint32 id) const
{
    const PropertyValue* v = find(section, id);
    if (!v || v->value.typeId() != QMetaType::LongLong || v->type == VT_FILETIME)
        return std::nullopt;
    return v->value.toLongLong();
}

std::optional<QDateTime> OfficeProperties::summaryDate(quint32 id) const
{
    const PropertyValue* v = find(summary(), id);
    if (!v || v->type != VT_FILETIME)
        return std::nullopt;
    return FileTimeToDateTime(v->value.toLongLong());
}

std::optional<qint64> OfficeProperties::totalEditingMinutes() const
{
    // The editing time is a duration stored as a file time.
    const PropertyValue* v = find(summary(), 10);
    if (!v || v->type != VT_FILETIME)
        return std::nullopt;
    return qint64(quint64(v->value.toLongLong()) / kTicksPerMinute);
}

int OfficeProperties::userDefinedCount() const { return int(userProperties_.size()); }

std::optional<QString> OfficeProperties::userDefinedName(int index) const
{
    if (index < 0 || index >= userProperties_.size())
        return std::nullopt;
    return userProperties_[index].first;
}

std::optional<QVariant> OfficeProperties::userDefinedValue(int index) const
{
    if (index < 0 || index >= userProperties_.size())
        return std::nullopt;
    const PropertyValue& v = userProperties_[index].second;
    switch (v.type) {
    case VT_FILETIME:
        return QVariant(FileTimeToDateTime(v.value.toLongLong()));
    case VT_DATE: {
        // Days since 1899-12-30, the fraction being the time of day.
        const QDateTime base(QDate(1899, 12, 30), QTime(0, 0), Qt::UTC);
        return QVariant(base.addMSecs(qint64(v.value.toDouble() * 86400000.0)));
    }
    default:
        return v.value;
    }
}

PropertySection* OfficeProperties::writableSection(std::optional<PropertySet>& set, const QUuid& id, bool* dirty)
{
    if (!open_ || !writable_)
        return nullptr;
    if (!set)
        set = NewPropertySet({});
    // The document summary's own section always comes before the user-defined one.
    if (id == kUserDefinedProperties && !set->section(kDocumentSummaryInformation))
        set->sections.prepend(NewPropertySet({kDocumentSummaryInformation}).sections.front());
    if (!set->section(id))
        set->sections.append(NewPropertySet({id}).sections.front());
    *dirty = true;
    return set->section(id);
}

namespace {

void PutValue(PropertySection& section, quint32 id, PropertyValue value)
{
    if (auto it = section.values.constFind(id); it != section.values.cend()
        && (value.type == VT_LPSTR) && (it->type == VT_LPSTR || it->type == VT_LPWSTR))
        value.type = it->type;  // a text keeps the string type it had
    if (!section.order.contains(id))
        section.order.append(id);
    section.values.insert(id, value);
}

}  // namespace

bool OfficeProperties::setSummaryText(quint32 id, const QString& text)
{
    PropertySection* section = writableSection(summarySet_, kSummaryInformation, &summaryDirty_);
    if (!section)
        return false;
    PutValue(*section, id, VariantValue(text));
    return true;
}

bool OfficeProperties::setDocumentText(quint32 id, const QString& text)
{
    PropertySection* section = writableSection(documentSet_, kDocumentSummaryInformation, &documentDirty_);
    if (!section)
        return false;
    PutValue(*section, id, VariantValue(text));
    return true;
}

bool OfficeProperties::writeUserDefined(const QString& name, const QVariant& value)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty() || !open_ || !writable_)
        return false;
    if (const PropertySection* existing = userDefined(); existing && existing->codePage != 1200
        && !EncodeCodePage(trimmed, existing->codePage))
        return false;  // a name the dictionary's code page cannot hold
    PropertySection* section = writableSection(documentSet_, kUserDefinedProperties, &documentDirty_);
    quint32 id = 0;
    quint32 highest = 1;
    for (const auto& [key, entry] : std::as_const(section->dictionary)) {
        highest = std::max(highest, key);
        if (entry.compare(trimmed, Qt::CaseInsensitive) == 0)
            id = key;
    }
    for (quint32 key : section->values.keys())
        highest = std::max(highest, key);
    if (id == 0) {
        id = highest + 1;
        section->dictionary.append({id, trimmed});
    }
    PutValue(*section, id, VariantValue(value));
    listUserProperties();
    return true;
}

bool OfficeProperties::removeUserDefined(const QString& name)
{
    const PropertySection* user = userDefined();
    if (!user || !open_ || !writable_)
        return false;
    PropertySection* section = writableSection(documentSet_, kUserDefinedProperties, &documentDirty_);
    for (qsizetype i = 0; i < section->dictionary.size(); ++i) {
        if (section->dictionary[i].second.compare(name.trimmed(), Qt::CaseInsensitive) != 0)
            continue;
        const quint32 id = section->dictionary[i].first;
        section->dictionary.removeAt(i);
        section->values.remove(id);
        section->order.removeAll(id);
        listUserProperties();
        return true;
    }
    return false;
}

bool OfficeProperties::save(QString* error)
{
    auto fail = [&](const QString& why) {
        if (error)
            *error = why;
        return false;
    };
    if (!open_ || !writable_)
        return fail(path_ + QStringLiteral(": not open for writing"));
    QMap<QString, QByteArray> streams;
    if (summaryDirty_ && summarySet_)
        streams.insert(kSummaryStream, SerializePropertySet(*summarySet_));
    if (documentDirty_ && documentSet_)
        streams.insert(kDocumentSummaryStream, SerializePropertySet(*documentSet_));
    if (streams.isEmpty())
        return true;
    if (compound_) {
        if (auto why = RewriteCompoundFile(path_, streams))
            return fail(*why);
    } else if (auto why = WriteNamedStreams(path_, streams)) {
        return fail(*why);
    }
    summaryDirty_ = documentDirty_ = false;
    return true;
}

}  // namespace brindar
