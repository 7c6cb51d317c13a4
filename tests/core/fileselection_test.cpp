// The displayed-files settings: which families are gathered, their summary, the check
// and the keys written.
#include "core/captionids.h"
#include "core/fileselection.h"
#include "core/inifile.h"
#include "core/settings.h"
#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;
using namespace Qt::StringLiterals;

TEST(FileSelection, SummaryFollowsTheGate)
{
    const struct {
        const char* keys;
        const char* summary;
    } cases[] = {
        {"", "MS/OOO/HTML/PDF/IPTC/XMP"},  // InclureTout is on by default
        {"InclureTout=0\r\n", ""},
        {"InclureTout=0\r\nInclurePDF=1\r\nInclureOffice=1\r\n", "MS/PDF"},
        {"InclureTout=0\r\nInclureHTML=1\r\nInclurePDF=1\r\n", "HTML/PDF"},
        {"InclureTout=0\r\nInclureExtensions=1\r\nExtensionsSelected=pdf\r\n", "MS/OOO/HTML/PDF/IPTC/XMP"},
        {"InclureTout=0\r\nInclureJPEG=1\r\nInclureXMP=1\r\nInclureOO=1\r\n", "OOO/IPTC/XMP"},
    };
    for (const auto& c : cases) {
        const Configuration configuration = ReadConfiguration(IniDocument("[Configuration]\r\n"_ba + c.keys), true);
        EXPECT_EQ(SelectionSummary(FileSelectionOf(configuration)), QLatin1String(c.summary)) << c.keys;
    }
}

TEST(FileSelection, CheckAndWriteBackWhatWasRead)
{
    FileSelection selection;
    selection.inclureExtensions = true;
    for (const char* empty : {"", " ", " , ,"}) {
        selection.extensionsSelected = QLatin1String(empty);
        selection.extensionsExcluded = QLatin1String(empty);
        EXPECT_EQ(CheckFileSelection(selection).value_or(CaptionId{}).number, caption::TypeAnExtension.number) << empty;
    }
    selection.extensionsExcluded = u"tmp"_s;
    EXPECT_FALSE(CheckFileSelection(selection).has_value());

    // Written and read again, every key holds what the dialog had.
    selection.inclureTout = false;
    selection.inclureCaches = false;
    selection.extensionsSelected = u" doc, xls "_s;
    selection.families = {true, false, true, false, false, true};
    brindar::test::TempFolder folder;
    const QString path = folder.file(u"Brindar.ini"_s);
    ASSERT_FALSE(WriteSettings(path, folder.file(u"ChoixConfiguration.ini"_s), FileSelectionChange(selection)));
    EXPECT_EQ(FileSelectionChange(selection).entries().size(), 11);
    const FileSelection back = FileSelectionOf(ReadConfiguration(IniDocument::Load(path), true));
    EXPECT_FALSE(back.inclureTout);
    EXPECT_TRUE(back.inclureExtensions);
    EXPECT_FALSE(back.inclureCaches);
    EXPECT_EQ(back.extensionsSelected, u"doc,xls");  // blanks go when read
    EXPECT_EQ(back.extensionsExcluded, u"tmp");
    EXPECT_EQ(back.families, selection.families);
}
