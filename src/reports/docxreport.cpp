// The word-processor report: the grid as one table of a .docx package packed with libzip.
#include "reports/docxreport.h"

#include "core/captionids.h"
#include "core/valuetext.h"
#include "platform/filereplace.h"
#include "reports/templatevariables.h"

#include <QDateTime>
#include <zip.h>

#include <algorithm>
#include <memory>

namespace brindar {
namespace {

// Page geometry in twentieths of a point: A4, 2 cm margins.
constexpr int kA4ShortSide = 11906;
constexpr int kA4LongSide = 16838;
constexpr int kMargin = 1134;
// The header row's shading: light grey, readable in colour and in black and white.
constexpr const char* kHeaderFill = "D9D9D9";

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\r\n";
constexpr const char* kMainNamespace = "http://schemas.openxmlformats.org/wordprocessingml/2006/main";

bool IsXmlChar(char32_t c)
{
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD)
           || (c >= 0x10000 && c <= 0x10FFFF);
}

void AppendUtf8(QByteArray& out, char32_t c)
{
    if (c < 0x80) {
        out += char(c);
    } else if (c < 0x800) {
        out += char(0xC0 | (c >> 6));
        out += char(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += char(0xE0 | (c >> 12));
        out += char(0x80 | ((c >> 6) & 0x3F));
        out += char(0x80 | (c & 0x3F));
    } else {
        out += char(0xF0 | (c >> 18));
        out += char(0x80 | ((c >> 12) & 0x3F));
        out += char(0x80 | ((c >> 6) & 0x3F));
        out += char(0x80 | (c & 0x3F));
    }
}

// Appends `text` as escaped UTF-8 character data. What XML 1.0 cannot carry (most C0
// controls, lone surrogates, U+FFFE and U+FFFF) becomes a blank, so the words around it
// stay apart and the cell keeps its length.
void AppendXmlText(QByteArray& out, QStringView text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        char32_t c = text[i].unicode();
        if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(char16_t(c), text[i + 1].unicode());
            ++i;
        } else if (QChar::isSurrogate(c) || !IsXmlChar(c))
            c = U' ';
        switch (c) {
        case U'&': out += "&amp;"; break;
        case U'<': out += "&lt;"; break;
        case U'>': out += "&gt;"; break;
        case U'"': out += "&quot;"; break;
        default: AppendUtf8(out, c);
        }
    }
}

// One run holding `text`: a line break (CR LF, CR or LF) becomes a w:br and a tab a
// w:tab, as Word writes them; an empty text gives no run at all.
void AppendRun(QByteArray& out, QStringView text, bool bold)
{
    if (text.isEmpty())
        return;
    out += bold ? "<w:r><w:rPr><w:b/><w:bCs/></w:rPr>" : "<w:r>";
    qsizetype start = 0;
    const auto flush = [&](qsizetype end) {
        if (end <= start)
            return;
        const QStringView piece = text.sliced(start, end - start);
        // Word drops leading, trailing and repeated blanks unless told to keep them; the
        // header captions start with padding blanks. Controls turn into blanks too.
        bool blank = false;
        for (const QChar c : piece)
            blank = blank || c.unicode() <= 0x20 || c.isSurrogate() || c.unicode() >= 0xFFFE;
        out += blank ? "<w:t xml:space=\"preserve\">" : "<w:t>";
        AppendXmlText(out, piece);
        out += "</w:t>";
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c != u'\r' && c != u'\n' && c != u'\t')
            continue;
        flush(i);
        out += c == u'\t' ? "<w:tab/>" : "<w:br/>";
        if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++i;
        start = i + 1;
    }
    flush(text.size());
    out += "</w:r>";
}

QByteArray Escaped(QStringView text)
{
    QByteArray out;
    AppendXmlText(out, text);
    return out;
}

QByteArray Number(qint64 n) { return QByteArray::number(n); }

// The shown columns in report order: the positions of `order` naming a grid column
// whose width is above 0 (positions naming no column of the grid are passed over).
QList<int> ReportColumns(const GridModel& grid, const QList<int>& order)
{
    QList<int> columns;
    for (const int column : order)
        if (column >= 0 && column < grid.columnCount() && grid.width(column) > 0)
            columns.append(column);
    return columns;
}

