// The HTML report and the page of a list of reports, written line by line in the page
// layout their users' style sheets and scripts rely on.
#include "reports/htmlreport.h"

#include "core/atomicfile.h"
#include "core/captionids.h"
#include "core/codepage.h"
#include "core/paths.h"
#include "platform/filenames.h"
#include "reports/templatevariables.h"

#include <QFile>
#include <QFileInfo>

namespace brindar {

namespace {

QString Quoted(const QString& text) { return u'"' + text + u'"'; }

// The src of a page image: the copy made beside the report ("<prefix><suffix><ext>"),
// or a link to the image where it is. Nothing when no image is set or the file is gone;
// a copy that fails is ignored, as the page still names it.
std::optional<QString> ImageSource(const QString& path, const QString& extension, const QString& suffix,
                                   const QString& outputDirectory, const ReportContext& context)
{
    if (path.isEmpty() || !QFileInfo(path).isFile())
        return std::nullopt;
    const Configuration& c = context.configuration;
    if (!c.imagesSuivent)
        return LinkForPath(context.substitutions, path);
    const QString name = c.prefixeTableau + suffix + extension;
    QFile image(path);
    if (image.open(QIODevice::ReadOnly))
        WriteFileAtomically(outputDirectory + u'/' + name, image.readAll());
    return name;
}

QStringList BodyAndHeader(const QString& outputDirectory, const ReportContext& context)
{
    const Configuration& c = context.configuration;
    QStringList lines;
    if (const auto background = ImageSource(c.imageFond, c.imageFondExtension, QStringLiteral("-background"),
                                            outputDirectory, context))
        lines << QStringLiteral("<body background=%1>").arg(Quoted(*background));
    else
        lines << QStringLiteral("<body>");
    return lines;
}

// A centred image (header or footer) and the text below or above it, with the template
// variables replaced; the text is HTML and goes as typed.
QStringList ImageAndText(const QString& image, const QString& extension, const QString& suffix, const QString& text,
                         const QString& text2, const QString& outputDirectory, const ReportContext& context)
{
    QStringList lines;
    if (const auto source = ImageSource(image, extension, suffix, outputDirectory, context))
        lines << QStringLiteral("<p align=\"center\"><img src=%1></p>").arg(Quoted(*source));
    if (!text.isEmpty())
        lines << ReplaceTemplateVariables(text + text2, context.captions, context.now, context.system);
    return lines;
}

QStringList HeaderImageAndText(const QString& outputDirectory, const ReportContext& context)
{
    const Configuration& c = context.configuration;
    return ImageAndText(c.imageEnTete, c.imageEnTeteExtension, QStringLiteral("-header"), c.texteEnTete,
                        c.texteEnTete2, outputDirectory, context);
}

QStringList FooterImageAndText(const QString& outputDirectory, const ReportContext& context)
{
    const Configuration& c = context.configuration;
    return ImageAndText(c.imagePied, c.imagePiedExtension, QStringLiteral("-footer"), c.textePied, c.textePied2,
                        outputDirectory, context);
}

// The page's text in Windows-1252; a character that code page lacks (a name in another
// script) is written as a character reference, which every browser shows as it was.
QByteArray PageBytes(const QString& line)
{
    if (FitsWin1252(line))
        return EncodeWin1252(line);
    QString referenced;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const bool pair = line[i].isHighSurrogate() && i + 1 < line.size() && line[i + 1].isLowSurrogate();
        const QStringView one = QStringView(line).sliced(i, pair ? 2 : 1);
        if (FitsWin1252(one))
            referenced += one;
        else
            referenced += QStringLiteral("&#%1;").arg(pair ? QChar::surrogateToUcs4(line[i], line[i + 1]) : line[i].unicode());
        i += pair ? 1 : 0;
    }
    return EncodeWin1252(referenced);
}

std::optional<QString> WriteLines(const QString& path, const QStringList& lines)
{
    QByteArray bytes;
    for (const QString& line : lines) {
        bytes += PageBytes(line);
        bytes += "\r\n";
    }
    return WriteFileAtomically(path, bytes);
}

QString DocumentsText(const ReportContext& context) { return context.captions.text(caption::DocumentsCounted); }

}  // namespace

