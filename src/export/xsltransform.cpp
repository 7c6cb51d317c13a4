// The XSL step with libxml2 and libxslt: loads both documents, transforms, writes, and words the first error.
#include "export/xsltransform.h"

#include "core/atomicfile.h"
#include "core/codepage.h"
#include "version.h"

#include <libxml/globals.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>
#include <libxslt/documents.h>
#include <libxslt/extensions.h>
#include <libxslt/extra.h>
#include <libxslt/security.h>
#include <libxslt/transform.h>
#include <libxslt/xslt.h>
#include <libxslt/xsltInternals.h>
#include <libxslt/xsltutils.h>

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QUrl>

#include <climits>
#include <cstdarg>
#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <variant>
#include <vector>

namespace brindar {
namespace {

const QString kCrLf = QStringLiteral("\r\n");

// Validation on load: the entities are replaced and the DTD's default attributes added as
// the transformation expects them; DTD validity is checked, and its "no DTD found" error
// dropped, so a document without a DTD is only checked for well-formedness. Never the
// network; no XML_PARSE_HUGE, so libxml2 keeps its limits on depth, text size and
// entity expansion.
constexpr int kLoadOptions =
    XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_DTDLOAD | XML_PARSE_DTDATTR | XML_PARSE_NOCDATA | XML_PARSE_DTDVALID;
// Documents that the stylesheet loads itself (document(), xsl:import, xsl:include).
constexpr int kReferencedDocumentOptions =
    XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_DTDLOAD | XML_PARSE_DTDATTR | XML_PARSE_NOCDATA;

// At most this many errors are kept per step: the first ones say what went wrong.
constexpr std::size_t kMaxDiagnostics = 64;

// ---------------------------------------------------------------------------------------
// Errors of one step, gathered from the libraries' callbacks instead of their stderr output.

enum class Origin {
    Structured,  // a libxml2 error with domain and code (parser, validity, XPath ...)
    Library,     // a libxml2 message without structure
    Xslt,        // a libxslt error, after its "compilation error: file ... line ..." context
    Message,     // text of xsl:message (libxslt gives it no context line)
};

struct Diagnostic {
    Origin origin = Origin::Library;
    QString kind;  // the kind of error in words, our error description
    QString text;  // the library's message, our reason
    QString file;  // URL of the document at fault, when known
    int line = 0;
    int column = 0;
    QString sourceLine;  // the line as libxml2 held it, for documents we cannot decode ourselves
};

struct ErrorCapture {
    std::vector<Diagnostic> diagnostics;
    std::optional<Diagnostic> lastMessage;  // only the last xsl:message matters (terminate="yes")
    bool xsltContextPending = false;
    xmlParserCtxtPtr parser = nullptr;  // the parser at work, for the buffer fallback

