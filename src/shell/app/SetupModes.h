#pragma once
// The command line's desktop set-up for the user who runs it: install and uninstall of the
// per-user parts, and the associations. None of them starts a player or a window.
#include "shell/app/CommandLine.h"

namespace verdin {

// 0 on success; 1, with a message on standard error naming what failed, otherwise.
int RunSetupMode(const CommandLine& line);

}  // namespace verdin
