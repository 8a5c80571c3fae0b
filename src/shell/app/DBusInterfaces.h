#pragma once
// The player on the session bus, under the name "org.brimfell.Verdin":
//
//   /System  org.brimfell.Verdin.System
//       Execute(s text)        the command text of the desktop and a second start
//                              ("/PLAY", paths, quoted paths)
//   /Player  org.brimfell.Verdin.Player, for scripts and the desktop
//       Command(u id) -> b     runs a command identifier as a menu, key or plug-in would
//       Rows() -> a(iias)      every row: number, kind (0 playlist, 1 track, 2 random
//                              entry) and the playlist view's eight cell texts
//       CurrentRow() -> i      PlayRow(i row)
//       Status() -> s          the status line      Caption() -> s   the window caption
//       PlayerStatus() -> s    "playing", "paused" or "stopped"
//       Position() -> u        milliseconds into the current track
//       SeekTo(u ms)           SeekBy(i ms)
//       Volume() -> u          SetVolume(u percent)   the main volume, 0..100 percent
//       FormatStatus(s) -> s   a template filled in as the status line's template is
//       SavePlaylist(s path)   the main playlist, in the format of the name's extension
//                              (".m3u", ".pls", else ".vdp"); an error reply on failure
//       Quit()
// Any other object path is refused. The interfaces are described in
// share/dbus-1/interfaces/org.brimfell.Verdin.*.xml.
#include <string>

namespace verdin {

class CoreApplication;

inline constexpr const char* kBusName = "org.brimfell.Verdin";
inline constexpr const char* kSystemPath = "/System";
inline constexpr const char* kSystemInterface = "org.brimfell.Verdin.System";
inline constexpr const char* kPlayerPath = "/Player";
inline constexpr const char* kPlayerInterface = "org.brimfell.Verdin.Player";

enum class Registration { kRegistered, kNoBus, kNameTaken };

// Registers both objects and the bus name.
Registration RegisterDBusInterfaces(CoreApplication& application);

// Hands a command text to the instance that owns the bus name: true when it answered.
bool HandOverCommandText(const std::string& text);

}  // namespace verdin
