#pragma once
// The window library (lib/verdin/libverdin-windows.so) is loaded only when the player shows
// windows. Its entry point runs the whole windowed player.
#include "shell/app/CoreApplication.h"

namespace verdin {

inline constexpr int kWindowLibraryMissing = -1000;
inline constexpr const char* kWindowEntryPoint = "verdin_run_with_windows";
using WindowEntryPoint = int (*)(int argc, char** argv, const RunOptions* options);

// Loads the library and runs the player with windows; kWindowLibraryMissing when the
// library or its entry point is not there.
int RunWithWindows(int argc, char** argv, const RunOptions& options);

}  // namespace verdin
