// Configuration files on disk: the rules behind the configuration-file dialog.
#include "core/configurationfiles.h"

#include "core/atomicfile.h"
#include "core/configuration.h"
#include "core/inifile.h"
#include "core/paths.h"
#include "core/settings.h"
#include "platform/fileactions.h"
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

QString ConditionsPath(const QString& folder, const QString& name)
{
    return folder + u'/' + name + QStringLiteral(".prp");
}

namespace {

// The configurations ("ini") and the conditions files ("prp") are named, listed, created
// and removed by the same rules.
QStringList ListNames(const QString& folder, QStringView suffix)
{
    QStringList names;
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files | QDir::Hidden, QDir::Name);
    for (const QFileInfo& file : files) {
        if (file.suffix().compare(suffix, Qt::CaseInsensitive) != 0)
            continue;
        if (file.fileName().compare(QLatin1String(kChooserFileName), Qt::CaseInsensitive) == 0)
            continue;
        names.append(file.completeBaseName());
    }
    names.sort(Qt::CaseInsensitive);
    return names;
}

std::optional<QString> CreateNamed(const QString& path, const QString& name, const QByteArray& content)
{
    if (name.trimmed().isEmpty() || HasForbiddenCharacters(name))
        return QStringLiteral("%1: not a valid configuration name").arg(name);
    if (QFileInfo::exists(path))
        return std::nullopt;
    return WriteFileAtomically(path, content);
}

// A removed file goes to the trash, from which the user can bring it back.
std::optional<QString> RemoveNamed(const QString& path)
{
    if (!QFileInfo::exists(path))
        return std::nullopt;
    const TrashOutcome outcome = MoveToTrash(path);
    if (outcome.error)
        return QStringLiteral("%1: %2").arg(path, *outcome.error);
    return std::nullopt;
}

}  // namespace

QStringList ListConfigurations(const QString& folder) { return ListNames(folder, u"ini"); }

QStringList ListConditions(const QString& folder) { return ListNames(folder, u"prp"); }

std::optional<QString> ConfigurationDirectory(const QString& folder, const QString& name)
{
    const QString path = ConfigurationPath(folder, name);
    if (HasForbiddenCharacters(name) || !QFileInfo(path).isFile())
        return std::nullopt;
    return IniDocument::Load(path).value(key::Repertoire.sectionName(), key::Repertoire.keyName());
}

std::optional<QString> CreateConfiguration(const QString& folder, const QString& name)
{
    return CreateNamed(ConfigurationPath(folder, name), name, QByteArray("[Configuration]\r\n"));
}

std::optional<QString> CreateConditions(const QString& folder, const QString& name)
{
    return CreateNamed(ConditionsPath(folder, name), name, QByteArray());
}

std::optional<QString> SelectConfiguration(const QString& folder, const QString& name)
{
    return WriteSettings(QString(), ChooserPath(folder), SettingsChange().set(key::Nom, name));
}

std::optional<QString> RemoveConfiguration(const QString& folder, const QString& name,
                                           const QString& current)
{
    if (auto error = RemoveNamed(ConfigurationPath(folder, name)))
        return error;
    if (name.compare(current, Qt::CaseInsensitive) == 0)
        return SelectConfiguration(folder, QStringLiteral("Brindar"));
    return std::nullopt;
}

std::optional<QString> RemoveConditions(const QString& folder, const QString& name, const QString& current)
{
    if (auto error = RemoveNamed(ConditionsPath(folder, name)))
        return error;
    if (name.compare(current, Qt::CaseInsensitive) == 0)
        return WriteSettings(QString(), ChooserPath(folder),
                             SettingsChange().set(key::NomConditions, QStringLiteral("Brindar")));
    return std::nullopt;
}

std::optional<QString> CreateStarterConfiguration(const QString& settingsFolder, const QString& dataFolder,
                                                  const QString& localeName)
{
    if (!ListConfigurations(settingsFolder).isEmpty())
        return std::nullopt;
    QFile starter(dataFolder + QStringLiteral("/Brindar.ini"));
    if (!starter.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray text = starter.readAll();
    if (localeName.startsWith(u"fr"))
        text.replace("Langue=English", "Langue=French");
    const QString name = ReadChooser(IniDocument::Load(ChooserPath(settingsFolder))).nom;
    const QString path = ConfigurationPath(settingsFolder, name);
    if (!QDir().mkpath(settingsFolder) || WriteFileAtomically(path, text))
        return std::nullopt;
    return path;
}

}  // namespace brindar
