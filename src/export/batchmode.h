// The batch mode: an XML export (and optionally its transformation) run from the command
// line, with a log page, and no question asked.
#pragma once

#include "core/session.h"
#include "export/xmlexport.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace brindar {

// The arguments joined by single blanks, an empty argument or one holding white space (a
// blank, a tab, a line break) put between double quotes, so that the option grammar reads
// them as typed.
QString RebuildCommandLine(const QStringList& arguments);

// The value of the option " -<letter>" (case-sensitive, first occurrence) in the
// trimmed command line: up to the next blank, or between double quotes (empty without a
// closing quote). Nothing when the option is absent.
std::optional<QString> CommandLineOption(const QString& commandLine, char letter);

// A path split at its last "/": the folder before it (the root "/" for "/name") and the
// name after it. No "/" at all gives nothing.
struct SplitPath {
    QString folder;
    QString name;
};
std::optional<SplitPath> SplitAtLastSlash(const QString& path);

// The families of -o: M Office and HTML, O OpenOffice, P PDF, I IPTC, X XMP; every
// letter absent switches its family off; other characters are ignored.
XmlFamilies FamiliesOfLetters(const QString& letters);

enum BatchExit { kBatchDone = 0, kBatchInvalid = 1, kBatchTransformFailed = 2 };

struct BatchCallbacks {
    // A message the user must see: the caller prints "<title>: <text>".
    std::function<void(const QString& title, const QString& text)> onMessage;
    std::function<void(const XmlExportProgress&)> onProgress;
    // The clock, so that the log and the document head can be checked.
    std::function<QDateTime()> now = [] { return QDateTime::currentDateTime(); };
};

// Runs the batch mode on `commandLine` (already rebuilt from the arguments) with the
// session's captions and configuration, writing the log page "Brindar Pro Log.htm" in
// the settings folder. Returns the exit status.
int RunBatchMode(const QString& commandLine, const Session& session, const BatchCallbacks& callbacks);

}  // namespace brindar
