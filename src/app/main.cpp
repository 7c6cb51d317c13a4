// The brindar program: long options, batch mode, and (later) the window.
#include "app/commandline.h"
#include "core/session.h"
#include "platform/folders.h"
#include "platform/systeminfo.h"

#include <QCoreApplication>
#include <QTextStream>

using namespace brindar;

namespace {

const char* ReaderName(unsigned bit)
{
    switch (bit) {
    case kReaderOpenOffice: return "OpenOffice";
    case kReaderHtml: return "HTML";
    case kReaderPdf: return "PDF";
    case kReaderIptc: return "IPTC";
    case kReaderXmp: return "XMP";
    }
    return "?";
}

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
    for (unsigned bit = kReaderOpenOffice; bit <= kReaderXmp; bit <<= 1)
        if (session.columns.readerFlags & bit)
            readers << QLatin1String(ReaderName(bit));
    out << "Readers:         " << (readers.isEmpty() ? QStringLiteral("none") : readers.join(u", ")) << '\n';
    out << "Languages:       " << OfferedLanguages(session.settingsFolder, session.dataFolder).join(u", ") << '\n';
    return 0;
}

}  // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("brindar-pro"));
    QTextStream out(stdout);
    QTextStream err(stderr);

    const CommandLine line = ParseCommandLine(QCoreApplication::arguments());
    switch (line.command) {
    case Command::Help:
        out << HelpText();
        return 0;
    case Command::Version:
        out << VersionText() << '\n';
        return 0;
    case Command::Interactive:
    case Command::ShowColumns:
        return ShowColumns(out);
    case Command::BatchMode:
        err << "brindar: the batch mode is not available in this release; see brindar --help\n";
        return 1;
    case Command::Unknown:
        err << "brindar: unknown option " << line.unknownOption << "; see brindar --help\n";
        return 1;
    }
    return 1;
}