// Column widths in twips that share `textWidth` in the proportions of the grid's own
// widths, so the document's columns look like the window's; the last column takes the
// rounding remainder so the table fills the text width exactly.
QList<int> ColumnTwips(const GridModel& grid, const QList<int>& columns, int textWidth)
{
    qint64 total = 0;
    for (const int column : columns)
        total += grid.width(column);
    QList<int> twips;
    int used = 0;
    for (qsizetype i = 0; i < columns.size(); ++i) {
        // A column squeezed to a few pixels still gets a width: 0 would mean "automatic".
        const int share = std::max(1, i + 1 == columns.size()
                                          ? textWidth - used
                                          : int(qint64(textWidth) * grid.width(columns[i]) / total));
        twips.append(share);
        used += share;
    }
    return twips;
}

QByteArray BorderElements(const char* size)
{
    QByteArray out;
    for (const char* side : {"top", "left", "bottom", "right", "insideH", "insideV"})
        out += QByteArray("<w:") + side + " w:val=\"single\" w:sz=\"" + size + "\" w:space=\"0\" w:color=\"auto\"/>";
    return out;
}

QByteArray DocumentXml(const QString& title, const GridModel& grid, const QList<int>& order)
{
    const QList<int> columns = ReportColumns(grid, order);
    const bool landscape = columns.size() > kPortraitColumns;
    const int pageWidth = landscape ? kA4LongSide : kA4ShortSide;
    const int pageHeight = landscape ? kA4ShortSide : kA4LongSide;
    const QList<int> twips = ColumnTwips(grid, columns, pageWidth - 2 * kMargin);

    QByteArray out;
    // A cell costs about 90 bytes of markup besides its text: reserving that share up
    // front spares a 100,000-row grid most of the copies of a growing buffer.
    out.reserve(qsizetype(grid.rowCount() + 1) * columns.size() * 90 + 4096);
    out += kDeclaration;
    out += QByteArray("<w:document xmlns:w=\"") + kMainNamespace + "\"><w:body>";
    out += "<w:p><w:pPr><w:pStyle w:val=\"Title\"/></w:pPr>";
    AppendRun(out, title, false);
    out += "</w:p>";

    // A grid without a shown column has no table to give: the document holds the title.
    if (!columns.isEmpty()) {
        // Fixed layout with the widths written both in the grid (LibreOffice reads it) and
        // in every cell (Word reads those): both render the same columns, and neither has
        // to measure 100,000 rows before showing the first page.
        out += "<w:tbl><w:tblPr><w:tblStyle w:val=\"TableGrid\"/><w:tblW w:w=\"5000\" w:type=\"pct\"/>"
               "<w:tblBorders>" + BorderElements("4") + "</w:tblBorders><w:tblLayout w:type=\"fixed\"/>"
               "</w:tblPr><w:tblGrid>";
        QList<QByteArray> cellStart;
        for (const int width : twips) {
            out += "<w:gridCol w:w=\"" + Number(width) + "\"/>";
            cellStart.append("<w:tc><w:tcPr><w:tcW w:w=\"" + Number(width) + "\" w:type=\"dxa\"/>");
        }
        out += "</w:tblGrid>";

        // The header row repeats at the top of every page (w:tblHeader) and never splits.
        out += "<w:tr><w:trPr><w:cantSplit/><w:tblHeader/></w:trPr>";
        for (qsizetype i = 0; i < columns.size(); ++i) {
            out += cellStart[i];
            out += QByteArray("<w:shd w:val=\"clear\" w:color=\"auto\" w:fill=\"") + kHeaderFill
                   + "\"/></w:tcPr><w:p>";
            AppendRun(out, grid.header(columns[i]), true);
            out += "</w:p></w:tc>";
        }
        out += "</w:tr>";

        for (int row = 0; row < grid.rowCount(); ++row) {
            out += "<w:tr>";
            for (qsizetype i = 0; i < columns.size(); ++i) {
                out += cellStart[i];
                out += "</w:tcPr><w:p>";
                AppendRun(out, grid.cell(row, columns[i]), false);
                out += "</w:p></w:tc>";
            }
            out += "</w:tr>";
        }
        out += "</w:tbl>";
        // A document cannot end on a table: Word would add this paragraph itself.
        out += "<w:p/>";
    }

    out += "<w:sectPr><w:pgSz w:w=\"" + Number(pageWidth) + "\" w:h=\"" + Number(pageHeight) + "\"";
    if (landscape)
        out += " w:orient=\"landscape\"";
    const QByteArray margin = Number(kMargin);
    out += "/><w:pgMar w:top=\"" + margin + "\" w:right=\"" + margin + "\" w:bottom=\"" + margin + "\" w:left=\""
           + margin + "\" w:header=\"709\" w:footer=\"709\" w:gutter=\"0\"/></w:sectPr></w:body></w:document>";
    return out;
}

