// The folder the window opens when the one it remembers has gone.
#include "core/paths.h"
#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;
using namespace brindar::test;
using namespace Qt::StringLiterals;

TEST(Paths, NearestExistingFolder)
{
    TempFolder folder;
    folder.write(u"a/b/file.txt"_s, "x");
    const QString a = folder.file(u"a"_s);
    const QString b = folder.file(u"a/b"_s);
    const struct {
        QString wanted;
        QString expected;
    } cases[] = {
        {b, b},
        {b + u"/"_s, b},
        {b + u"/gone/deeper"_s, b},
        {a + u"/gone"_s, a},
        {b + u"/file.txt"_s, b},  // a file is not a folder: its folder opens
        {u"/"_s, u"/"_s},
        {u""_s, u"HOME"_s},
        {u"relative/folder"_s, u"HOME"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(NearestExistingFolder(c.wanted, u"HOME"_s), c.expected) << c.wanted.toStdString();
}
