// Configuration files on disk: the rules behind the configuration-file dialog.
#include "core/configurationfiles.h"

#include "core/atomicfile.h"
#include "core/inifile.h"
#include "core/paths.h"
#include "core/settings.h"
#include "platform/folders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace brindar {

QString ConfigurationPath(const QString& folder, const QString& name)
{
    return folder + u'/' + name + QStringLiteral(".ini");
}

QString ReportsListPath(const QString& folder, const QString& name)
{
    return folder + u'/' + name + QStringLiteral(".txt");
}

QString SubstitutionsPath(const QString& folder, const QString& name)
{
    return folder + u'/' + name + QStringLiteral(".pat");
}

QString ChooserPath(const QString& folder)
{
    return folder + u'/' + QLatin1String(kChooserFileName);
}

QStringList ListConfigurations(const QString& folder)
{
    QStringList names;
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files | QDir::Hidden, QDir::Name);
    for (const QFileInfo& file : files) {
        if (file.suffix().compare(u"ini", Qt::CaseInsensitive) != 0)
            continue;
        if (file.fileName().compare(QLatin1String(kChooserFileName), Qt::CaseInsensitive) == 0)
            continue;
        names.append(file.completeBaseName());
    }
    names.sort(Qt::CaseInsensitive);
    return names;
}

std::optional<QString> ConfigurationDirectory(const QString& folder, const QString& name)
{
    const QString path = ConfigurationPath(folder, name);
    if (HasForbiddenCharacters(name) || !QFileInfo(path).isFile())
        return std::nullopt;
    return IniDocument::Load(path).value(key::Repertoire.sectionName(), key::Repertoire.keyName());
}

std::optional<QString> CreateConfiguration(const QString& folder, const QString& name)
{
    if (name.trimmed().isEmpty() || HasForbiddenCharacters(name))
        return QStringLiteral("%1: not a valid configuration name").arg(name);
    const QString path = ConfigurationPath(folder, name);
    if (QFileInfo::exists(path))
        return std::nullopt;
    return WriteFileAtomically(path, QByteArray("[Configuration]\r\n"));
}

std::optional<QString> SelectConfiguration(const QString& folder, const QString& name)
{
    return WriteSettings(QString(), ChooserPath(folder), SettingsChange().set(key::Nom, name));
}

std::optional<QString> RemoveConfiguration(const QString& folder, const QString& name,
                                           const QString& current)
{
    QFile file(ConfigurationPath(folder, name));
    if (file.exists() && !file.remove())
        return QStringLiteral("%1: %2").arg(file.fileName(), file.errorString());
    if (name.compare(current, Qt::CaseInsensitive) == 0)
        return SelectConfiguration(folder, QStringLiteral("Brindar"));
    return std::nullopt;
}

}  // namespace brindar
