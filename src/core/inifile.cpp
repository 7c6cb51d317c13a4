// Private-profile INI reading and one-line rewriting.
#include "core/inifile.h"

#include "core/settings.h"
#include "core/settingstext.h"

#include <QFile>

namespace brindar {
namespace {

// "[name]" with blanks allowed around it and around the name.
std::optional<QString> SectionName(QStringView line)
{
    const QStringView t = TrimBlanksAndTabs(line);
    if (!t.startsWith(u'['))
        return std::nullopt;
    const qsizetype close = t.lastIndexOf(u']');
    if (close < 1)
        return std::nullopt;
    return TrimBlanksAndTabs(t.sliced(1, close - 1)).toString();
}

struct Entry {
    QStringView key;
    QStringView value;
};

std::optional<Entry> KeyValue(QStringView line)
{
    const QStringView t = TrimBlanksAndTabs(line);
    if (t.startsWith(u';'))
        return std::nullopt;
    const qsizetype eq = t.indexOf(u'=');
    if (eq < 0)
        return std::nullopt;
    return Entry{TrimBlanksAndTabs(t.first(eq)), TrimBlanksAndTabs(t.sliced(eq + 1))};
}

QString Upper(QStringView s) { return s.toString().toUpper(); }

}  // namespace

IniDocument::IniDocument(const QByteArray& bytes)
{
    SettingsText decoded = DecodeSettingsText(bytes);
    encoding_ = decoded.encoding;
    const QString& text = decoded.text;
    qsizetype start = 0;
    while (start < text.size()) {
        qsizetype end = start;
        while (end < text.size() && text[end] != u'\r' && text[end] != u'\n')
            ++end;
        Line line{text.sliced(start, end - start), QString()};
        if (end < text.size()) {
            const bool crlf = text[end] == u'\r' && end + 1 < text.size() && text[end + 1] == u'\n';
            line.eol = crlf ? QStringLiteral("\r\n") : QString(text[end]);
            end += crlf ? 2 : 1;
        }
        lines_.append(line);
        start = end;
    }
    reindex();
}

IniDocument IniDocument::Load(const QString& path)
{
    QString ignored;
    return LoadForChange(path, &ignored).value_or(IniDocument());
}

std::optional<IniDocument> IniDocument::LoadForChange(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.exists())
        return IniDocument();
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("%1: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    return IniDocument(file.readAll());
}

void IniDocument::reindex()
{
    sections_.clear();
    sectionByName_.clear();
    for (int i = 0; i < lines_.size(); ++i) {
        const QString& text = lines_[i].text;
        if (auto name = SectionName(text)) {
            const QString upper = Upper(*name);
            if (!sectionByName_.contains(upper)) // the first section of a name wins
                sectionByName_.insert(upper, int(sections_.size()));
            sections_.append(Section{i, i, {}});
            continue;
        }
        // Keys before the first section belong to no section and are never found.
        if (sections_.isEmpty())
            continue;
        Section& section = sections_.last();
        if (!TrimBlanksAndTabs(text).isEmpty())
            section.lastEntry = i;
        if (auto entry = KeyValue(text)) {
            const QString upper = Upper(entry->key);
            if (!section.keys.contains(upper)) // the first key of a name wins
                section.keys.insert(upper, i);
        }
    }
}

const IniDocument::Section* IniDocument::findSection(const QString& name) const
{
    const auto it = sectionByName_.constFind(name.toUpper());
    return it == sectionByName_.cend() ? nullptr : &sections_[*it];
}

std::optional<int> IniDocument::findKey(const QString& section, const QString& key) const
{
    const Section* s = findSection(section);
    if (!s)
        return std::nullopt;
    const auto it = s->keys.constFind(key.toUpper());
    if (it == s->keys.cend())
        return std::nullopt;
    return *it;
}

bool IniDocument::contains(const QString& section, const QString& key) const
{
    return findKey(section, key).has_value();
}

QString IniDocument::value(const QString& section, const QString& key) const
{
    const auto line = findKey(section, key);
    if (!line)
        return QString();
    QStringView v = KeyValue(lines_[*line].text)->value;
    if (v.size() >= 2 && (v.front() == u'"' || v.front() == u'\'') && v.back() == v.front())
        v = v.sliced(1, v.size() - 2);
    return v.first(std::min<qsizetype>(v.size(), kValueBufferSize - 1)).toString();
}

QString IniDocument::value(const SettingKey& key) const { return value(key.sectionName(), key.keyName()); }

QString IniDocument::value(const SettingKey& key, int index) const
{
    return value(key.sectionName(), key.keyName(index));
}

bool IniDocument::contains(const SettingKey& key) const { return contains(key.sectionName(), key.keyName()); }

QString IniDocument::newLineEnding() const
{
    for (const Line& line : lines_)
        if (!line.eol.isEmpty())
            return line.eol;
    return QStringLiteral("\r\n");
}

void IniDocument::setValue(const QString& section, const QString& key, const QString& value)
{
    QString oneLine = value;
    oneLine.replace(u'\r', u' ').replace(u'\n', u' ');
    const QString eol = newLineEnding();

    if (const auto line = findKey(section, key)) {
        const QString existingKey = KeyValue(lines_[*line].text)->key.toString();
        lines_[*line].text = existingKey + u'=' + oneLine;
        return;
    }
    const Line entry{key + u'=' + oneLine, eol};
    if (const Section* s = findSection(section)) {
        const int at = s->lastEntry + 1;
        if (lines_[at - 1].eol.isEmpty())
            lines_[at - 1].eol = eol;
        lines_.insert(at, entry);
    } else {
        if (!lines_.isEmpty() && lines_.last().eol.isEmpty())
            lines_.last().eol = eol;
        lines_.append(Line{u'[' + section + u']', eol});
        lines_.append(entry);
    }
    reindex();
}

QByteArray IniDocument::toBytes() const
{
    QString text;
    for (const Line& line : lines_)
        text += line.text + line.eol;
    return EncodeSettingsText(text, encoding_);
}

}  // namespace brindar
