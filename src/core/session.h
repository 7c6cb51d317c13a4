// The program's state after start-up: folders, chooser, configuration, language, columns.
#pragma once

#include "core/columnbuilder.h"
#include "core/configuration.h"
#include "core/inifile.h"
#include "core/language.h"
#include "platform/systeminfo.h"

#include <QString>
#include <optional>

namespace brindar {

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
