// The long options of the brindar program.
#pragma once

#include <QString>
#include <QStringList>

namespace brindar {

enum class Command { Interactive, Open, Help, Version, ShowColumns, Scan, Report, BatchMode, Unknown };

struct CommandLine {
    Command command = Command::Interactive;
    QString unknownOption;
    QString directory;   // --open, --scan, --report
    QString reportKind;  // --report: html, csv, docx or list
};

// A first argument beginning with "--" is a long option and never batch mode.
CommandLine ParseCommandLine(const QStringList& arguments);

QString HelpText();
QString VersionText();

}  // namespace brindar
