// Fuzzes the value clean-up of the grid, the export and the reports: dates, durations,
// editing times, cell texts and application names.
#include "core/valuetext.h"

#include <QByteArray>
#include <QDateTime>
#include <QStringList>
#include <QVariant>
#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

using namespace brindar;

void CheckText(const QString& text)
{
    // A date already rewritten is left as it is.
    const QString date = GridDate(text);
    if (GridDate(date) != date)
        __builtin_trap();

    const qint64 minutes = DurationMinutes(text);
    if (minutes < -1)
        __builtin_trap();
    const QString editing = EditingTime(minutes);
    if (minutes > 0 ? !editing.endsWith(QStringLiteral(" min")) : !editing.isEmpty())
        __builtin_trap();

    // The prefix goes, nothing else: what is left ends the name, and no name vanishes.
    const QString application = WithoutMicrosoftPrefix(text);
    if (!text.endsWith(application) || application.isEmpty() != text.isEmpty())
        __builtin_trap();

    if (CellText(QVariant(text), false) != text)
        __builtin_trap();
    const QStringList parts = text.split(u'\n');
    if (CellText(QVariant(parts), false) != parts.join(QStringLiteral("; ")))
        __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    CheckText(QString::fromUtf8(bytes));
    // The same bytes as UTF-16 code units, lone surrogates included, as some readers give them.
    CheckText(QString(reinterpret_cast<const QChar*>(bytes.constData()), bytes.size() / 2));

    // The first eight bytes as a moment, and as a count of minutes.
    qint64 number = 0;
    if (size)
        std::memcpy(&number, data, std::min(size, sizeof number));
    const QString editing = EditingTime(number);
    if (number > 0 ? !editing.endsWith(QStringLiteral(" min")) : !editing.isEmpty())
        __builtin_trap();
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(number, Qt::UTC);
    for (const bool localTime : {false, true}) {
        const QString date = GridDate(moment, localTime);
        if (GridDate(date) != date || CellText(QVariant(moment), localTime) != date)
            __builtin_trap();
        if (moment.isValid() == date.isEmpty())
            __builtin_trap();
    }
    return 0;
}
