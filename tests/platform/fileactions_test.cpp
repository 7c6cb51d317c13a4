// The file actions that change the file system, and the volumes a user browses.
#include "platform/fileactions.h"
#include "platform/filenames.h"
#include "platform/signals.h"
#include "platform/volumes.h"

#include "support/tempfolder.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QSocketNotifier>
#include <QThread>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>

using namespace brindar;
using namespace Qt::StringLiterals;
using brindar::test::TempFolder;

TEST(FileActions, RenameNeverReplaces)
{
    TempFolder folder;
    const QString a = folder.write(u"a.doc"_s, "a"), b = folder.write(u"b.doc"_s, "b");
    QDir(folder.path()).mkdir(u"sub"_s);
    const struct { QString from, to; bool renamed; } rows[] = {
        {a, folder.file(u"c.doc"_s), true},
        {folder.file(u"c.doc"_s), b, false},         // a file of that name: both stay
        {b, folder.file(u"sub"_s), false},           // a folder of that name
        {folder.file(u"sub"_s), folder.file(u"renamed"_s), true},
        {folder.file(u"gone.doc"_s), folder.file(u"d.doc"_s), false},
    };
    for (const auto& row : rows) {
        const auto error = RenameNoReplace(row.from, row.to);
        EXPECT_EQ(!error, row.renamed) << row.from.toStdString() << (error ? error->toStdString() : "");
    }
    EXPECT_EQ(folder.read(u"c.doc"_s), "a");
    EXPECT_EQ(folder.read(u"b.doc"_s), "b");
    EXPECT_TRUE(QDir(folder.file(u"renamed"_s)).exists());
}

TEST(FileActions, TheTrashTakesWhatItCanRecord)
{
    TempFolder folder, data;
    qputenv("XDG_DATA_HOME", data.path().toUtf8());
    const QString path = folder.write(u"old report.html"_s, "old");
    const TrashOutcome trashed = MoveToTrash(path);
    ASSERT_FALSE(trashed.error) << trashed.error->toStdString();
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(test::ReadFile(trashed.pathInTrash), "old");
    EXPECT_TRUE(QFile::exists(data.file(u"Trash/info/old report.html.trashinfo"_s)));

    // A name that is not text cannot be written in the trash's record: the file stays.
    const QString odd = folder.path() + DecodeFileName("/caf\xE9.html");
    ASSERT_TRUE(test::WriteFileAtBytes(EncodeFileName(odd), "odd"));
    EXPECT_TRUE(MoveToTrash(odd).error);
    EXPECT_TRUE(PathExists(odd));
    qunsetenv("XDG_DATA_HOME");
}

TEST(Volumes, OnlyVolumesThatHoldDocuments)
{
    const struct { const char* type; const char* device; const char* root; bool shown; } rows[] = {
        {"ext4", "/dev/sda1", "/home", true}, {"fuseblk", "/dev/sdb1", "/media/me/USB", true},
        {"nfs4", "server:/export", "/mnt/share", true}, {"overlay", "overlay", "/", true},
        {"proc", "proc", "/proc", false}, {"tmpfs", "tmpfs", "/run/user/1000", false},
        {"squashfs", "/dev/loop3", "/snap/core/1", false}, {"cgroup2", "cgroup2", "/sys/fs/cgroup", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(IsUserVolume(QLatin1String(row.type), QLatin1String(row.device), QLatin1String(row.root)), row.shown)
            << row.type << " " << row.root;
    const QList<MountedVolume> volumes = MountedVolumes();
    ASSERT_FALSE(volumes.isEmpty());
    EXPECT_EQ(volumes.front().rootPath, u"/");
}

// A termination signal wakes the descriptor instead of ending the process, once per
// signal, and draining makes it wait again.
TEST(TerminationSignals, ReachTheDescriptorAndNotTheDefaultAction)
{
    const int descriptor = TerminationSignalDescriptor();
    ASSERT_GE(descriptor, 0);
    EXPECT_EQ(TerminationSignalDescriptor(), descriptor);
    QSocketNotifier notifier(descriptor, QSocketNotifier::Read);
    int woken = 0;
    QObject::connect(&notifier, &QSocketNotifier::activated, [&] {
        ++woken;
        DrainTerminationSignals(descriptor);
    });
    const auto waitFor = [](const std::function<bool()>& done) {
        QDeadlineTimer deadline(5000);
        while (!done() && !deadline.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            QThread::msleep(1);
        }
        return done();
    };
    for (int signal : {SIGTERM, SIGINT}) {
        const int before = woken;
        std::raise(signal);
        EXPECT_TRUE(waitFor([&] { return woken > before; })) << signal;
    }
    // Drained: nothing more to read.
    const int settled = woken;
    QDeadlineTimer pause(50);
    while (!pause.hasExpired())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    EXPECT_EQ(woken, settled);
}