    void add(Diagnostic diagnostic)
    {
        if (diagnostics.size() < kMaxDiagnostics)
            diagnostics.push_back(std::move(diagnostic));
    }
    void clear()
    {
        diagnostics.clear();
        lastMessage.reset();
        xsltContextPending = false;
    }
    bool hasErrors() const { return !diagnostics.empty(); }
};

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

// Installs this thread's libxml2 handlers for one step and puts back the previous ones.
class CaptureScope {
public:
    explicit CaptureScope(ErrorCapture& capture)
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
    ~CaptureScope()
    {
        xmlSetGenericErrorFunc(previousGenericContext_, previousGeneric_);
        xmlSetStructuredErrorFunc(previousStructuredContext_, previousStructured_);
        t_capture = previousCapture_;
    }
    CaptureScope(const CaptureScope&) = delete;
    CaptureScope& operator=(const CaptureScope&) = delete;

private:
    ErrorCapture* previousCapture_;
    xmlStructuredErrorFunc previousStructured_;
    void* previousStructuredContext_;
    xmlGenericErrorFunc previousGeneric_;
    void* previousGenericContext_;
};

// ---------------------------------------------------------------------------------------
// One-time set-up of the libraries.

xsltDocLoaderFunc g_libraryLoader = nullptr;

// Stylesheets that xsl:import or xsl:include name, and documents of document(), never come
// from the network either.
xmlDocPtr LoadReferencedDocument(const xmlChar* uri, xmlDictPtr dict, int options, void* context, xsltLoadType type)
{
    return g_libraryLoader(uri, dict, (options | XML_PARSE_NONET) & ~XML_PARSE_HUGE, context, type);
}

void InitializeLibraries()
{
    static std::once_flag once;
    std::call_once(once, [] {
        xmlInitParser();
        xsltInit();
        xsltSetGenericErrorFunc(nullptr, OnXsltMessage);
        g_libraryLoader = xsltDocDefaultLoader;
        xsltSetLoaderFunc(LoadReferencedDocument);
        // Stylesheets written for the Windows program's parser use msxsl:node-set().
        xsltRegisterExtModuleFunction(reinterpret_cast<const xmlChar*>("node-set"),
                                      reinterpret_cast<const xmlChar*>("urn:schemas-microsoft-com:xslt"),
                                      xsltFunctionNodeSet);
    });
}

struct DocFree {
    void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
};
struct ParserFree {
    void operator()(xmlParserCtxt* parser) const { xmlFreeParserCtxt(parser); }
};
struct StylesheetFree {
    void operator()(xsltStylesheet* style) const { xsltFreeStylesheet(style); }
};
struct TransformFree {
    void operator()(xsltTransformContext* context) const { xsltFreeTransformContext(context); }
};
struct SecurityFree {
    void operator()(xsltSecurityPrefs* prefs) const { xsltFreeSecurityPrefs(prefs); }
};
using DocPtr = std::unique_ptr<xmlDoc, DocFree>;
using StylesheetPtr = std::unique_ptr<xsltStylesheet, StylesheetFree>;

// ---------------------------------------------------------------------------------------
// Documents: bytes, the text we can decode ourselves, and the libxml2 tree.

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

struct DocumentBytes {
    QByteArray parserInput;  // what libxml2 parses
    bool convertedToUtf8 = false;
    std::optional<QString> text;  // the document's characters, when we can decode them
};

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

QString FileUrl(const QString& path)
{
    return QString::fromUtf8(QUrl::fromLocalFile(path).toEncoded());
}

// The texts of the documents of one transformation, by URL, for the "text:" of a message.
class SourceTexts {
public:
    void add(const QString& url, const std::optional<QString>& text) { texts_[url] = text; }

    QString line(const QString& url, int line)
    {
        if (url.isEmpty() || line <= 0)
            return {};
        auto found = texts_.find(url);
        if (found == texts_.end()) {
            // A stylesheet that xsl:import or xsl:include brought in: read it for the message.
            const QUrl parsed(url);
            QFile file(parsed.isLocalFile() ? parsed.toLocalFile() : url);
            std::optional<QString> text;
            if (file.size() < 64 * 1024 * 1024 && file.open(QIODevice::ReadOnly))
                text = PrepareDocument(file.readAll()).text;
            found = texts_.emplace(url, text).first;
        }
        return found->second ? LineOfText(*found->second, line) : QString();
    }

private:
    std::map<QString, std::optional<QString>> texts_;
};

// ---------------------------------------------------------------------------------------
// A failure in words.

struct ErrorReport {
    QString description;  // {error description}
    QString reason;
    int line = 0;
    int column = 0;
    QString sourceText;

