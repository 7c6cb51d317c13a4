// The XML viewer: an export shown as it is, or transformed beside itself.
#include "export/xmlviewer.h"

#include "core/atomicfile.h"
#include "core/captionids.h"
#include "core/codepage.h"
#include "version.h"

#include <QFileInfo>

namespace brindar {
namespace {

const QString kCrLf = QStringLiteral("\r\n");

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

ViewerOutcome RunXmlViewer(const QString& repository, const QString& xmlName, const QString& xslName,
                           const Captions& captions, const std::function<void(const QString&)>& onStep)
{
    const auto step = [&](const CaptionId& id) {
        if (onStep)
            onStep(captions.text(id));
    };
    ViewerOutcome outcome;
    const QString xmlPath = repository + QLatin1Char('/') + xmlName;
    if (xmlName.isEmpty() || !QFileInfo(xmlPath).isFile()) {
        outcome.failure = TransformFailure{MessageTitle(), captions.text(caption::XmlExportFileUnknown) + kCrLf + xmlName,
                                           false};
        return outcome;
    }
    if (xslName == captions.text(caption::NoXsl)) {
        outcome.displayPath = xmlPath;
        return outcome;
    }

    XslTransformation transformation(captions);
    const QString xslPath = repository + QLatin1Char('/') + xslName;
    step(caption::ParsingXsl);
    if (auto failure = transformation.loadStylesheet(xslPath, xslPath)) {
        outcome.failure = failure;
        return outcome;
    }
    step(caption::ParsingXml);
    if (auto failure = transformation.loadDocument(xmlPath, xmlName)) {
        outcome.failure = failure;
        return outcome;
    }

    step(caption::ApplyingXsl);
    const QString extension = transformation.declaredExtension();
    const QString outputName = BaseName(xmlName) + QStringLiteral(" {") + BaseName(xslName) + QStringLiteral("}.");
    const QString outputPath = repository + QLatin1Char('/') + outputName + extension;
    auto result = transformation.apply();
    if (auto* failure = std::get_if<TransformFailure>(&result)) {
        outcome.failure = *failure;
        return outcome;
    }
    if (const auto reason = WriteFileAtomically(outputPath, std::get<QByteArray>(result))) {
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

    step(caption::ProcessingComplete);
    outcome.displayPath = displayPath;
    return outcome;
}

}  // namespace brindar
