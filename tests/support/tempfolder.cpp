// Temporary folders and file helpers for the tests.
#include "support/tempfolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
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

QString CorpusFile(const QString& relative)
{
    return QStringLiteral(BRINDAR_CORPUS_DIR) + u'/' + relative;
}

QString SourceFile(const QString& relative)
{
    return QStringLiteral(BRINDAR_SOURCE_DIR) + u'/' + relative;
}

}  // namespace brindar::test
