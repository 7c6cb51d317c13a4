// Folder entries through readdir and statx, volumes through QStorageInfo.
#include "platform/fileinfo.h"

#include "platform/filenames.h"

#include <QFile>
#include <QStorageInfo>
#include <algorithm>
#include <cstring>
#include <utility>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace brindar {

namespace {

LocalTime ToLocal(const statx_timestamp& stamp)
{
    const time_t seconds = time_t(stamp.tv_sec);
    tm parts{};
    if (!localtime_r(&seconds, &parts))
        return {};
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec};
}

// The attribute word NTFS keeps, as ntfs-3g shows it; 0 elsewhere.
quint32 NtfsAttributes(int folder, const QByteArray& name)
{
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(folder) + '/' + name;
    unsigned char bytes[4] = {};
    if (getxattr(path.constData(), "system.ntfs_attrib", bytes, sizeof bytes) != 4)
        return 0;
    return quint32(bytes[0]) | quint32(bytes[1]) << 8 | quint32(bytes[2]) << 16 | quint32(bytes[3]) << 24;
}

QString NtfsShortName(int folder, const QByteArray& name)
{
    const QByteArray path = "/proc/self/fd/" + QByteArray::number(folder) + '/' + name;
    char bytes[64];
    const ssize_t size = getxattr(path.constData(), "system.ntfs_dos_name", bytes, sizeof bytes);
    return size > 0 ? QString::fromUtf8(bytes, size) : QString();
}

// The name upper-cased one character at a time ("ß" stays "ß", where full case mapping
// would make it "SS"), so that names sort by their characters' own upper-case codes.
QString UpperCaseKey(const QString& name)
{
    QString key = name;
    for (qsizetype i = 0; i < key.size(); ++i) {
        const QChar c = key[i];
        if (c.isHighSurrogate() && i + 1 < key.size() && key[i + 1].isLowSurrogate()) {
            const char32_t upper = QChar::toUpper(QChar::surrogateToUcs4(c, key[i + 1]));
            if (QChar::requiresSurrogates(upper)) {
                key[i] = QChar(QChar::highSurrogate(upper));
                key[i + 1] = QChar(QChar::lowSurrogate(upper));
            }
            ++i;
        } else if (!c.isSurrogate()) {
            key[i] = c.toUpper();
        }
    }
    return key;
}

QString AttributeLetters(const QString& name, const struct statx& info, quint32 ntfs)
{
    constexpr quint32 kReadOnly = 1, kHidden = 2, kSystem = 4, kArchive = 32, kCompressed = 2048,
                      kEncrypted = 16384;
    const auto flag = [&](quint64 bit) { return (info.stx_attributes_mask & bit) && (info.stx_attributes & bit); };
    const bool compressed = (ntfs & kCompressed) || flag(STATX_ATTR_COMPRESSED);
    const bool encrypted = (ntfs & kEncrypted) || flag(STATX_ATTR_ENCRYPTED);
    const bool hidden = name.startsWith(u'.') || (ntfs & kHidden);
    const bool readOnly = !(info.stx_mode & S_IWUSR) || (ntfs & kReadOnly);
    QString letters;
    if (ntfs & kArchive)
        letters += u'a';
    if (compressed)
        letters += u'c';
    if (encrypted)
        letters += u'e';
    if (hidden)
        letters += u'h';
    if (readOnly)
        letters += u'r';
    if (ntfs & kSystem)
        letters += u's';
    return letters;
}

}  // namespace

FolderHandle::FolderHandle(int descriptor) : descriptor_(descriptor) {}