QByteArray StylesXml()
{
    return QByteArray(kDeclaration) + "<w:styles xmlns:w=\"" + kMainNamespace
           + "\"><w:docDefaults><w:rPrDefault><w:rPr>"
             "<w:rFonts w:ascii=\"Arial\" w:hAnsi=\"Arial\" w:eastAsia=\"Arial\" w:cs=\"Arial\"/>"
             "<w:sz w:val=\"18\"/><w:szCs w:val=\"18\"/></w:rPr></w:rPrDefault>"
             "<w:pPrDefault><w:pPr><w:spacing w:after=\"0\" w:line=\"240\" w:lineRule=\"auto\"/></w:pPr>"
             "</w:pPrDefault></w:docDefaults>"
             "<w:style w:type=\"paragraph\" w:default=\"1\" w:styleId=\"Normal\"><w:name w:val=\"Normal\"/>"
             "<w:qFormat/></w:style>"
             "<w:style w:type=\"paragraph\" w:styleId=\"Title\"><w:name w:val=\"Title\"/>"
             "<w:basedOn w:val=\"Normal\"/><w:next w:val=\"Normal\"/><w:qFormat/>"
             "<w:pPr><w:spacing w:after=\"240\"/></w:pPr>"
             "<w:rPr><w:b/><w:bCs/><w:sz w:val=\"32\"/><w:szCs w:val=\"32\"/></w:rPr></w:style>"
             "<w:style w:type=\"table\" w:default=\"1\" w:styleId=\"TableNormal\"><w:name w:val=\"Normal Table\"/>"
             "<w:semiHidden/><w:unhideWhenUsed/><w:tblPr><w:tblInd w:w=\"0\" w:type=\"dxa\"/><w:tblCellMar>"
             "<w:top w:w=\"0\" w:type=\"dxa\"/><w:left w:w=\"108\" w:type=\"dxa\"/>"
             "<w:bottom w:w=\"0\" w:type=\"dxa\"/><w:right w:w=\"108\" w:type=\"dxa\"/>"
             "</w:tblCellMar></w:tblPr></w:style>"
             "<w:style w:type=\"table\" w:styleId=\"TableGrid\"><w:name w:val=\"Table Grid\"/>"
             "<w:basedOn w:val=\"TableNormal\"/><w:tblPr><w:tblBorders>"
           + BorderElements("4") + "</w:tblBorders></w:tblPr></w:style></w:styles>";
}

QByteArray CoreXml(const QString& title)
{
    const QByteArray now = QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toLatin1();
    return QByteArray(kDeclaration)
           + "<cp:coreProperties xmlns:cp=\"http://schemas.openxmlformats.org/package/2006/metadata/core-properties\""
             " xmlns:dc=\"http://purl.org/dc/elements/1.1/\" xmlns:dcterms=\"http://purl.org/dc/terms/\""
             " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"><dc:title>"
           + Escaped(title) + "</dc:title><dcterms:created xsi:type=\"dcterms:W3CDTF\">" + now
           + "</dcterms:created><dcterms:modified xsi:type=\"dcterms:W3CDTF\">" + now
           + "</dcterms:modified></cp:coreProperties>";
}

const char* const kContentTypes =
    "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
    "<Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
    "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
    "<Override PartName=\"/word/document.xml\""
    " ContentType=\"application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml\"/>"
    "<Override PartName=\"/word/styles.xml\""
    " ContentType=\"application/vnd.openxmlformats-officedocument.wordprocessingml.styles+xml\"/>"
    "<Override PartName=\"/docProps/core.xml\""
    " ContentType=\"application/vnd.openxmlformats-package.core-properties+xml\"/>"
    "<Override PartName=\"/docProps/app.xml\""
    " ContentType=\"application/vnd.openxmlformats-officedocument.extended-properties+xml\"/></Types>";

const char* const kPackageRelationships =
    "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
    "<Relationship Id=\"rId1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/"
    "officeDocument\" Target=\"word/document.xml\"/>"
    "<Relationship Id=\"rId2\" Type=\"http://schemas.openxmlformats.org/package/2006/relationships/metadata/"
    "core-properties\" Target=\"docProps/core.xml\"/>"
    "<Relationship Id=\"rId3\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/"
    "extended-properties\" Target=\"docProps/app.xml\"/></Relationships>";

const char* const kDocumentRelationships =
    "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
    "<Relationship Id=\"rId1\" Type=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships/"
    "styles\" Target=\"styles.xml\"/></Relationships>";

