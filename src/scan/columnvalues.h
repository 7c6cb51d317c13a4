// Which value of which reader fills which grid column: one table per reader, as data.
#pragma once

#include "readers/htmlmetareader.h"
#include "readers/iptcreader.h"
#include "readers/openofficereader.h"
#include "readers/pdfreader.h"
#include "readers/xmpreader.h"

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <span>

namespace brindar {

// A column code and the result field that fills it. Several rows may name the same
// code: the first non-empty value wins, within a reader as across readers (the scan
// asks the readers in a fixed order, the Office component last).
template <class Result>
struct ColumnSource {
    const char* code;
    QString Result::*field;
};

std::span<const ColumnSource<OpenOfficeResult>> OpenOfficeColumns();
std::span<const ColumnSource<PdfInfo>> PdfColumns();  // .EN comes from the flag, apart
std::span<const ColumnSource<HtmlMetaResult>> HtmlColumns();
std::span<const ColumnSource<IptcResult>> IptcColumns();
std::span<const ColumnSource<XmpResult>> XmpColumns();

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

}  // namespace brindar
