#pragma once
// Where the player's files live.
//
//   program directory  the directory of the running executable (bin/ of the build or
//                      install tree); files the player only reads sit beside it:
//   plug-in directory  <program dir>/../lib/verdin/Plug-ins
//   data directory     <program dir>/../share/verdin
//   user directory     $XDG_DATA_HOME/Brimfell/Verdin (~/.local/share/... without it):
//                      the files the player writes (default.vdp, default.eq)
#include <string>

namespace verdin {

// The directory of /proc/self/exe, without a trailing "/".
std::string ProgramDirectory();
// The bundled plug-ins, and the data, relative to a program directory.
std::string PluginDirectoryFor(const std::string& programDirectory);
std::string DataDirectoryFor(const std::string& programDirectory);
// The user directory, without a trailing "/"; CreateUserDirectory makes it (and its
// parents) when missing and tells whether it exists afterwards.
std::string UserDirectory();
bool CreateUserDirectory();
// The process's working directory.
std::string CurrentDirectory();

}  // namespace verdin
