// The displayed-metadata dialog as data.
#include "readers/displayedfields.h"

#include "core/fieldtable.h"
#include "readers/readertable.h"

#include <QSet>

namespace brindar {
namespace {

// The labels a family gives the columns its reader fills, where they differ from the
// column's own caption ([Metadata] numbers).
struct Label {
    MetadataTab tab;
    const char* code;
    int caption;
};
constexpr Label kLabels[] = {
    // The Office tab's long forms.
    {MetadataTab::Office, ".PA", 12}, {MetadataTab::Office, ".PG", 13}, {MetadataTab::Office, ".LI", 14},
    {MetadataTab::Office, ".WO", 15}, {MetadataTab::Office, ".CH", 16}, {MetadataTab::Office, ".BY", 17},
    {MetadataTab::Office, ".NO", 18}, {MetadataTab::Office, ".SL", 19}, {MetadataTab::Office, ".CD", 24},
    {MetadataTab::Office, ".MD", 25}, {MetadataTab::Office, ".PD", 26},
    {MetadataTab::OpenOffice, ".AP", 42}, {MetadataTab::OpenOffice, ".CM", 43}, {MetadataTab::OpenOffice, ".AU", 44},
    {MetadataTab::OpenOffice, ".LA", 45}, {MetadataTab::OpenOffice, ".MD", 47}, {MetadataTab::OpenOffice, ".RV", 49},
    {MetadataTab::OpenOffice, ".ED", 50}, {MetadataTab::OpenOffice, ".TA", 51}, {MetadataTab::OpenOffice, ".DR", 52},
    {MetadataTab::OpenOffice, ".OL", 53}, {MetadataTab::OpenOffice, ".LI", 54}, {MetadataTab::OpenOffice, ".CE", 55},
    {MetadataTab::OpenOffice, ".OB", 56},
    {MetadataTab::Html, ".TI", 57}, {MetadataTab::Html, ".AP", 108}, {MetadataTab::Html, ".CA", 109},
    {MetadataTab::Html, ".AU", 110}, {MetadataTab::Html, ".KW", 111}, {MetadataTab::Html, ".SU", 112},
    {MetadataTab::Html, ".CD", 115}, {MetadataTab::Html, ".LG", 120}, {MetadataTab::Html, ".CP", 123},
    {MetadataTab::Pdf, ".AP", 65},
    {MetadataTab::Iptc, ".TI", 92}, {MetadataTab::Iptc, ".CA", 70}, {MetadataTab::Iptc, ".KW", 73},
    {MetadataTab::Iptc, ".CD", 80}, {MetadataTab::Iptc, ".AU", 85}, {MetadataTab::Iptc, ".CM", 97},
};

// The reader whose columns a tab shows (the Office tab shows the Office fields).
ReaderBit ReaderOf(MetadataTab tab)
{
    switch (tab) {
    case MetadataTab::OpenOffice: return kReaderOpenOffice;
    case MetadataTab::Html: return kReaderHtml;
    case MetadataTab::Pdf: return kReaderPdf;
    case MetadataTab::Iptc: return kReaderIptc;
    case MetadataTab::Xmp: return kReaderXmp;
    default: return kReaderOffice;
    }
}

// The PDF and IPTC keys of the family labels of shared columns, by column code.
struct LabelKey {
    const char* code;
    SettingKey key;
};
const LabelKey kLabelKeys[] = {
    {".AU", key::PdfLabelKeys[0]}, {".CD", key::PdfLabelKeys[1]},  {".MD", key::PdfLabelKeys[2]},
    {".AP", key::PdfLabelKeys[3]}, {".TI", key::PdfLabelKeys[4]},  {".SU", key::PdfLabelKeys[5]},
    {".KW", key::PdfLabelKeys[6]}, {".CA", key::IptcLabelKeys[0]}, {".KW", key::IptcLabelKeys[1]},
    {".CD", key::IptcLabelKeys[2]}, {".AU", key::IptcLabelKeys[3]}, {".TI", key::IptcLabelKeys[4]},
    {".CM", key::IptcLabelKeys[5]},
};

}  // namespace

const QList<DisplayedFieldRow>& DisplayedFieldsLayout()
{
    static const QList<DisplayedFieldRow> layout = [] {
        QHash<ReaderBit, QSet<QString>> filled;
        for (const ReaderInfo& reader : Readers())
            for (const QString& code : reader.codes)
                filled[reader.bit].insert(code);
        QList<DisplayedFieldRow> rows;
        for (int t = 0; t < kMetadataTabCount; ++t) {
            const auto tab = MetadataTab(t);
            if (tab == MetadataTab::UserDefined)
                continue;
            for (const FieldInfo& field : FieldTable()) {
                const QString code = QLatin1String(field.code);
                const bool own = tab == MetadataTab::Office ? field.family == Family::Office
                                                            : filled.value(ReaderOf(tab)).contains(code);
                if (!own || (code == u".SN" && tab != MetadataTab::Office))
                    continue;
                int caption = field.caption;
                for (const Label& label : kLabels)
                    if (label.tab == tab && code == QLatin1String(label.code))
                        caption = label.caption;
                rows.append({tab, code, caption, bool(field.notes & kNoteShared)});
                // The object name fills the title too, when there is no headline.
                if (tab == MetadataTab::Iptc && code == u".TI")
                    rows.append({tab, code, 67, true});
            }
        }
        return rows;
    }();
    return layout;
}

DisplayedFields DisplayedFieldsOf(const IniDocument& configuration)
{
    DisplayedFields fields;
    for (const FieldInfo& field : FieldTable())
        fields.shown.insert(QLatin1String(field.code), configuration.value(FieldKey(field)) == u"1");
    for (int slot = 0; slot < kUserSlots; ++slot) {
        fields.names[slot] = configuration.value(key::TextPerso.sectionName(), key::TextPerso.keyName(slot));
        fields.slotShown[slot] = configuration.value(key::ChkPerso.sectionName(), key::ChkPerso.keyName(slot)) == u"1";
    }
    fields.macintoshAccents = configuration.value(key::IPTCMacXML) == u"1";
    return fields;
}

SettingsChange DisplayedFieldsChange(const DisplayedFields& fields)
{
    SettingsChange change;
    for (const FieldInfo& field : FieldTable())
        change.setBool(FieldKey(field), fields.shown.value(QLatin1String(field.code)));
    for (int slot = 0; slot < kUserSlots; ++slot) {
        change.set(key::TextPerso, slot, fields.names[slot].trimmed());
        change.set(key::ChkPerso, slot, fields.slotShown[slot] ? QStringLiteral("1") : QStringLiteral("0"));
    }
    change.setBool(key::IPTCMacXML, fields.macintoshAccents);
    for (const LabelKey& label : kLabelKeys)
        change.setBool(label.key, fields.shown.value(QLatin1String(label.code)));
    return change;
}

int ColumnCount(const DisplayedFields& fields)
{
    int count = 1;
    for (auto shown = fields.shown.cbegin(); shown != fields.shown.cend(); ++shown)
        count += shown.value();
    for (int slot = 0; slot < kUserSlots; ++slot)
        count += fields.slotShown[slot] && !fields.names[slot].trimmed().isEmpty();
    return count;
}

}  // namespace brindar
