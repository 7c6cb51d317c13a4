// File replacement through an unnamed file, with the old file's permissions, owner and
// extended attributes kept.
#include "platform/filereplace.h"

#include "platform/filenames.h"

#include <QFileInfo>
#include <QRandomGenerator>
#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace brindar {
namespace {

// No chain of links longer than the system's own limit is followed.
constexpr int kLinkLimit = 40;
constexpr char kTemporaryPrefix[] = ".brindar-";
constexpr int kTemporaryLetters = 6;

QByteArray Join(const QByteArray& folder, const QByteArray& name)
{
    return folder.endsWith('/') ? folder + name : folder + '/' + name;
}

QByteArray FolderOf(const QByteArray& path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash > 0 ? path.left(slash) : QByteArray("/");
}

// Copies the "user." attributes: on NTFS they are the file's named streams, elsewhere
// its desktop comments and tags.
bool CopyUserAttributes(const QByteArray& from, int to)
{
    const ssize_t length = listxattr(from.constData(), nullptr, 0);
    if (length <= 0)
        return true;
    QByteArray names(length, '\0');
    const ssize_t got = listxattr(from.constData(), names.data(), size_t(names.size()));
    if (got < 0)
        return true;
    for (const QByteArray& name : names.left(got).split('\0')) {
        if (!name.startsWith("user."))
            continue;
        const ssize_t size = getxattr(from.constData(), name.constData(), nullptr, 0);
        if (size < 0)
            continue;
        QByteArray value(size, '\0');
        if (getxattr(from.constData(), name.constData(), value.data(), size_t(value.size())) != size)
            continue;
        if (fsetxattr(to, name.constData(), value.constData(), size_t(value.size()), 0) != 0)
            return false;
    }
    return true;
}

// The umask, read without changing it (umask() alone would, for a moment, for every
// thread); 022 when the system does not say.
mode_t ProcessUmask()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (status.open(QIODevice::ReadOnly))
        for (const QByteArray& line : status.readAll().split('\n'))
            if (line.startsWith("Umask:"))
                return mode_t(line.mid(6).trimmed().toUInt(nullptr, 8));
    return 022;
}

// The file `path` names in the end. A symbolic link, or a chain of them, is followed to
// its final target, each link's text read from the link's own folder, so that the link
// stays and the file it points at gets the new content.
std::optional<QByteArray> FinalTarget(QByteArray path, QString* why)
{
    for (int hops = 0; hops <= kLinkLimit; ++hops) {
        struct stat info {};
        if (::lstat(path.constData(), &info) != 0 || !S_ISLNK(info.st_mode))
            return path;  // a missing file is made; any other trouble shows when it is written
        QByteArray text(PATH_MAX, '\0');
        const ssize_t length = ::readlink(path.constData(), text.data(), size_t(text.size()));
        if (length < 0) {
            *why = LastSystemError();
            return std::nullopt;
        }
        text.truncate(length);
        path = text.startsWith('/') ? text : Join(FolderOf(path), text);
    }
    errno = ELOOP;
    *why = LastSystemError();
    return std::nullopt;
}

// Temporaries are named ".brindar-<pid>-" and six letters or digits after the process
// that writes them, so that one left by a killed process can be told from one that is
// still being written.
QByteArray TemporaryPrefix() { return kTemporaryPrefix + QByteArray::number(::getpid()) + '-'; }

