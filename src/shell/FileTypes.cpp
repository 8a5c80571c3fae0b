#include "FileTypes.h"

#include "base/Locations.h"
#include "base/SearchPath.h"
#include "base/Text.h"
#include "engine/input/InputModuleList.h"

#include <QMimeDatabase>

#include <algorithm>

namespace verdin {

namespace {

std::string ProgramPath() { return ProgramDirectory() + "/verdin"; }

}  // namespace

std::vector<std::string> AssociableExtensions(const InputModuleList& modules) {
    std::vector<std::string> extensions = SplitSearchPath(modules.SupportedExtensions());
    for (const char* playlist : {".vdp", ".m3u", ".m3u8", ".pls"}) extensions.emplace_back(playlist);
    std::vector<std::string> unique;
    for (std::string& extension : extensions) {
        const bool seen = std::any_of(unique.begin(), unique.end(),
                                      [&](const std::string& kept) { return EqualsIgnoreCase(kept, extension); });
        if (!seen && extension.size() > 1) unique.push_back(std::move(extension));
    }
    return unique;
}

std::string MimeTypeOfExtension(std::string_view extension) {
    const std::string lower = ToLower(extension);
    if (lower == ".vdp") return kVerdinPlaylistType;
    const QMimeType type = QMimeDatabase().mimeTypeForFile(QStringLiteral("x") + QString::fromStdString(lower),
                                                           QMimeDatabase::MatchExtension);
    if (!type.isValid() || type.isDefault()) return "application/x-extension-" + lower.substr(1);
    return type.name().toStdString();
}

Associations UserAssociations() {
    return Associations(DesktopPlaces::FromEnvironment(), ProgramPath(), MimeTypeOfExtension);
}

UserInstall UserInstallation() {
    return UserInstall{DesktopPlaces::FromEnvironment(), ProgramPath(), ProgramDirectory(), UserDirectory()};
}

}  // namespace verdin
