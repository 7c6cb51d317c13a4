// The XSL step: applies an XSL file to an XML export, for the batch mode and the viewer.
#pragma once

#include "core/language.h"

#include <QByteArray>
#include <QString>
#include <memory>
#include <optional>
#include <variant>

namespace brindar {

// A failed step as the user is told it: the message title and the text (lines joined by CR LF).
struct TransformFailure {
    QString title;
    QString text;
    // Parser and transformation failures take the critical icon; "XML export file unknown:"
    // is a validation message and takes the exclamation icon.
    bool critical = true;
};

// One transformation with libxml2 and libxslt: the stylesheet, then the document, then
// the result, each step failing with its first error in words. The libraries' errors are
// gathered for the calling thread while the object lives, so two transformations on two
// threads never mix them.
class XslTransformation {
public:
    explicit XslTransformation(const Captions& captions);
    ~XslTransformation();
    XslTransformation(const XslTransformation&) = delete;
    XslTransformation& operator=(const XslTransformation&) = delete;

    // Loads and compiles the stylesheet at `path`; `shownPath` is how the message names it.
    std::optional<TransformFailure> loadStylesheet(const QString& path, const QString& shownPath);
    // The output extension the stylesheet declares: every top-level comment holding
    // "extension=" sets it to the text after that, trimmed; the last one wins; "htm"
    // when none does.
    QString declaredExtension() const;
    // Loads the XML document at `path`, checked for well-formedness (and its DTD when it
    // has one).
    std::optional<TransformFailure> loadDocument(const QString& path, const QString& shownPath);
    // Applies the stylesheet to the document: the result as libxslt serializes it (the
    // encoding of xsl:output), followed by CR LF.
    std::variant<QByteArray, TransformFailure> apply();

private:
    struct State;
    std::unique_ptr<State> state_;
    const Captions& captions_;
};

// A result that cannot be written is a failure of the transformation step, naming the file.
TransformFailure WriteFailure(const Captions& captions, const QString& path, const QString& reason);

// Batch mode (-t, -h): deletes the old output file, loads the XSL file, then the XML file,
// applies the one to the other and writes the result to outputPath, followed by CR LF.
// On failure outputPath does not exist. std::nullopt on success.
std::optional<TransformFailure> TransformXmlFile(const QString& xslPath, const QString& xmlPath,
                                                 const QString& outputPath, const Captions& captions);

}  // namespace brindar
