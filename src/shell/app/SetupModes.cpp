#include "SetupModes.h"

#include "engine/input/InputModuleList.h"
#include "settings/store/SettingsStore.h"
#include "shell/FileTypes.h"

#include <verdin/window.h>

#include <QSettings>

#include <cstdio>
#include <filesystem>

namespace verdin {

namespace {

// Input modules get a host window that answers nothing: no player runs.
intptr_t AnswerNothing(VerdinHostWindow*, uint32_t, uintptr_t, intptr_t) { return 0; }

// The extensions of the input modules on the user's search path, and the playlists'.
std::vector<std::string> PlayableExtensions() {
    Settings settings;
    LoadUserSettings(settings, CurrentSettingsEnvironment());
    VerdinHostWindow window{&AnswerNothing, nullptr};
    InputModuleList modules;
    modules.LoadInputModules(settings.inputPluginsSearchPath, &window);
    return AssociableExtensions(modules);
}

int Report(const std::vector<std::string>& failed, const char* what) {
    for (const std::string& file : failed) std::fprintf(stderr, "Verdin: %s failed: %s\n", what, file.c_str());
    return failed.empty() ? 0 : 1;
}

bool RemoveSettingsStore() {
    const std::string path = OpenUserSettingsStore()->fileName().toStdString();
    std::error_code error;
    std::filesystem::remove(path, error);
    std::filesystem::remove(std::filesystem::path(path).parent_path(), error);  // only when empty
    return !std::filesystem::exists(path, error);
}

const char* StateName(AssociationState state) {
    switch (state) {
        case AssociationState::kYes: return "yes";
        case AssociationState::kNo: return "no";
        default: return "none";
    }
}

}  // namespace

int RunSetupMode(const CommandLine& line) {
    Associations associations = UserAssociations();
    const UserInstall install = UserInstallation();
    switch (line.setup) {
        case SetupMode::kInstall: {
            const int code = Report(install.Install(associations, PlayableExtensions()), "installing");
            if (code == 0)
                std::printf("Verdin: installed for this user; %s removes it.\n", install.UninstallScriptPath().c_str());
            return code;
        }
        case SetupMode::kUninstall: {
            std::vector<std::string> failed = install.Uninstall(associations);
            if (!RemoveSettingsStore()) failed.push_back("the settings");
            return Report(failed, "uninstalling");
        }
        case SetupMode::kAssociate: {
            const std::vector<std::string> playable = PlayableExtensions();
            std::vector<std::string> failed;
            if (!associations.RegisterClasses(playable)) failed.push_back("the file classes");
            for (const std::string& extension : line.extensions.empty() ? playable : line.extensions)
                if (!associations.Associate(extension)) failed.push_back(extension);
            return Report(failed, "associating");
        }
        case SetupMode::kUnassociate: {
            std::vector<std::string> failed;
            for (const std::string& extension : line.extensions.empty() ? PlayableExtensions() : line.extensions)
                if (!associations.Unassociate(extension)) failed.push_back(extension);
            return Report(failed, "giving back");
        }
        case SetupMode::kAssociations:
            for (const std::string& extension : PlayableExtensions())
                std::printf("%s %s\n", extension.c_str(), StateName(associations.State(extension)));
            return 0;
        case SetupMode::kNone: break;
    }
    return 0;
}

}  // namespace verdin
