// Language files: the loader's rules, the shipped files, the offered languages.
#include "core/fieldtable.h"
#include "core/language.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::TempFolder;

namespace {

Captions Apply(const QString& text)
{
    TempFolder folder;
    folder.write(QStringLiteral("Language/Test.lng"), text.toUtf8());
    return LoadLanguage(QStringLiteral("Test"), folder.path(), QString());
}

QString Shipped() { return brindar::test::SourceFile(QStringLiteral("share")); }

}  // namespace

TEST(Language, BuiltInEnglish)
{
    const Captions& en = Captions::English();
    EXPECT_EQ(en.text(CaptionSection::Metadata, 30), u"Document");
    EXPECT_EQ(en.text(CaptionSection::Metadata, 4), u"Title");
    EXPECT_EQ(en.text(CaptionSection::Main, 43), u"files");
    EXPECT_EQ(en.text(CaptionSection::Main, 98), u" error reading cache - not enough memory");
    EXPECT_EQ(en.text(CaptionSection::Configuration, 2), u"&OK");
    EXPECT_EQ(en.monthName(11), u"November");
    EXPECT_EQ(en.dateOrderKey(), u"MMDDYYYY");
    EXPECT_EQ(en.text(CaptionSection::Metadata, 0), QString());
    EXPECT_EQ(en.text(CaptionSection::Metadata, 126), QString());
    for (int s = 0; s < kCaptionSectionCount; ++s) {
        const auto section = CaptionSection(s);
        for (int n = 1; n <= CaptionTable(section).builtIn; ++n)
            EXPECT_FALSE(en.text(section, n).isEmpty()) << CaptionTable(section).header << " " << n;
    }
}

TEST(Language, FileEntriesReplaceOnlyWhatTheyName)
{
    struct Row { QString file; CaptionSection section; int number; QString expected; };
    const QString title = QStringLiteral("Title");
    const Row rows[] = {
        {QStringLiteral("[Metadata]\r\n4=Titre\r\n"), CaptionSection::Metadata, 4, QStringLiteral("Titre")},
        {QStringLiteral("[Metadata]\r\n4=Titre\r\n"), CaptionSection::Metadata, 5, QStringLiteral("Author")},
        {QStringLiteral("  [Metadata]  \n   4   =   Titre  \n"), CaptionSection::Metadata, 4, QStringLiteral("Titre")},
        {QStringLiteral("[Metadata]\r4=Titre\r"), CaptionSection::Metadata, 4, QStringLiteral("Titre")},
        {QStringLiteral("[Metadata]\n4=a=b\n"), CaptionSection::Metadata, 4, QStringLiteral("a=b")},
        {QStringLiteral("[metadata]\n4=Titre\n"), CaptionSection::Metadata, 4, title},
        {QStringLiteral("4=Titre\n[Metadata]\n"), CaptionSection::Metadata, 4, title},
        {QStringLiteral("[Unknown]\n4=Titre\n"), CaptionSection::Metadata, 4, title},
        {QStringLiteral("[Metadata]\nx=Titre\n4x=Titre\n-4=Titre\n"), CaptionSection::Metadata, 4, title},
        {QStringLiteral("[Metadata]\n004=Titre\n"), CaptionSection::Metadata, 4, QStringLiteral("Titre")},
        {QStringLiteral("[Metadata]\n125=Last\n"), CaptionSection::Metadata, 125, QStringLiteral("Last")},
        {QStringLiteral("[Metadata]\n4 Titre\n"), CaptionSection::Metadata, 4, title},
        {QStringLiteral("[Metadata]\n4=\n"), CaptionSection::Metadata, 4, QString()},
        {QStringLiteral("[Main]\n[Metadata]\n[Main]\n43=fichiers"), CaptionSection::Main, 43, QStringLiteral("fichiers")},
    };
    for (const Row& row : rows)
        EXPECT_EQ(Apply(row.file).text(row.section, row.number), row.expected) << row.file.toStdString();

    // Entries beyond a section's highest number, or numbered 0, change nothing anywhere.
    const Captions ignored = Apply(QStringLiteral("[Metadata]\n130=x\n0=x\n126=x\n[Configuration]\n13=x\n"));
    for (int n = 1; n <= 125; ++n)
        EXPECT_EQ(ignored.text(CaptionSection::Metadata, n), Captions::English().text(CaptionSection::Metadata, n));
    EXPECT_EQ(ignored.text(CaptionSection::Metadata, 130), QString());
}

