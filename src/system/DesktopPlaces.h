#pragma once
// Where the desktop looks for a user's own desktop parts, and where the player keeps what
// it needs to give them back:
//   applications  $XDG_DATA_HOME/applications         desktop entries
//   mimeApps      $XDG_CONFIG_HOME/mimeapps.list       the user's default applications
//   backups       <user directory>/Verdin_Backup.list  the defaults the player replaced
//   data          $XDG_DATA_HOME                       icons/, mime/ below it
#include <string>

namespace verdin {

struct DesktopPlaces {
    std::string data;
    std::string applications;
    std::string mimeApps;
    std::string backups;

    // From the environment, with the XDG defaults (~/.local/share, ~/.config).
    static DesktopPlaces FromEnvironment();
};

}  // namespace verdin
