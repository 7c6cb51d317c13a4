// The export dialog's viewer (cmdVoirXML), engine half: an export of the repository shown
// as it is or through one of its XSL files.
#pragma once

#include "core/language.h"
#include "export/xsltransform.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace brindar {

// Storing the XSL name under FileXSL, the progress label and the buttons are the dialog's.
struct ViewerOutcome {
    QString displayPath;                      // the file to open with its associated program; empty when nothing is to be shown
    QStringList written;                      // files written (output, and the SVG page)
    std::optional<TransformFailure> failure;  // "XML export file unknown:" (exclamation) and the parser failures
};

// Shows `xmlName` of the repository: itself with "<none>", else "<XML base> {<XSL
// base>}.<extension>" written beside it (and, for an SVG result, an HTML page that
// embeds it). `onStep` receives the progress texts.
ViewerOutcome RunXmlViewer(const QString& repository, const QString& xmlName, const QString& xslName,
                           const Captions& captions, const std::function<void(const QString&)>& onStep = {});

}  // namespace brindar
