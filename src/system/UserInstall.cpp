#include "UserInstall.h"

#include "settings/IniProfile.h"
#include "system/DesktopEntries.h"

#include <filesystem>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>

extern char** environ;

namespace verdin {

namespace fs = std::filesystem;

namespace {

constexpr const char* kMimePackage =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
    "  <mime-type type=\"audio/x-verdin-playlist\">\n"
    "    <comment>Verdin playlist</comment>\n"
    "    <sub-class-of type=\"text/plain\"/>\n"
    "    <glob pattern=\"*.vdp\"/>\n"
    "  </mime-type>\n"
    "</mime-info>\n";

// The player's own files in the user directory; playlists the user saved there stay.
constexpr const char* kOwnUserFiles[] = {"default.vdp", "default.m3u", "default.eq",
                                         "equalizer.eq", "equalizer.dat", "Verdin_Backup.list"};

std::string MenuEntryText(const std::string& program) {
    return "[Desktop Entry]\nType=Application\nVersion=1.5\nName=Verdin\nGenericName=Audio Player\n"
           "Comment=Play and organise music\nIcon=verdin\nExec=" + ExecQuoted(program) + " %F\n"
           "Categories=AudioVideo;Audio;Player;\nTerminal=false\n";
}

// The desktop's caches follow the files when their tools are installed; without them the
// files still work, only found later.
void RunQuietly(const char* tool, const std::string& argument) {
    const std::string toolName = tool;
    char* argv[] = {const_cast<char*>(toolName.c_str()), const_cast<char*>(argument.c_str()), nullptr};
    pid_t pid = 0;
    if (posix_spawnp(&pid, tool, nullptr, nullptr, argv, environ) != 0) return;
    int status = 0;
    waitpid(pid, &status, 0);
}

bool Write(const std::string& path, std::string_view text) {
    std::error_code error;
    fs::create_directories(fs::path(path).parent_path(), error);
    return WriteFileAtomically(path, text);
}

std::string ShellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

}  // namespace

std::vector<std::string> UserInstall::InstalledFiles() const {
    return {places.applications + "/verdin.desktop", places.data + "/icons/hicolor/scalable/apps/verdin.svg",
            places.data + "/mime/packages/verdin.xml"};
}

std::vector<std::string> UserInstall::Install(Associations& associations,
                                              const std::vector<std::string>& extensions) const {
    std::vector<std::string> failed;
    const std::vector<std::string> files = InstalledFiles();
    if (!Write(files[0], MenuEntryText(program))) failed.push_back(files[0]);
    const fs::path icon = fs::path(programDirectory) / "../share/icons/hicolor/scalable/apps/verdin.svg";
    std::error_code error;
    if (fs::exists(icon, error)) {
        fs::create_directories(fs::path(files[1]).parent_path(), error);
        if (!fs::copy_file(icon, files[1], fs::copy_options::overwrite_existing, error)) failed.push_back(files[1]);
    }
    if (!Write(files[2], kMimePackage)) failed.push_back(files[2]);
    RunQuietly("update-mime-database", places.data + "/mime");
    if (!associations.RegisterClasses(extensions)) failed.push_back(places.applications + "/Verdin.*.desktop");
    RunQuietly("update-desktop-database", places.applications);
    const std::string script = UninstallScriptPath();
    if (!Write(script, UninstallScriptText(program, files)) || ::chmod(script.c_str(), 0755) != 0)
        failed.push_back(script);
    return failed;
}

std::vector<std::string> UserInstall::Uninstall(Associations& associations) const {
    std::vector<std::string> failed;
    if (!associations.UnassociateAll()) failed.push_back(places.mimeApps);
    if (!associations.RemoveClasses() || !associations.SetFolderVerbs(false))
        failed.push_back(places.applications + "/Verdin.*.desktop");
    std::vector<std::string> files = InstalledFiles();
    for (const char* name : kOwnUserFiles) files.push_back(userDirectory + "/" + name);
    for (const std::string& file : files) {
        std::error_code error;
        fs::remove(file, error);
        if (error) failed.push_back(file);
    }
    RunQuietly("update-mime-database", places.data + "/mime");
    RunQuietly("update-desktop-database", places.applications);
    // The directories go only when nothing of the user's is left in them.
    std::error_code ignored;
    fs::remove(userDirectory, ignored);
    fs::remove(fs::path(userDirectory).parent_path(), ignored);
    return failed;
}

std::string UninstallScriptText(const std::string& program, const std::vector<std::string>& files) {
    std::string text = "#!/bin/sh\n# Removes Verdin's per-user parts: its settings, associations and files,\n"
                       "# then this script.\n";
    text += ShellQuoted(program) + " :\n";
    for (const std::string& file : files) text += "rm -f " + ShellQuoted(file) + "\n";
    return text + "rm -f \"$0\"\n";
}

}  // namespace verdin