bool IsLocaleNumber(const QString& text, const QLocale& locale)
{
    const QString trimmed = text.trimmed();
    const QString signs = QStringLiteral("+-") + locale.negativeSign() + locale.positiveSign();
    const QString separators = locale.decimalPoint() + locale.groupSeparator();
    const QString exponent = locale.exponential();
    bool digit = false;
    for (qsizetype i = 0; i < trimmed.size(); ++i) {
        const QChar c = trimmed[i];
        if (c.isDigit())
            digit = true;
        else if (!signs.contains(c) && !separators.contains(c) && exponent.compare(QString(c), Qt::CaseInsensitive) != 0)
            return false;  // a letter: "nan", "inf", "12 pages"
    }
    bool number = false;
    locale.toDouble(trimmed, &number);
    return digit && number;
}

QString HeaderColour(qint32 couleurTitre)
{
    QString hex = QString::number(quint32(couleurTitre), 16).toUpper();
    // The number format pads only a text that reads as a number: hexadecimal digits
    // without letters; one "00" then goes before whatever is still short.
    if (std::all_of(hex.cbegin(), hex.cend(), [](QChar ch) { return ch.isDigit(); }))
        hex = hex.rightJustified(6, u'0');
    if (hex.size() < 6)
        hex.prepend(QStringLiteral("00"));
    return hex.mid(4, 2) + hex.mid(2, 2) + hex.mid(0, 2);
}

QString EscapeCellText(QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral(" "));
    for (const int code : {1, 2, 3, 12, 21, 27, 28})
        text.replace(QChar(code), u' ');
    text.replace(CharOfCode(150), u'-');
    return text.replace(u'&', QStringLiteral("&amp;"))
        .replace(u'"', QStringLiteral("&quot;"))
        .replace(u'<', QStringLiteral("&lt;"))
        .replace(u'>', QStringLiteral("&gt;"));
}

QStringList ReportTableLines(const GridModel& grid, const QList<int>& order, const QString& outputDirectory,
                             const ReportContext& context)
{
    const Configuration& c = context.configuration;
    const QString nowrap = c.renvoiALaLigne ? QString() : QStringLiteral(" nowrap");
    const QString colour = HeaderColour(c.couleurTitre);
    const QString headerCell = QStringLiteral("<td bgcolor=\"#%1\" align=\"center\"%2>").arg(colour, nowrap);
    const QString sortCell = QStringLiteral("<td bgcolor=\"#%1\"  align=\"center\"%2").arg(colour, nowrap);
    const QString glyph = QStringLiteral("><font FACE=\"Webdings\"><small>%1</small></font>&nbsp;<b>")
                              .arg(QChar(grid.sortUp() ? u'5' : u'6'));
    QStringList lines{QStringLiteral("<div align=\"center\"><center>"),
                      QStringLiteral("<table border=\"5\" cellspacing=\"1\" cellpadding=\"4\">")};
    lines.reserve(lines.size() + (grid.rowCount() + 1) * (order.size() + 2));
    const auto row = [&](int r) {  // -1: the header row
        lines << QStringLiteral("<tr>");
        for (const int column : order) {
            if (column < 0 || column >= grid.columnCount() || grid.width(column) == 0)
                continue;
            const QString text = r < 0 ? grid.header(column) : grid.cell(r, column);
            if (text.trimmed().isEmpty())
                lines << QStringLiteral("<td>&nbsp;</td>");
            else if (r < 0 && column == grid.sortColumn())
                lines << sortCell + (context.webdings ? glyph : QStringLiteral("><b>")) + text + QStringLiteral("</b></td>");
            else if (r < 0)
                lines << headerCell + text + QStringLiteral("</td>");
            else if (column == 0)
                lines << QStringLiteral("<td%1><a href=\"%2\">%3</td>")
                             .arg(nowrap, LinkForPath(context.substitutions, JoinPath(outputDirectory, text)), text);
            else if (IsLocaleNumber(text, context.locale))
                lines << QStringLiteral("<td align=\"center\"%1>%2</td>").arg(nowrap, text);
            else
                lines << QStringLiteral("<td%1>%2</td>").arg(nowrap, EscapeCellText(text));
        }
        lines << QStringLiteral("</tr>");
    };
    row(-1);
    for (int r = 0; r < grid.rowCount(); ++r)
        row(r);
    lines << QStringLiteral("</table>") << QStringLiteral("</center></div>");
    return lines;
}

