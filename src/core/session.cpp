// Start-up order: chooser, configuration, language, columns.
#include "core/session.h"

#include "core/configurationfiles.h"

namespace brindar {

void Session::loadConfiguration()
{
    configurationPath = ConfigurationPath(settingsFolder, chooser.nom);
    configurationFile = IniDocument::Load(configurationPath);
    configuration = ReadConfiguration(configurationFile, system.nt);
    captions = LoadLanguage(configuration.langue, settingsFolder, dataFolder);
    buildColumns();
}

void Session::buildColumns()
{
    columns = BuildColumns(configurationFile, captions, system.nt);
}

std::optional<QString> Session::chooseLanguage(const QString& name)
{
    auto error = SaveOption(configurationPath, QStringLiteral("Configuration"), QStringLiteral("Langue"), name);
    configurationFile = IniDocument::Load(configurationPath);
    configuration.langue = name;
    captions = LoadLanguage(name, settingsFolder, dataFolder);
    buildColumns();
    return error;
}

std::optional<QString> Session::selectConfiguration(const QString& name)
{
    auto error = SelectConfiguration(settingsFolder, name);
    chooser.nom = name;
    loadConfiguration();
    return error;
}

Session StartSession(const QString& settingsFolder, const QString& dataFolder, const SystemInfo& system)
{
    Session session;
    session.settingsFolder = settingsFolder;
    session.dataFolder = dataFolder;
    session.system = system;
    session.chooser = ReadChooser(IniDocument::Load(ChooserPath(settingsFolder)));
    session.loadConfiguration();
    return session;
}

}  // namespace brindar
