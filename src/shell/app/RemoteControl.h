#pragma once
// The command line's remote requests (--play, --seek=+5, --current, ...) sent to the
// running player over its /Player interface, in the order given. Transport requests run
// command-table identifiers, so they do what the same keys do in the window.
#include "shell/app/CommandLine.h"

#include <vector>

namespace verdin {

// 0 when every request was answered; 1, with a message on standard error, when no player
// runs or one did not answer. --current prints its line on standard output.
int RunRemoteRequests(const std::vector<RemoteRequest>& requests);

}  // namespace verdin
