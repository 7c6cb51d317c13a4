// The readers take a file name: every fuzz input is written to one temporary file first.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>

namespace brindar::fuzz {

// Writes the input to a file named "input<suffix>" in a folder of this process and
// returns its path.
inline QString WriteInput(const uint8_t* data, size_t size, const char* suffix)
{
    static const QTemporaryDir folder;
    const QString path = folder.path() + QStringLiteral("/input") + QLatin1String(suffix);
    QFile file(path);
    const auto length = qint64(size);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || file.write(reinterpret_cast<const char*>(data), length) != length)
        __builtin_trap();
    return path;
}

}  // namespace brindar::fuzz
