#pragma once
// Running programs from tests: to the end with their output, or in the background.
#include <chrono>
#include <string>
#include <sys/types.h>
#include <vector>

namespace verdin::test {

struct CommandResult {
    int exitCode = -1;  // -1 when the command could not be run or was killed
    std::string output; // standard output and standard error, interleaved
};

// Runs argv[0] (searched on PATH) with the arguments, waits for it and returns
// its exit code and output. No shell is involved, so arguments need no quoting.
CommandResult RunCommand(const std::vector<std::string>& argv);

// Starts argv[0] (searched on PATH) in the background with the environment plus the
// "NAME=value" overrides, standard output and error appended to outputFile. -1 when it
// cannot start.
pid_t SpawnProcess(const std::vector<std::string>& argv, const std::vector<std::string>& overrides,
                   const std::string& outputFile);
// Sends the signal, and kills the process when it has not ended 3 s later.
void EndProcess(pid_t pid, int signal);

}  // namespace verdin::test
