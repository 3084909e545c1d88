// Where the program keeps its settings and its data.
#pragma once

#include <QString>

namespace orm {

// --data-dir, else $ORMIVANE_HOME, else $XDG_DATA_HOME/Ormivane (~/.local/share/Ormivane).
QString defaultDataDir();
// $XDG_CONFIG_HOME/Vendrake/Ormivane.conf (~/.config/...).
QString defaultConfigFile();
// $XDG_CONFIG_HOME/autostart/ormivane.desktop.
QString autostartFile();

}  // namespace orm
