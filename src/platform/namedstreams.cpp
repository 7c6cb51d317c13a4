// Named streams through the extended attributes of the file system.
#include "platform/namedstreams.h"

#include "platform/filenames.h"

#include <cerrno>
#include <cstring>
#include <sys/xattr.h>

namespace brindar {

std::optional<QByteArray> ReadNamedStream(const QString& path, const QString& name)
{
    const QByteArray file = EncodeFileName(path);
    const QByteArray attribute = "user." + name.toUtf8();
    // Most files have no such stream: ask for the size first, without a buffer.
    const ssize_t size = getxattr(file.constData(), attribute.constData(), nullptr, 0);
    if (size < 0 || size > kNamedStreamLimit)
        return std::nullopt;
    QByteArray value(size, '\0');
    const ssize_t got = getxattr(file.constData(), attribute.constData(), value.data(), size_t(value.size()));
    if (got < 0)
        return std::nullopt;
    value.truncate(got);
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
    if (bytes.size() > kNamedStreamLimit)
        return QStringLiteral("%1: the stream %2 is larger than a named stream can be").arg(path, name);
    const QByteArray file = EncodeFileName(path);
    const QByteArray attribute = "user." + name.toUtf8();
    if (setxattr(file.constData(), attribute.constData(), bytes.constData(), size_t(bytes.size()), 0) != 0)
        return QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(std::strerror(errno)));
    return std::nullopt;
}

}  // namespace brindar
