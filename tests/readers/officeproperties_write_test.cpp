// Writing properties back: round trips checked by this reader and by an independent one.
#include "platform/namedstreams.h"
#include "readers/compoundfile.h"
#include "readers/officeproperties.h"
#include "readers/pdfreader.h"

#include "support/tempfolder.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QtEndian>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::CorpusFile;
using brindar::test::SourceFile;
using brindar::test::ReadFile;
using brindar::test::TempFolder;

namespace {

// A test document: in the shared corpus, or one of the project's own small documents.
QString Source(const QString& name) { return name.startsWith(u"fuzz/") ? SourceFile(name) : CorpusFile(name); }

// A copy of a test document in `folder`, or an empty path when it is absent.
QString CopyOf(const TempFolder& folder, const QString& name)
{
    const QByteArray bytes = ReadFile(Source(name));
    return bytes.isEmpty() ? QString() : folder.write(name.section(u'/', -1), bytes);
}

// olefile's view of the written document: the streams that differ from the original's
// (property streams aside) and the summary values.
QJsonObject CheckWithOlefile(const QString& original, const QString& written)
{
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"),
                 {SourceFile(QStringLiteral("tests/readers/olefile_check.py")), original, written});
    python.waitForFinished(60000);
    EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
    return QJsonDocument::fromJson(python.readAllStandardOutput()).object();
}

}  // namespace

TEST(OfficePropertiesWrite, EveryOperationRoundTrips)
{
    struct Row { const char* document; int commentLength; bool transacted = false; };
    const Row rows[] = {
        // Past 4096 bytes the summary leaves the mini stream; past 64 KiB the FAT grows.
        {"ole/poi__TestMickey.doc", 20, true}, {"ole/poi__TestMickey.doc", 5000}, {"ole/poi__TestMickey.doc", 70000},
        {"ole/poi__TestInvertedClassID.doc", 20},  // no document summary: the stream is added
        {"ole/poi__28772.xls", 20},                 // no summary information: the stream is added
        {"ole/poi__Test0313rur.adm", 20},           // code page 1200
        {"ole/poi__TestChineseProperties.doc", 20}, // code page 65001
        {"fuzz/corpus/ole_fuzzer/minimal-4096.doc", 5000},  // 4096-byte sectors
    };
    using P = OfficeProperties;
    for (const Row& row : rows) {
        TempFolder folder;
        const QString path = CopyOf(folder, QLatin1String(row.document));
        if (path.isEmpty())
            GTEST_SKIP() << "shared corpus not found";
        // The file keeps its permissions and named streams, and no temporary file is left.
        ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
        const auto permissions = QFile::permissions(path);
        const bool attributes = !WriteNamedStream(path, QStringLiteral("xdg.comment"), "kept");
        const std::tuple<bool (P::*)(const QString&), std::optional<QString> (P::*)() const, QString> texts[] = {
            {&P::setTitle, &P::title, QStringLiteral("Nouveau titre \u00E9t\u00E9 \u0100")},  // Ā needs a wide string in 1252
            {&P::setComments, &P::comments, QString(row.commentLength, u'c')},
            {&P::setCompany, &P::company, QStringLiteral("ACME")}, {&P::setManager, &P::manager, QStringLiteral("Mme Dupont")},
            {&P::setRevisionNumber, &P::revisionNumber, QStringLiteral("12")}};

        OfficeProperties p;
        ASSERT_TRUE(p.open(path, row.transacted ? P::kModeWriteTransacted : P::kModeWrite)) << row.document;
        const QString author = p.author().value_or(QString());
        for (const auto& [set, get, value] : texts)
            EXPECT_TRUE((p.*set)(value));
        EXPECT_TRUE(p.writeUserDefined(QStringLiteral("Projet"), 42));
        EXPECT_TRUE(p.writeUserDefined(QStringLiteral("Livr\u00E9"), true));
        EXPECT_TRUE(p.writeUserDefined(QStringLiteral("Client"), QStringLiteral("Dupont")));
        EXPECT_TRUE(p.writeUserDefined(QStringLiteral("client"), QStringLiteral("Durand")));  // same name
        EXPECT_TRUE(p.writeUserDefined(QStringLiteral("Temp"), 1.5));
        EXPECT_TRUE(p.removeUserDefined(QStringLiteral("TEMP")));
        QString error;
        ASSERT_TRUE(p.save(&error)) << error.toStdString();
        p.close();
        EXPECT_EQ(QFile::permissions(path), permissions);
        if (attributes) {
            EXPECT_EQ(ReadNamedStream(path, QStringLiteral("xdg.comment")), QByteArray("kept"));
        }
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);

        OfficeProperties back;
        ASSERT_TRUE(back.open(path, P::kModeRead)) << row.document;
        for (const auto& [set, get, value] : texts)
            EXPECT_EQ((back.*get)(), value) << row.document;
        EXPECT_EQ(back.author().value_or(QString()), author) << row.document;  // untouched
        EXPECT_TRUE(back.propertyGroups() & P::kUserDefinedGroup);
        QMap<QString, QVariant> user;
        for (int i = 0; i < back.userDefinedCount(); ++i)
            user.insert(*back.userDefinedName(i), *back.userDefinedValue(i));
        EXPECT_EQ(user.value(QStringLiteral("Projet")).toLongLong(), 42) << row.document;
        EXPECT_EQ(user.value(QStringLiteral("Livr\u00E9")).toBool(), true) << row.document;
        EXPECT_EQ(user.value(QStringLiteral("Client")).toString(), u"Durand") << row.document;
        EXPECT_FALSE(user.contains(QStringLiteral("Temp")));
        EXPECT_FALSE(back.setTitle(QStringLiteral("x")));  // opened for reading: nothing can be set
        EXPECT_FALSE(back.writeUserDefined(QStringLiteral("x"), 1));

        const QJsonObject check = CheckWithOlefile(Source(QLatin1String(row.document)), path);
        EXPECT_EQ(check.value(u"changed").toArray(), QJsonArray()) << row.document;
        EXPECT_TRUE(check.value(u"streams").toArray().contains(QStringLiteral("\u0005SummaryInformation")));
        EXPECT_EQ(check.value(u"values").toObject().value(u"company").toString(), u"ACME") << row.document;
        // One summary section, whatever byte order its identifier was stored in, and the
        // title other readers take from it is the new one (its accents aside: olefile
        // drops every NUL of an 8-bit string, those of UTF-16 ones too).
        EXPECT_EQ(check.value(u"summary_sections").toInt(), 1) << row.document;
        EXPECT_TRUE(check.value(u"values").toObject().value(u"title").toString().startsWith(u"Nouveau titre"))
            << row.document;
    }
}

