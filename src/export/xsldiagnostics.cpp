// The XSL step's diagnostics: error capture per thread, document texts, the first error in words.
#include "export/xsldiagnostics.h"

#include "core/codepage.h"
#include "platform/filenames.h"

#include <libxml/globals.h>

#include <QFile>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QStringList>
#include <QUrl>

#include <cstdarg>
#include <cstdio>

namespace brindar {
namespace {

// The libraries' error callbacks of this thread write here: libxml2 keeps its handlers per
// thread, and libxslt's one process-wide handler (for stylesheet compilation) forwards to
// this pointer, so two transformations on two threads never mix their errors.
thread_local ErrorCapture* t_capture = nullptr;

QString Format(const char* format, va_list arguments)
{
    va_list copy;
    va_copy(copy, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    if (length <= 0)
        return {};
    QByteArray buffer(length + 1, '\0');
    std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    buffer.truncate(length);
    return QString::fromUtf8(buffer);
}

QString DomainWords(int domain)
{
    switch (domain) {
    case XML_FROM_PARSER: return QStringLiteral("XML parser error");
    case XML_FROM_NAMESPACE: return QStringLiteral("XML namespace error");
    case XML_FROM_DTD:
    case XML_FROM_VALID: return QStringLiteral("DTD validation error");
    case XML_FROM_IO: return QStringLiteral("I/O error");
    case XML_FROM_I18N: return QStringLiteral("character conversion error");
    case XML_FROM_XPATH: return QStringLiteral("XPath error");
    case XML_FROM_XSLT: return QStringLiteral("XSLT error");
    default: return QStringLiteral("libxml2 error");
    }
}

// The line of the parser's buffer holding its cursor (the buffer is UTF-8 whatever the
// document's encoding). Only when the error is the parser's own, at the cursor's line.
QString ParserBufferLine(const xmlParserCtxt* parser, int line)
{
    const xmlParserInput* input = parser ? parser->input : nullptr;
    if (!input || !input->base || !input->cur || !input->end || input->cur < input->base ||
        input->cur > input->end || input->line != line)
        return {};
    const xmlChar* start = input->cur;
    while (start > input->base && start[-1] != '\n')
        --start;
    const xmlChar* stop = input->cur;
    while (stop < input->end && *stop != '\n' && *stop != '\r')
        ++stop;
    return QString::fromUtf8(reinterpret_cast<const char*>(start), stop - start);
}

// xmlStructuredErrorFunc takes a const pointer from libxml2 2.12 on; deduced either way.
template <typename ErrorPointer>
void OnStructuredError(void* context, ErrorPointer error)
{
    auto* capture = static_cast<ErrorCapture*>(context);
    if (!capture || !error)
        return;
    // Warnings do not fail a load; "no DTD found" only says the document has no DTD.
    if (error->level < XML_ERR_ERROR || error->code == XML_DTD_NO_DTD)
        return;
    Diagnostic diagnostic;
    diagnostic.origin = Origin::Structured;
    diagnostic.kind = DomainWords(error->domain) + QLatin1Char(' ') + QString::number(error->code);
    diagnostic.text = QString::fromUtf8(error->message).trimmed();
    diagnostic.file = QString::fromUtf8(error->file);
    diagnostic.line = error->line;
    diagnostic.column = error->int2;
    if (capture->parser && error->ctxt == capture->parser && error->domain != XML_FROM_VALID)
        diagnostic.sourceLine = ParserBufferLine(capture->parser, error->line);
    capture->add(std::move(diagnostic));
}

void OnLibraryMessage(void* context, const char* format, ...)
{
    auto* capture = static_cast<ErrorCapture*>(context);
    if (!capture || !format)
        return;
    va_list arguments;
    va_start(arguments, format);
    const QString text = Format(format, arguments);
    va_end(arguments);
    // libxml2 sometimes writes one message in pieces: a piece continues an unfinished line.
    if (!capture->diagnostics.empty() && capture->diagnostics.back().origin == Origin::Library &&
        !capture->diagnostics.back().text.endsWith(QLatin1Char('\n'))) {
        capture->diagnostics.back().text += text;
        return;
    }
    if (text.trimmed().isEmpty())
        return;
    capture->add({Origin::Library, QStringLiteral("libxml2 error"), text, {}, 0, 0, {}});
}

// Names under which a document declares the character set that our exports use. Our
// exports hold Windows-1252 bytes under "ISO-8859-1", so these documents are read through
// our own Windows-1252 table (libxml2 alone would turn the euro sign into a control
// character, and iconv rejects the five unassigned bytes).
bool IsWindows1252Family(const QByteArray& name)
{
    static const char* const kNames[] = {"ISO-8859-1", "ISO_8859-1", "ISO8859-1", "ISO_8859-1:1987", "ISO-IR-100",
                                         "LATIN1",     "L1",         "CP819",     "IBM819",          "CSISOLATIN1",
                                         "WINDOWS-1252", "CP1252"};
    const QByteArray upper = name.toUpper();
    for (const char* known : kNames)
        if (upper == known)
            return true;
    return false;
}

bool IsUtf8Family(const QByteArray& name)
{
    const QByteArray upper = name.toUpper();
    return upper.isEmpty() || upper == "UTF-8" || upper == "UTF8" || upper == "US-ASCII" || upper == "ASCII";
}

// The encoding named by the XML declaration, empty when there is none.
QByteArray DeclaredEncoding(const QByteArray& bytes)
{
    const int start = bytes.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    if (bytes.mid(start, 5) != "<?xml")
        return {};
    const int end = bytes.indexOf("?>", start);
    if (end < 0 || end - start > 1024)
        return {};
    thread_local const QRegularExpression encoding(QStringLiteral("\\sencoding\\s*=\\s*([\"'])([A-Za-z0-9._:-]+)\\1"));
    const QRegularExpressionMatch match = encoding.match(QString::fromLatin1(bytes.mid(start, end - start)));
    return match.hasMatch() ? match.captured(2).toLatin1() : QByteArray();
}

// Line `line` (1-based, as libxml2 counts: at each line feed) of a text, without its CR.
QString LineOfText(const QString& text, int line)
{
    if (line <= 0)
        return {};
    qsizetype start = 0;
    for (int current = 1; current < line; ++current) {
        start = text.indexOf(QLatin1Char('\n'), start);
        if (start < 0)
            return {};
        ++start;
    }
    qsizetype stop = text.indexOf(QLatin1Char('\n'), start);
    if (stop < 0)
        stop = text.size();
    if (stop > start && text.at(stop - 1) == QLatin1Char('\r'))
        --stop;
    return text.mid(start, stop - start);
}

}  // namespace

// libxslt writes each error as two texts: a context line "compilation error: file F line
// N element E" (or "runtime error: ..."; parts may be missing), then the message. A text
// without a context line is what xsl:message wrote.
void OnXsltMessage(void* context, const char* format, ...)
{
    auto* capture = context ? static_cast<ErrorCapture*>(context) : t_capture;
    if (!capture || !format)
        return;
    va_list arguments;
    va_start(arguments, format);
    const QString text = Format(format, arguments);
    va_end(arguments);

    // One per thread: a QRegularExpression compiles its pattern lazily on first use.
    thread_local const QRegularExpression contextLine(QStringLiteral(
        "^(compilation error|runtime error)(?:: (?:file (\\S+) ?)?(?:line (\\d+) ?)?(?:element (\\S+))?)?\\n$"));
    const QRegularExpressionMatch match = contextLine.match(text);
    if (match.hasMatch()) {
        Diagnostic diagnostic;
        diagnostic.origin = Origin::Xslt;
        diagnostic.kind = QStringLiteral("XSLT ") + match.captured(1);
        diagnostic.file = match.captured(2);
        diagnostic.line = match.captured(3).toInt();
        // libxml2 keeps no column for an element: 0, as for any error without a position.
        capture->add(std::move(diagnostic));
        capture->xsltContextPending = true;
        return;
    }
    if (capture->xsltContextPending) {
        capture->xsltContextPending = false;
        if (!capture->diagnostics.empty() && capture->diagnostics.back().origin == Origin::Xslt) {
            capture->diagnostics.back().text = text.trimmed();
            return;
        }
    }
    if (text.trimmed().isEmpty())
        return;
    capture->lastMessage = Diagnostic{Origin::Message, QStringLiteral("XSLT transformation stopped by xsl:message"),
                                      text.trimmed(), {}, 0, 0, {}};
}

CaptureScope::CaptureScope(ErrorCapture& capture)
    : previousCapture_(t_capture),
      previousStructured_(xmlStructuredError),
      previousStructuredContext_(xmlStructuredErrorContext),
      previousGeneric_(xmlGenericError),
      previousGenericContext_(xmlGenericErrorContext)
{
    t_capture = &capture;
    xmlSetStructuredErrorFunc(&capture, OnStructuredError);
    xmlSetGenericErrorFunc(&capture, OnLibraryMessage);
}

CaptureScope::~CaptureScope()
{
    xmlSetGenericErrorFunc(previousGenericContext_, previousGeneric_);
    xmlSetStructuredErrorFunc(previousStructuredContext_, previousStructured_);
    t_capture = previousCapture_;
}

DocumentBytes PrepareDocument(const QByteArray& bytes)
{
    DocumentBytes prepared;
    prepared.parserInput = bytes;
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        QStringDecoder decoder(bytes.startsWith("\xFF\xFE") ? QStringConverter::Utf16LE : QStringConverter::Utf16BE,
                               QStringConverter::Flag::Default);
        prepared.text = decoder.decode(bytes.mid(2));
        return prepared;
    }
    const bool utf8Mark = bytes.startsWith("\xEF\xBB\xBF");
    const QByteArray encoding = DeclaredEncoding(bytes);
    if (!utf8Mark && IsWindows1252Family(encoding)) {
        prepared.text = DecodeWin1252(bytes);
        prepared.parserInput = prepared.text->toUtf8();
        prepared.convertedToUtf8 = true;
    } else if (utf8Mark || IsUtf8Family(encoding)) {
        prepared.text = QString::fromUtf8(utf8Mark ? bytes.mid(3) : bytes);
    }
    return prepared;
}

QString SourceTexts::line(const QString& url, int line)
{
    if (url.isEmpty() || line <= 0)
        return {};
    auto found = texts_.find(url);
    if (found == texts_.end()) {
        // A stylesheet that xsl:import or xsl:include brought in: read it for the message.
        // A regular file only: a device or a pipe the stylesheet names ("/dev/zero") has no
        // size to check and would be read without end.
        const QUrl parsed(url);
        QFile file;
        std::optional<QString> text;
        if (OpenForReading(file, parsed.isLocalFile() ? parsed.toLocalFile() : url) && file.size() < 64 * 1024 * 1024)
            text = PrepareDocument(file.readAll()).text;
        found = texts_.emplace(url, text).first;
    }
    return found->second ? LineOfText(*found->second, line) : QString();
}

// There is no run-time error description of a COM object here. Our error description is
// the kind of the first error that has a position, in words ("XML parser error 76",
// "DTD validation error 504", "XSLT compilation error", "XSLT runtime error"); the reason
// is its message, preceded by the messages reported before it (for example the XPath
// error behind libxslt's "could not compile select expression"), so nothing the libraries
// said about the cause is lost. A transformation stopped by xsl:message terminate="yes"
// reports that message.
ErrorReport Summarize(const ErrorCapture& capture, SourceTexts& sources, const QString& fallbackKind,
                      const QString& fallbackReason)
{
    ErrorReport report;
    const std::vector<Diagnostic>& errors = capture.diagnostics;
    if (errors.empty()) {
        if (capture.lastMessage) {
            report.description = capture.lastMessage->kind;
            report.reason = capture.lastMessage->text;
        } else {
            report.description = fallbackKind;
            report.reason = fallbackReason;
        }
        return report;
    }
    std::size_t located = errors.size();
    for (std::size_t i = 0; i < errors.size(); ++i)
        if (errors[i].line > 0) {
            located = i;
            break;
        }
    const std::size_t last = located < errors.size() ? located : errors.size() - 1;
    QStringList reasons;
    for (std::size_t i = 0; i <= last; ++i) {
        const QString text = errors[i].text.trimmed();
        if (!text.isEmpty() && !reasons.contains(text))
            reasons << text;
    }
    report.reason = reasons.join(QStringLiteral("; "));
    if (located == errors.size()) {
        report.description = errors.front().kind;
        return report;
    }
    const Diagnostic& at = errors[located];
    report.description = at.kind;
    report.line = at.line;
    report.column = at.column;
    report.sourceText = sources.line(at.file, at.line);
    if (report.sourceText.isEmpty())
        report.sourceText = at.sourceLine;
    return report;
}

}  // namespace brindar
