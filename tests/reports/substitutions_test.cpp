// Hyperlink path substitutions: links, the dialog's Add and Modify, the ".pat" file and its
// sequential-file form.
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
inline void PrintTo(const Substitution& s, std::ostream* out)
{
    *out << "(" << s.path.toStdString() << " -> " << s.replacement.toStdString() << ")";
}
}  // namespace brindar

TEST(Substitutions, LinkForPath)
{
    const Substitutions general = {Pair("/DATA", "http://srv/data"), Pair("/DATA/PUBLIC", "http://srv/public")};
    const Substitutions specific = {general[1], general[0]};
    const Substitutions partial = {Pair("/data/Doc", "http://srv/d")};
    struct Row { Substitutions list; const char* path; const char* link; };
    const Row rows[] = {
        // The first match in list order wins, not the longest.
        {general, "/Data/Public/x.doc", "http://srv/data/Public/x.doc"},
        {specific, "/Data/Public/x.doc", "http://srv/public/x.doc"},
        {specific, "/data/y.doc", "http://srv/data/y.doc"},
        {general, "/DATA/MiXeD Case.Doc", "http://srv/data/MiXeD Case.Doc"},
        {general, "/DATA", "http://srv/data"},
        {general, "/DAT", "file:///DAT"},
        {general, "/home/data/x", "file:///home/data/x"},
        // A plain prefix: it may end in the middle of a name.
        {partial, "/data/Documents/a.doc", "http://srv/duments/a.doc"},
        {partial, "/DATA/doc", "http://srv/d"},
        // Nothing is converted or escaped.
        {{}, "/abs/path", "file:///abs/path"},
        {{}, "/mes docs/été #1%.doc", "file:///mes docs/été #1%.doc"},
        {partial, "relative/x", "file://relative/x"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(LinkForPath(row.list, Text(row.path)), Text(row.link)) << row.path;
}

TEST(Substitutions, AddAndModify)
{
    const Captions& english = Captions::English();
    Substitutions list = {Pair("/data", "http://srv/data")};
    enum Action { Add, Change };
    struct Row { Action action; const char* path; const char* replacement; std::optional<QString> message; };
    const Row rows[] = {
        {Add, "", "x", QStringLiteral("Please type a path")},
        {Add, "  ", "x", QStringLiteral("Please type a path")},
        {Add, "/DATA", "y", QStringLiteral("Path already defined")},
        {Add, "/docs", "http://srv/docs", std::nullopt},
        {Change, "/DOCS", "http://other/docs", std::nullopt},
        {Change, "/nowhere", "z", QStringLiteral("Path not defined")},
        {Change, "", "z", QStringLiteral("Path not defined")},
    };
    for (const Row& row : rows) {
        const auto act = row.action == Add ? AddSubstitution : ChangeSubstitution;
        EXPECT_EQ(act(list, Text(row.path), Text(row.replacement), english), row.message) << row.path;
    }
    // The path keeps the case it was added with; only the replacement changed.
    EXPECT_EQ(list, (Substitutions{Pair("/data", "http://srv/data"), Pair("/docs", "http://other/docs")}));
}

TEST(Substitutions, FileRoundTripAndReading)
{
    TempFolder folder;
    const QString path = folder.file(QStringLiteral("Office.pat"));
    EXPECT_TRUE(ReadSubstitutions(path).isEmpty());

    const Substitutions list = {Pair("/données", "http://srv/données"), Pair("/a,b", ""),
                                Pair("/data", "http://srv/x y")};
    ASSERT_FALSE(WriteSubstitutions(path, list));
    EXPECT_EQ(folder.read(QStringLiteral("Office.pat")),
              "\"/donn\xE9" "es\",\"http://srv/donn\xE9" "es\"\r\n\"/a,b\",\"\"\r\n\"/data\",\"http://srv/x y\"\r\n");
    EXPECT_EQ(ReadSubstitutions(path), list);

    folder.write(QStringLiteral("hand.pat"),
                 "\"/x\"\r\n\r\n  /y , http://z  \r\n\"/z,http\r\n\"/w\",\"http://w\",\"extra\"\n");
    EXPECT_EQ(ReadSubstitutions(folder.file(QStringLiteral("hand.pat"))),
              (Substitutions{Pair("/x", ""), Pair("/y", "http://z"), Pair("/z,http", ""), Pair("/w", "http://w")}));
}

TEST(Substitutions, SequentialFields)
{
    struct Row { const char* line; QStringList fields; };
    const Row rows[] = {
        {R"("a","b")", {"a", "b"}},
        {R"(  "a" , "b"  )", {"a", "b"}},
        {R"("a,b",#TRUE#)", {"a,b", "#TRUE#"}},
        {R"("a",)", {"a", ""}},
        {R"(,)", {"", ""}},
        {R"(  plain text , 12 )", {"plain text", "12"}},
        {R"("open, to the end)", {"open, to the end"}},
        {R"("a"x"y",b)", {"a", "b"}},
        {R"("")", {""}},
    };
    for (const Row& row : rows)
        EXPECT_EQ(InputSequentialFields(QString::fromLatin1(row.line)), row.fields) << row.line;

    EXPECT_EQ(WriteSequentialText(QStringLiteral("a, \"b\"")), u"\"a, \"b\"\"");
    EXPECT_EQ(WriteSequentialBoolean(true), u"#TRUE#");
    EXPECT_EQ(WriteSequentialBoolean(false), u"#FALSE#");

    struct Flag { const char* text; std::optional<bool> value; };
    const Flag flags[] = {
        {"#TRUE#", true}, {"#true#", true}, {"True", true}, {"TRUE", true}, {" 1 ", true}, {"-1", true},
        {"2.5", true}, {"#FALSE#", false}, {"false", false}, {"0", false}, {"0.0", false},
        {"", std::nullopt}, {"yes", std::nullopt}, {"#TRUE", std::nullopt}, {"nan", std::nullopt},
    };
    for (const Flag& flag : flags)
        EXPECT_EQ(InputSequentialBoolean(QString::fromLatin1(flag.text)), flag.value) << flag.text;
}
