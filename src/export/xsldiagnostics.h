// The XSL step's diagnostics: the libraries' errors of one step gathered per thread, the
// documents' own text for the line an error names, and the first error in words.
#pragma once

#include <QByteArray>
#include <QString>

#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

namespace brindar {

// At most this many errors are kept per step: the first ones say what went wrong.
inline constexpr std::size_t kMaxDiagnostics = 64;

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

// libxslt's error function (process-wide for stylesheet compilation, per transformation
// context otherwise): forwards to the capture of the calling thread.
void OnXsltMessage(void* context, const char* format, ...);

// Installs this thread's libxml2 handlers for one step and puts back the previous ones.
class CaptureScope {
public:
    explicit CaptureScope(ErrorCapture& capture);
    ~CaptureScope();
    CaptureScope(const CaptureScope&) = delete;
    CaptureScope& operator=(const CaptureScope&) = delete;

private:
    ErrorCapture* previousCapture_;
    xmlStructuredErrorFunc previousStructured_;
    void* previousStructuredContext_;
    xmlGenericErrorFunc previousGeneric_;
    void* previousGenericContext_;
};

// Documents: bytes, and the text we can decode ourselves.
struct DocumentBytes {
    QByteArray parserInput;  // what libxml2 parses
    bool convertedToUtf8 = false;
    std::optional<QString> text;  // the document's characters, when we can decode them
};

// What libxml2 is given to parse, and the document's characters when we can decode them:
// exports declared ISO-8859-1 are read through our own Windows-1252 table.
DocumentBytes PrepareDocument(const QByteArray& bytes);

// The texts of the documents of one transformation, by URL, for the "text:" of a message.
class SourceTexts {
public:
    void add(const QString& url, const std::optional<QString>& text) { texts_[url] = text; }

    // Line `line` of the document at `url`, for the "text:" of a message; a stylesheet
    // that xsl:import or xsl:include brought in is read for it.
    QString line(const QString& url, int line);

private:
    std::map<QString, std::optional<QString>> texts_;
};

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

// The first error of a step in words (see the definition); the fallbacks when the
// libraries said nothing.
ErrorReport Summarize(const ErrorCapture& capture, SourceTexts& sources, const QString& fallbackKind,
                      const QString& fallbackReason);

}  // namespace brindar
