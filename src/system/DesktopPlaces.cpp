#include "DesktopPlaces.h"

#include "base/Locations.h"

#include <cstdlib>

namespace verdin {

namespace {

std::string FromXdg(const char* variable, const char* underHome) {
    const char* value = std::getenv(variable);
    if (value && *value == '/') return value;
    const char* home = std::getenv("HOME");
    return std::string(home ? home : "") + underHome;
}

}  // namespace

DesktopPlaces DesktopPlaces::FromEnvironment() {
    DesktopPlaces places;
    places.data = FromXdg("XDG_DATA_HOME", "/.local/share");
    places.applications = places.data + "/applications";
    places.mimeApps = FromXdg("XDG_CONFIG_HOME", "/.config") + "/mimeapps.list";
    places.backups = UserDirectory() + "/Verdin_Backup.list";
    return places;
}

}  // namespace verdin
