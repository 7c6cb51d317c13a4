// Replacing files whole: links written through, read-only files refused, no temporaries left.
#include "platform/filereplace.h"

#include "support/tempfolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <gtest/gtest.h>

using namespace brindar;
using brindar::test::ReadFile;
using brindar::test::TempFolder;

namespace {

std::optional<QString> Replace(const QString& path, const QByteArray& bytes, Staging staging = Staging::Unnamed)
{
    return ReplaceFile(path, [&](QFile& file) { return file.write(bytes) == bytes.size(); }, staging);
}

}  // namespace

TEST(ReplaceFile, WritesThroughLinksAndRefusesReadOnlyFiles)
{
    // Links (name, text read from the link's folder; "@" the test folder), then the final
    // target: whether it exists and is read-only (refused for root too), whether it is written.
    struct Row { QList<std::pair<const char*, const char*>> links; const char* target; bool exists, readOnly, written; };
    const Row rows[] = {
        {{{"Brindar.ini", "real/Brindar.ini"}}, "real/Brindar.ini", true, false, true},
        {{{"Brindar.ini", "@/real/Brindar.ini"}}, "real/Brindar.ini", true, false, true},
        {{{"Brindar.ini", "sub/hop.ini"}, {"sub/hop.ini", "../real/Brindar.ini"}}, "real/Brindar.ini", true, false, true},
        {{{"Brindar.ini", "real/Brindar.ini"}}, "real/Brindar.ini", false, false, true},  // made through the link
        {{{"Brindar.ini", "gone/Brindar.ini"}}, "gone/Brindar.ini", false, false, false},  // no folder made
        {{}, "Brindar.ini", true, true, false},
        {{{"Brindar.ini", "real/Brindar.ini"}}, "real/Brindar.ini", true, true, false},
    };
    for (const Row& row : rows) {
        TempFolder folder;
        QDir(folder.path()).mkpath(QStringLiteral("sub/../real"));
        const QString target = folder.file(QLatin1String(row.target)), path = folder.file(QStringLiteral("Brindar.ini"));
        if (row.exists)
            folder.write(QLatin1String(row.target), "old");
        if (row.readOnly) {
            ASSERT_TRUE(QFile::setPermissions(target, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
        }
        for (const auto& [name, text] : row.links)
            ASSERT_TRUE(QFile::link(QString::fromUtf8(text).replace(u'@', folder.path()), folder.file(QLatin1String(name))));
        const QString link = QFileInfo(path).symLinkTarget();
        const auto permissions = QFile::permissions(target);

        const std::optional<QString> error = Replace(path, "new");
        EXPECT_EQ(error.has_value(), !row.written) << row.target;
        EXPECT_EQ(QFileInfo(path).symLinkTarget(), link) << row.target;
        EXPECT_EQ(ReadFile(target), row.written ? "new" : row.exists ? "old" : "") << row.target;
        if (row.exists) {
            EXPECT_EQ(QFile::permissions(target), permissions) << row.target;
        }
        if (row.readOnly) {
            EXPECT_EQ(error.value_or(QString()), path + QStringLiteral(": the file is read-only"));
        }
    }
}

TEST(ReplaceFile, AKilledWriteLeavesNoTemporary)
{
    for (const Staging staging : {Staging::Unnamed, Staging::Named}) {
        TempFolder folder;
        const QString path = folder.write(QStringLiteral("Brindar.ini"), "old");
        // Stay: a name of another shape, a temporary of a process still running (this one).
        const QString running = QStringLiteral(".brindar-%1-abc123").arg(QCoreApplication::applicationPid());
        QStringList kept{folder.write(QStringLiteral(".brindar-notes"), "kept"), folder.write(running, "kept"), path};

        QProcess helper;
        helper.start(QStringLiteral(REPLACEFILE_HELPER), {path, staging == Staging::Named ? "named" : "unnamed"});
        ASSERT_TRUE(helper.waitForReadyRead(60000)) << helper.readAllStandardError().toStdString();
        const QString left = QStringLiteral(".brindar-%1-").arg(helper.processId());
        helper.kill();
        helper.waitForFinished();
        // A named temporary outlives its killed process until the next named write in the
        // folder; an unnamed one goes with it.
        QDir dir(folder.path(), {}, QDir::Name, QDir::Files | QDir::Hidden);
        EXPECT_EQ(dir.entryList().filter(left).size(), staging == Staging::Named ? 1 : 0);
        EXPECT_FALSE(Replace(folder.file(QStringLiteral("other.ini")), "other", staging).has_value());
        dir.refresh();
        kept << folder.file(QStringLiteral("other.ini"));
        for (QString& file : kept)
            file = QFileInfo(file).fileName();
        kept.sort();
        EXPECT_EQ(dir.entryList(), kept) << int(staging);
        EXPECT_EQ(ReadFile(path), "old");
    }
}
