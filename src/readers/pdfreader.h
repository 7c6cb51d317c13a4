// The PDF reader: version, encryption, the Info dictionary and the page count of a PDF.
#pragma once

#include <QString>
#include <optional>

namespace brindar {

class PagedFile;

// What one PDF file yields. A default-constructed value is the cleared result set.
struct PdfInfo {
    bool isPdf = false;  // the file starts with "%PDF"; nothing else is set otherwise
    QString version;     // bytes 6 to 8, "1.4"
    bool encrypted = false;
    QString author;
    QString creationDate;      // "2004/03/12 15:30:00" when it is a PDF date
    QString modificationDate;
    QString creator;
    QString producer;
    QString title;
    QString subject;
    QString keywords;
    QString pages;  // decimal text of the page count

    // A read failed part way (the file shrank or the disk failed): the caller shows
    // "Error reading file ..."; the values come from what could be read.
    bool shortRead = false;
    qint64 bytesRead = 0;  // how much of the file the reader needed
};

// Reads the file at `path`. Never throws; a file that is not a PDF gives the cleared
// result. Reads only what the lookup needs: a file whose trailer, cross-reference
// sections and objects sit near its end costs a few pages, whatever its size.
PdfInfo ReadPdfInfo(const QString& path);
// The same for a file already open, which another reader may share.
PdfInfo ReadPdfInfo(PagedFile& file);

// Characters of code 1 and 2 (escaped parentheses hidden from the delimiter search)
// back to "(" and ")".
QString PdfRestoreParens(const QString& text);

// Hexadecimal pairs to characters of those codes; a pair counts as far as it is valid,
// a blank pair as 0, a final single digit is ignored.
QString PdfHexDecode(const QString& text);

// The escapes of a PDF string as this program reads them ("\n" vanishes, octal escapes
// with the 11/25/146 remapping, "\\", the UTF-16 byte-order-mark simplification).
// Nothing when an octal escape asks for a code above 255: the value is then abandoned.
std::optional<QString> PdfUnescape(const QString& text);

}  // namespace brindar
