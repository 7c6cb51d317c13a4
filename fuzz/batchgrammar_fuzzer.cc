// Fuzzes the batch mode's command-line grammar: arguments rebuilt into one line and read
// back as options, paths split into folder and name, and the family letters of -o.
#include "core/paths.h"
#include "export/batchmode.h"
#include "platform/filenames.h"

#include <QByteArray>
#include <QStringList>
#include <cstdint>

namespace {

using namespace brindar;

bool SameFamilies(const XmlFamilies& a, const XmlFamilies& b)
{
    return a.office == b.office && a.openOffice == b.openOffice && a.pdf == b.pdf && a.iptc == b.iptc
           && a.xmp == b.xmp;
}

// What the user typed comes back from the rebuilt line as the option's value.
void CheckOptions(const QString& argument, const QString& next)
{
    if (argument.contains(u'"'))
        return;
    if (CommandLineOption(RebuildCommandLine({QStringLiteral("-d"), argument}), 'd') != argument)
        __builtin_trap();
    // Among other options: every value is found after its own letter.
    if (next.contains(u'"') || argument.contains(QStringLiteral("-d")))
        return;
    const QString line = RebuildCommandLine({QStringLiteral("-x"), argument, QStringLiteral("-d"), next});
    if (CommandLineOption(line, 'x') != argument || CommandLineOption(line, 'd') != next)
        __builtin_trap();
}

// The folder and the name give the path back: the root "/" stands for the empty folder
// before a path's only slash. The batch mode joins them again with JoinPath.
void CheckSplit(const QString& path)
{
    const std::optional<SplitPath> split = SplitAtLastSlash(path);
    if (split.has_value() != path.contains(u'/'))
        __builtin_trap();
    if (!split)
        return;
    if (split->name.contains(u'/'))
        __builtin_trap();
    if (path != split->folder + u'/' + split->name && !(split->folder == u"/" && path == u'/' + split->name))
        __builtin_trap();
    if (!path.contains(QStringLiteral("//")) && JoinPath(split->folder, split->name) != path)
        __builtin_trap();
}

// Only the letters M, O, P, I and X count, in either case; other characters are ignored.
void CheckFamilies(const QString& letters)
{
    QString ascii;
    for (const QChar c : letters)
        if (c.unicode() < 0x80)
            ascii += c;
    if (!SameFamilies(FamiliesOfLetters(letters), FamiliesOfLetters(ascii))
        || !SameFamilies(FamiliesOfLetters(ascii), FamiliesOfLetters(ascii.toLower())))
        __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // The arguments as the program receives them: NUL-separated bytes, decoded as names.
    QStringList arguments;
    for (const QByteArray& bytes : QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)).split('\0'))
        arguments.append(DecodeFileName(bytes));
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        CheckOptions(arguments[i], arguments[(i + 1) % arguments.size()]);
        CheckSplit(arguments[i]);
        CheckFamilies(arguments[i]);
    }
    // The whole line read as the batch mode reads it.
    const QString line = RebuildCommandLine(arguments);
    for (const char letter : {'d', 'x', 'o', 't', 'h'})
        if (const auto value = CommandLineOption(line, letter))
            CheckSplit(*value);
    return 0;
}
