// Temporary folders and file helpers for the tests.
#include "support/tempfolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>
#include <gtest/gtest.h>

namespace brindar::test {

TempFolder::TempFolder() { EXPECT_TRUE(dir_.isValid()); }

QString TempFolder::write(const QString& name, const QByteArray& bytes) const
{
    const QString path = file(name);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    EXPECT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    f.write(bytes);
    return path;
}

QByteArray TempFolder::read(const QString& name) const
{
    QFile f(file(name));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QByteArray ReadFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

bool WriteFileAtBytes(const QByteArray& nativePath, const QByteArray& bytes)
{
    std::FILE* file = std::fopen(nativePath.constData(), "wb");
    if (!file)
        return false;
    const bool written = std::fwrite(bytes.constData(), 1, size_t(bytes.size()), file) == size_t(bytes.size());
    return std::fclose(file) == 0 && written;
}

QString CorpusFile(const QString& relative)
{
    return QStringLiteral(BRINDAR_CORPUS_DIR) + u'/' + relative;
}

QString SourceFile(const QString& relative)
{
    return QStringLiteral(BRINDAR_SOURCE_DIR) + u'/' + relative;
}

}  // namespace brindar::test
