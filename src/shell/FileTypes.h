#pragma once
// The file types the player can be made the desktop's default for, and the objects that
// do it for the user running the player: its input modules' extensions and the playlist
// extensions, each standing for the MIME type the desktop's database gives it.
#include "system/Associations.h"
#include "system/UserInstall.h"

#include <string>
#include <string_view>
#include <vector>

namespace verdin {

class InputModuleList;

// The input modules' extensions, then ".vdp", ".m3u", ".m3u8" and ".pls", without repeats
// (compared without regard to case), each with its dot, as the modules spell them.
std::vector<std::string> AssociableExtensions(const InputModuleList& modules);

// The desktop's MIME type for an extension. ".vdp" is "audio/x-verdin-playlist" even
// before the desktop's database knows it; an extension the database does not know gets
// "application/x-extension-<ext>", the common name for such types.
std::string MimeTypeOfExtension(std::string_view extension);

// For the current user and this program (bin/verdin beside the running code).
Associations UserAssociations();
UserInstall UserInstallation();

}  // namespace verdin
