#include "TrackProbe.h"

#include "engine/input/InputModuleList.h"
#include "tags/LeadingTag.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace verdin {

TrackInfo DefaultTrackInfo() {
    TrackInfo info{};
    info.bitrate = 1;
    info.sampleRate = 1;
    info.channels = 1;
    info.bitsPerSample = 8;
    return info;
}

bool IsUrl(const std::string& path) { return path.find("://") != std::string::npos; }

bool MeasureAudioStart(const std::string& path, uint32_t& dataOffset) {
    dataOffset = 0;
    // Non-blocking, and regular files only: a named pipe or a device with an audio
    // extension must not hold the calling (user-interface) thread, and no module plays one.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) return false;
    struct stat st {};
    std::array<std::uint8_t, 10> head{};
    const bool regular = ::fstat(fd, &st) == 0 && S_ISREG(st.st_mode);
    const ssize_t got = regular ? ::pread(fd, head.data(), head.size(), 0) : -1;
    ::close(fd);
    if (got < 0) return false;
    const LeadingTag tag = ParseLeadingTag(std::span<const std::uint8_t>(head.data(), static_cast<size_t>(got)));
    // A tag that claims more than the file holds leaves no audio: the offset stops at the end.
    if (tag.found) dataOffset = static_cast<uint32_t>(std::min<uint64_t>(tag.completeSize, static_cast<uint64_t>(st.st_size)));
    return true;
}

TrackProbe ProbeTrack(const std::string& path, const InputModuleList& modules) {
    TrackProbe probe;
    probe.info = DefaultTrackInfo();
    if (!IsUrl(path) && !MeasureAudioStart(path, probe.dataOffset)) {
        probe.exists = false;
        return probe;
    }
    InputModule* module = modules.FindModuleToPlay(path, probe.dataOffset);
    if (!module || !module->ops || !module->ops->GetFileInfo) return probe;
    probe.recognized = module->ops->GetFileInfo(module, path.c_str(), probe.dataOffset, &probe.info) != 0;
    probe.info.suggestedTitle[sizeof probe.info.suggestedTitle - 1] = '\0';
    return probe;
}

}  // namespace verdin