// The process that wrote the temporary `name`, or 0 when the name is not of that shape.
pid_t TemporaryWriter(const QByteArray& name)
{
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const auto isLetter = [&](char c) { return isDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    const qsizetype start = qsizetype(sizeof kTemporaryPrefix) - 1;
    const qsizetype dash = name.indexOf('-', start);
    if (!name.startsWith(kTemporaryPrefix) || dash <= start || dash - start > 9
        || name.size() != dash + 1 + kTemporaryLetters)
        return 0;
    const QByteArray pid = name.mid(start, dash - start);
    const QByteArray letters = name.mid(dash + 1);
    if (!std::all_of(pid.cbegin(), pid.cend(), isDigit) || !std::all_of(letters.cbegin(), letters.cend(), isLetter))
        return 0;
    return pid_t(pid.toInt());
}

// Removes the named temporaries that killed processes of this program left in `folder`:
// names of that shape whose process is gone, regular files of this user. Nothing else is
// touched: no other name, and no temporary of a process that is still running.
void RemoveStaleTemporaries(const QByteArray& folder)
{
    DIR* dir = ::opendir(folder.constData());
    if (!dir)
        return;
    while (const dirent* item = ::readdir(dir)) {
        const pid_t writer = TemporaryWriter(QByteArray(item->d_name));
        if (writer <= 0 || ::kill(writer, 0) == 0 || errno != ESRCH)
            continue;
        struct stat info {};
        if (::fstatat(::dirfd(dir), item->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(info.st_mode)
            && info.st_uid == ::geteuid())
            ::unlinkat(::dirfd(dir), item->d_name, 0);
    }
    ::closedir(dir);
}

// The new content until it takes the file's name: its descriptor, and the temporary name
// that holds it in the folder while it has one. Both go on the way out.
struct Staged {
    Staged() = default;
    Staged(const Staged&) = delete;
    Staged& operator=(const Staged&) = delete;
    ~Staged()
    {
        if (descriptor >= 0)
            ::close(descriptor);
        if (!name.isEmpty())
            ::unlink(name.constData());
    }
    int descriptor = -1;
    QByteArray name;
};

// Opens the file that receives the new content in `folder`: an unnamed one when asked
// for and the file system has them, else a named temporary, made once the stale ones
// are gone.
std::optional<QString> Stage(Staged& staged, const QByteArray& folder, Staging staging)
{
    if (staging == Staging::Unnamed) {
        staged.descriptor = ::open(folder.constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
        if (staged.descriptor >= 0)
            return std::nullopt;
        // EISDIR: a system older than unnamed files takes the flag for a folder.
        if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL)
            return LastSystemError();
    }
    RemoveStaleTemporaries(folder);
    QByteArray name = Join(folder, TemporaryPrefix() + QByteArray(kTemporaryLetters, 'X'));
    staged.descriptor = ::mkostemp(name.data(), O_CLOEXEC);
    if (staged.descriptor < 0)
        return LastSystemError();
    staged.name = name;
    return std::nullopt;
}

// Gives the unnamed file a temporary name in the folder, from which it is renamed.
std::optional<QString> NameStaged(Staged& staged, const QByteArray& folder)
{
    static constexpr char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    const QByteArray self = "/proc/self/fd/" + QByteArray::number(staged.descriptor);
    for (int attempt = 0; staged.name.isEmpty() && attempt < 100; ++attempt) {
        QByteArray name = Join(folder, TemporaryPrefix());
        for (int i = 0; i < kTemporaryLetters; ++i)
            name += kLetters[QRandomGenerator::global()->bounded(int(sizeof kLetters) - 1)];
        // Through /proc: linking the descriptor itself takes a privilege most users lack.
        if (::linkat(AT_FDCWD, self.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) == 0
            || (errno == ENOENT && ::linkat(staged.descriptor, "", AT_FDCWD, name.constData(), AT_EMPTY_PATH) == 0))
            staged.name = name;
        else if (errno != EEXIST)
            return LastSystemError();
    }
    return staged.name.isEmpty() ? std::optional<QString>(LastSystemError()) : std::nullopt;
}

}  // namespace

std::optional<QString> ReplaceFile(const QString& path, const std::function<bool(QFile&)>& write, Staging staging)
{
    const auto fail = [&](const QString& why) { return std::optional<QString>(QStringLiteral("%1: %2").arg(path, why)); };
    QString why;
    const QByteArray named = EncodeFileName(QFileInfo(path).absoluteFilePath());
    const std::optional<QByteArray> target = FinalTarget(named, &why);
    if (!target)
        return fail(why);
    const QByteArray folder = FolderOf(*target);

    struct stat old {};
    const bool exists = ::stat(target->constData(), &old) == 0;
    struct stat folderInfo {};
    if (exists) {
        // The rename needs no permission on the file itself, so a file marked read-only
        // would be replaced like any other: the mark is the user's word, for root too.
        if (!(old.st_mode & S_IWUSR))
            return fail(QStringLiteral("the file is read-only"));
        if (::faccessat(AT_FDCWD, target->constData(), W_OK, AT_EACCESS) != 0)
            return fail(QStringLiteral("the file is read-only (%1)").arg(LastSystemError()));
    } else if (*target != named && (::stat(folder.constData(), &folderInfo) != 0 || !S_ISDIR(folderInfo.st_mode))) {
        // A link to nothing yet gets its target made, as any program writing through the
        // link would make it; a folder is never made for it.
        return fail(QStringLiteral("it links to %1, whose folder does not exist").arg(DecodeFileName(*target)));
    }

    Staged staged;
    if (auto error = Stage(staged, folder, staging))
        return fail(*error);
    QFile file;
    if (!file.open(staged.descriptor, QIODevice::ReadWrite, QFileDevice::DontCloseHandle))
        return fail(file.errorString());
    if (!write(file) || !file.flush())
        return fail(file.errorString());
    file.close();

    const int fd = staged.descriptor;
    if (exists) {
        if (fchmod(fd, old.st_mode & 07777) != 0)
            return fail(LastSystemError());
        // Only the super-user may give a file away; for anyone else it is already theirs.
        if (fchown(fd, old.st_uid, old.st_gid) != 0 && geteuid() == 0)
            return fail(LastSystemError());
        if (!CopyUserAttributes(*target, fd))
            return fail(QStringLiteral("its named streams cannot be kept: %1").arg(LastSystemError()));
    } else {
        // A new file gets the permissions any program gives it (0666 less the umask), not
        // the private ones of a temporary file.
        if (fchmod(fd, 0666 & ~ProcessUmask()) != 0)
            return fail(LastSystemError());
    }
    if (fsync(fd) != 0)
        return fail(LastSystemError());
    if (auto error = NameStaged(staged, folder))
        return fail(*error);
    if (std::rename(staged.name.constData(), target->constData()) != 0)
        return fail(LastSystemError());
    staged.name.clear();
    // The rename itself reaches the disk with the folder.
    const int folderDescriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folderDescriptor >= 0) {
        fsync(folderDescriptor);
        ::close(folderDescriptor);
    }
    return std::nullopt;
}

}  // namespace brindar
