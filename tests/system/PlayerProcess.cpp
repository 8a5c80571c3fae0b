#include "PlayerProcess.h"

#include "Files.h"
#include "Process.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace verdin::test {

namespace {

std::string Program() { return std::string(VERDIN_TEST_BUILD_DIR) + "/bin/verdin"; }

}  // namespace

PrivateBus::PrivateBus() {
    const std::string addressFile = dir_.file("address");
    const std::string config = dir_.file("session.conf");
    WriteFile(config,
              "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
              " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
              "<busconfig><type>session</type><listen>unix:dir=" + dir_.str() + "</listen>"
              "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
              "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n");
    pid_ = SpawnProcess({"dbus-daemon", "--config-file=" + config, "--nofork", "--nopidfile", "--print-address=1"}, {},
                 addressFile);
    if (pid_ <= 0) return;
    const auto printed = [&] { return FileExists(addressFile) ? ReadFile(addressFile) : std::string(); };
    if (WaitFor([&] { return printed().find('\n') != std::string::npos; }, std::chrono::seconds(10)))
        address_ = printed().substr(0, printed().find('\n'));
}

PrivateBus::~PrivateBus() {
    if (pid_ > 0) {
        ::kill(pid_, SIGTERM);
        ::waitpid(pid_, nullptr, 0);
    }
}

std::vector<std::string> PlayerHome::Environment(const PrivateBus& bus) const {
    return {"DBUS_SESSION_BUS_ADDRESS=" + bus.Address(), "XDG_CONFIG_HOME=" + dir.file("config"),
            "XDG_DATA_HOME=" + dir.file("data"), "HOME=" + dir.file("home"), "XDG_RUNTIME_DIR=" + dir.file("run"),
            "DISPLAY=", "WAYLAND_DISPLAY=", "QT_QPA_PLATFORM="};
}

PlayerProcess::PlayerProcess(const PlayerHome& home, const PrivateBus& bus, const std::vector<std::string>& arguments)
    : bus_(bus) {
    std::vector<std::string> argv{Program()};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    pid_ = SpawnProcess(argv, home.Environment(bus), logDir_.file("output"));
}

PlayerProcess::~PlayerProcess() {
    if (pid_ > 0 && exitCode_ == -2) {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }
}

bool PlayerProcess::WaitUntilAnswering(std::chrono::milliseconds limit) {
    return WaitFor([&] { return Call("PlayerStatus").has_value(); }, limit);
}

std::optional<std::string> PlayerProcess::Call(const std::string& method, const std::vector<std::string>& arguments,
                                               const std::string& path) {
    const std::string interface = path == "/System" ? "org.brimfell.Verdin.System" : "org.brimfell.Verdin.Player";
    std::vector<std::string> argv{"env", "DBUS_SESSION_BUS_ADDRESS=" + bus_.Address(), "gdbus", "call", "--session",
                                  "--dest",  "org.brimfell.Verdin", "--object-path", path, "--method",
                                  interface + "." + method};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    const CommandResult result = RunCommand(argv);
    if (result.exitCode != 0) return std::nullopt;
    std::string reply = result.output;
    while (!reply.empty() && (reply.back() == '\n' || reply.back() == ' ')) reply.pop_back();
    return reply;
}

bool PlayerProcess::Execute(const std::string& text) {
    const QString address = QString::fromStdString(bus_.Address());
    QDBusConnection bus = QDBusConnection::connectToBus(address, address);
    QDBusMessage call = QDBusMessage::createMethodCall(QStringLiteral("org.brimfell.Verdin"), QStringLiteral("/System"),
                                                       QStringLiteral("org.brimfell.Verdin.System"), QStringLiteral("Execute"));
    call << QString::fromStdString(text);
    return bus.call(call, QDBus::Block, 120000).type() == QDBusMessage::ReplyMessage;
}

std::string PlayerProcess::Status() {
    const auto reply = Call("PlayerStatus");
    if (!reply || reply->size() < 5) return "";
    return reply->substr(2, reply->size() - 5);  // ('playing',)
}

int PlayerProcess::CurrentRow() {
    const auto reply = Call("CurrentRow");
    return reply ? std::atoi(reply->c_str() + 1) : -99;
}

int PlayerProcess::RowCount() {
    const auto reply = Call("Rows");
    if (!reply) return -1;
    int rows = 0;
    for (size_t at = reply->find("(", 2); at != std::string::npos; at = reply->find("), (", at + 1)) ++rows;
    return reply->find("[]") != std::string::npos ? 0 : rows;
}

void PlayerProcess::Signal(int signal) {
    if (pid_ > 0) ::kill(pid_, signal);
}

int PlayerProcess::WaitForExit(std::chrono::milliseconds limit) {
    int status = 0;
    if (exitCode_ == -2 && WaitFor([&] { return ::waitpid(pid_, &status, WNOHANG) == pid_; }, limit))
        exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return exitCode_ == -2 ? -1 : exitCode_;
}

std::string PlayerProcess::Output() const {
    return FileExists(logDir_.file("output")) ? ReadFile(logDir_.file("output")) : std::string();
}

std::pair<int, std::string> RunSecondStart(const PlayerHome& home, const PrivateBus& bus,
                                           const std::vector<std::string>& arguments) {
    std::vector<std::string> argv = home.Environment(bus);
    argv.insert(argv.begin(), "env");
    argv.push_back(Program());
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    const CommandResult result = RunCommand(argv);
    return {result.exitCode, result.output};
}

}  // namespace verdin::test
