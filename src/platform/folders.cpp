// Settings and data folders of this platform.
#include "platform/folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace brindar {
namespace {

QString EnvironmentFolder(const char* name)
{
    const QString value = qEnvironmentVariable(name);
    return value.isEmpty() ? QString() : QDir::cleanPath(QDir(value).absolutePath());
}

QString ExecutableFolder()
{
    // Without a QCoreApplication Qt cannot tell where the program lives.
    return QCoreApplication::instance() ? QCoreApplication::applicationDirPath() : QString();
}

}  // namespace

QString SettingsFolder()
{
    if (QString home = EnvironmentFolder("BRINDAR_HOME"); !home.isEmpty())
        return home;
    if (const QString exe = ExecutableFolder();
        !exe.isEmpty() && QFileInfo::exists(exe + u'/' + QLatin1String(kChooserFileName)))
        return exe;
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/brindar-pro");
}

QString DataFolder()
{
    if (QString data = EnvironmentFolder("BRINDAR_DATA"); !data.isEmpty())
        return data;
    if (const QString exe = ExecutableFolder(); !exe.isEmpty()) {
        const QString beside = QDir::cleanPath(exe + QStringLiteral("/../share/brindar-pro"));
        if (QFileInfo(beside).isDir())
            return beside;
    }
    return QStringLiteral(BRINDAR_INSTALL_DATADIR);
}

QString CacheFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + QStringLiteral("/brindar-pro");
}

}  // namespace brindar
