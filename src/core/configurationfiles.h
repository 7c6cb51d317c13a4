// The configuration files of the settings folder: paths, list, create, select, remove.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace brindar {

// "<folder>/<name>.ini" and its companions of the same base name.
QString ConfigurationPath(const QString& folder, const QString& name);
QString ReportsListPath(const QString& folder, const QString& name);    // ".txt"
QString SubstitutionsPath(const QString& folder, const QString& name);  // ".pat"
QString ChooserPath(const QString& folder);
// The conditions file of the property modification: "<folder>/<name>.prp".
QString ConditionsPath(const QString& folder, const QString& name);

// The base names of the "*.ini" files of the folder except the chooser, sorted.
QStringList ListConfigurations(const QString& folder);

// The base names of the "*.prp" conditions files of the folder, sorted.
QStringList ListConditions(const QString& folder);
// The "Repertoire" of the named configuration, shown under the name in the dialog;
// nothing when no such file exists.
std::optional<QString> ConfigurationDirectory(const QString& folder, const QString& name);

// Creates an empty configuration file (every key at its default). Returns the reason on
// failure.
std::optional<QString> CreateConfiguration(const QString& folder, const QString& name);

// Creates an empty conditions file (no condition yet).
std::optional<QString> CreateConditions(const QString& folder, const QString& name);
// Makes `name` the configuration in use: "Nom" of the chooser.
std::optional<QString> SelectConfiguration(const QString& folder, const QString& name);

// Moves the named configuration file to the trash. When it was the one in use, "Nom"
// returns to the built-in default "Brindar". Returns the reason on failure.
std::optional<QString> RemoveConfiguration(const QString& folder, const QString& name,
                                           const QString& current);
// The same for a conditions file and "NomConditions".
std::optional<QString> RemoveConditions(const QString& folder, const QString& name, const QString& current);

// The first start: when `settingsFolder` holds no configuration yet, the one the chooser
// names is made from the starter "Brindar.ini" of `dataFolder`, in French when the locale
// (`localeName`: the first of LC_ALL, LC_MESSAGES, LANG that is set) is French. An existing
// configuration is never touched. Returns the path created, or nothing.
std::optional<QString> CreateStarterConfiguration(const QString& settingsFolder, const QString& dataFolder,
                                                  const QString& localeName);

}  // namespace brindar
