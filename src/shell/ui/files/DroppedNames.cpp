#include "DroppedNames.h"

#include "shell/ui/files/DesktopLink.h"

#include <cctype>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>

namespace verdin {

namespace {

bool EndsWithDesktop(const std::string& name) {
    constexpr std::string_view kSuffix = ".desktop";
    if (name.size() < kSuffix.size()) return false;
    for (size_t i = 0; i < kSuffix.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(name[name.size() - kSuffix.size() + i])) != kSuffix[i]) return false;
    return true;
}

// The target of a desktop link file: a local path, another address as it is, or empty.
std::string DesktopLinkTarget(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    // A link file is a few lines; anything big is not one.
    constexpr std::streamsize kMaxLinkFile = 64 * 1024;
    std::string text(static_cast<size_t>(kMaxLinkFile), '\0');
    file.read(text.data(), kMaxLinkFile);
    text.resize(static_cast<size_t>(file.gcount()));
    const std::optional<std::string> address = DesktopLinkUrl(text);
    if (!address) return {};
    const QUrl url(QString::fromStdString(*address));
    if (!url.isValid() || url.scheme().isEmpty()) return {};
    if (url.isLocalFile()) return url.toLocalFile().toStdString();
    return url.toString().toStdString();
}

}  // namespace

std::string ResolveDroppedName(const std::string& name) {
    std::error_code error;
    std::filesystem::path path(name);
    if (std::filesystem::is_symlink(path, error)) {
        std::filesystem::path target = std::filesystem::canonical(path, error);
        if (error) return name;
        path = std::move(target);
    }
    if (EndsWithDesktop(path.string()) && std::filesystem::is_regular_file(path, error)) {
        std::string target = DesktopLinkTarget(path.string());
        if (!target.empty()) return target;
    }
    return path.string();
}

std::vector<std::string> DroppedNames(const QList<QUrl>& urls) {
    std::vector<std::string> names;
    for (const QUrl& url : urls) {
        if (url.isLocalFile()) names.push_back(url.toLocalFile().toStdString());
        else if (url.isValid() && !url.scheme().isEmpty()) names.push_back(url.toString().toStdString());
    }
    return names;
}

}  // namespace verdin
