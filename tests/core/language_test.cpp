// Language files: the loader's rules, the shipped files, the offered languages.
#include "core/fieldtable.h"
#include "core/language.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;
using namespace Qt::StringLiterals;
using brindar::test::TempFolder;

namespace {

Captions Apply(const QByteArray& file)
{
    TempFolder folder;
    folder.write(u"Language/Test.lng"_s, file);
    return LoadLanguage(u"Test"_s, folder.path(), QString());
}

// Every entry with a built-in text has one in `captions`; returns how many differ from English.
int CheckEveryEntry(const Captions& captions)
{
    int differing = 0;
    for (int s = 0; s < kCaptionSectionCount; ++s)
        for (int n = 1; n <= CaptionTable(CaptionSection(s)).builtIn; ++n) {
            EXPECT_FALSE(captions.text(CaptionSection(s), n).isEmpty()) << CaptionTable(CaptionSection(s)).header << n;
            differing += captions.text(CaptionSection(s), n) != Captions::English().text(CaptionSection(s), n);
        }
    return differing;
}

}  // namespace

TEST(Language, FileEntriesReplaceOnlyWhatTheyName)
{
    const struct { QByteArray file; const char* title; } rows[] = {
        {"  [Metadata]  \r   4   =   Titre  \r", "Titre"},  // blanks around everything, CR line ends
        {"[Metadata]\n004=a=b\n", "a=b"},
        {"[Metadata]\n4=\n", ""},
        {"[Metadata]\n[Main]\n[Metadata]\n4=Titre", "Titre"},
        {"4=Titre\n[metadata]\n4=Titre\n[Unknown]\n4=Titre\n", "Title"},  // section names are exact
        {"[Metadata]\nx=Titre\n4x=Titre\n-4=Titre\n4 Titre\n", "Title"},
        {"[Metadata]\r\n4=Intitul\xE9 \x80\r\n", "Intitul\u00E9 \u20AC"},  // Windows-1252
        {"[Metadata]\r\n4=Intitul\xC3\xA9\r\n", "Intitul\u00E9"},
        // Only blanks are trimmed: a tab is part of the text, and a section line that
        // starts with one is no section line.
        {"[Metadata]\n4=\tTitre\t\n", "\tTitre\t"},
        {"\t[Metadata]\n4=Titre\n", "Title"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Apply(row.file).text(CaptionSection::Metadata, 4), QString::fromUtf8(row.title)) << row.file.data();

    // Entries beyond a section's highest number, or numbered 0, change nothing anywhere.
    const Captions ignored = Apply("[Metadata]\n125=Last\n130=x\n0=x\n126=x\n[Configuration]\n13=x\n");
    EXPECT_EQ(ignored.text(CaptionSection::Metadata, 125), u"Last");
    for (int n = 1; n < 125; ++n)
        EXPECT_EQ(ignored.text(CaptionSection::Metadata, n), Captions::English().text(CaptionSection::Metadata, n));

    QByteArray garbage;
    for (int i = 0; i < 2048; ++i)
        garbage.append(char(i * 31));
    EXPECT_EQ(Apply(garbage).text(CaptionSection::Metadata, 4), u"Title");
}

TEST(Language, SettingsFolderWinsAndNamesIgnoreCase)
{
    TempFolder settings, shipped;
    shipped.write(u"Language/French.lng"_s, "[Metadata]\n4=Titre\n");
    shipped.write(u"Language/ENGLISH.LNG"_s, "[Metadata]\n4=Heading\n");
    shipped.write(u"Language/Deutsch.LNG"_s, "");
    settings.write(u"Language/french.lng"_s, "[Metadata]\n4=Mon titre\n");
    settings.write(u"Language/Espa\u00F1ol.lng"_s, "");
    settings.write(u"Language/notes.txt"_s, "");
    auto title = [&](const QString& name) {
        return LoadLanguage(name, settings.path(), shipped.path()).text(CaptionSection::Metadata, 4);
    };
    EXPECT_EQ(title(u"French"_s), u"Mon titre");
    EXPECT_EQ(title(u"Missing"_s), u"Title");
    EXPECT_EQ(title(u"English"_s), u"Title");  // the shipped English file adds nothing to the built-in texts
    EXPECT_EQ(OfferedLanguages(settings.path(), shipped.path()),
              (QStringList{u"English"_s, u"Deutsch"_s, u"Espa\u00F1ol"_s, u"french"_s}));
}

TEST(Language, BuiltInEnglishAndShippedFrenchHaveEveryEntry)
{
    CheckEveryEntry(Captions::English());
    // Outer blanks a language file cannot hold are restored.
    EXPECT_EQ(Captions::English().text(CaptionSection::Main, 98), u" error reading cache - not enough memory");
    EXPECT_EQ(Captions::English().text(CaptionSection::Metadata, 0), QString());

    const Captions fr = LoadLanguage(u"French"_s, QString(), test::SourceFile(u"share"_s));
    EXPECT_GT(CheckEveryEntry(fr), 350);
    EXPECT_EQ(fr.monthName(2), u"f\u00E9vrier");
    EXPECT_EQ(fr.dateOrderKey(), u"DDMMYYYY");
    // French users sort these columns as numbers.
    for (int caption : {23, 31, 32, 33, 34, 35, 36, 37, 38})
        EXPECT_TRUE(NumericCaptions().contains(fr.text(CaptionSection::Metadata, caption))) << caption;
}
