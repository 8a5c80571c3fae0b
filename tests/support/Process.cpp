#include "Process.h"

#include "Files.h"
#include "TempDir.h"

#include <cerrno>
#include <csignal>
#include <thread>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace verdin::test {

pid_t SpawnProcess(const std::vector<std::string>& argv, const std::vector<std::string>& overrides,
                   const std::string& outputFile) {
    std::vector<std::string> environment;
    for (char** e = environ; *e; ++e) environment.emplace_back(*e);
    for (const std::string& extra : overrides) {
        const std::string key = extra.substr(0, extra.find('=') + 1);
        std::erase_if(environment, [&](const std::string& e) { return e.rfind(key, 0) == 0; });
        environment.push_back(extra);
    }
    std::vector<char*> envp;
    for (auto& e : environment) envp.push_back(e.data());
    envp.push_back(nullptr);
    std::vector<char*> args;
    for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, outputFile.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
    posix_spawn_file_actions_adddup2(&actions, 1, 2);
    pid_t pid = -1;
    if (posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), envp.data()) != 0) pid = -1;
    posix_spawn_file_actions_destroy(&actions);
    return pid;
}

CommandResult RunCommand(const std::vector<std::string>& argv) {
    CommandResult result;
    const TempDir dir;
    const pid_t pid = argv.empty() ? -1 : SpawnProcess(argv, {}, dir.file("output"));
    if (pid <= 0) return result;
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.output = ReadFile(dir.file("output"));
    return result;
}

// Whether the process ended within the time; reaps it.
static bool WaitForProcess(pid_t pid, std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        int status = 0;
        const pid_t r = waitpid(pid, &status, WNOHANG);
        if (r == pid || (r < 0 && errno == ECHILD)) return true;
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

void EndProcess(pid_t pid, int signal) {
    if (pid <= 0) return;
    kill(pid, signal);
    if (!WaitForProcess(pid, std::chrono::seconds(3))) {
        kill(pid, SIGKILL);
        WaitForProcess(pid, std::chrono::seconds(3));
    }
}

}  // namespace verdin::test
