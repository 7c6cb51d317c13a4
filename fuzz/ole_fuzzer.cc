// Fuzzes Office property access: compound files, property sets, and writing them back.
#include "readers/compoundfile.h"
#include "readers/officeproperties.h"
#include "readers/propertyset.h"

#include "fuzzinput.h"

#include <QByteArray>
#include <cstdint>

namespace {

void QueryEverything(brindar::OfficeProperties& p)
{
    p.propertyGroups();
    p.title(), p.subject(), p.author(), p.keywords(), p.comments(), p.templateName(), p.lastAuthor();
    p.revisionNumber(), p.totalEditingMinutes(), p.lastPrinted(), p.created(), p.lastSaved();
    p.pageCount(), p.wordCount(), p.characterCount(), p.applicationName(), p.security(), p.category();
    p.manager(), p.company(), p.byteCount(), p.lineCount(), p.paragraphCount(), p.slideCount(), p.noteCount();
    for (int i = 0; i < p.userDefinedCount(); ++i)
        p.userDefinedName(i), p.userDefinedValue(i);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace brindar;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));

    // The bytes as a bare property set: parsed, written and parsed again.
    if (auto set = ParsePropertySet(bytes)) {
        const QByteArray written = SerializePropertySet(*set);
        const auto again = ParsePropertySet(written);
        if (!again || again->sections.size() != set->sections.size())
            __builtin_trap();
    }

    // The bytes as a document: read, then given a title and written back.
    const QString path = fuzz::WriteInput(data, size, ".doc");
    OfficeProperties reader;
    if (!reader.open(path, OfficeProperties::kModeRead))
        return 0;
    QueryEverything(reader);
    QString error;
    if (!CompoundFile::Open(path, &error))
        return 0;
    OfficeProperties writer;
    if (!writer.open(path, OfficeProperties::kModeWrite) || !writer.setTitle(QStringLiteral("fuzz"))
        || !writer.writeUserDefined(QStringLiteral("Client"), 7) || !writer.save())
        return 0;  // a damaged stream may refuse to be copied: the file then stays as it was
    OfficeProperties back;
    if (!back.open(path, OfficeProperties::kModeRead) || back.title() != QStringLiteral("fuzz"))
        __builtin_trap();  // what was written must read back
    QueryEverything(back);
    return 0;
}
