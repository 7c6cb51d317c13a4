// The lists of names the file commands and the scan's read errors show.
#include "ui/filecommands.h"

#include <gtest/gtest.h>

using namespace brindar;
using namespace Qt::StringLiterals;

TEST(FileCommands, NamesMessages)
{
    QStringList many;
    for (int i = 1; i <= 23; ++i)
        many << u"f%1"_s.arg(i);
    const struct {
        QString heading;
        QStringList names;
        int shown;
        QString expected;
    } cases[] = {
        {u"Move these files to the trash?"_s, {u"a"_s}, 10, u"Move these files to the trash?\r\na"_s},
        {QString(), {u"Error reading file ... /x"_s, u"Error reading file ... /y"_s}, 20,
         u"Error reading file ... /x\r\nError reading file ... /y"_s},
        {u"H"_s, many.mid(0, 3), 2, u"H\r\nf1\r\nf2\r\n... and 1 more"_s},
        {QString(), many, 20, many.mid(0, 20).join(u"\r\n"_s) + u"\r\n... and 3 more"_s},
    };
    for (const auto& c : cases)
        EXPECT_EQ(NamesMessage(Captions::English(), c.heading, c.names, c.shown), c.expected)
            << c.expected.toStdString();
}
