// The column builder: the only place that turns switches into grid columns.
#include "core/columnbuilder.h"

#include "core/captionids.h"
#include "core/columnorder.h"
#include "core/configuration.h"
#include "core/inifile.h"
#include "core/language.h"
#include "core/settings.h"

namespace brindar {
namespace {

void AddColumn(ColumnSet& set, Column column)
{
    column.numeric = NumericCaptions().contains(column.caption);
    set.codeList += column.code;
    set.columns.append(std::move(column));
}

}  // namespace

bool ColumnSet::isDisplayed(const char* code) const
{
    return columnOf(QLatin1String(code)) >= 0;
}

int ColumnSet::columnOf(const QString& code) const
{
    for (int i = 1; i < columns.size(); ++i)
        if (columns[i].code == code)
            return i;
    return -1;
}

ColumnSet BuildColumns(const IniDocument& configuration, const Captions& captions, bool nt)
{
    ColumnSet set;
    const auto fields = FieldTable();
    set.displayed.assign(fields.size(), false);

    const QString document = captions.text(caption::DocumentColumn);
    set.columns.append(Column{QString(), document, QStringLiteral("   ") + document, -1, -1, false});

    auto addUserSlots = [&] {
        for (int n = 0; n < kUserSlotCount; ++n) {
            set.userNames[n] = configuration.value(key::TextPerso, n);
            set.userChecked[n] = configuration.value(key::ChkPerso, n) == u"1";
            if (set.userChecked[n] && !set.userNames[n].isEmpty())
                AddColumn(set, Column{QStringLiteral(".P") + QString::number(n), set.userNames[n], u' ' + set.userNames[n], -1, n, false});
        }
    };

    for (int i = 0; i < int(fields.size()); ++i) {
        if (i == UserSlotsPosition())
            addUserSlots();
        const FieldInfo& field = fields[i];
        if ((field.notes & kNoteNtOnly) && !nt)
            continue;
        if (configuration.value(FieldKey(field)) != u"1")
            continue;
        set.displayed[i] = true;
        const QString caption = captions.text(CaptionSection::Metadata, field.caption);
        // The short name column is padded by two blanks, every other one by one.
        const QString padding = i == 0 ? QStringLiteral("  ") : QStringLiteral(" ");
        AddColumn(set, Column{QLatin1String(field.code), caption, padding + caption, i, -1, false});
    }

    set.macintoshAccents = configuration.value(key::IPTCMacXML) == u"1";
    set.htmlOrder = ReadColumnOrder(configuration, int(set.columns.size()));
    return set;
}

}  // namespace brindar
