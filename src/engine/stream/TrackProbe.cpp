#include "TrackProbe.h"

#include "engine/input/InputModuleList.h"
#include "tags/LeadingTag.h"

#include <array>
#include <cstdio>

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
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return false;
    std::array<std::uint8_t, 10> head{};
    const size_t got = std::fread(head.data(), 1, head.size(), file);
    std::fclose(file);
    const LeadingTag tag = ParseLeadingTag(std::span<const std::uint8_t>(head.data(), got));
    if (tag.found) dataOffset = tag.completeSize;
    return true;
}

TrackProbe ProbeTrack(const std::string& path, const InputModuleList& modules) {
    TrackProbe probe;
    probe.info = DefaultTrackInfo();
    if (!IsUrl(path) && !MeasureAudioStart(path, probe.dataOffset)) {
        probe.exists = false;
        return probe;
    }
    InputModule* module = modules.FindModuleFor(path, probe.dataOffset);
    if (!module || !module->ops || !module->ops->GetFileInfo) return probe;
    probe.recognized = module->ops->GetFileInfo(module, path.c_str(), probe.dataOffset, &probe.info) != 0;
    probe.info.suggestedTitle[sizeof probe.info.suggestedTitle - 1] = '\0';
    return probe;
}

}  // namespace verdin
