#pragma once
// The per-user parts of an installation: what `verdin --install` writes for the user who
// runs it, and what `verdin --uninstall` takes away again.
//
// Install writes the menu entry "verdin.desktop", both file classes (DesktopEntries.h),
// the icon (copied from the program's share/icons when it has one), the MIME type of
// Verdin's own playlists ("audio/x-verdin-playlist", *.vdp) and the script
// "UninstallVerdin.sh" in the user directory, which runs the uninstall step, removes the
// files the install wrote and then itself.
//
// Uninstall gives back every type associated with the player (Associations.h), removes the
// classes, the folder verbs and the files install wrote, and the player's own files in the
// user directory (the default playlist, presets, backups). Playlists the user saved are
// kept wherever they are. The settings store is the caller's to remove.
#include "system/Associations.h"
#include "system/DesktopPlaces.h"

#include <string>
#include <vector>

namespace verdin {

inline constexpr const char* kVerdinPlaylistType = "audio/x-verdin-playlist";

struct UserInstall {
    DesktopPlaces places;
    std::string program;           // the executable's full path
    std::string programDirectory;  // its directory (the icon is looked for beside it)
    std::string userDirectory;

    // The files install writes outside the user directory, in removal order.
    std::vector<std::string> InstalledFiles() const;
    std::string UninstallScriptPath() const { return userDirectory + "/UninstallVerdin.sh"; }

    // Both return the files that could not be written or removed (empty on success).
    std::vector<std::string> Install(Associations& associations, const std::vector<std::string>& extensions) const;
    std::vector<std::string> Uninstall(Associations& associations) const;
};

// The shell script that undoes an install; the paths are quoted for sh.
std::string UninstallScriptText(const std::string& program, const std::vector<std::string>& files);

}  // namespace verdin
