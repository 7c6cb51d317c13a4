// Dates, durations, cell texts and report dates.
#include "core/valuetext.h"

#include "core/language.h"

#include <QRegularExpression>
#include <QStringList>
#include <QtNumeric>

namespace brindar {

QString GridDate(const QString& text)
{
    static const QRegularExpression iso(QStringLiteral("^(\\d{4})-(\\d{2})-(\\d{2})(?:[T ](\\d{2}):(\\d{2})(?::(\\d{2}))?)?"));
    static const QRegularExpression compact(QStringLiteral("^(\\d{4})(\\d{2})(\\d{2})$"));
    if (const auto m = iso.match(text); m.hasMatch()) {
        QString date = m.captured(1) + u'/' + m.captured(2) + u'/' + m.captured(3);
        if (m.hasCaptured(4))
            date += u' ' + m.captured(4) + u':' + m.captured(5) + u':'
                    + (m.hasCaptured(6) ? m.captured(6) : QStringLiteral("00"));
        return date;
    }
    if (const auto m = compact.match(text); m.hasMatch())
        return m.captured(1) + u'/' + m.captured(2) + u'/' + m.captured(3);
    return text;
}

QString GridDate(const QDateTime& utc, bool localTime)
{
    if (!utc.isValid())
        return QString();
    return (localTime ? utc.toLocalTime() : utc).toString(QStringLiteral("yyyy/MM/dd HH:mm:ss"));
}

QString EditingTime(qint64 minutes)
{
    if (minutes <= 0)
        return QString();
    const qint64 m = minutes % 60;
    return QString::number(minutes / 60) + (m < 10 ? QStringLiteral(" h 0") : QStringLiteral(" h "))
           + QString::number(m) + QStringLiteral(" min");
}

qint64 DurationMinutes(const QString& iso)
{
    static const QRegularExpression duration(
        QStringLiteral("^P(?:(\\d+)D)?T?(?:(\\d+)H)?(?:(\\d+)M)?(?:(\\d+)(?:\\.\\d+)?S)?$"));
    const auto m = duration.match(iso);
    if (!m.hasMatch() || iso.size() < 3)
        return -1;
    // Counts too large for a number of minutes make no duration either, rather than a
    // negative or wrapped one.
    qint64 minutes = 0;
    for (const auto& [group, scale] : {std::pair{1, 1440}, {2, 60}, {3, 1}}) {
        bool ok = true;
        const qint64 count = m.hasCaptured(group) ? m.captured(group).toLongLong(&ok) : 0;
        qint64 part = 0;
        if (!ok || qMulOverflow(count, qint64(scale), &part) || qAddOverflow(minutes, part, &minutes))
            return -1;
    }
    return minutes;
}

QString CellText(const QVariant& value, bool localTime)
{
    switch (value.typeId()) {
    case QMetaType::QDateTime:
        return GridDate(value.toDateTime(), localTime);
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::QStringList:
        return value.toStringList().join(QStringLiteral("; "));
    default:
        return value.toString();
    }
}

QString WithoutMicrosoftPrefix(const QString& application)
{
    static const QString prefix = QStringLiteral("Microsoft ");
    if (application.size() > prefix.size() && application.startsWith(prefix))
        return application.sliced(prefix.size());
    return application;
}

QString ReportDateText(const Captions& captions, const QDate& date)
{
    const QString month = captions.monthName(date.month());
    if (captions.dateOrderKey() == u"DDMMYYYY")
        return QStringLiteral("%1 %2 %3").arg(date.day()).arg(month).arg(date.year());
    return QStringLiteral("%1 %2, %3").arg(month).arg(date.day()).arg(date.year());
}

QString ReportTimeText(const QTime& time)
{
    return time.toString(QStringLiteral("HH 'h' mm"));
}

}  // namespace brindar