TEST(Language, FilesInWindows1252AndUtf8)
{
    TempFolder folder;
    folder.write(QStringLiteral("Language/Ansi.lng"), "[Metadata]\r\n4=Intitul\xE9\r\n5=\x80uro\r\n");
    folder.write(QStringLiteral("Language/Unicode.lng"), "[Metadata]\r\n4=Intitul\xC3\xA9\r\n");
    EXPECT_EQ(LoadLanguage(QStringLiteral("Ansi"), folder.path(), QString()).text(CaptionSection::Metadata, 4),
              QStringLiteral("Intitul\u00E9"));
    EXPECT_EQ(LoadLanguage(QStringLiteral("Ansi"), folder.path(), QString()).text(CaptionSection::Metadata, 5),
              QStringLiteral("\u20ACuro"));
    EXPECT_EQ(LoadLanguage(QStringLiteral("Unicode"), folder.path(), QString()).text(CaptionSection::Metadata, 4),
              QStringLiteral("Intitul\u00E9"));
    // Binary garbage and a missing file leave English.
    QByteArray garbage(2048, '\0');
    for (int i = 0; i < garbage.size(); ++i)
        garbage[i] = char(i * 31);
    folder.write(QStringLiteral("Language/Garbage.lng"), garbage);
    EXPECT_EQ(LoadLanguage(QStringLiteral("Garbage"), folder.path(), QString()).text(CaptionSection::Metadata, 4), u"Title");
    EXPECT_EQ(LoadLanguage(QStringLiteral("Missing"), folder.path(), QString()).text(CaptionSection::Metadata, 4), u"Title");
}

TEST(Language, SettingsFolderWinsAndNamesIgnoreCase)
{
    TempFolder settings, shipped;
    shipped.write(QStringLiteral("Language/French.lng"), "[Metadata]\n4=Titre\n");
    shipped.write(QStringLiteral("Language/ENGLISH.LNG"), "[Metadata]\n4=Heading\n");
    shipped.write(QStringLiteral("Language/Deutsch.LNG"), "");
    settings.write(QStringLiteral("Language/french.lng"), "[Metadata]\n4=Mon titre\n");
    settings.write(QStringLiteral("Language/Espa\u00F1ol.lng"), "");
    settings.write(QStringLiteral("Language/notes.txt"), "");

    EXPECT_EQ(LoadLanguage(QStringLiteral("French"), settings.path(), shipped.path()).text(CaptionSection::Metadata, 4),
              u"Mon titre");
    EXPECT_EQ(LoadLanguage(QStringLiteral("Deutsch"), settings.path(), shipped.path()).text(CaptionSection::Metadata, 4),
              u"Title");
    // The shipped English file adds nothing to the built-in texts.
    EXPECT_EQ(LoadLanguage(QStringLiteral("English"), settings.path(), shipped.path()).text(CaptionSection::Metadata, 4),
              u"Title");
    EXPECT_EQ(OfferedLanguages(settings.path(), shipped.path()),
              (QStringList{QStringLiteral("English"), QStringLiteral("Deutsch"), QStringLiteral("Espa\u00F1ol"),
                           QStringLiteral("french")}));
}

TEST(Language, ShippedFrenchTranslatesEveryEntry)
{
    const Captions fr = LoadLanguage(QStringLiteral("French"), QString(), Shipped());
    const Captions& en = Captions::English();
    int differing = 0;
    for (int s = 0; s < kCaptionSectionCount; ++s) {
        const auto section = CaptionSection(s);
        for (int n = 1; n <= CaptionTable(section).builtIn; ++n) {
            EXPECT_FALSE(fr.text(section, n).isEmpty()) << CaptionTable(section).header << " " << n;
            differing += fr.text(section, n) != en.text(section, n);
        }
    }
    EXPECT_GT(differing, 350);
    EXPECT_EQ(fr.monthName(2), QStringLiteral("f\u00E9vrier"));
    EXPECT_EQ(fr.dateOrderKey(), u"DDMMYYYY");
    // French users sort these columns as numbers.
    for (int caption : {23, 31, 32, 33, 34, 35, 36, 37, 38})
        EXPECT_TRUE(NumericCaptions().contains(fr.text(CaptionSection::Metadata, caption))) << caption;
}
