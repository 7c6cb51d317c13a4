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

// Where a test document lives: the shared corpus, or the project's own small documents
// (made by tests/data/make_compound.py).
QString Source(const QString& name)
{
    return name.startsWith(u"fuzz/") ? SourceFile(name) : CorpusFile(name);
}

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
    const QByteArray out = python.readAllStandardOutput();
    EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
    return QJsonDocument::fromJson(out).object();
}

}  // namespace

TEST(OfficePropertiesWrite, EveryOperationRoundTrips)
{
    struct Row {
        const char* document;
        int commentLength;  // past 4096 the summary leaves the mini stream; past 64 KiB the FAT grows
    };
    const Row rows[] = {
        {"ole/poi__TestMickey.doc", 20},
        {"ole/poi__TestMickey.doc", 5000},
        {"ole/poi__TestMickey.doc", 70000},
        {"ole/poi__TestInvertedClassID.doc", 20},  // no document summary: the stream is added
        {"ole/poi__28772.xls", 20},                 // no summary information: the stream is added
        {"ole/poi__Test0313rur.adm", 20},           // code page 1200
        {"ole/poi__TestChineseProperties.doc", 20}, // code page 65001
        {"fuzz/corpus/ole_fuzzer/minimal-4096.doc", 5000},  // 4096-byte sectors
    };
    for (const Row& row : rows) {
        TempFolder folder;
        const QString path = CopyOf(folder, QLatin1String(row.document));
        if (path.isEmpty())
            GTEST_SKIP() << "shared corpus not found";
        const QString comment = QString(row.commentLength, u'c');
        const QString title = QStringLiteral("Nouveau titre \u00E9t\u00E9 \u0100");  // Ā needs a wide string in 1252

        OfficeProperties p;
        ASSERT_TRUE(p.open(path, OfficeProperties::kModeWrite)) << row.document;
        const QString author = p.author().value_or(QString());
        EXPECT_TRUE(p.setTitle(title));
        EXPECT_TRUE(p.setComments(comment));
        EXPECT_TRUE(p.setCompany(QStringLiteral("ACME")));
        EXPECT_TRUE(p.setManager(QStringLiteral("Mme Dupont")));
        EXPECT_TRUE(p.setRevisionNumber(QStringLiteral("12")));
        EXPECT_TRUE(p.writeUserDefined(QStringLiteral("Projet"), 42));
        EXPECT_TRUE(p.writeUserDefined(QStringLiteral("Livr\u00E9"), true));
        EXPECT_TRUE(p.writeUserDefined(QStringLiteral("Client"), QStringLiteral("Dupont")));
        EXPECT_TRUE(p.writeUserDefined(QStringLiteral("client"), QStringLiteral("Durand")));  // same name
        EXPECT_TRUE(p.writeUserDefined(QStringLiteral("Temp"), 1.5));
        EXPECT_TRUE(p.removeUserDefined(QStringLiteral("TEMP")));
        QString error;
        ASSERT_TRUE(p.save(&error)) << error.toStdString();
        p.close();

        OfficeProperties back;
        ASSERT_TRUE(back.open(path, OfficeProperties::kModeRead)) << row.document;
        EXPECT_EQ(back.title(), title) << row.document;
        EXPECT_EQ(back.comments(), comment) << row.document;
        EXPECT_EQ(back.company(), u"ACME") << row.document;
        EXPECT_EQ(back.manager(), u"Mme Dupont") << row.document;
        EXPECT_EQ(back.revisionNumber(), u"12") << row.document;
        EXPECT_EQ(back.author().value_or(QString()), author) << row.document;  // untouched
        EXPECT_TRUE(back.propertyGroups() & OfficeProperties::kUserDefinedGroup);
        QMap<QString, QVariant> user;
        for (int i = 0; i < back.userDefinedCount(); ++i)
            user.insert(*back.userDefinedName(i), *back.userDefinedValue(i));
        EXPECT_EQ(user.value(QStringLiteral("Projet")).toLongLong(), 42) << row.document;
        EXPECT_EQ(user.value(QStringLiteral("Livr\u00E9")).toBool(), true) << row.document;
        EXPECT_EQ(user.value(QStringLiteral("Client")).toString(), u"Durand") << row.document;
        EXPECT_FALSE(user.contains(QStringLiteral("Temp")));

        const QJsonObject check = CheckWithOlefile(Source(QLatin1String(row.document)), path);
        EXPECT_EQ(check.value(u"changed").toArray(), QJsonArray()) << row.document;
        EXPECT_TRUE(check.value(u"streams").toArray().contains(QStringLiteral("\u0005SummaryInformation")));
        EXPECT_EQ(check.value(u"values").toObject().value(u"company").toString(), u"ACME") << row.document;
    }
}

TEST(OfficePropertiesWrite, TheFileKeepsItsPermissionsAndNamedStreams)
{
    TempFolder folder;
    const QString path = CopyOf(folder, QStringLiteral("ole/poi__TestMickey.doc"));
    if (path.isEmpty())
        GTEST_SKIP() << "shared corpus not found";
    const auto permissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup;
    ASSERT_TRUE(QFile::setPermissions(path, permissions));
    const auto before = QFile::permissions(path);
    const bool attributes = !WriteNamedStream(path, QStringLiteral("xdg.comment"), "kept");

    OfficeProperties p;
    ASSERT_TRUE(p.open(path, OfficeProperties::kModeWriteTransacted));
    ASSERT_TRUE(p.setTitle(QStringLiteral("T")));
    ASSERT_TRUE(p.save());
    EXPECT_EQ(QFile::permissions(path), before);
    if (attributes) {
        EXPECT_EQ(ReadNamedStream(path, QStringLiteral("xdg.comment")), QByteArray("kept"));
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);  // no temporary left
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
    ASSERT_TRUE(document.has_value());
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

    // Reading only: nothing can be set.
    OfficeProperties reader;
    ASSERT_TRUE(reader.open(path, OfficeProperties::kModeRead));
    EXPECT_FALSE(reader.setTitle(QStringLiteral("x")));
    EXPECT_FALSE(reader.writeUserDefined(QStringLiteral("x"), 1));
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
    convert.start(office, {QStringLiteral("--headless"), QStringLiteral("-env:UserInstallation=file://") + folder.path()
                               + QStringLiteral("/profile"),
                           QStringLiteral("--convert-to"), QStringLiteral("pdf"), path});
    convert.waitForFinished(180000);
    // The PDF carries the document's new title: LibreOffice read the written properties.
    const PdfInfo pdf = ReadPdfInfo(folder.file(QStringLiteral("poi__TestMickey.pdf")));
    EXPECT_TRUE(pdf.isPdf) << convert.readAllStandardError().toStdString();
    EXPECT_EQ(pdf.title, u"Written back by Brindar");
    EXPECT_EQ(pdf.pages, u"1");
}
