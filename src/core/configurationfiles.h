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

// The base names of the "*.ini" files of the folder except the chooser, sorted.
QStringList ListConfigurations(const QString& folder);

// The "Repertoire" of the named configuration, shown under the name in the dialog;
// nothing when no such file exists.
std::optional<QString> ConfigurationDirectory(const QString& folder, const QString& name);

// Creates an empty configuration file (every key at its default). Returns the reason on
// failure.
std::optional<QString> CreateConfiguration(const QString& folder, const QString& name);

// Makes `name` the configuration in use: "Nom" of the chooser.
std::optional<QString> SelectConfiguration(const QString& folder, const QString& name);

// Deletes the named configuration file. When it was the one in use, "Nom" returns to the
// built-in default "Brindar". Returns the reason on failure.
std::optional<QString> RemoveConfiguration(const QString& folder, const QString& name,
                                           const QString& current);

}  // namespace brindar
