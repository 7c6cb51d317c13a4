// Fuzzes the settings parsers: INI reading and rewriting, language files, the loaders.
#include "core/columnbuilder.h"
#include "core/configuration.h"
#include "core/inifile.h"
#include "core/language.h"
#include "core/settingstext.h"

#include <QByteArray>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace brindar;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));

    IniDocument ini(bytes);
    ReadConfiguration(ini, true);
    ReadChooser(ini);
    BuildColumns(ini, Captions::English(), true);
    ini.setValue(QStringLiteral("Configuration"), QStringLiteral("Langue"), QStringLiteral("Fran\u00E7ais"));
    // A rewritten file reads back what was written.
    if (IniDocument(ini.toBytes()).value(QStringLiteral("Configuration"), QStringLiteral("Langue"))
        != QStringLiteral("Fran\u00E7ais"))
        __builtin_trap();

    Captions captions = Captions::English();
    captions.apply(DecodeSettingsText(bytes).text);
    return 0;
}
