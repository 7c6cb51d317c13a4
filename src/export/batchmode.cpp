// The batch mode: option grammar, validation, export, transformation and log page.
#include "export/batchmode.h"

#include "core/atomicfile.h"
#include "core/captionids.h"
#include "core/codepage.h"
#include "core/paths.h"
#include "export/xsltransform.h"
#include "platform/filenames.h"
#include "version.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <algorithm>

namespace brindar {

namespace {

// The log page, rewritten whole after every line so that it always tells how far the
// run went, even when the program is killed half-way.
class BatchLog {
public:
    BatchLog(const QString& path, const std::function<void(const QString&, const QString&)>& onMessage,
             const Captions& captions)
        : path_(path), onMessage_(onMessage), captions_(captions)
    {
        QFile::remove(path_);
    }

    void add(const QString& line)
    {
        lines_.append(line);
        save();
    }

    // The end of a run that went through: the page is closed.
    void close()
    {
        lines_.append(QStringLiteral("</body>"));
        lines_.append(QStringLiteral("</html>"));
        save();
    }

private:
    void save()
    {
        if (failed_)
            return;
        QByteArray bytes;
        for (const QString& line : std::as_const(lines_))
            bytes += EncodeWin1252(line) + "\r\n";
        if (const auto error = WriteFileAtomically(path_, bytes)) {
            failed_ = true;  // said once; the run itself goes on
            if (onMessage_)
                onMessage_(MessageTitle(), captions_.text(caption::UnableToWriteLog) + QStringLiteral("\r\n") + *error);
        }
    }

