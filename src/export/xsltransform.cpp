// The XSL step with libxml2 and libxslt: loads both documents, transforms, writes.
#include "export/xsltransform.h"

#include "core/atomicfile.h"
#include "core/captionids.h"
#include "core/paths.h"
#include "export/xsldiagnostics.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxslt/documents.h>
#include <libxslt/extensions.h>
#include <libxslt/extra.h>
#include <libxslt/security.h>
#include <libxslt/transform.h>
#include <libxslt/xslt.h>
#include <libxslt/xsltInternals.h>
#include <libxslt/xsltutils.h>

#include <QFile>

#include <climits>
#include <memory>
#include <mutex>

namespace brindar {
namespace {

const QString kCrLf = QStringLiteral("\r\n");

// Validation on load: the entities are replaced and the DTD's default attributes added as
// the transformation expects them; DTD validity is checked, and its "no DTD found" error
// dropped, so a document without a DTD is only checked for well-formedness. Never the
// network; no XML_PARSE_HUGE, which would also lift libxml2's guard against entities that
// expand without end.
constexpr int kLoadOptions =
    XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_DTDLOAD | XML_PARSE_DTDATTR | XML_PARSE_NOCDATA | XML_PARSE_DTDVALID;
// Documents that the stylesheet loads itself (document(), xsl:import, xsl:include).
constexpr int kReferencedDocumentOptions =
    XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_DTDLOAD | XML_PARSE_DTDATTR | XML_PARSE_NOCDATA;

// An export holds one element per folder level: a tree deeper than libxml2's default of
// 256 levels is still an export the program must transform. The parser walks elements
// without recursion, so the depth costs memory, not stack.
constexpr unsigned kMaxDocumentDepth = 1u << 20;

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
        xmlParserMaxDepth = kMaxDocumentDepth;
        xsltSetGenericErrorFunc(nullptr, OnXsltMessage);
        g_libraryLoader = xsltDocDefaultLoader;
        xsltSetLoaderFunc(LoadReferencedDocument);
        // Stylesheets written for MSXML use msxsl:node-set(); it is EXSLT's node-set().
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
    const QString url = QString::fromUtf8(FileUrl(path).toEncoded());
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

TransformFailure LoadFailure(const QString& title, const QString& firstLine, const ErrorReport& report)
{
    return {title, firstLine + kCrLf + report.description + kCrLf + report.detailLine()};
}

}  // namespace

struct XslTransformation::State {
    ErrorCapture capture;
    CaptureScope scope{capture};
    SourceTexts sources;
    StylesheetPtr style;
    DocPtr document;
    QString extension = QStringLiteral("htm");
};

XslTransformation::XslTransformation(const Captions& captions) : captions_(captions)
{
    InitializeLibraries();
    state_ = std::make_unique<State>();
}

XslTransformation::~XslTransformation() = default;

std::optional<TransformFailure> XslTransformation::loadStylesheet(const QString& path, const QString& shownPath)
{
    const auto fail = [&](const ErrorReport& report) {
        return LoadFailure(captions_.text(caption::ErrorLoadingTransform), QStringLiteral("XSL file: ") + shownPath,
                           report);
    };
    auto doc = LoadDocument(path, state_->capture, state_->sources);
    if (auto* report = std::get_if<ErrorReport>(&doc))
        return fail(*report);
    state_->extension = DeclaredExtension(std::get<DocPtr>(doc).get());
    auto style = CompileStylesheet(std::move(std::get<DocPtr>(doc)), state_->capture, state_->sources);
    if (auto* report = std::get_if<ErrorReport>(&style))
        return fail(*report);
    state_->style = std::move(std::get<StylesheetPtr>(style));
    return std::nullopt;
}

QString XslTransformation::declaredExtension() const { return state_->extension; }

std::optional<TransformFailure> XslTransformation::loadDocument(const QString& path, const QString& shownPath)
{
    auto doc = LoadDocument(path, state_->capture, state_->sources);
    if (auto* report = std::get_if<ErrorReport>(&doc))
        return LoadFailure(captions_.text(caption::ErrorLoadingXml), QStringLiteral("XML file: ") + shownPath, *report);
    state_->document = std::move(std::get<DocPtr>(doc));
    return std::nullopt;
}

std::variant<QByteArray, TransformFailure> XslTransformation::apply()
{
    ErrorCapture& capture = state_->capture;
    const auto fail = [&](const ErrorReport& report) {
        return TransformFailure{captions_.text(caption::ErrorExecutingXsl),
                                report.description + kCrLf + report.detailLine()};
    };
    capture.clear();
    xsltStylesheet* style = state_->style.get();
    xmlDoc* doc = state_->document.get();
    if (!style || !doc)
        return fail(ErrorReport{QStringLiteral("XSLT runtime error"), QStringLiteral("Nothing to transform"), 0, 0, {}});
    std::unique_ptr<xsltTransformContext, TransformFree> context(xsltNewTransformContext(style, doc));
    std::unique_ptr<xsltSecurityPrefs, SecurityFree> prefs(xsltNewSecurityPrefs());
    if (!context || !prefs)
        return fail(ErrorReport{QStringLiteral("XSLT runtime error"), QStringLiteral("Out of memory"), 0, 0, {}});
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
        return fail(Summarize(capture, state_->sources, QStringLiteral("XSLT runtime error"),
                              QStringLiteral("The transformation produced no result")));
    xmlChar* text = nullptr;
    int length = 0;
    if (xsltSaveResultToString(&text, &length, result.get(), style) < 0) {
        xmlFree(text);
        return fail(Summarize(capture, state_->sources, QStringLiteral("XSLT runtime error"),
                              QStringLiteral("The result could not be serialized")));
    }
    QByteArray bytes(reinterpret_cast<const char*>(text), text ? length : 0);
    xmlFree(text);
    bytes += "\r\n";
    return bytes;
}

TransformFailure WriteFailure(const Captions& captions, const QString& path, const QString& reason)
{
    return {captions.text(caption::ErrorExecutingXsl), path + kCrLf + reason};
}

std::optional<TransformFailure> TransformXmlFile(const QString& xslPath, const QString& xmlPath,
                                                 const QString& outputPath, const Captions& captions)
{
    // The old output goes first, so that a failed transformation leaves no output file.
    QFile::remove(outputPath);
    XslTransformation transformation(captions);
    if (auto failure = transformation.loadStylesheet(xslPath, xslPath))
        return failure;
    if (auto failure = transformation.loadDocument(xmlPath, xmlPath))
        return failure;
    auto result = transformation.apply();
    if (auto* failure = std::get_if<TransformFailure>(&result))
        return *failure;
    if (const auto reason = WriteFileAtomically(outputPath, std::get<QByteArray>(result)))
        return WriteFailure(captions, outputPath, *reason);
    return std::nullopt;
}

}  // namespace brindar
