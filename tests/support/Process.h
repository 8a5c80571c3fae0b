#pragma once
#include <string>
#include <vector>

namespace verdin::test {

struct CommandResult {
    int exitCode = -1;  // -1 when the command could not be run or was killed
    std::string output; // standard output and standard error, interleaved
};

// Runs argv[0] (searched on PATH) with the arguments, waits for it and returns
// its exit code and output. No shell is involved, so arguments need no quoting.
CommandResult RunCommand(const std::vector<std::string>& argv);

// Whether a program is on PATH (for fixtures made with lame, flac, sox...).
bool HaveCommand(const std::string& name);

}  // namespace verdin::test
