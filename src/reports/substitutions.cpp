// Hyperlink path substitutions and their ".pat" file.
#include "reports/substitutions.h"

#include "core/captionids.h"
#include "core/settingstext.h"
#include "reports/sequentialfile.h"

namespace brindar {
namespace {

int IndexOfPath(const Substitutions& list, const QString& path)
{
    for (int i = 0; i < list.size(); ++i)
        if (list[i].path.compare(path, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

}  // namespace

Substitutions ReadSubstitutions(const QString& path)
{
    // Every line read is kept, even one with an empty path: the dialog refuses to make
    // one, but a hand-written one puts its replacement before every path, which can be
    // what its author wanted.
    Substitutions list;
    for (const QStringList& fields : ReadSequentialFile(path))
        list.append({fields.value(0), fields.value(1)});
    return list;
}

std::optional<QString> WriteSubstitutions(const QString& path, const Substitutions& list)
{
    QStringList lines;
    for (const Substitution& substitution : list)
        lines.append(WriteSequentialText(substitution.path) + u',' + WriteSequentialText(substitution.replacement));
    return WriteSequentialFile(path, lines);
}

QString LinkForPath(const Substitutions& list, const QString& path)
{
    // A plain case-insensitive prefix test, first match in list order: "/data/Doc" also
    // matches "/data/Documents/a.doc". The comparison goes character by character, so the
    // rest always starts right after as many characters as the substitution's path has.
    for (const Substitution& substitution : list)
        if (path.startsWith(substitution.path, Qt::CaseInsensitive))
            return substitution.replacement + path.sliced(substitution.path.size());
    return QStringLiteral("file://") + path;
}

std::optional<QString> AddSubstitution(Substitutions& list, const QString& path, const QString& replacement,
                                       const Captions& captions)
{
    // A path of blanks only is no path either: it would match nothing useful.
    if (TrimBlanksAndTabs(path).isEmpty())
        return captions.text(caption::PleaseTypeAPath);
    if (IndexOfPath(list, path) >= 0)
        return captions.text(caption::PathAlreadyDefined);
    list.append({path, replacement});
    return std::nullopt;
}

std::optional<QString> ChangeSubstitution(Substitutions& list, const QString& path, const QString& replacement,
                                          const Captions& captions)
{
    const int index = IndexOfPath(list, path);
    if (index < 0)
        return captions.text(caption::PathNotDefined);
    list[index].replacement = replacement;
    return std::nullopt;
}

}  // namespace brindar
