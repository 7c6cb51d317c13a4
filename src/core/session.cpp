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
