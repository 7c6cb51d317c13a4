// Hyperlink path substitutions: links, the dialog's Add and Modify, the ".pat" file and its
// sequential-file form.
#include "reports/sequentialfile.h"
#include "reports/substitutions.h"

#include "support/tempfolder.h"

#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::TempFolder;

namespace {

QString Text(const char* utf8) { return QString::fromUtf8(utf8); }
Substitution Pair(const char* path, const char* replacement) { return {Text(path), Text(replacement)}; }

}  // namespace

namespace brindar {
inline void PrintTo(const Substitution& s, std::ostream* out) { *out << "(" << s.path.toStdString() << " -> " << s.replacement.toStdString() << ")"; }
}  // namespace brindar

TEST(Substitutions, LinkForPath)
{
    const Substitutions general = {Pair("/DATA", "http://srv/data"), Pair("/DATA/PUBLIC", "http://srv/public")};
    const Substitutions specific = {general[1], general[0]}, partial = {Pair("/data/Doc", "http://srv/d")};
    const struct { Substitutions list; const char *path, *link; } rows[] = {
        // The first match in list order wins, not the longest; the case of the rest is kept.
        {general, "/Data/Public/x.doc", "http://srv/data/Public/x.doc"},
        {specific, "/Data/Public/x.doc", "http://srv/public/x.doc"},
        {specific, "/data/y.doc", "http://srv/data/y.doc"},
        {general, "/DATA", "http://srv/data"},
        {general, "/DAT", "file:///DAT"},
        // A plain prefix: it may end in the middle of a name.
        {partial, "/data/Documents/a.doc", "http://srv/duments/a.doc"},
        // Nothing is converted or escaped.
        {{}, "/mes docs/été #1%.doc", "file:///mes docs/été #1%.doc"},
        {partial, "relative/x", "file://relative/x"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(LinkForPath(row.list, Text(row.path)), Text(row.link)) << row.path;
}

TEST(Substitutions, AddAndModify)
{
    Substitutions list = {Pair("/data", "http://srv/data")};
    const struct { decltype(&AddSubstitution) act; const char *path, *replacement; std::optional<QString> message; } rows[] = {
        {AddSubstitution, "", "x", QStringLiteral("Please type a path")},
        {AddSubstitution, "  ", "x", QStringLiteral("Please type a path")},
        {AddSubstitution, "/DATA", "y", QStringLiteral("Path already defined")},
        {AddSubstitution, "/docs", "http://srv/docs", std::nullopt},
        {ChangeSubstitution, "/DOCS", "http://other/docs", std::nullopt},
        {ChangeSubstitution, "/nowhere", "z", QStringLiteral("Path not defined")},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.act(list, Text(row.path), Text(row.replacement), Captions::English()), row.message) << row.path;
    // The path keeps the case it was added with; only the replacement changed.
    EXPECT_EQ(list, Substitutions({Pair("/data", "http://srv/data"), Pair("/docs", "http://other/docs")}));
}

TEST(Substitutions, FileRoundTripAndReading)
{
    TempFolder folder;
    const QString path = folder.file(QStringLiteral("Office.pat"));
    EXPECT_TRUE(ReadSubstitutions(path).isEmpty());
    const Substitutions list = {Pair("/données", "http://srv/données"), Pair("/a,b", ""), Pair("/data", "http://srv/x y")};
    ASSERT_FALSE(WriteSubstitutions(path, list));
    EXPECT_EQ(folder.read(QStringLiteral("Office.pat")),
              "\"/donn\xE9" "es\",\"http://srv/donn\xE9" "es\"\r\n\"/a,b\",\"\"\r\n\"/data\",\"http://srv/x y\"\r\n");
    EXPECT_EQ(ReadSubstitutions(path), list);

    folder.write(QStringLiteral("hand.pat"), "\"/x\"\r\n\r\n  /y , http://z  \r\n\"/z,http\r\n\"/w\",\"http://w\",\"extra\"\n");
    EXPECT_EQ(ReadSubstitutions(folder.file(QStringLiteral("hand.pat"))),
              Substitutions({Pair("/x", ""), Pair("/y", "http://z"), Pair("/z,http", ""), Pair("/w", "http://w")}));
}

TEST(Substitutions, SequentialFieldsAndFlags)
{
    const std::pair<const char*, QStringList> lines[] = {
        {R"(  "a" , "b"  )", {"a", "b"}}, {R"("a,b",#TRUE#)", {"a,b", "#TRUE#"}}, {R"("a",)", {"a", ""}},
        {R"(  plain text , 12 )", {"plain text", "12"}}, {R"("open, to the end)", {"open, to the end"}},
        {R"("a"x"y",b)", {"a", "b"}}, {R"("")", {""}},
    };
    for (const auto& [line, fields] : lines)
        EXPECT_EQ(InputSequentialFields(QString::fromLatin1(line)), fields) << line;
    // A double quote inside cannot be stored faithfully.
    EXPECT_EQ(WriteSequentialText(QStringLiteral("a, \"b\"")), u"\"a, \"b\"\"");

    const std::pair<const char*, std::optional<bool>> flags[] = {
        {"#TRUE#", true}, {"#true#", true}, {"True", true}, {" 1 ", true}, {"2.5", true}, {"#FALSE#", false}, {"false", false},
        {"0", false}, {"", std::nullopt}, {"yes", std::nullopt}, {"#TRUE", std::nullopt}, {"nan", std::nullopt},
    };
    for (const auto& [text, value] : flags)
        EXPECT_EQ(InputSequentialBoolean(QString::fromLatin1(text)), value) << text;
}
