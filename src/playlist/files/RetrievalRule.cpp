#include "RetrievalRule.h"

#include "playlist/TrackRecord.h"
#include "settings/Settings.h"

#include <string>
#include <sys/vfs.h>

namespace verdin {

namespace {

constexpr long kIso9660Magic = 0x9660;
constexpr long kUdfMagic = 0x15013346;

}  // namespace

bool IsCdromFileSystemType(long fileSystemType) {
    return fileSystemType == kIso9660Magic || fileSystemType == kUdfMagic;
}

bool IsOnCdrom(std::string_view directory) {
    const std::string path = directory.empty() ? std::string(".") : std::string(directory);
    struct statfs fs;
    if (::statfs(path.c_str(), &fs) != 0) return false;
    return IsCdromFileSystemType(static_cast<long>(fs.f_type));
}

bool RetrievalWanted(const Settings& settings, bool isUrl, bool onCdrom) {
    if (settings.skipInfoForAnyFile) return false;
    if (isUrl) return !settings.skipInfoForURL;
    return !(onCdrom && settings.skipInfoForCDROM);
}

bool ShouldRetrieveOnAdd(const TrackRecord& track, const Settings& settings) {
    const bool isUrl = track.IsUrl();
    const bool cdromMatters = !isUrl && settings.skipInfoForCDROM && !settings.skipInfoForAnyFile;
    return RetrievalWanted(settings, isUrl, cdromMatters && IsOnCdrom(track.Path()));
}

bool RetrieveOnAdd(TrackRecord& track, const Settings& settings, const InputModuleList& modules) {
    if (!ShouldRetrieveOnAdd(track, settings)) return false;
    track.RetrieveInformation(modules, settings.ignoreID3Tags != 0);
    return true;
}

}  // namespace verdin
