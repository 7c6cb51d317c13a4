// Which reader reads which file, and which of its values fills which grid column: the
// routing knowledge of the scan and the XML export, as tables.
#pragma once

#include "readers/htmlmetareader.h"
#include "readers/iptcreader.h"
#include "readers/officeproperties.h"
#include "readers/openofficereader.h"
#include "readers/pdfreader.h"
#include "readers/xmpreader.h"

#include <QString>
#include <QStringList>
#include <QStringView>
#include <span>

namespace brindar {

struct ColumnSet;

// The readers, as bits of a set.
enum ReaderBit : unsigned {
    kReaderNone = 0,
    kReaderOpenOffice = 1u << 0,
    kReaderHtml = 1u << 1,
    kReaderPdf = 1u << 2,
    kReaderIptc = 1u << 3,
    kReaderXmp = 1u << 4,
    kReaderOffice = 1u << 5,  // the Office property component
};

// The family reader of a file by its upper-cased extension (without the dot): OpenOffice
// for SXW SXC SXD SXI SXM SXG, PDF, HTML for HTM HTML, IPTC for JPG JPEG TIF TIFF, XMP
// for the layout formats AI EPS FM INDD PM7 PSD; kReaderNone for any other file (the
// Office component's candidates, a name without extension included).
ReaderBit ReaderOfExtension(QStringView upperExtension);

// A column code and the value of a reader's result that fills it. Several rows may name
// the same code: the first non-empty value wins, within a reader as across readers (the
// scan asks the readers in a fixed order, the Office component last).
template <class Result>
struct ColumnSource {
    const char* code;
    QString (*value)(const Result&);
};

std::span<const ColumnSource<OpenOfficeResult>> OpenOfficeColumns();
std::span<const ColumnSource<PdfInfo>> PdfColumns();
std::span<const ColumnSource<HtmlMetaResult>> HtmlColumns();
std::span<const ColumnSource<IptcResult>> IptcColumns();
std::span<const ColumnSource<XmpResult>> XmpColumns();

// The Office component's values as cell texts: dates in UTC or, with `localTime`, local
// time; the editing time as "1 h 05 min"; a count of zero says nothing and is empty.
struct OfficeColumn {
    const char* code;
    QString (*text)(const OfficeProperties&, bool localTime);
};
std::span<const OfficeColumn> OfficeColumns();

// One reader with the columns it fills, in the scan's order.
struct ReaderInfo {
    ReaderBit bit;
    const char* name;  // "OpenOffice", "PDF" ...
    QStringList codes;  // the column codes its tables name, each once
    bool userSlots;     // it looks the user-defined slots up by name among its properties
};
std::span<const ReaderInfo> Readers();

// The readers that fill at least one column of `columns`: no file is opened for a reader
// whose columns are all hidden.
unsigned ReadersFilling(const ColumnSet& columns);

}  // namespace brindar
