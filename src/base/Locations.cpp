#include "Locations.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace verdin {

namespace fs = std::filesystem;

std::string ProgramDirectory() {
    std::error_code ec;
    fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (ec) return CurrentDirectory();
    return exe.parent_path().string();
}

std::string PluginDirectoryFor(const std::string& programDirectory) {
    return (fs::path(programDirectory).parent_path() / "lib" / "verdin" / "Plug-ins").string();
}

std::string DataDirectoryFor(const std::string& programDirectory) {
    return (fs::path(programDirectory).parent_path() / "share" / "verdin").string();
}

std::string UserDirectory() {
    const char* data = std::getenv("XDG_DATA_HOME");
    fs::path base;
    if (data && *data == '/') {
        base = data;
    } else {
        const char* home = std::getenv("HOME");
        base = fs::path(home && *home ? home : "/tmp") / ".local" / "share";
    }
    return (base / "Brimfell" / "Verdin").string();
}

bool CreateUserDirectory() {
    std::error_code ec;
    fs::create_directories(UserDirectory(), ec);
    return fs::is_directory(UserDirectory(), ec);
}

std::string CurrentDirectory() {
    std::error_code ec;
    fs::path cwd = fs::current_path(ec);
    return ec ? std::string("/") : cwd.string();
}

}  // namespace verdin
