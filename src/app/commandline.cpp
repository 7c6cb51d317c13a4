// Long options and the texts of --help and --version.
#include "app/commandline.h"

#include "version.h"

namespace brindar {

CommandLine ParseCommandLine(const QStringList& arguments)
{
    CommandLine line;
    if (arguments.size() <= 1)
        return line;
    const QString first = arguments.at(1);
    if (!first.startsWith(u"--")) {
        line.command = Command::BatchMode;
        return line;
    }
    if (first == u"--open" && arguments.size() <= 3) {
        line.command = Command::Open;
        line.directory = arguments.value(2);
    } else if (first == u"--open") {
        line.command = Command::Unknown;
        line.unknownOption = arguments.at(3);
    } else if (first == u"--scan" && arguments.size() == 3) {
        line.command = Command::Scan;
        line.directory = arguments.at(2);
    } else if (first == u"--report" && arguments.size() == 4
               && QStringList{QStringLiteral("html"), QStringLiteral("csv"), QStringLiteral("docx")}.contains(arguments.at(2))) {
        line.command = Command::Report;
        line.reportKind = arguments.at(2);
        line.directory = arguments.at(3);
    } else if (first == u"--report" && arguments.size() == 3 && arguments.at(2) == u"list") {
        line.command = Command::Report;
        line.reportKind = arguments.at(2);
    } else if (first == u"--report") {
        line.command = Command::Unknown;
        line.unknownOption = arguments.mid(1).join(u' ');
    } else if (arguments.size() > 2) {
        line.command = Command::Unknown;
        line.unknownOption = arguments.at(2);
    } else if (first == u"--help") {
        line.command = Command::Help;
    } else if (first == u"--version") {
        line.command = Command::Version;
    } else if (first == u"--show-columns") {
        line.command = Command::ShowColumns;
    } else {
        line.command = Command::Unknown;
        line.unknownOption = first;
    }
    return line;
}

QString VersionText()
{
    return QStringLiteral("%1 %2").arg(QLatin1String(kProgramTitle), QLatin1String(kProgramVersion));
}

QString HelpText()
{
    return VersionText() + QString::fromUtf8(R"( - the metadata of every file of a folder, in one grid

Usage:
  brindar                      open the window on the folder shown last
  brindar --open [DIR]         open the window on DIR
  brindar -d DIR -x FILE [-o LETTERS] [-t XSL -h OUTPUT]
                               batch mode: write the XML export of DIR to FILE and,
                               with -t and -h, transform it with an XSL file
  brindar --show-columns       print the columns of the configuration in use
  brindar --scan DIR           scan DIR with the configuration in use (metadata cache
                               included) and print the grid as tab-separated UTF-8:
                               the captions, then one line per file; a tab, CR, LF or
                               backslash inside a cell is written \t, \r, \n, \\
  brindar --report html|csv|docx DIR
                               scan DIR with the configuration in use and write that
                               report into DIR (older reports of the prefix go first);
                               prints the report's path
  brindar --report list        write the page of the current reports list into the
                               configuration's PathListeTableaux; prints its path
  brindar --help               print this help
  brindar --version            print the program title and version

Batch-mode options (case-sensitive; a value holding blanks goes between double quotes):
  -d DIR      the directory to analyse (required)
  -x FILE     the XML output file, with its folder (required)
  -o LETTERS  the families to export: M Office documents and HTML pages, O OpenOffice,
              P PDF, I IPTC, X XMP (default: all five)
  -t XSL      an XSL transformation to apply to the XML file
  -h OUTPUT   the transformed output file, with its folder (with -t)
The batch mode writes its log to "Brindar Pro Log.htm" in the settings folder and exits
with 0 on success, 1 when an option is refused and 2 when the transformation fails.

Folders:
  settings    $BRINDAR_HOME, else the program's folder when it holds
              ChoixConfiguration.ini, else $XDG_CONFIG_HOME/brindar-pro
              (~/.config/brindar-pro)
  shipped     $BRINDAR_DATA, else share/brindar-pro beside the program's folder;
              its xsl/ folder holds the stylesheets that come with the program
)");
}

}  // namespace brindar
