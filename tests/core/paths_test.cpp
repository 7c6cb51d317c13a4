// The folder the window opens when the one it remembers has gone.
#include "core/paths.h"
#include "platform/filenames.h"
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

// Addresses of files for the desktop and libxml2: the name's bytes, so a name that is not UTF-8 still
// names its file.
TEST(Paths, FileAddressesKeepTheNameBytes)
{
    const struct {
        QByteArray bytes;
        const char* address;
    } cases[] = {
        {"/home/me/report.pdf", "file:///home/me/report.pdf"},
        {"/home/me/My Docs/#1 100%.txt", "file:///home/me/My%20Docs/%231%20100%25.txt"},
        {"/tmp/\xC3\xA9t\xC3\xA9.doc", "file:///tmp/%C3%A9t%C3%A9.doc"},
        {"/tmp/caf\xE9.doc", "file:///tmp/caf%E9.doc"},
    };
    for (const auto& c : cases) {
        const QString path = DecodeFileName(c.bytes);
        EXPECT_EQ(FileUrl(path).toEncoded(), QByteArray(c.address)) << c.address;
        EXPECT_TRUE(FileUrl(path).isLocalFile());
    }
}
