// Where the program keeps its settings and finds the files it ships.
#pragma once

#include <QString>

namespace brindar {

inline constexpr const char* kChooserFileName = "ChoixConfiguration.ini";

// The settings folder (the "program's folder" of the configuration files):
// $BRINDAR_HOME when set; else the executable's folder when it holds
// ChoixConfiguration.ini (a portable install); else $XDG_CONFIG_HOME/brindar-pro
// (~/.config/brindar-pro), created on the first write.
QString SettingsFolder();

// The read-only folder of shipped language and XSL files: $BRINDAR_DATA when set;
// else share/brindar-pro beside the executable's folder (build tree and relocated
// installs); else the install prefix's data folder.
QString DataFolder();

// The per-user cache folder (the metadata cache lives here):
// $XDG_CACHE_HOME/brindar-pro, by default ~/.cache/brindar-pro. Not created here.
QString CacheFolder();

}  // namespace brindar
