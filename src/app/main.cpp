// The brindar program: the window, the long options and the batch mode.
#include "app/commandline.h"
#include "core/captionids.h"
#include "core/configurationfiles.h"
#include "core/session.h"
#include "export/batchmode.h"
#include "platform/filenames.h"
#include "platform/folders.h"
#include "platform/systeminfo.h"
#include "platform/terminal.h"
#include "readers/readertable.h"
#include "reports/csvreport.h"
#include "reports/docxreport.h"
#include "reports/htmlreport.h"
#include "scan/directoryscan.h"
#include "scan/gridmodel.h"
#include "ui/application.h"
#include "version.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTextStream>

using namespace brindar;

namespace {

int ShowColumns(QTextStream& out)
{
    const Session session = StartSession(SettingsFolder(), DataFolder(), CurrentSystem());
    out << "Settings folder: " << session.settingsFolder << '\n';
    out << "Configuration:   " << session.chooser.nom << " (" << session.configurationPath << ")\n";
    out << "Language:        " << session.configuration.langue << '\n';
    out << "Directory:       " << session.configuration.repertoire << '\n';
    out << "Columns:         " << session.columns.columns.size() << '\n';
    for (int i = 0; i < session.columns.columns.size(); ++i) {
        const Column& column = session.columns.columns[i];
        out << QStringLiteral("  %1  %2 %3%4\n")
                   .arg(i, 2)
                   .arg(column.code.isEmpty() ? QStringLiteral("   ") : column.code, -4)
                   .arg(column.caption)
                   .arg(column.numeric ? QStringLiteral("  (numeric)") : QString());
    }
    out << "Column codes:    " << session.columns.codeList << '\n';
    QStringList readers;
    const unsigned filling = ReadersFilling(session.columns);
    for (const ReaderInfo& reader : Readers())
        if (filling & reader.bit)
            readers << QLatin1String(reader.name);
    out << "Readers:         " << (readers.isEmpty() ? QStringLiteral("none") : readers.join(u", ")) << '\n';
    out << "Languages:       " << OfferedLanguages(session.settingsFolder, session.dataFolder).join(u", ") << '\n';
    return 0;
}

// A cell on one line of tab-separated text.
QString Escaped(QString cell)
{
    return cell.replace(u'\\', QStringLiteral("\\\\"))
        .replace(u'\t', QStringLiteral("\\t"))
        .replace(u'\r', QStringLiteral("\\r"))
        .replace(u'\n', QStringLiteral("\\n"));
}

// The folder the user named becomes the configuration's "Repertoire", as a folder shown
// in the window does; a setting that cannot be saved is said, and the work goes on.
void RememberFolder(Session& session, const QString& folder, QTextStream& err)
{
    if (auto error = session.write(SettingsChange().set(key::Repertoire, folder)))
        err << *error << '\n';
}

int Scan(const QString& directory, QTextStream& out, QTextStream& err)
{
    Session session = StartSession(SettingsFolder(), DataFolder(), CurrentSystem());
    const QString folder = QDir::cleanPath(QDir(directory).absolutePath());
    RememberFolder(session, folder, err);
    QStringList captions;
    for (const Column& column : session.columns.columns)
        captions << Escaped(column.header.trimmed());
    out << captions.join(u'\t') << '\n';

    auto print = [&](const GridRow& row) {
        QStringList cells;
        for (const QString& cell : row.cells)
            cells << Escaped(cell);
        out << cells.join(u'\t') << '\n';
    };
    // Rows go out as they come, unless the configuration sorts the grid: the saved sort
    // needs them all.
    const bool sorted = session.configuration.sort.has_value();
    GridModel grid(session.columns, session.configuration);
    const bool progress = StandardErrorIsTerminal();
    ScanCallbacks callbacks;
    callbacks.onRows = [&](const QList<GridRow>& rows) {
        if (sorted)
            grid.appendRows(rows);
        else
            for (const GridRow& row : rows)
                print(row);
    };
    if (progress)
        callbacks.onProgress = [&, shown = 0](const ScanProgress& p) mutable {
            if (p.done - shown < 97 && p.done != p.total)
                return;
            shown = p.done;
            err << QStringLiteral("\r%1/%2 %3\x1b[K").arg(p.done).arg(p.total).arg(p.name.left(60)) << Qt::flush;
        };
    const ScanResult result = ScanDirectory(session, ScanRequest{folder, false, 0}, callbacks);
    if (sorted) {
        grid.applySavedSort();
        for (int row = 0; row < grid.rowCount(); ++row)
            print(grid.row(row));
    }
    out.flush();
    if (progress)
        err << "\r\x1b[K";
    for (const QString& message : result.messages)
        err << message << '\n';
    if (!result.listed) {
        err << session.captions.text(caption::DirectoryNotFound) << ' ' << folder << '\n';
        return 2;
    }
    if (!result.cacheStatus.isEmpty())
        err << result.cacheStatus << '\n';
    err << CountsText(session.captions, result.files, result.documents) << '\n';
    return 0;
}

// A report from the command line, for scripts: scan, delete older reports of the prefix,
// write, print the path. Nothing is asked and nothing is opened.
int Report(const QString& kind, const QString& directory, QTextStream& out, QTextStream& err)
{
    Session session = StartSession(SettingsFolder(), DataFolder(), CurrentSystem());
    const ReportContext context = ReportContextOf(session);
    const QList<int>& order = session.columns.htmlOrder;
    const auto scan = [&](const QString& folder) {
        ScanResult result;
        GridModel grid = ScanIntoGrid(session, folder, &result);
        for (const QString& message : result.messages)
            err << message << '\n';
        return grid;
    };

    ReportOutcome outcome;
    if (kind == u"list") {
        outcome = WriteReportsListPage(context.reportsList, order, context, scan);
    } else {
        const QString folder = QDir::cleanPath(QDir(directory).absolutePath());
        if (!IsDirectory(folder)) {
            err << session.captions.text(caption::DirectoryNotFound) << ' ' << folder << '\n';
            return 2;
        }
        RememberFolder(session, folder, err);
        const GridModel grid = scan(folder);
        if (kind == u"html") {
            outcome = WriteHtmlReport(grid, order, folder, context);
        } else if (kind == u"csv") {
            outcome = WriteCsvReport(grid, order, folder, context);
        } else {
            outcome = WriteWordReport(grid, order, folder, context);
        }
    }
    if (outcome.error) {
        err << MessageTitle() << ": " << *outcome.error << '\n';
        return 2;
    }
    out << outcome.path << '\n';
    return 0;
}

int BatchMode(const QStringList& arguments, QTextStream& err)
{
    const Session session = StartSession(SettingsFolder(), DataFolder(), CurrentSystem());
    const bool progress = StandardErrorIsTerminal();
    BatchCallbacks callbacks;
    callbacks.onMessage = [&](const QString& title, const QString& text) {
        if (progress)
            err << "\r\x1b[K";
        err << title << ": " << QString(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")) << '\n'
            << Qt::flush;
    };
    if (progress)
        callbacks.onProgress = [&, shown = 0](const XmlExportProgress& p) mutable {
            if (p.files - shown < 97 && !p.file.isEmpty())
                return;
            shown = p.files;
            err << QStringLiteral("\r%1 folders, %2 files  %3\x1b[K")
                       .arg(p.directories)
                       .arg(p.files)
                       .arg((p.file.isEmpty() ? p.directory : p.file).left(60))
                << Qt::flush;
        };
    const int status = RunBatchMode(RebuildCommandLine(arguments.mid(1)), session, callbacks);
    if (progress)
        err << "\r\x1b[K" << Qt::flush;
    return status;
}

}  // namespace

// A first start of the window or of any command gets the starter configuration.
void CreateStarterConfigurationIfNone()
{
    QString locale;
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
        if (locale = qEnvironmentVariable(variable); !locale.isEmpty())
            break;
    CreateStarterConfiguration(SettingsFolder(), DataFolder(), locale);
}

// The window needs a display; without one, Qt would abort with a message about plugins.
bool HasDisplay()
{
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (!qEnvironmentVariableIsEmpty(variable))
            return true;
    return false;
}

int Window(int& argc, char** argv, const QString& directory)
{
    if (!HasDisplay()) {
        QTextStream(stderr) << "brindar: no display; see brindar --help for the command-line modes\n";
        return 1;
    }
    CreateStarterConfigurationIfNone();
    const QString folder = directory.isEmpty() ? QString() : QDir::cleanPath(QDir(directory).absolutePath());
    return RunWindow(argc, argv, folder);
}

int main(int argc, char* argv[])
{
    // The arguments as their bytes say: a folder whose name is not UTF-8 is still found.
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << DecodeFileName(argv[i]);
    const CommandLine line = ParseCommandLine(arguments);
    if (line.command == Command::Interactive || line.command == Command::Open)
        return Window(argc, argv, line.directory);

    // Every other mode runs without a display.
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("brindar-pro"));
    QTextStream out(stdout);
    QTextStream err(stderr);
    if (line.command != Command::Help && line.command != Command::Version)
        CreateStarterConfigurationIfNone();
    switch (line.command) {
    case Command::Help:
        out << HelpText();
        return 0;
    case Command::Version:
        out << VersionText() << '\n';
        return 0;
    case Command::Interactive:
    case Command::Open:
        return 1;
    case Command::ShowColumns:
        return ShowColumns(out);
    case Command::Scan:
        return Scan(line.directory, out, err);
    case Command::Report:
        return Report(line.reportKind, line.directory, out, err);
    case Command::BatchMode:
        return BatchMode(arguments, err);
    case Command::Unknown:
        err << "brindar: unknown option " << line.unknownOption << "; see brindar --help\n";
        return 1;
    }
    return 1;
}