TEST(OfficePropertiesWrite, AFileThatCannotBeWrittenStaysAsItWas)
{
    TempFolder folder;
    const QString path = CopyOf(folder, QStringLiteral("ole/poi__TestMickey.doc"));
    if (path.isEmpty())
        GTEST_SKIP() << "shared corpus not found";
    // Break the WordDocument stream's chain: its first sector points at itself.
    QByteArray bytes = ReadFile(path);
    QString why;
    auto document = CompoundFile::Open(path, &why);
    ASSERT_TRUE(document.has_value()) << why.toStdString();
    const int word = document->rootStreamIndex(QStringLiteral("WordDocument"));
    ASSERT_GT(word, 0);
    const quint32 start = document->entries()[size_t(word)].start;
    const quint32 fatSector = qFromLittleEndian<quint32>(bytes.constData() + 0x4C);
    qToLittleEndian<quint32>(start, bytes.data() + (fatSector + 1) * 512 + start * 4);
    folder.write(QStringLiteral("poi__TestMickey.doc"), bytes);

    OfficeProperties p;
    ASSERT_TRUE(p.open(path, OfficeProperties::kModeWrite));
    ASSERT_TRUE(p.setTitle(QStringLiteral("never written")));
    QString error;
    EXPECT_FALSE(p.save(&error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_EQ(ReadFile(path), bytes);
}

TEST(OfficePropertiesWrite, PlainFilesKeepPropertiesInNamedStreams)
{
    TempFolder folder;
    const QString path = folder.write(QStringLiteral("notes.txt"), "text");
    if (WriteNamedStream(path, QStringLiteral("probe"), "x"))
        GTEST_SKIP() << "this file system keeps no extended attributes";
    OfficeProperties p;
    ASSERT_TRUE(p.open(path, OfficeProperties::kModeWrite));
    ASSERT_TRUE(p.setAuthor(QStringLiteral("Anne")));
    ASSERT_TRUE(p.writeUserDefined(QStringLiteral("Client"), QStringLiteral("Dupont")));
    ASSERT_TRUE(p.save());
    EXPECT_EQ(ReadFile(path), "text");
    OfficeProperties back;
    ASSERT_TRUE(back.open(path, OfficeProperties::kModeRead));
    EXPECT_EQ(back.author(), u"Anne");
    EXPECT_EQ(back.userDefinedName(0), u"Client");
}

TEST(OfficePropertiesWrite, NamedStreamsAreSavedAllOrNothing)
{
    // Each property set in turn grows past what a named stream holds; then both grow past
    // what some file systems keep per file (ext4: 4 KiB in all), but not past the limit.
    struct Row { int comments, company; bool tooLarge; };
    for (const Row& row : {Row{70000, 4, true}, Row{4, 70000, true}, Row{2500, 2500, false}}) {
        TempFolder folder;
        const QString path = folder.write(QStringLiteral("notes.txt"), "text");
        OfficeProperties p;
        ASSERT_TRUE(p.open(path, OfficeProperties::kModeWrite));
        ASSERT_TRUE(p.setAuthor(QStringLiteral("Anne")));
        if (!p.save())
            GTEST_SKIP() << "this file system keeps no extended attributes";
        const auto summary = ReadNamedStream(path, QStringLiteral("\u0005SummaryInformation"));
        ASSERT_TRUE(p.setComments(QString(row.comments, u'c')) && p.setCompany(QString(row.company, u'c')));
        QString error;
        const bool saved = p.save(&error);
        // Saved, both streams are new; refused, both are as they were (the document
        // summary, which the file did not have, still absent).
        EXPECT_EQ(ReadNamedStream(path, QStringLiteral("\u0005SummaryInformation")) != summary, saved) << row.comments;
        EXPECT_EQ(ReadNamedStream(path, QStringLiteral("\u0005DocumentSummaryInformation")).has_value(), saved);
        EXPECT_EQ(saved, error.isEmpty()) << error.toStdString();
        EXPECT_EQ(error.contains(u"larger than a named stream can be"), row.tooLarge) << error.toStdString();
    }
}

TEST(OfficePropertiesWrite, LibreOfficeStillOpensTheDocument)
{
    const QString office = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (office.isEmpty())
        GTEST_SKIP() << "LibreOffice is not installed";
    TempFolder folder;
    const QString path = CopyOf(folder, QStringLiteral("ole/poi__TestMickey.doc"));
    if (path.isEmpty())
        GTEST_SKIP() << "shared corpus not found";
    OfficeProperties p;
    ASSERT_TRUE(p.open(path, OfficeProperties::kModeWrite));
    ASSERT_TRUE(p.setTitle(QStringLiteral("Written back by Brindar")));
    ASSERT_TRUE(p.setComments(QString(5000, u'c')));
    ASSERT_TRUE(p.writeUserDefined(QStringLiteral("Projet"), 42));
    ASSERT_TRUE(p.save());
    QProcess convert;
    convert.setWorkingDirectory(folder.path());
    convert.start(office, {QStringLiteral("--headless"), QStringLiteral("-env:UserInstallation=file://%1/profile").arg(folder.path()),
                           QStringLiteral("--convert-to"), QStringLiteral("pdf"), path});
    convert.waitForFinished(180000);
    // The PDF carries the document's new title: LibreOffice read the written properties.
    const PdfInfo pdf = ReadPdfInfo(folder.file(QStringLiteral("poi__TestMickey.pdf")));
    EXPECT_TRUE(pdf.isPdf) << convert.readAllStandardError().toStdString();
    EXPECT_EQ(pdf.title, u"Written back by Brindar");
    EXPECT_EQ(pdf.pages, u"1");
}