FolderHandle::~FolderHandle()
{
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

FolderHandle::FolderHandle(FolderHandle&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

FolderHandle& FolderHandle::operator=(FolderHandle&& other) noexcept
{
    if (this != &other) {
        if (descriptor_ >= 0)
            ::close(descriptor_);
        descriptor_ = std::exchange(other.descriptor_, -1);
    }
    return *this;
}

FolderHandle FolderHandle::Open(const QString& path)
{
    return FolderHandle(::open(EncodeFileName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

FolderHandle FolderHandle::openChild(const QString& name) const
{
    if (descriptor_ < 0)
        return FolderHandle(-1);
    // O_NOFOLLOW: a link put in the place of a listed folder is not followed out of the tree.
    return FolderHandle(::openat(descriptor_, EncodeFileName(name).constData(),
                                 O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW));
}

QString FolderHandle::openablePath(const QString& path) const
{
    // Below this length the system takes the path as it is; beyond, the entry is reached
    // through this folder's descriptor, which works at any depth.
    constexpr qsizetype kPathLimit = 4000;
    if (descriptor_ < 0 || EncodeFileName(path).size() < kPathLimit)
        return path;
    const qsizetype slash = path.lastIndexOf(u'/');
    return QStringLiteral("/proc/self/fd/%1/").arg(descriptor_) + path.mid(slash + 1);
}

QList<FolderEntry> ListFolder(const QString& folder, bool ntfs, bool* ok, Details details)
{
    return FolderHandle::Open(folder).list(ntfs, ok, details);
}

void RaiseOpenFileLimit()
{
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < limit.rlim_max) {
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
}

QList<FolderEntry> FolderHandle::list(bool ntfs, bool* ok, Details details) const
{
    QList<FolderEntry> entries;
    // The listing reads from a descriptor of its own, so the handle stays usable.
    const int descriptor = descriptor_ >= 0 ? ::openat(descriptor_, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC) : -1;
    *ok = descriptor >= 0;
    if (!*ok)
        return entries;
    DIR* dir = fdopendir(descriptor);
    if (!dir) {
        close(descriptor);
        *ok = false;
        return entries;
    }
    QList<std::pair<QString, FolderEntry>> keyed;
    while (const dirent* item = readdir(dir)) {
        const char* raw = item->d_name;
        if (std::strcmp(raw, ".") == 0 || std::strcmp(raw, "..") == 0)
            continue;
        // Names alone: the type the folder records is enough for files and folders, and
        // the hundred thousand calls that would fetch times nobody reads are saved.
        if (details == Details::NamesOnly && (item->d_type == DT_REG || item->d_type == DT_DIR)) {
            FolderEntry entry;
            entry.name = DecodeFileName(QByteArray(raw));
            entry.directory = item->d_type == DT_DIR;
            if (ntfs && !entry.directory)
                entry.shortName = NtfsShortName(descriptor, QByteArray(raw));
            QString key = UpperCaseKey(entry.name);
            keyed.append({std::move(key), std::move(entry)});
            continue;
        }
        // Links are followed: a link to a file is that file; a link to a folder is
        // caught below, as is a link that points nowhere (it fails and is left out).
        struct statx info{};
        if (statx(descriptor, raw, AT_STATX_SYNC_AS_STAT, STATX_BASIC_STATS | STATX_BTIME, &info) != 0)
            continue;
        const bool isDirectory = S_ISDIR(info.stx_mode);
        if (!isDirectory && !S_ISREG(info.stx_mode))
            continue;
        if (isDirectory) {
            const bool link = item->d_type == DT_LNK
                              || (item->d_type == DT_UNKNOWN && [&] {
                                     struct stat own{};
                                     return fstatat(descriptor, raw, &own, AT_SYMLINK_NOFOLLOW) != 0
                                            || S_ISLNK(own.st_mode);
                                 }());
            if (link)
                continue;
        }
        FolderEntry entry;
        const QByteArray rawName(raw);
        entry.name = DecodeFileName(rawName);
        entry.directory = isDirectory;
        entry.size = qint64(info.stx_size);
        if (details == Details::All) {
            entry.written = ToLocal(info.stx_mtime);
            entry.accessed = ToLocal(info.stx_atime);
            entry.created = (info.stx_mask & STATX_BTIME) ? ToLocal(info.stx_btime) : entry.written;
            const quint32 ntfsAttributes = ntfs ? NtfsAttributes(descriptor, rawName) : 0;
            entry.attributes = AttributeLetters(entry.name, info, ntfsAttributes);
        }
        if (ntfs && !isDirectory)
            entry.shortName = NtfsShortName(descriptor, rawName);
        QString key = UpperCaseKey(entry.name);
        keyed.append({std::move(key), std::move(entry)});
    }
    closedir(dir);
    std::sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) {
        return a.first != b.first ? a.first < b.first : a.second.name < b.second.name;
    });
    entries.reserve(keyed.size());
    for (auto& [key, entry] : keyed)
        entries.append(std::move(entry));
    return entries;
}

namespace {

// ntfs-3g mounts report "fuseblk"; the device's type, as udev recorded it, says NTFS.
bool UdevSaysNtfs(const QByteArray& device)
{
    struct stat info{};
    if (device.isEmpty() || stat(device.constData(), &info) != 0 || !S_ISBLK(info.st_mode))
        return false;
    QFile data(QStringLiteral("/run/udev/data/b%1:%2").arg(major(info.st_rdev)).arg(minor(info.st_rdev)));
    if (!data.open(QIODevice::ReadOnly))
        return false;
    return ("\n" + data.read(64 * 1024)).contains("\nE:ID_FS_TYPE=ntfs\n");
}

}  // namespace

VolumeInfo VolumeOf(const QString& path)
{
    // Qt takes paths as text: a folder whose name is not is looked up by the nearest
    // parent whose name is, which lies on the same volume unless a volume is mounted
    // on that very folder.
    QString lookup = path;
    while (HasUndecodableBytes(lookup) && lookup.lastIndexOf(u'/') > 0)
        lookup.truncate(lookup.lastIndexOf(u'/'));
    if (HasUndecodableBytes(lookup))
        lookup = QStringLiteral("/");
    const QStorageInfo storage(lookup);
    VolumeInfo volume;
    volume.label = storage.name();
    const QByteArray type = storage.fileSystemType().toLower();
    if (type == "ntfs" || type == "ntfs3" || type == "ntfs-3g" || (type == "fuseblk" && UdevSaysNtfs(storage.device())))
        volume.fileSystem = QStringLiteral("NTFS");
    else
        volume.fileSystem = QString::fromLatin1(type).toUpper();
    return volume;
}

}  // namespace brindar
