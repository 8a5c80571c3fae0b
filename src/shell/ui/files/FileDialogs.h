#pragma once
// The dialogs through which files enter the playlist and the main playlist is saved. All
// are the toolkit's own dialogs (the same on every desktop, and driven the same way by
// the tests); each starts in `initialDirectory` and leaves the directory the user chose
// there. Cancelling gives nothing.
#include "shell/ui/files/OpenFilters.h"

#include <optional>
#include <string>
#include <vector>

class QWidget;

namespace verdin {

// Multi-select open dialog ("Open File(s)", "Add File(s)"): the chosen files, in the
// order chosen.
std::vector<std::string> AskFiles(QWidget* parent, const char* title, const std::vector<DialogFilter>& filters,
                                  std::string& initialDirectory);

// Folder chooser ("Select directory to open", "Select directory to add").
std::optional<std::string> AskDirectory(QWidget* parent, const char* title, std::string& initialDirectory);

// "Save Playlist As" with the save filter: the name and the chosen filter's format number
// (1 M3U, 2 PLS, 3 VDP).
struct PlaylistSaveChoice {
    std::string fileName;
    int format = 0;
};
std::optional<PlaylistSaveChoice> AskPlaylistFile(QWidget* parent, std::string& initialDirectory);

// The URL prompt "Get URL Dialog", captioned "Open URL" or "Add URL"; nothing for an
// empty answer.
std::optional<std::string> AskUrl(QWidget* parent, const char* caption);

// The example address in the URL prompt's label.
inline constexpr char kUrlExample[] = "http://radio.example.org:8000/stream.mp3";

}  // namespace verdin
