// File names as bytes: UTF-8 with every other byte kept, and the calls that take them.
#include "platform/filenames.h"

#include <QFile>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brindar {
namespace {

constexpr char16_t kEscapeBase = 0xDC00;

bool IsEscape(char16_t c) { return c >= kEscapeBase + 0x80 && c <= kEscapeBase + 0xFF; }

}  // namespace

int Utf8SequenceLength(QByteArrayView bytes, qsizetype at)
{
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data()) + at;
    const qsizetype left = bytes.size() - at;
    const unsigned char c = *p;
    int length = 0;
    unsigned char low = 0x80, high = 0xBF;
    if (c >= 0xC2 && c <= 0xDF) {
        length = 2;
    } else if (c >= 0xE0 && c <= 0xEF) {
        length = 3;
        if (c == 0xE0)
            low = 0xA0;
        else if (c == 0xED)
            high = 0x9F;
    } else if (c >= 0xF0 && c <= 0xF4) {
        length = 4;
        if (c == 0xF0)
            low = 0x90;
        else if (c == 0xF4)
            high = 0x8F;
    } else {
        return 0;
    }
    if (left < length || p[1] < low || p[1] > high)
        return 0;
    for (int i = 2; i < length; ++i)
        if ((p[i] & 0xC0) != 0x80)
            return 0;
    return length;
}

QString DecodeFileName(QByteArrayView bytes)
{
    QString name;
    name.reserve(bytes.size());
    for (qsizetype at = 0; at < bytes.size();) {
        const auto byte = static_cast<unsigned char>(bytes[at]);
        if (byte < 0x80) {
            name += QChar(char16_t(byte));
            ++at;
        } else if (const int length = Utf8SequenceLength(bytes, at)) {
            name += QString::fromUtf8(bytes.sliced(at, length));
            at += length;
        } else {
            name += QChar(char16_t(kEscapeBase + byte));
            ++at;
        }
    }
    return name;
}

QByteArray EncodeFileName(QStringView name)
{
    QByteArray bytes;
    bytes.reserve(name.size());
    qsizetype start = 0;  // the run of text not yet encoded
    for (qsizetype i = 0; i < name.size(); ++i) {
        const int byte = UndecodableByteAt(name, i);
        if (byte < 0)
            continue;
        bytes += name.sliced(start, i - start).toUtf8();
        bytes += char(byte);
        start = i + 1;
    }
    bytes += name.sliced(start).toUtf8();
    return bytes;
}

int UndecodableByteAt(QStringView name, qsizetype i)
{
    const char16_t c = name[i].unicode();
    if (!IsEscape(c) || (i > 0 && QChar::isHighSurrogate(name[i - 1].unicode())))
        return -1;
    return c - kEscapeBase;
}

bool HasUndecodableBytes(QStringView name)
{
    for (qsizetype i = 0; i < name.size(); ++i)
        if (UndecodableByteAt(name, i) >= 0)
            return true;
    return false;
}

bool OpenForReading(QFile& file, const QString& path, bool unbuffered)
{
    // Without blocking while the kind of file is not known: opening a pipe waits for a
    // writer. The flag changes nothing for the regular file that is then read.
    const int descriptor = ::open(EncodeFileName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return false;
    struct stat info {};
    if (::fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(descriptor);
        return false;
    }
    const QIODevice::OpenMode mode = QIODevice::ReadOnly | (unbuffered ? QIODevice::Unbuffered : QIODevice::NotOpen);
    if (file.open(descriptor, mode, QFileDevice::AutoCloseHandle))
        return true;
    ::close(descriptor);
    return false;
}

bool PathExists(const QString& path)
{
    struct stat info {};
    return ::stat(EncodeFileName(path).constData(), &info) == 0;
}

bool IsDirectory(const QString& path)
{
    struct stat info {};
    return ::stat(EncodeFileName(path).constData(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool IsRegularFile(const QString& path)
{
    struct stat info {};
    return ::stat(EncodeFileName(path).constData(), &info) == 0 && S_ISREG(info.st_mode);
}

bool RemoveFile(const QString& path)
{
    return ::unlink(EncodeFileName(path).constData()) == 0;
}

std::optional<QString> MakeFolders(const QString& path)
{
    const QByteArray bytes = EncodeFileName(path);
    for (qsizetype at = bytes.indexOf('/', 1);; at = bytes.indexOf('/', at + 1)) {
        const QByteArray step = at < 0 ? bytes : bytes.left(at);
        if (!step.isEmpty() && ::mkdir(step.constData(), 0777) != 0 && errno != EEXIST)
            return QStringLiteral("%1: %2").arg(DecodeFileName(step), LastSystemError());
        if (at < 0)
            break;
    }
    if (!IsDirectory(path))
        return QStringLiteral("%1: not a folder").arg(path);
    return std::nullopt;
}

QString LastSystemError() { return QString::fromLocal8Bit(std::strerror(errno)); }

}  // namespace brindar
