// Language files: the loader, the list of offered languages, the caption lookup.
#include "core/language.h"

#include "core/captionids.h"
#include "core/settingstext.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace brindar {
namespace {

// [Main] and [XML] have no fixed highest entry; these sizes leave room for texts to come.
constexpr CaptionTableInfo kTables[kCaptionSectionCount] = {
    {"[Main]", 136, 160},     {"[Configuration]", 10, 12}, {"[Metadata]", 123, 125},
    {"[Select]", 18, 20},    {"[HTML]", 65, 68},          {"[Hypertext]", 15, 15},
    {"[Modify]", 27, 30},    {"[List]", 29, 30},          {"[XML]", 49, 80},
};

// Texts whose outer blanks are part of the built-in caption; a language file cannot
// hold them (lines are trimmed), so they are restored here.
struct PaddedText {
    CaptionSection section;
    int number;
    const char16_t* text;
};
constexpr PaddedText kPaddedEnglish[] = {
    {CaptionSection::Main, 98, u" error reading cache - not enough memory"},
    {CaptionSection::Xml, 40, u"Invalid XML output filename: "},
    {CaptionSection::Xml, 44, u"Invalid transformed output filename: "},
};

// Where the report date's words live in the [HTML] table.
constexpr int kFirstMonthEntry = 45;
constexpr int kDateOrderEntry = 57;

// Lines and their parts lose their blanks at both ends; a tab is part of the text.
bool IsBlank(QChar c) { return c == u' '; }

QStringView Trimmed(QStringView s)
{
    while (!s.isEmpty() && IsBlank(s.front()))
        s = s.sliced(1);
    while (!s.isEmpty() && IsBlank(s.back()))
        s.chop(1);
    return s;
}

// Decimal digits only; anything else counts as 0 and is ignored by the caller.
int EntryNumber(QStringView s)
{
    if (s.isEmpty() || s.size() > 9)
        return 0;
    int n = 0;
    for (QChar c : s) {
        if (c < u'0' || c > u'9')
            return 0;
        n = n * 10 + (c.unicode() - u'0');
    }
    return n;
}

}  // namespace

const CaptionTableInfo& CaptionTable(CaptionSection section) { return kTables[int(section)]; }

Captions::Captions()
{
    for (int i = 0; i < kCaptionSectionCount; ++i)
        tables_[i] = QStringList(kTables[i].highest);
}

const Captions& Captions::English()
{
    static const Captions english = [] {
        Captions c;
        c.apply(QString::fromUtf8(EnglishLanguageFileText()));
        for (const PaddedText& padded : kPaddedEnglish)
            c.tables_[int(padded.section)][padded.number - 1] = QString::fromUtf16(padded.text);
        return c;
    }();
    return english;
}

QString Captions::text(CaptionSection section, int number) const
{
    const QStringList& table = tables_[int(section)];
    return number >= 1 && number <= table.size() ? table[number - 1] : QString();
}

QString Captions::text(const CaptionId& id) const { return text(id.section, id.number); }

void Captions::apply(const QString& fileText)
{
    int section = -1;
    qsizetype start = 0;
    while (start < fileText.size()) {
        qsizetype end = start;
        while (end < fileText.size() && fileText[end] != u'\r' && fileText[end] != u'\n')
            ++end;
        const QStringView line = Trimmed(QStringView(fileText).sliced(start, end - start));
        start = end + 1;
        if (line.isEmpty())
            continue;
        if (line.front() == u'[' && line.back() == u']') {
            section = -1;
            for (int i = 0; i < kCaptionSectionCount; ++i)
                if (line == QLatin1String(kTables[i].header))
                    section = i;
            continue;
        }
        const qsizetype eq = line.indexOf(u'=');
        if (eq < 0 || section < 0)
            continue;
        const int number = EntryNumber(Trimmed(line.first(eq)));
        if (number < 1 || number > kTables[section].highest)
            continue;
        tables_[section][number - 1] = Trimmed(line.sliced(eq + 1)).toString();
    }
}

QString Captions::monthName(int month) const
{
    if (month < 1 || month > 12)
        return QString();
    return text(CaptionSection::Html, kFirstMonthEntry + month - 1);
}

QString Captions::dateOrderKey() const { return text(CaptionSection::Html, kDateOrderEntry); }

QString FindLanguageFile(const QString& name, const QString& settingsFolder, const QString& dataFolder)
{
    const QString wanted = name + QStringLiteral(".lng");
    for (const QString& folder : {settingsFolder, dataFolder}) {
        if (folder.isEmpty())
            continue;
        const QDir dir(folder + QStringLiteral("/Language"));
        for (const QString& entry : dir.entryList(QDir::Files | QDir::Hidden))
            if (entry.compare(wanted, Qt::CaseInsensitive) == 0)
                return dir.filePath(entry);
    }
    return QString();
}

Captions LoadLanguage(const QString& name, const QString& settingsFolder, const QString& dataFolder)
{
    Captions captions = Captions::English();
    // The shipped English file only repeats the built-in texts (less the outer blanks
    // that a language file cannot hold); a user's own English file still applies.
    const bool english = name.compare(QLatin1String(kEnglish), Qt::CaseInsensitive) == 0;
    const QString path = FindLanguageFile(name, settingsFolder, english ? QString() : dataFolder);
    if (path.isEmpty())
        return captions;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        captions.apply(DecodeSettingsText(file.readAll()).text);
    return captions;
}

QStringList OfferedLanguages(const QString& settingsFolder, const QString& dataFolder)
{
    QStringList names;
    for (const QString& folder : {settingsFolder, dataFolder}) {
        if (folder.isEmpty())
            continue;
        for (const QString& entry : QDir(folder + QStringLiteral("/Language")).entryList(QDir::Files | QDir::Hidden)) {
            if (!entry.endsWith(u".lng", Qt::CaseInsensitive) || entry.size() <= 4)
                continue;
            if (entry.toUpper() == u"ENGLISH.LNG")
                continue;
            const QString name = entry.chopped(4);
            if (!names.contains(name, Qt::CaseInsensitive))
                names.append(name);
        }
    }
    names.sort(Qt::CaseInsensitive);
    names.prepend(QLatin1String(kEnglish));
    return names;
}

}  // namespace brindar
