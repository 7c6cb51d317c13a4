// Fuzzes the XSL step: a stylesheet and a document loaded from files, the transformation,
// and the first error in words when any step fails.
#include "core/language.h"
#include "export/xsltransform.h"

#include "fuzzinput.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <cstdint>
#include <cstring>
#include <variant>

namespace {

using brindar::TransformFailure;

// A failure tells what went wrong: a title, and a text whose first line is not empty
// (the file at fault, or the kind of error).
void CheckFailure(const TransformFailure& failure)
{
    if (failure.title.isEmpty() || failure.text.isEmpty() || failure.text.startsWith(QStringLiteral("\r\n")))
        __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace brindar;
    const Captions& captions = Captions::English();
    // A NUL byte, which no XML text holds, ends the stylesheet and starts the document;
    // without one, the input is both.
    const auto* nul = size ? static_cast<const uint8_t*>(std::memchr(data, 0, size)) : nullptr;
    const size_t stylesheetSize = nul ? size_t(nul - data) : size;
    const uint8_t* document = nul ? nul + 1 : data;
    const size_t documentSize = nul ? size - stylesheetSize - 1 : size;
    const QString xsl = fuzz::WriteInput(data, stylesheetSize, ".xsl");
    const QString xml = fuzz::WriteInput(document, documentSize, ".xml");
    const QString folder = QFileInfo(xsl).path();
    const QString output = folder + QStringLiteral("/output.htm");

    {
        XslTransformation transformation(captions);
        if (const auto failure = transformation.loadStylesheet(xsl, xsl)) {
            CheckFailure(*failure);
        } else {
            if (transformation.declaredExtension().isNull())
                __builtin_trap();
            if (const auto documentFailure = transformation.loadDocument(xml, xml)) {
                CheckFailure(*documentFailure);
            } else {
                const auto result = transformation.apply();
                if (const auto* applyFailure = std::get_if<TransformFailure>(&result))
                    CheckFailure(*applyFailure);
                else if (!std::get<QByteArray>(result).endsWith("\r\n"))
                    __builtin_trap();
            }
        }
    }

    // The batch step: an old output is replaced, and a failure leaves no output at all.
    QFile old(output);
    if (!old.open(QIODevice::WriteOnly | QIODevice::Truncate) || old.write("old") != 3)
        __builtin_trap();
    old.close();
    if (const auto failure = TransformXmlFile(xsl, xml, output, captions)) {
        CheckFailure(*failure);
        if (QFileInfo::exists(output))
            __builtin_trap();
    } else if (!QFileInfo::exists(output)) {
        __builtin_trap();
    }

    // A stylesheet may read files, never write them: the folder holds only what was put there.
    const QStringList expected = {QStringLiteral("input.xml"), QStringLiteral("input.xsl"),
                                  QStringLiteral("output.htm")};
    for (const QString& name :
         QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System))
        if (!expected.contains(name))
            __builtin_trap();
    QFile::remove(output);
    return 0;
}
