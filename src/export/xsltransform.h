// The XSL step: applies an XSL file to an XML export, for the batch mode and the export dialog's viewer.
#pragma once

#include "core/language.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

namespace brindar {

// A failed step as the user is told it: the message title and the text (lines joined by CR LF).
struct TransformFailure {
    QString title;
    QString text;
    // Parser and transformation failures take the critical icon; "XML export file unknown:"
    // is a validation message and takes the exclamation icon.
    bool critical = true;
};

// Batch mode (-t, -h): deletes the old output file, loads the XSL file, then the XML file,
// applies the one to the other and writes the result to outputPath, followed by CR LF.
// On failure outputPath does not exist. std::nullopt on success.
std::optional<TransformFailure> TransformXmlFile(const QString& xslPath, const QString& xmlPath,
                                                 const QString& outputPath, const Captions& captions);

// The export dialog's viewer (cmdVoirXML), engine half. Storing the XSL name under
// FileXSL, the progress label and the buttons are the dialog's.
struct ViewerOutcome {
    QString displayPath;                      // the file to open with its associated program; empty when nothing is to be shown
    QStringList written;                      // files written (output, and the SVG page)
    std::optional<TransformFailure> failure;  // "XML export file unknown:" (exclamation) and the parser failures
};
ViewerOutcome RunXmlViewer(const QString& repository, const QString& xmlName, const QString& xslName,
                           const Captions& captions, const std::function<void(const QString&)>& onStep = {});

}  // namespace brindar
