// Named streams through the extended attributes of the file system.
#include "platform/namedstreams.h"

#include "platform/filenames.h"

#include <QList>
#include <cerrno>
#include <cstring>
#include <sys/xattr.h>

namespace brindar {
namespace {

QByteArray AttributeName(const QString& name) { return "user." + name.toUtf8(); }

// The value of `attribute` into `value` (nothing when the file has none, or its file
// system keeps no such attributes); false when it is there but cannot be read.
bool ReadAttribute(const QByteArray& file, const QByteArray& attribute, std::optional<QByteArray>* value)
{
    value->reset();
    // Most files have no such stream: ask for the size first, without a buffer.
    const ssize_t size = getxattr(file.constData(), attribute.constData(), nullptr, 0);
    if (size < 0)
        return errno == ENODATA || errno == ENOTSUP;
    QByteArray bytes(size, '\0');
    const ssize_t got = getxattr(file.constData(), attribute.constData(), bytes.data(), size_t(bytes.size()));
    if (got < 0)
        return false;
    bytes.truncate(got);
    *value = bytes;
    return true;
}

// A stream's name as messages show it, without the 0x05 that marks property sets.
QString Shown(QString name) { return name.remove(QChar(5)); }

}  // namespace

std::optional<QByteArray> ReadNamedStream(const QString& path, const QString& name)
{
    std::optional<QByteArray> value;
    if (!ReadAttribute(EncodeFileName(path), AttributeName(name), &value) || (value && value->size() > kNamedStreamLimit))
        return std::nullopt;
    return value;
}

bool HasNamedStreams(const QString& path)
{
    const QByteArray file = EncodeFileName(path);
    char names[4096];
    const ssize_t length = listxattr(file.constData(), names, sizeof names);
    if (length < 0)
        return errno == ERANGE;  // more names than fit here: some may be ours
    for (ssize_t at = 0; at < length; at += ssize_t(std::strlen(names + at)) + 1)
        if (std::strncmp(names + at, "user.", 5) == 0)
            return true;
    return false;
}

std::optional<QString> WriteNamedStream(const QString& path, const QString& name, const QByteArray& bytes)
{
    return WriteNamedStreams(path, {{name, bytes}});
}

std::optional<QString> WriteNamedStreams(const QString& path, const QMap<QString, QByteArray>& streams)
{
    struct Old {
        QString name;
        std::optional<QByteArray> value;  // nothing: the file had no such stream
    };
    const QByteArray file = EncodeFileName(path);
    QList<Old> old;
    for (auto it = streams.cbegin(); it != streams.cend(); ++it) {
        if (it.value().size() > kNamedStreamLimit)
            return QStringLiteral("%1: the stream %2 is larger than a named stream can be").arg(path, Shown(it.key()));
        old.append({it.key(), std::nullopt});
        if (!ReadAttribute(file, AttributeName(it.key()), &old.back().value))
            return QStringLiteral("%1: the stream %2 cannot be read to be kept: %3").arg(path, Shown(it.key()), LastSystemError());
    }
    for (qsizetype i = 0; i < old.size(); ++i) {
        const QByteArray& bytes = streams[old[i].name];
        if (setxattr(file.constData(), AttributeName(old[i].name).constData(), bytes.constData(), size_t(bytes.size()), 0) == 0)
            continue;
        QString why = QStringLiteral("%1: the stream %2 cannot be written: %3").arg(path, Shown(old[i].name), LastSystemError());
        for (qsizetype j = i - 1; j >= 0; --j) {
            const QByteArray attribute = AttributeName(old[j].name);
            const std::optional<QByteArray>& value = old[j].value;
            const int undone = value ? setxattr(file.constData(), attribute.constData(), value->constData(), size_t(value->size()), 0)
                                     : removexattr(file.constData(), attribute.constData());
            if (undone != 0)
                why += QStringLiteral("; %1, written before it, cannot be put back: %2").arg(Shown(old[j].name), LastSystemError());
        }
        return why;
    }
    return std::nullopt;
}

}  // namespace brindar
