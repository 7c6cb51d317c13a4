// Start-up order: chooser, configuration, language, columns; settings written through the session.
#include "core/session.h"

#include "core/captionids.h"
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

std::optional<QString> Session::write(const SettingsChange& change)
{
    const QString chooserPath = ChooserPath(settingsFolder);
    std::optional<QString> error = WriteSettings(configurationPath, chooserPath, change);
    if (change.touches(SettingsFile::Chooser))
        chooser = ReadChooser(IniDocument::Load(chooserPath));
    if (change.touches(SettingsFile::Configuration)) {
        configurationFile = IniDocument::Load(configurationPath);
        configuration = ReadConfiguration(configurationFile, system.nt);
    }
    if (error)
        error = captions.text(caption::UnableToSaveSettings) + u' ' + *error;
    return error;
}

std::optional<QString> Session::chooseLanguage(const QString& name)
{
    auto error = write(SettingsChange().set(key::Langue, name));
    // The language changes for this session even when it could not be saved.
    configuration.langue = name;
    captions = LoadLanguage(name, settingsFolder, dataFolder);
    buildColumns();
    return error;
}

std::optional<QString> Session::selectConfiguration(const QString& name)
{
    auto error = write(SettingsChange().set(key::Nom, name));
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
