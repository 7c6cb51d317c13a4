// The column builder: the only place that turns switches into grid columns.
#include "core/columnbuilder.h"

#include "core/configuration.h"
#include "core/inifile.h"
#include "core/language.h"

namespace brindar {
namespace {

constexpr int kDocumentCaption = 30;

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

    const QString document = captions.text(CaptionSection::Metadata, kDocumentCaption);
    set.columns.append(Column{QString(), document, QStringLiteral("   ") + document, -1, -1, false});

    auto addUserSlots = [&] {
        for (int n = 0; n < kUserSlotCount; ++n) {
            const QString slot = QString::number(n);
            set.userNames[n] = configuration.value(QLatin1String(kUserSection), QStringLiteral("textPerso") + slot);
            set.userChecked[n] = configuration.value(QLatin1String(kUserSection), QStringLiteral("chkPerso") + slot) == u"1";
            if (set.userChecked[n] && !set.userNames[n].isEmpty()) {
                set.readerFlags |= kUserSlotReaders;
                AddColumn(set, Column{QStringLiteral(".P") + slot, set.userNames[n], u' ' + set.userNames[n], -1, n, false});
            }
        }
    };

    for (int i = 0; i < int(fields.size()); ++i) {
        if (i == UserSlotsPosition())
            addUserSlots();
        const FieldInfo& field = fields[i];
        if ((field.notes & kNoteNtOnly) && !nt)
            continue;
        if (configuration.value(QLatin1String(field.section), QLatin1String(field.key)) != u"1")
            continue;
        set.displayed[i] = true;
        set.readerFlags |= field.readers;
        const QString caption = captions.text(CaptionSection::Metadata, field.caption);
        // The short name column is padded by two blanks, every other one by one.
        const QString padding = i == 0 ? QStringLiteral("  ") : QStringLiteral(" ");
        AddColumn(set, Column{QLatin1String(field.code), caption, padding + caption, i, -1, false});
    }

    set.macintoshAccents = configuration.value(QStringLiteral("XML"), QStringLiteral("IPTCMacXML")) == u"1";
    set.htmlOrder = ReadColumnOrder(configuration, int(set.columns.size()));
    return set;
}

QList<int> ReadColumnOrder(const IniDocument& configuration, int count)
{
    QList<int> natural(count);
    for (int i = 0; i < count; ++i)
        natural[i] = i;
    const QString section = QStringLiteral("Columns");
    if (!configuration.contains(section, QStringLiteral("NbColumns"))
        || LeadingNumber(configuration.value(section, QStringLiteral("NbColumns"))) != count)
        return natural;
    QList<int> order(count);
    QList<bool> seen(count, false);
    for (int p = 0; p < count; ++p) {
        const qint64 column = LeadingNumber(configuration.value(section, QString::number(p + 1))) - 1;
        // A hand-edited section that is not a permutation would make reports skip or
        // repeat columns: the natural order is shown instead.
        if (column < 0 || column >= count || seen[column])
            return natural;
        seen[column] = true;
        order[p] = int(column);
    }
    return order;
}

}  // namespace brindar
