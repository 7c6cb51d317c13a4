// The HTML layout options: the prefix cleaned, the nineteen keys in order with the long
// header and footer texts over two keys, and the samples.
#include "core/inifile.h"
#include "reports/htmloptions.h"
#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;
using namespace Qt::StringLiterals;

TEST(HtmlOptions, PrefixKeysAndSamples)
{
    const struct {
        const char* typed;
        const char* kept;
    } prefixes[] = {{"a:b?c", "abc"}, {"Reports", "Reports"}, {"\\/:*?\"<>|", ""}, {"2026 <draft>", "2026 draft"}};
    for (const auto& p : prefixes)
        EXPECT_EQ(CleanPrefix(QLatin1String(p.typed)), QLatin1String(p.kept)) << p.typed;

    HtmlOptions options;
    options.prefixeTableau = u"Photos"_s;
    options.texteEnTete = QString(300, u'h');
    options.textePied = QString(600, u'f');  // longer than two keys hold: cut at 508
    options.couleurTitre = 0x00FF00;
    const SettingsChange change = HtmlOptionsChange(options);
    QStringList keys;
    for (const auto& entry : change.entries())
        keys << entry.key;
    EXPECT_EQ(keys, (QStringList{u"PrefixeTableau"_s, u"AjouterDate"_s, u"EffacerAnciensTableaux"_s, u"ImagesSuivent"_s,
                                 u"PathListeTableaux"_s, u"IndexListes"_s, u"IndexType"_s, u"TexteEnTete"_s,
                                 u"TexteEnTete2"_s, u"ImageEnTete"_s, u"RenvoiALaLigne"_s, u"CouleurTitre"_s,
                                 u"ImageFond"_s, u"ImageDebutTableau"_s, u"TotalDocuments"_s, u"DisplayDirectory"_s,
                                 u"TextePied"_s, u"TextePied2"_s, u"ImagePied"_s}));
    brindar::test::TempFolder folder;
    const QString path = folder.file(u"Brindar.ini"_s);
    ASSERT_FALSE(WriteSettings(path, folder.file(u"ChoixConfiguration.ini"_s), change));
    const HtmlOptions back = HtmlOptionsOf(ReadConfiguration(IniDocument::Load(path), true));
    EXPECT_EQ(back.texteEnTete, options.texteEnTete);
    EXPECT_EQ(back.textePied, QString(kHtmlTextLength, u'f'));
    EXPECT_EQ(back.couleurTitre, 0x00FF00);
    EXPECT_EQ(back.prefixeTableau, u"Photos");

    const Captions& english = Captions::English();
    EXPECT_EQ(SampleHeaderText(english), u"<center><h2>List of documents</h2><h3><i>%Date</i></h3></center>");
    EXPECT_TRUE(SampleFooterText(english).contains(u"<br><center><h3>For internal use only</center></h3>"_s));
    const QStringList summary = HtmlSummaryText(english).split(u"\r\n"_s);
    ASSERT_EQ(summary.size(), 12);
    EXPECT_EQ(summary.front(), u"Short HTML summary");
    EXPECT_EQ(summary.back(), u"%Version -> version of Brindar Pro");
}
