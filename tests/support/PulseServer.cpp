#include "PulseServer.h"

#include "Files.h"
#include "Process.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace verdin::test {

namespace {

using Clock = std::chrono::steady_clock;

bool SocketAnswers(const std::string& path) {
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return false;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    const bool ok = connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    close(fd);
    return ok;
}

}  // namespace

bool PulseServer::Installed() { return RunCommand({"pulseaudio", "--version"}).exitCode == 0; }

PulseServer::PulseServer() {
    const std::string runtime = dir_.file("run");
    const std::string home = dir_.file("home");
    mkdir(runtime.c_str(), 0700);
    mkdir(home.c_str(), 0700);
    socket_ = runtime + "/native";
    // The sink first: once the socket answers, the sink is there. -n: no default
    // configuration; running as root (as CI does) needs no --system with it.
    const std::vector<std::string> argv = {
        "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disallow-exit",
        "--use-pid-file=no", "--disable-shm=yes", "--log-target=stderr",
        std::string("--load=module-null-sink sink_name=") + kSinkName + " norewinds=1",
        "--load=module-native-protocol-unix auth-anonymous=1 socket=" + socket_};
    pid_ = SpawnProcess(argv,
                 {"XDG_RUNTIME_DIR=" + runtime, "PULSE_RUNTIME_PATH=" + runtime, "HOME=" + home,
                  "PULSE_STATE_PATH=" + home, "XDG_CONFIG_HOME=" + home},
                 dir_.file("server.log"));
    if (pid_ <= 0) {
        error_ = "cannot start pulseaudio";
        return;
    }
    const auto deadline = Clock::now() + std::chrono::seconds(10);
    while (!(ready_ = SocketAnswers(socket_))) {
        int status = 0;
        if (waitpid(pid_, &status, WNOHANG) == pid_) {
            pid_ = -1;
            error_ = "pulseaudio ended at start-up: " + LogTail();
            return;
        }
        if (Clock::now() >= deadline) {
            error_ = "pulseaudio did not answer within 10 s: " + LogTail();
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    if (const char* old = std::getenv("PULSE_SERVER")) savedServer_ = old;
    setenv("PULSE_SERVER", Address().c_str(), 1);
}

PulseServer::~PulseServer() {
    if (ready_) {
        if (savedServer_) setenv("PULSE_SERVER", savedServer_->c_str(), 1);
        else unsetenv("PULSE_SERVER");
    }
    EndProcess(pid_, SIGTERM);
}

void PulseServer::Kill() {
    if (pid_ <= 0) return;
    EndProcess(pid_, SIGKILL);
    pid_ = -1;
}

std::string PulseServer::LogTail() const {
    const std::string log = FileExists(dir_.file("server.log")) ? ReadFile(dir_.file("server.log")) : "(no log)";
    return log.size() > 2000 ? log.substr(log.size() - 2000) : log;
}

MonitorRecorder::MonitorRecorder(const PulseServer& server, int sampleRate, int channels)
    : file_(dir_.file("monitor.raw")) {
    const std::vector<std::string> argv = {
        "parec", "--server=" + server.Address(),
        std::string("--device=") + PulseServer::kSinkName + ".monitor", "--format=s16le",
        "--rate=" + std::to_string(sampleRate), "--channels=" + std::to_string(channels),
        // A roomy buffer: on a busy machine a recorder that cannot keep up with a small one
        // loses samples, and the tests compare every sample.
        "--latency-msec=250", "--raw"};
    // parec writes the samples to its standard output, which goes into the file.
    pid_ = SpawnProcess(argv, {}, file_);
    if (pid_ <= 0) {
        error_ = "cannot start parec";
        return;
    }
    if (!WaitForSamples(1, std::chrono::seconds(10))) error_ = "parec records nothing";
}

MonitorRecorder::~MonitorRecorder() { Stop(); }

void MonitorRecorder::Stop() {
    EndProcess(pid_, SIGTERM);
    pid_ = -1;
}

std::vector<int16_t> MonitorRecorder::Samples() const {
    const std::string bytes = ReadFile(file_);
    std::vector<int16_t> samples(bytes.size() / 2);
    std::memcpy(samples.data(), bytes.data(), samples.size() * 2);
    return samples;
}

bool MonitorRecorder::WaitForSamples(size_t count, std::chrono::milliseconds timeout) const {
    const auto deadline = Clock::now() + timeout;
    for (;;) {
        struct stat st {};
        if (stat(file_.c_str(), &st) == 0 && static_cast<size_t>(st.st_size) / 2 >= count)
            return true;
        if (Clock::now() >= deadline) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

}  // namespace verdin::test
