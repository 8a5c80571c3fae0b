#include "Associations.h"

#include "settings/IniProfile.h"
#include "system/DesktopEntries.h"
#include "system/KeyFile.h"

#include <algorithm>
#include <filesystem>
#include <utility>

namespace verdin {

namespace {

constexpr std::string_view kDefaults = "Default Applications";
constexpr std::string_view kBackups = "Verdin_Backup";

// The first entry of a "a.desktop;b.desktop;" list.
std::string FirstEntry(const std::string& list) { return list.substr(0, list.find(';')); }

bool IsOwnClass(const std::string& entry) {
    return entry == DesktopFileName(kTrackClass) || entry == DesktopFileName(kPlaylistClass);
}

bool RemoveFile(const std::string& path) {
    std::error_code error;
    std::filesystem::remove(path, error);
    return !error;
}

}  // namespace

Associations::Associations(DesktopPlaces places, std::string program, MimeTypeOf mimeTypeOf)
    : places_(std::move(places)), program_(std::move(program)), mimeTypeOf_(std::move(mimeTypeOf)) {}

std::string Associations::EntryPath(std::string_view name) const {
    return places_.applications + "/" + DesktopFileName(name);
}

AssociationState Associations::State(std::string_view extension) const {
    const std::string owner = FirstEntry(ReadKeyFile(places_.mimeApps).Get(kDefaults, mimeTypeOf_(extension)));
    if (owner.empty()) return AssociationState::kNone;
    return owner == DesktopFileName(ClassOfExtension(extension)) ? AssociationState::kYes : AssociationState::kNo;
}

bool Associations::Associate(std::string_view extension) {
    const std::string type = mimeTypeOf_(extension), entry = DesktopFileName(ClassOfExtension(extension));
    KeyFile defaults = ReadKeyFile(places_.mimeApps);
    const std::string previous = defaults.Get(kDefaults, type);
    defaults.Set(kDefaults, type, entry + ";");
    if (!WriteKeyFile(places_.mimeApps, defaults)) return false;
    if (previous.empty() || FirstEntry(previous) == entry) return true;
    KeyFile backups = ReadKeyFile(places_.backups);
    backups.Set(kBackups, type, previous);
    return WriteKeyFile(places_.backups, backups);
}

bool Associations::Unassociate(std::string_view extension) {
    return Unassociate(mimeTypeOf_(extension), ClassOfExtension(extension));
}

bool Associations::Unassociate(const std::string& type, std::string_view className) {
    KeyFile defaults = ReadKeyFile(places_.mimeApps);
    if (FirstEntry(defaults.Get(kDefaults, type)) != DesktopFileName(className)) return true;
    KeyFile backups = ReadKeyFile(places_.backups);
    const std::string backup = backups.Get(kBackups, type);
    if (!backup.empty() && !IsOwnClass(FirstEntry(backup))) defaults.Set(kDefaults, type, backup);
    else defaults.Remove(kDefaults, type);
    backups.Remove(kBackups, type);
    return WriteKeyFile(places_.mimeApps, defaults) && WriteKeyFile(places_.backups, backups);
}

bool Associations::UnassociateAll() {
    const KeyFile defaults = ReadKeyFile(places_.mimeApps);
    bool ok = true;
    for (const std::string& type : defaults.Keys(kDefaults)) {
        const std::string owner = FirstEntry(defaults.Get(kDefaults, type));
        if (IsOwnClass(owner)) ok = Unassociate(type, owner.substr(0, owner.size() - 8)) && ok;
    }
    return ok;
}

bool Associations::RegisterClasses(const std::vector<std::string>& extensions) {
    bool ok = true;
    for (const std::string_view className : {kTrackClass, kPlaylistClass}) {
        std::vector<std::string> types;
        for (const std::string& extension : extensions) {
            if (ClassOfExtension(extension) != className) continue;
            std::string type = mimeTypeOf_(extension);
            if (std::find(types.begin(), types.end(), type) == types.end()) types.push_back(std::move(type));
        }
        std::error_code error;
        std::filesystem::create_directories(places_.applications, error);
        ok = WriteFileAtomically(EntryPath(className), ClassEntryText(className, program_, types)) && ok;
    }
    return ok;
}

bool Associations::RemoveClasses() {
    return RemoveFile(EntryPath(kTrackClass)) && RemoveFile(EntryPath(kPlaylistClass));
}

bool Associations::FolderVerbsPresent() const {
    std::error_code error;
    return std::filesystem::exists(EntryPath(kPlayFolderVerb), error);
}

bool Associations::SetFolderVerbs(bool present) {
    bool ok = true;
    for (const std::string_view verb : {kPlayFolderVerb, kAddFolderVerb}) {
        if (!present) {
            ok = RemoveFile(EntryPath(verb)) && ok;
            continue;
        }
        std::error_code error;
        std::filesystem::create_directories(places_.applications, error);
        ok = WriteFileAtomically(EntryPath(verb), FolderVerbEntryText(verb, program_)) && ok;
    }
    return ok;
}

}  // namespace verdin
