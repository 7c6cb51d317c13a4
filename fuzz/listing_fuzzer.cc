// Fuzzes file names from the folder to the grid and back: names of any bytes are
// decoded, encoded, listed with ListFolder, and opened again by their listed names.
#include "platform/fileinfo.h"
#include "platform/filenames.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QSet>
#include <QTemporaryDir>
#include <cstdint>
#include <optional>
#include <utility>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace brindar;

// Enough files to sort, few enough that each input runs fast.
constexpr qsizetype kMaxFiles = 64;

void CheckNameRoundTrip(const QByteArray& bytes)
{
    if (EncodeFileName(DecodeFileName(bytes)) != bytes)
        __builtin_trap();
}

// Creates the file `name` in `folder` holding its own name; false when the system refuses
// the name (too long, for one).
bool CreateFile(const QByteArray& folder, const QByteArray& name)
{
    const QByteArray path = folder + '/' + name;
    const int descriptor = ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return false;
    const bool written = ::write(descriptor, name.constData(), size_t(name.size())) == ssize_t(name.size());
    if (::close(descriptor) != 0 || !written)
        __builtin_trap();
    return true;
}

// The name upper-cased by QString::toUpper, the characters that stand for bytes (lone
// surrogates, which toUpper would turn into U+FFFD) kept as they are. Nothing when a
// character's upper case is longer than it ("\u00DF" gives "SS"): the listing keeps such a
// character's own code, which toUpper cannot say.
std::optional<QString> UpperCaseKey(const QString& name)
{
    QString key, text;
    const auto flush = [&] {
        const QString upper = text.toUpper();
        key += upper;
        const bool sameLength = upper.size() == text.size();
        text.clear();
        return sameLength;
    };
    for (qsizetype i = 0; i < name.size(); ++i) {
        const QChar c = name[i];
        if (c.isHighSurrogate() && i + 1 < name.size() && name[i + 1].isLowSurrogate()) {
            text += c;
            text += name[++i];
        } else if (c.isSurrogate()) {
            if (!flush())
                return std::nullopt;
            key += c;
        } else {
            text += c;
        }
    }
    if (!flush())
        return std::nullopt;
    return key;
}

// Listed in the order of their upper-cased names, then of their names.
void CheckSorted(const QList<FolderEntry>& entries)
{
    std::optional<std::pair<QString, QString>> previous;
    for (const FolderEntry& entry : entries) {
        const std::optional<QString> key = UpperCaseKey(entry.name);
        if (!key)
            continue;
        const std::pair<QString, QString> current{*key, entry.name};
        if (previous && !(*previous < current))
            __builtin_trap();
        previous = current;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), qsizetype(size));
    CheckNameRoundTrip(input);

    static const QTemporaryDir root;
    const QString folder = root.path() + QStringLiteral("/listed");
    const QByteArray folderBytes = EncodeFileName(folder);
    if (::mkdir(folderBytes.constData(), 0700) != 0)
        __builtin_trap();

    // The names: the input split where no name can go on, "." and ".." left out.
    QSet<QByteArray> created;
    QByteArray normalized = input;
    normalized.replace('\0', '/');
    for (const QByteArray& name : normalized.split('/')) {
        if (name.isEmpty() || name == "." || name == ".." || created.contains(name) || created.size() == kMaxFiles)
            continue;
        CheckNameRoundTrip(name);
        if (CreateFile(folderBytes, name))
            created.insert(name);
    }

    bool ok = false;
    const QList<FolderEntry> entries = ListFolder(folder, false, &ok);
    if (!ok || entries.size() != created.size())
        __builtin_trap();
    QSet<QByteArray> seen;
    for (const FolderEntry& entry : entries) {
        // Each name once, as the bytes it was created with, and it opens that very file.
        const QByteArray bytes = EncodeFileName(entry.name);
        if (!created.contains(bytes) || seen.contains(bytes) || entry.directory || entry.size != bytes.size())
            __builtin_trap();
        seen.insert(bytes);
        QFile file;
        if (!OpenForReading(file, folder + u'/' + entry.name) || file.readAll() != bytes)
            __builtin_trap();
    }
    CheckSorted(entries);

    for (const QByteArray& name : std::as_const(created))
        if (::unlink((folderBytes + '/' + name).constData()) != 0)
            __builtin_trap();
    if (::rmdir(folderBytes.constData()) != 0)
        __builtin_trap();
    return 0;
}
