#include "Process.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <thread>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace verdin::test {

CommandResult RunCommand(const std::vector<std::string>& argv) {
    CommandResult result;
    if (argv.empty()) return result;
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0) return result;

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, fds[1], 1);
    posix_spawn_file_actions_adddup2(&actions, fds[1], 2);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);

    std::vector<char*> args;
    for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
    args.push_back(nullptr);

    pid_t pid = -1;
    int rc = posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(fds[1]);
    if (rc != 0) {
        close(fds[0]);
        return result;
    }
    char buffer[4096];
    for (;;) {
        ssize_t n = read(fds[0], buffer, sizeof buffer);
        if (n > 0) result.output.append(buffer, static_cast<size_t>(n));
        else if (n == 0 || errno != EINTR) break;
    }
    close(fds[0]);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

bool HaveCommand(const std::string& name) {
    const char* path = std::getenv("PATH");
    if (!path) return false;
    std::string dirs = path;
    size_t start = 0;
    while (start <= dirs.size()) {
        size_t end = dirs.find(':', start);
        if (end == std::string::npos) end = dirs.size();
        std::string candidate = dirs.substr(start, end - start) + "/" + name;
        if (access(candidate.c_str(), X_OK) == 0) return true;
        start = end + 1;
    }
    return false;
}

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

bool WaitForProcess(pid_t pid, std::chrono::milliseconds timeout) {
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