ReportOutcome WriteHtmlReport(const GridModel& grid, const QList<int>& order, const QString& directory,
                              const ReportContext& context)
{
    const Configuration& c = context.configuration;
    ReportOutcome outcome = BeginReport(grid, directory, context, caption::NoFileNoHtmlReport, QStringLiteral("html"));
    if (outcome.error)
        return outcome;
    const QString output = ReportOutputDirectory(directory);

    QStringList lines{QStringLiteral("<html>"), QStringLiteral("<head>"),
                      QStringLiteral("<title>%1</title>").arg(context.captions.text(caption::ReportPageTitle)),
                      QStringLiteral("</head>")};
    lines << BodyAndHeader(output, context) << HeaderImageAndText(output, context);
    QString headingImage;
    if (const auto image = ImageSource(c.imageDebutTableau, c.imageDebutTableauExtension, QStringLiteral("-headerReport"),
                                       output, context))
        headingImage = QStringLiteral("<img src=%1>&nbsp;").arg(Quoted(*image));
    const QString title = ReportTitle(context.reportsList, output);
    lines << QStringLiteral("<h3 align=\"center\">%1%2 : %3 %4</h3>")
                 .arg(headingImage, title, QString::number(grid.rowCount()), DocumentsText(context));
    // The body ends before the table, and the page goes on after it: browsers show it.
    lines << QStringLiteral("</body>");
    lines << ReportTableLines(grid, order, output, context);
    if (title != output && c.displayDirectory)
        lines << QStringLiteral("<div align=\"right\"><address>%1</address></div>")
                     .arg(LinkForPath(context.substitutions, output));
    lines << FooterImageAndText(output, context) << QStringLiteral("</html>");
    outcome.error = WriteLines(outcome.path, lines);
    return outcome;
}

