// The program's state after start-up: folders, chooser, configuration, language, columns.
#pragma once

#include "core/columnbuilder.h"
#include "core/configuration.h"
#include "core/inifile.h"
#include "core/language.h"
#include "core/settings.h"
#include "platform/systeminfo.h"

#include <QString>
#include <optional>

namespace brindar {

// A session is a value: a copy is a snapshot that long work (a scan, an export) can use
// on another thread while the window goes on changing its own.
struct Session {
    QString settingsFolder;
    QString dataFolder;
    SystemInfo system;
    Chooser chooser;
    QString configurationPath;
    IniDocument configurationFile;
    Configuration configuration;
    Captions captions = Captions::English();
    ColumnSet columns;

    // Loads the configuration named by the chooser, its language, and builds the columns.
    void loadConfiguration();
    // Builds the columns again from the configuration file (after the displayed-metadata
    // dialog or a change of language).
    void buildColumns();

    // Writes the keys of `change` into the configuration file and the chooser, then reads
    // both again, so that `configurationFile`, `configuration` and `chooser` are what the
    // files hold. The columns are rebuilt only by buildColumns(). Returns the reason, in
    // the user's language, when a file cannot be written.
    std::optional<QString> write(const SettingsChange& change);

    // The Language menu: stores "Langue" at once, loads the language, rebuilds the columns.
    // Returns the reason when the setting cannot be saved (the language still changes).
    std::optional<QString> chooseLanguage(const QString& name);
    // The configuration-file dialog's OK: stores "Nom" in the chooser and loads that
    // configuration. Returns the reason when the chooser cannot be saved.
    std::optional<QString> selectConfiguration(const QString& name);
};

// Start-up: reads the chooser of the settings folder, loads the configuration it names
// and that configuration's language, and builds the columns.
Session StartSession(const QString& settingsFolder, const QString& dataFolder, const SystemInfo& system);

}  // namespace brindar