const char* const kAppProperties =
    "<Properties xmlns=\"http://schemas.openxmlformats.org/officeDocument/2006/extended-properties\">"
    "<Application>Brindar Pro</Application></Properties>";

struct Part {
    const char* name;
    QByteArray bytes;
};

struct ZipDeleter {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
struct SourceDeleter {
    void operator()(zip_source_t* source) const { zip_source_free(source); }
};
struct ErrorText {
    zip_error_t error;
    ErrorText() { zip_error_init(&error); }
    ~ErrorText() { zip_error_fini(&error); }
    QString text() { return QString::fromLocal8Bit(zip_error_strerror(&error)); }
};

// The parts packed in memory, [Content_Types].xml first as Word writes it; the bytes of
// the zip file, or the reason libzip gave.
std::optional<QString> Pack(const QList<Part>& parts, QByteArray& zipBytes)
{
    ErrorText error;
    const std::unique_ptr<zip_source_t, SourceDeleter> buffer(zip_source_buffer_create(nullptr, 0, 0, &error.error));
    if (!buffer)
        return error.text();
    std::unique_ptr<zip_t, ZipDeleter> archive(zip_open_from_source(buffer.get(), ZIP_TRUNCATE, &error.error));
    if (!archive)
        return error.text();
    // The archive owns the buffer from here on; the extra reference lets the packed
    // bytes outlive zip_close.
    zip_source_keep(buffer.get());

    for (const Part& part : parts) {
        zip_source_t* data = zip_source_buffer(archive.get(), part.bytes.constData(), zip_uint64_t(part.bytes.size()), 0);
        if (!data)
            return QString::fromLocal8Bit(zip_strerror(archive.get()));
        if (zip_file_add(archive.get(), part.name, data, ZIP_FL_ENC_UTF_8) < 0) {
            zip_source_free(data);
            return QString::fromLocal8Bit(zip_strerror(archive.get()));
        }
    }
    if (zip_close(archive.get()) != 0)
        return QString::fromLocal8Bit(zip_strerror(archive.get()));
    archive.release();  // zip_close freed it

    zip_stat_t stat;
    if (zip_source_stat(buffer.get(), &stat) != 0 || !(stat.valid & ZIP_STAT_SIZE) || zip_source_open(buffer.get()) != 0)
        return QString::fromLocal8Bit(zip_error_strerror(zip_source_error(buffer.get())));
    zipBytes.resize(qsizetype(stat.size));
    zip_uint64_t done = 0;
    while (done < stat.size) {
        const zip_int64_t read = zip_source_read(buffer.get(), zipBytes.data() + done, stat.size - done);
        if (read <= 0)
            break;
        done += zip_uint64_t(read);
    }
    zip_source_close(buffer.get());
    if (done != stat.size)
        return QStringLiteral("the packed document cannot be read back");
    return std::nullopt;
}

}  // namespace

std::optional<QString> WriteDocxReport(const QString& path, const QString& title, const GridModel& grid,
                                       const QList<int>& order)
{
    const QList<Part> parts = {
        {"[Content_Types].xml", kDeclaration + QByteArray(kContentTypes)},
        {"_rels/.rels", kDeclaration + QByteArray(kPackageRelationships)},
        {"word/document.xml", DocumentXml(title, grid, order)},
        {"word/_rels/document.xml.rels", kDeclaration + QByteArray(kDocumentRelationships)},
        {"word/styles.xml", StylesXml()},
        {"docProps/core.xml", CoreXml(title)},
        {"docProps/app.xml", kDeclaration + QByteArray(kAppProperties)},
    };
    QByteArray zipBytes;
    if (const auto reason = Pack(parts, zipBytes))
        return QStringLiteral("%1: the document cannot be packed: %2").arg(path, *reason);
    // Nothing reaches the disk before the whole package is packed: a failure leaves
    // neither a new file nor a damaged old one.
    return ReplaceFile(path, [&](QFile& file) { return file.write(zipBytes) == zipBytes.size(); });
}

ReportOutcome WriteWordReport(const GridModel& grid, const QList<int>& order, const QString& directory,
                              const ReportContext& context)
{
    ReportOutcome outcome = BeginReport(grid, directory, context, caption::NoFileNoWordReport, QStringLiteral("docx"));
    if (!outcome.error)
        outcome.error =
            WriteDocxReport(outcome.path, ReportDateText(context.captions, context.now.date()), grid, order);
    return outcome;
}

}  // namespace brindar