    QString path_;
    std::function<void(const QString&, const QString&)> onMessage_;
    const Captions& captions_;
    QStringList lines_;
    bool failed_ = false;
};

QString LogTime(const QDateTime& now)
{
    return now.time().toString(QStringLiteral("HH:mm:ss"));
}

// A folder as the user gave it, made absolute so that every <fullname> can be opened;
// trailing "/" dropped (except for the root), which would otherwise give an empty name.
QString AnalysedFolder(const QString& directory)
{
    return QDir::cleanPath(QDir(directory).absolutePath());
}

}  // namespace

QString RebuildCommandLine(const QStringList& arguments)
{
    QStringList parts;
    for (const QString& argument : arguments) {
        // Not only blanks: the line is trimmed before it is read, so a tab or a line break
        // at either end of an unquoted value would be lost.
        const bool quoted =
            argument.isEmpty() || std::any_of(argument.begin(), argument.end(), [](QChar c) { return c.isSpace(); });
        parts.append(quoted ? u'"' + argument + u'"' : argument);
    }
    return parts.join(u' ');
}

std::optional<QString> CommandLineOption(const QString& commandLine, char letter)
{
    const QString text = u' ' + commandLine.trimmed();
    const QString option = QStringLiteral(" -") + QLatin1Char(letter);
    const qsizetype at = text.indexOf(option);
    if (at < 0)
        return std::nullopt;
    const QString rest = text.mid(at + option.size()).trimmed();
    if (rest.startsWith(u'"')) {
        const qsizetype close = rest.indexOf(u'"', 1);
        return close < 0 ? QString() : rest.mid(1, close - 1);
    }
    const qsizetype blank = rest.indexOf(u' ');
    return blank < 0 ? rest : rest.left(blank);
}

std::optional<SplitPath> SplitAtLastSlash(const QString& path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    if (slash < 0)
        return std::nullopt;
    return SplitPath{slash == 0 ? QStringLiteral("/") : path.left(slash), path.mid(slash + 1)};
}

XmlFamilies FamiliesOfLetters(const QString& letters)
{
    // Letters compared case-insensitively, not the text upper-cased: the dotless i (U+0131)
    // and the ligature fi (U+FB01) upper-case to texts holding "I", yet they are other
    // characters, which the option ignores.
    const auto has = [&](char16_t letter) { return letters.contains(QChar(letter), Qt::CaseInsensitive); };
    XmlFamilies families;
    families.office = has(u'M');
    families.openOffice = has(u'O');
    families.pdf = has(u'P');
    families.iptc = has(u'I');
    families.xmp = has(u'X');
    return families;
}

int RunBatchMode(const QString& commandLine, const Session& session, const BatchCallbacks& callbacks)
{
    const Captions& captions = session.captions;
    const QString line = commandLine.trimmed();
    BatchLog log(session.settingsFolder + QStringLiteral("/Brindar Pro Log.htm"), callbacks.onMessage, captions);
    const QDateTime started = callbacks.now();
    for (const char* text : {"<html>", "<head>", "<title>Log for Brindar Pro</title>", "</head>", "<body>"})
        log.add(QLatin1String(text));
    log.add(QStringLiteral("<center><h2>Log for Brindar Pro %1</h2></center><br>")
                .arg(QLocale::system().toString(started.date(), QLocale::ShortFormat)));
    log.add(QStringLiteral("command line: %1<br>").arg(line));

    // A failure ends the page after its message: the page tells where the run stopped.
    const auto fail = [&](const QString& title, const QString& message, int status) {
        if (callbacks.onMessage)
            callbacks.onMessage(title, message);
        log.add(message + QStringLiteral("<br>"));
        return status;
    };
    const auto invalid = [&](const CaptionId& id, const QString& detail = QString(), bool withDetail = true) {
        QString message = captions.text(id);
        if (withDetail)
            message += QStringLiteral("\r\n") + detail;
        return fail(MessageTitle(), message, kBatchInvalid);
    };
    const auto exists = [](const QString& path) { return !path.isEmpty() && PathExists(path); };

    const std::optional<QString> directory = CommandLineOption(line, 'd');
    if (!directory)
        return invalid(caption::MissingDirectoryOption, QString(), false);
    if (!exists(*directory))
        return invalid(caption::UnknownDirectory, *directory);
    const std::optional<QString> xmlPath = CommandLineOption(line, 'x');
    if (!xmlPath)
        return invalid(caption::MissingXmlOption, QString(), false);
    const std::optional<SplitPath> xml = SplitAtLastSlash(*xmlPath);
    if (!xml)
        return invalid(caption::InvalidXmlPath, *xmlPath);
    if (!exists(xml->folder))
        return invalid(caption::UnknownXmlFolder, xml->folder);
    if (HasForbiddenCharacters(xml->name))
        return invalid(caption::InvalidXmlName, xml->name);
    XmlExportOptions options;
    if (const auto letters = CommandLineOption(line, 'o'))
        options.families = FamiliesOfLetters(*letters);
    options.macintoshAccents = session.columns.macintoshAccents;
    options.nt = session.system.nt;
    options.localTime = session.configuration.localTime;
    const QString xslPath = CommandLineOption(line, 't').value_or(QString());
    if (!xslPath.isEmpty() && !exists(xslPath))
        return invalid(caption::UnknownXsl, xslPath);
    const QString outputPath = CommandLineOption(line, 'h').value_or(QString());
    std::optional<SplitPath> output;
    if (!outputPath.isEmpty()) {
        output = SplitAtLastSlash(outputPath);
        if (!output)
            return invalid(caption::InvalidOutputPath, outputPath);
        if (!exists(output->folder))
            return invalid(caption::UnknownOutputFolder, output->folder);
        if (HasForbiddenCharacters(output->name))
            return invalid(caption::InvalidOutputName, output->name);
    }

    log.add(QStringLiteral("start XML generation at %1<br>").arg(LogTime(callbacks.now())));
    const QString xmlFile = JoinPath(xml->folder, xml->name);
    const XmlExportResult exported =
        WriteXmlExport(AnalysedFolder(*directory), xmlFile, options, captions, callbacks.now(), callbacks.onProgress);
    for (const QString& message : exported.messages)
        if (callbacks.onMessage)
            callbacks.onMessage(MessageTitle(), message);
    if (exported.writeError)
        return invalid(caption::UnableToWriteXml, *exported.writeError);
    log.add(QStringLiteral("end XML generation at %1<br>").arg(LogTime(callbacks.now())));

    if (!xslPath.isEmpty() && output && !output->folder.isEmpty() && !output->name.isEmpty()) {
        log.add(QStringLiteral("start XSL transformation at %1<br>").arg(LogTime(callbacks.now())));
        const QString outputFile = JoinPath(output->folder, output->name);
        QFile::remove(outputFile);
        if (const auto failure = TransformXmlFile(xslPath, xmlFile, outputFile, captions))
            return fail(failure->title, failure->text, kBatchTransformFailed);
        log.add(QStringLiteral("end XSL transformation at %1<br>").arg(LogTime(callbacks.now())));
    }
    log.close();
    return kBatchDone;
}

}  // namespace brindar