    // "{reason} line: {Line} col: {linepos} text: {srcText}"
    QString detailLine() const
    {
        return reason + QStringLiteral(" line: ") + QString::number(line) + QStringLiteral(" col: ") +
               QString::number(column) + QStringLiteral(" text: ") + sourceText;
    }
};

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

// ---------------------------------------------------------------------------------------
// The steps.

// Reads and parses one document with validation; on failure, the error in words.
std::variant<DocPtr, ErrorReport> LoadDocument(const QString& path, ErrorCapture& capture, SourceTexts& sources)
{
    capture.clear();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return ErrorReport{QStringLiteral("I/O error"), file.errorString(), 0, 0, {}};
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return ErrorReport{QStringLiteral("I/O error"), file.errorString(), 0, 0, {}};
    file.close();

    const DocumentBytes prepared = PrepareDocument(bytes);
    const QString url = FileUrl(path);
    sources.add(url, prepared.text);
    if (prepared.parserInput.size() > INT_MAX)
        return ErrorReport{QStringLiteral("I/O error"), QStringLiteral("The file is too large to be parsed"), 0, 0, {}};

    std::unique_ptr<xmlParserCtxt, ParserFree> parser(xmlNewParserCtxt());
    if (!parser)
        return ErrorReport{QStringLiteral("libxml2 error"), QStringLiteral("Out of memory"), 0, 0, {}};
    const QByteArray urlBytes = url.toUtf8();
    const int options = kLoadOptions | (prepared.convertedToUtf8 ? XML_PARSE_IGNORE_ENC : 0);
    capture.parser = parser.get();
    DocPtr doc(xmlCtxtReadMemory(parser.get(), prepared.parserInput.constData(),
                                 static_cast<int>(prepared.parserInput.size()), urlBytes.constData(), nullptr, options));
    capture.parser = nullptr;
    if (!doc || capture.hasErrors())
        return Summarize(capture, sources, QStringLiteral("XML parser error"),
                         QStringLiteral("The document could not be read"));
    return doc;
}

// The output extension an XSL document declares: every top-level comment holding
// "extension=" sets it to the text after that, trimmed (blanks, tabs and line ends); the
// last one wins; "htm" when none does.
QString DeclaredExtension(const xmlDoc* xsl)
{
    QString extension = QStringLiteral("htm");
    for (const xmlNode* node = xsl->children; node; node = node->next) {
        if (node->type != XML_COMMENT_NODE || !node->content)
            continue;
        const QString text = QString::fromUtf8(reinterpret_cast<const char*>(node->content));
        const qsizetype at = text.indexOf(QLatin1String("extension="));
        if (at >= 0)
            extension = text.mid(at + 10).trimmed();
    }
    return extension;
}

// Compiles the stylesheet. A stylesheet that libxslt only warns about (an unknown xsl:
// element, for example) is refused too: the transformation would silently skip it.
std::variant<StylesheetPtr, ErrorReport> CompileStylesheet(DocPtr doc, ErrorCapture& capture, SourceTexts& sources)
{
    capture.clear();
    xmlDoc* raw = doc.get();
    StylesheetPtr style(xsltParseStylesheetDoc(raw));
    if (style)
        doc.release();  // the stylesheet owns its document now
    if (!style || style->errors > 0 || style->warnings > 0 || capture.hasErrors())
        return Summarize(capture, sources, QStringLiteral("XSLT compilation error"),
                         QStringLiteral("The document is not a valid XSL stylesheet"));
    return style;
}

struct TransformResult {
    QByteArray bytes;
    std::optional<ErrorReport> error;
};

// Applies the stylesheet; the result as libxslt serializes it (the encoding of xsl:output),
// followed by CR LF as the text is written in one write.
TransformResult Transform(xsltStylesheet* style, xmlDoc* doc, ErrorCapture& capture, SourceTexts& sources)
{
    capture.clear();
    std::unique_ptr<xsltTransformContext, TransformFree> context(xsltNewTransformContext(style, doc));
    std::unique_ptr<xsltSecurityPrefs, SecurityFree> prefs(xsltNewSecurityPrefs());
    if (!context || !prefs)
        return {{}, ErrorReport{QStringLiteral("XSLT runtime error"), QStringLiteral("Out of memory"), 0, 0, {}}};
    xsltSetCtxtParseOptions(context.get(), kReferencedDocumentOptions);
    xsltSetTransformErrorFunc(context.get(), &capture, OnXsltMessage);
    // A stylesheet may read the files it names, never write, create folders or use the
    // network (reading from the network is what the parser's no-network option refuses).
    xsltSetSecurityPrefs(prefs.get(), XSLT_SECPREF_WRITE_FILE, xsltSecurityForbid);
    xsltSetSecurityPrefs(prefs.get(), XSLT_SECPREF_CREATE_DIRECTORY, xsltSecurityForbid);
    xsltSetSecurityPrefs(prefs.get(), XSLT_SECPREF_WRITE_NETWORK, xsltSecurityForbid);
    xsltSetSecurityPrefs(prefs.get(), XSLT_SECPREF_READ_NETWORK, xsltSecurityForbid);
    xsltSetCtxtSecurityPrefs(prefs.get(), context.get());

    DocPtr result(xsltApplyStylesheetUser(style, doc, nullptr, nullptr, nullptr, context.get()));
    if (!result || context->state != XSLT_STATE_OK)
        return {{}, Summarize(capture, sources, QStringLiteral("XSLT runtime error"),
                              QStringLiteral("The transformation produced no result"))};
    xmlChar* text = nullptr;
    int length = 0;
    if (xsltSaveResultToString(&text, &length, result.get(), style) < 0) {
        xmlFree(text);
        return {{}, Summarize(capture, sources, QStringLiteral("XSLT runtime error"),
                              QStringLiteral("The result could not be serialized"))};
    }
    QByteArray bytes(reinterpret_cast<const char*>(text), text ? length : 0);
    xmlFree(text);
    bytes += "\r\n";
    return {bytes, std::nullopt};
}

TransformFailure LoadFailure(const QString& title, const QString& firstLine, const ErrorReport& report)
{
    return {title, firstLine + kCrLf + report.description + kCrLf + report.detailLine()};
}

TransformFailure ExecuteFailure(const Captions& captions, const ErrorReport& report)
{
    return {captions.text(CaptionSection::Xml, 33), report.description + kCrLf + report.detailLine()};
}

// A result that cannot be written is a failure of the transformation step, naming the file.
TransformFailure WriteFailure(const Captions& captions, const QString& path, const QString& reason)
{
    return {captions.text(CaptionSection::Xml, 33), path + kCrLf + reason};
}

// The name up to (not including) its last ".", the whole name when there is none.
QString BaseName(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot < 0 ? name : name.left(dot);
}

// The page that shows an SVG result: the browser embeds the picture, 980 wide, 16300 high.
QByteArray SvgPage(const QString& svgName)
{
    const QStringList lines = {
        QStringLiteral("<!DOCTYPE HTML PUBLIC \"-//W3C//DTD HTML 4.0 Transitional//EN\">"),
        QStringLiteral("<HTML>"),
        QStringLiteral("<HEAD></HEAD>"),
        QStringLiteral("<BODY>"),
        QStringLiteral("<OBJECT data=\"") + svgName + QStringLiteral("\" height=\"16300\" width=\"980\" type=\"image/svg-xml\">"),
        QStringLiteral("</OBJECT>"),
        QStringLiteral("</BODY>"),
        QStringLiteral("</HTML>"),
    };
    return EncodeWin1252(lines.join(kCrLf) + kCrLf);
}

}  // namespace

std::optional<TransformFailure> TransformXmlFile(const QString& xslPath, const QString& xmlPath,
                                                 const QString& outputPath, const Captions& captions)
{
    InitializeLibraries();
    // The old output goes first, so that a failed transformation leaves no output file.
    QFile::remove(outputPath);

    ErrorCapture capture;
    CaptureScope scope(capture);
    SourceTexts sources;

    auto xslDoc = LoadDocument(xslPath, capture, sources);
    if (auto* report = std::get_if<ErrorReport>(&xslDoc))
        return LoadFailure(captions.text(CaptionSection::Xml, 45), QStringLiteral("XSL file: ") + xslPath, *report);
    auto style = CompileStylesheet(std::move(std::get<DocPtr>(xslDoc)), capture, sources);
    if (auto* report = std::get_if<ErrorReport>(&style))
        return LoadFailure(captions.text(CaptionSection::Xml, 45), QStringLiteral("XSL file: ") + xslPath, *report);

    auto xmlDoc = LoadDocument(xmlPath, capture, sources);
    if (auto* report = std::get_if<ErrorReport>(&xmlDoc))
        return LoadFailure(captions.text(CaptionSection::Xml, 46), QStringLiteral("XML file: ") + xmlPath, *report);

    const TransformResult result =
        Transform(std::get<StylesheetPtr>(style).get(), std::get<DocPtr>(xmlDoc).get(), capture, sources);
    if (result.error)
        return ExecuteFailure(captions, *result.error);
    if (const auto reason = WriteFileAtomically(outputPath, result.bytes))
        return WriteFailure(captions, outputPath, *reason);
    return std::nullopt;
}

ViewerOutcome RunXmlViewer(const QString& repository, const QString& xmlName, const QString& xslName,
                           const Captions& captions, const std::function<void(const QString&)>& onStep)
{
    const auto step = [&](int caption) {
        if (onStep)
            onStep(captions.text(CaptionSection::Xml, caption));
    };
    ViewerOutcome outcome;
    const QString xmlPath = repository + QLatin1Char('/') + xmlName;
    if (xmlName.isEmpty() || !QFileInfo(xmlPath).isFile()) {
        outcome.failure = TransformFailure{QLatin1String(kProgramTitle) + QStringLiteral(" - ") + QLatin1String(kProgramVersion),
                                           captions.text(CaptionSection::Xml, 29) + kCrLf + xmlName, false};
        return outcome;
    }
    if (xslName == captions.text(CaptionSection::Xml, 17)) {
        outcome.displayPath = xmlPath;
        return outcome;
    }

    InitializeLibraries();
    ErrorCapture capture;
    CaptureScope scope(capture);
    SourceTexts sources;
    const QString xslPath = repository + QLatin1Char('/') + xslName;

    step(30);
    auto xslDoc = LoadDocument(xslPath, capture, sources);
    if (auto* report = std::get_if<ErrorReport>(&xslDoc)) {
        outcome.failure = LoadFailure(captions.text(CaptionSection::Xml, 45), QStringLiteral("XSL file: ") + xslPath, *report);
        return outcome;
    }
    const QString extension = DeclaredExtension(std::get<DocPtr>(xslDoc).get());
    auto style = CompileStylesheet(std::move(std::get<DocPtr>(xslDoc)), capture, sources);
    if (auto* report = std::get_if<ErrorReport>(&style)) {
        outcome.failure = LoadFailure(captions.text(CaptionSection::Xml, 45), QStringLiteral("XSL file: ") + xslPath, *report);
        return outcome;
    }

    step(31);
    auto xmlDoc = LoadDocument(xmlPath, capture, sources);
    if (auto* report = std::get_if<ErrorReport>(&xmlDoc)) {
        outcome.failure = LoadFailure(captions.text(CaptionSection::Xml, 46), QStringLiteral("XML file: ") + xmlName, *report);
        return outcome;
    }

    step(32);
    const QString outputName = BaseName(xmlName) + QStringLiteral(" {") + BaseName(xslName) + QStringLiteral("}.");
    const QString outputPath = repository + QLatin1Char('/') + outputName + extension;
    const TransformResult result =
        Transform(std::get<StylesheetPtr>(style).get(), std::get<DocPtr>(xmlDoc).get(), capture, sources);
    if (result.error) {
        outcome.failure = ExecuteFailure(captions, *result.error);
        return outcome;
    }
    if (const auto reason = WriteFileAtomically(outputPath, result.bytes)) {
        outcome.failure = WriteFailure(captions, outputPath, *reason);
        return outcome;
    }
    outcome.written << outputPath;
    QString displayPath = outputPath;

    if (extension.toUpper() == QLatin1String("SVG")) {
        // The page names the picture with the extension as declared, so that the link also
        // holds on file systems that tell "svg" from "SVG".
        const QString pagePath = repository + QLatin1Char('/') + outputName + QStringLiteral("htm");
        if (const auto reason = WriteFileAtomically(pagePath, SvgPage(outputName + extension))) {
            outcome.failure = WriteFailure(captions, pagePath, *reason);
            return outcome;
        }
        outcome.written << pagePath;
        displayPath = pagePath;
    }

    step(34);
    outcome.displayPath = displayPath;
    return outcome;
}

}  // namespace brindar
