// The displayed-metadata layout against the field table and the readers, and the keys the
// dialog writes.
#include "core/columnbuilder.h"
#include "core/fieldtable.h"
#include "core/language.h"
#include "readers/displayedfields.h"
#include "readers/readertable.h"
#include "support/tempfolder.h"

#include <QSet>
#include <gtest/gtest.h>

using namespace brindar;
using namespace Qt::StringLiterals;

TEST(DisplayedFields, EveryFieldOnATabAndEveryRowARealColumn)
{
    QSet<QString> codes;
    for (const FieldInfo& field : FieldTable())
        codes.insert(QLatin1String(field.code));
    QSet<QString> shown;
    for (const DisplayedFieldRow& row : DisplayedFieldsLayout()) {
        EXPECT_TRUE(codes.contains(row.code)) << row.code.toStdString();
        EXPECT_GT(row.caption, 0);
        EXPECT_LE(row.caption, 125);
        shown.insert(row.code);
    }
    EXPECT_EQ(shown, codes);
    // Each reader's tab shows every column its reader fills.
    const struct {
        MetadataTab tab;
        ReaderBit reader;
    } tabs[] = {{MetadataTab::OpenOffice, kReaderOpenOffice}, {MetadataTab::Html, kReaderHtml},
                {MetadataTab::Pdf, kReaderPdf},               {MetadataTab::Iptc, kReaderIptc},
                {MetadataTab::Xmp, kReaderXmp}};
    for (const auto& t : tabs) {
        QSet<QString> onTab;
        for (const DisplayedFieldRow& row : DisplayedFieldsLayout())
            if (row.tab == t.tab)
                onTab.insert(row.code);
        for (const ReaderInfo& reader : Readers()) {
            if (reader.bit != t.reader)
                continue;
            for (const QString& code : reader.codes)
                EXPECT_TRUE(onTab.contains(code)) << reader.name << ' ' << code.toStdString();
        }
    }
}

TEST(DisplayedFields, WrittenSwitchesBuildTheirColumns)
{
    DisplayedFields fields = DisplayedFieldsOf(IniDocument(QByteArray()));
    fields.shown[u".TI"_s] = true;
    fields.shown[u".AU"_s] = true;
    fields.shown[u".VE"_s] = true;
    fields.names[3] = u"Client"_s;
    fields.slotShown[3] = true;
    fields.slotShown[5] = true;  // no name: no column
    fields.macintoshAccents = true;
    EXPECT_EQ(ColumnCount(fields), 5);

    brindar::test::TempFolder folder;
    const QString path = folder.file(u"Brindar.ini"_s);
    ASSERT_FALSE(WriteSettings(path, folder.file(u"ChoixConfiguration.ini"_s), DisplayedFieldsChange(fields)));
    const IniDocument written = IniDocument::Load(path);
    const ColumnSet columns = BuildColumns(written, Captions::English(), true);
    EXPECT_EQ(columns.codeList, u":meta.TI.AU.P3.VE");
    EXPECT_TRUE(columns.macintoshAccents);
    // The family labels of a shared column follow its switch; the others are off.
    const struct {
        const char* section;
        const char* key;
        const char* value;
    } keys[] = {{"PDF", "PDFTitle", "1"},      {"PDF", "PDFAuthor", "1"},     {"PDF", "PDFKeywords", "0"},
                {"IPTC", "IPTCHeadline", "1"}, {"IPTC", "IPTCByline", "1"},   {"IPTC", "IPTCCaption", "0"},
                {"Proprietes", "Titre", "1"},  {"Personnelles", "textPerso3", "Client"}};
    for (const auto& k : keys)
        EXPECT_EQ(written.value(QLatin1String(k.section), QLatin1String(k.key)), QLatin1String(k.value)) << k.key;
    // Read back, the dialog starts where it was left.
    const DisplayedFields back = DisplayedFieldsOf(written);
    EXPECT_EQ(back.shown, fields.shown);
    EXPECT_EQ(back.names, fields.names);
    EXPECT_EQ(back.slotShown, fields.slotShown);
}
