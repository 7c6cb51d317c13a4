// The floor of a scan: open every file of a folder and read its first 64 KiB.
// Usage: readfloor DIR
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 2)
        return 1;
    QByteArray buffer(64 * 1024, '\0');
    qint64 files = 0, bytes = 0;
    for (const QFileInfo& info : QDir(QString::fromLocal8Bit(argv[1])).entryInfoList(QDir::Files)) {
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        bytes += file.read(buffer.data(), buffer.size());
        ++files;
    }
    std::printf("%lld files, %lld bytes\n", static_cast<long long>(files), static_cast<long long>(bytes));
    return 0;
}