ReportOutcome WriteReportsListPage(const ReportsList& list, const QList<int>& order, const ReportContext& context,
                                   const std::function<GridModel(const QString& directory)>& scan,
                                   const std::function<void(const ReportsListProgress&)>& onProgress,
                                   const std::atomic<bool>* stop)
{
    const Configuration& c = context.configuration;
    ReportOutcome outcome;
    if (list.isEmpty()) {
        outcome.error = context.captions.text(caption::ReportsListEmpty);
        outcome.nothingToReport = true;
        return outcome;
    }
    // An empty (or vanished) folder is no place to write in: the page would land at the
    // root of the file system.
    if (c.pathListeTableaux.isEmpty()) {
        outcome.error = context.captions.text(caption::NoReportsListFolder);
        return outcome;
    }
    const QString output = ReportOutputDirectory(c.pathListeTableaux);
    QString headingImage;
    if (const auto image = ImageSource(c.imageDebutTableau, c.imageDebutTableauExtension, QStringLiteral("-headerReport"),
                                       output, context))
        headingImage = QStringLiteral("<img src=%1 border=\"0\">").arg(Quoted(*image));
    outcome.path = JoinPath(output, ReportBaseName(c, context.captions, context.now) + QStringLiteral(".html"));

    QStringList lines{QStringLiteral("<html>"), QStringLiteral("<head>"),
                      QStringLiteral("<title>%1</title>").arg(context.captions.text(caption::ReportPageTitle))};
    // The assignment is split over two lines after its last dot; a browser reads the two
    // lines as one statement.
    for (const char* line : {"<SCRIPT LANGUAGE=\"Javascript\">", "<!--", "function Gotolink() {", "var selection;",
                             "selection=document.links.choix;",
                             "window.location=selection.options[selection.selectedIndex].", "value;", "}", "//-->",
                             "</SCRIPT>", "</head>"})
        lines << QLatin1String(line);
    lines << BodyAndHeader(output, context) << QStringLiteral("<a name=\"Top\"></a>");
    lines << HeaderImageAndText(output, context);

    const auto exists = [](const QString& directory) { return IsDirectory(directory); };
    // The headings' denominator counts every active entry, a vanished folder included.
    const int active = int(std::count_if(list.cbegin(), list.cend(), [](const ReportEntry& e) { return e.active; }));
    if (c.indexListes && active > 1) {
        if (c.indexType)
            lines << QStringLiteral("<form name=\"links\">") << QStringLiteral("<p align=\"left\">")
                  << QStringLiteral("<select size=\"1\" name=\"choix\" onChange=\"Gotolink()\" style=\"background-color: "
                                    "%1; color: #000080; font-weight: bold\">")
                         .arg(HeaderColour(c.couleurTitre));
        else
            lines << QStringLiteral("<ol>");
        int number = 0;
        for (const ReportEntry& entry : list) {
            if (!entry.active || !exists(entry.directory))
                continue;
            ++number;
            lines << (c.indexType ? QStringLiteral("<option value=\"#%1\">%2</option>")
                                  : QStringLiteral("<li><a href=\"#%1\">%2</a></li>"))
                         .arg(number)
                         .arg(entry.title);
        }
        if (c.indexType)
            lines << QStringLiteral("</select>") << QStringLiteral("</form>");
        else
            lines << QStringLiteral("</ol>");
    }

    int number = 0;
    qint64 total = 0;
    const int existing = int(std::count_if(list.cbegin(), list.cend(),
                                           [&](const ReportEntry& e) { return e.active && exists(e.directory); }));
    for (const ReportEntry& entry : list) {
        if (!entry.active || !exists(entry.directory))
            continue;
        if (onProgress)
            onProgress(ReportsListProgress{number, existing, entry.directory});
        if (stop && stop->load()) {
            outcome.stopped = true;
            return outcome;
        }
        const GridModel grid = scan(entry.directory);
        if (number > 0)
            lines << QStringLiteral("<br><hr size=\"10\">");
        ++number;
        lines << QStringLiteral("<a name=\"%1\"><h3 align=\"center\"></a><a href=\"#Top\">%2</a>&nbsp;%3&nbsp;[%1/%4] : %5 "
                                "%6 </h3>")
                     .arg(QString::number(number), headingImage, entry.title, QString::number(active),
                          QString::number(grid.rowCount()), DocumentsText(context));
        total += grid.rowCount();
        lines << ReportTableLines(grid, order, ReportOutputDirectory(entry.directory), context);
        if (c.displayDirectory && entry.title != entry.directory)
            lines << QStringLiteral("<div align=\"right\"><address>%1</address></div>")
                         .arg(LinkForPath(context.substitutions, entry.directory));
    }
    if (c.totalDocuments)
        lines << QStringLiteral("<hr>%1 = %2").arg(context.captions.text(caption::TotalDocuments)).arg(total);
    lines << FooterImageAndText(output, context) << QStringLiteral("</body>") << QStringLiteral("</html>");
    if (onProgress)
        onProgress(ReportsListProgress{number, existing, QString()});
    // The older pages go only now that the new one is complete.
    DeleteOldReports(output, c, QStringLiteral("html"));
    outcome.error = WriteLines(outcome.path, lines);
    return outcome;
}

}  // namespace brindar
