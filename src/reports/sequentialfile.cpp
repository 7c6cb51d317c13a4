// The sequential-file form: quoted texts, #TRUE#/#FALSE#, one line per record.
#include "reports/sequentialfile.h"

#include "core/atomicfile.h"
#include "core/settingstext.h"

#include <QFile>
#include <cmath>

namespace brindar {

QString WriteSequentialText(const QString& text)
{
    // A line break inside a text would split its line in two and shift every entry after
    // it: it is written as a blank, the same as a value of a configuration file.
    QString oneLine = text;
    oneLine.replace(u'\r', u' ').replace(u'\n', u' ');
    return u'"' + oneLine + u'"';
}

QString WriteSequentialBoolean(bool value)
{
    return value ? QStringLiteral("#TRUE#") : QStringLiteral("#FALSE#");
}

QStringList InputSequentialFields(QStringView line)
{
    // Broken quoting never reaches beyond its own line: a quote that is not closed makes
    // the field run to the end of the line, and whatever stands between a closing quote
    // and the next comma is dropped. A comma at the end gives one more, empty, field.
    QStringList fields;
    qsizetype at = 0;
    const qsizetype end = line.size();
    while (true) {
        while (at < end && IsBlankOrTab(line[at]))
            ++at;
        if (at < end && line[at] == u'"') {
            const qsizetype close = line.indexOf(u'"', at + 1);
            if (close < 0) {
                fields.append(line.sliced(at + 1).toString());
                return fields;
            }
            fields.append(line.sliced(at + 1, close - at - 1).toString());
            const qsizetype comma = line.indexOf(u',', close + 1);
            if (comma < 0)
                return fields;
            at = comma + 1;
        } else {
            const qsizetype comma = line.indexOf(u',', at);
            const qsizetype stop = comma < 0 ? end : comma;
            fields.append(TrimBlanksAndTabs(line.sliced(at, stop - at)).toString());
            if (comma < 0)
                return fields;
            at = comma + 1;
        }
    }
}

std::optional<bool> InputSequentialBoolean(const QString& field)
{
    const QString text = TrimBlanksAndTabs(field).toString();
    if (text.compare(u"#TRUE#", Qt::CaseInsensitive) == 0 || text.compare(u"True", Qt::CaseInsensitive) == 0)
        return true;
    if (text.compare(u"#FALSE#", Qt::CaseInsensitive) == 0 || text.compare(u"False", Qt::CaseInsensitive) == 0)
        return false;
    bool ok = false;
    const double number = text.toDouble(&ok);
    if (ok && std::isfinite(number))
        return number != 0;
    return std::nullopt;
}

QList<QStringList> ReadSequentialFile(const QString& path)
{
    QList<QStringList> lines;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return lines;
    // Windows-1252 as the program always wrote them, or UTF-8 when a folder's name
    // needed more (see WriteSequentialFile).
    const QString text = DecodeSettingsText(file.readAll()).text;
    qsizetype start = 0;
    while (start < text.size()) {
        qsizetype stop = start;
        while (stop < text.size() && text[stop] != u'\r' && text[stop] != u'\n')
            ++stop;
        const QStringView line = QStringView(text).sliced(start, stop - start);
        if (!TrimBlanksAndTabs(line).isEmpty())
            lines.append(InputSequentialFields(line));
        start = stop;
        if (start < text.size() && text[start] == u'\r')
            ++start;
        if (start < text.size() && text[start] == u'\n')
            ++start;
    }
    return lines;
}

std::optional<QString> WriteSequentialFile(const QString& path, const QStringList& lines)
{
    QString text;
    for (const QString& line : lines)
        text += line + QStringLiteral("\r\n");
    // A folder name outside Windows-1252 would come back as "?" and never match again:
    // such a file is written in UTF-8 instead, as settings files are.
    return WriteFileAtomically(path, EncodeSettingsText(text, SettingsEncoding::Win1252));
}

}  // namespace brindar
