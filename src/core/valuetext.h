// Values as text, the same in the grid, the XML export and the reports: dates, editing
// times, the report date, and the application name.
#pragma once

#include <QDateTime>
#include <QString>
#include <QVariant>

namespace brindar {

class Captions;

// Dates as the grid shows them, "yyyy/MM/dd HH:mm:ss", a text that sorts in date order:
// ISO 8601 texts (OpenOffice, XMP) and IPTC's "YYYYMMDD" are rewritten, PDF dates come
// rewritten already, anything else stays as it is.
QString GridDate(const QString& text);
// A date of the Office component (UTC); with `localTime` it is shown in local time.
QString GridDate(const QDateTime& utc, bool localTime);
// An editing time in minutes as "1 h 05 min"; zero shows empty.
QString EditingTime(qint64 minutes);
// OpenOffice's editing duration ("PT1H5M30S") in minutes, or -1.
qint64 DurationMinutes(const QString& iso);
// A user-defined or Office value as cell text.
QString CellText(const QVariant& value, bool localTime);

// An application named "Microsoft Word" is shown as "Word": a name longer than the ten
// characters "Microsoft " (blank included, case-sensitive) loses them. The name
// "Microsoft " alone is kept, so that no value vanishes.
QString WithoutMicrosoftPrefix(const QString& application);

// "15 November 2026" when the language's date-order key is "DDMMYYYY", else
// "November 15, 2026": the day without a leading zero, the language's month name.
QString ReportDateText(const Captions& captions, const QDate& date);

// "14 h 05".
QString ReportTimeText(const QTime& time);

}  // namespace brindar
