#include "SpeakerLayout.h"

#include <algorithm>
#include <utility>

namespace verdin::sndfile {

namespace {

constexpr std::pair<int, Speaker> kMapSpeakers[] = {
    {SF_CHANNEL_MAP_MONO, Speaker::kFrontCenter},
    {SF_CHANNEL_MAP_LEFT, Speaker::kFrontLeft},
    {SF_CHANNEL_MAP_RIGHT, Speaker::kFrontRight},
    {SF_CHANNEL_MAP_CENTER, Speaker::kFrontCenter},
    {SF_CHANNEL_MAP_FRONT_LEFT, Speaker::kFrontLeft},
    {SF_CHANNEL_MAP_FRONT_RIGHT, Speaker::kFrontRight},
    {SF_CHANNEL_MAP_FRONT_CENTER, Speaker::kFrontCenter},
    {SF_CHANNEL_MAP_REAR_CENTER, Speaker::kBackCenter},
    {SF_CHANNEL_MAP_REAR_LEFT, Speaker::kBackLeft},
    {SF_CHANNEL_MAP_REAR_RIGHT, Speaker::kBackRight},
    {SF_CHANNEL_MAP_LFE, Speaker::kLowFrequency},
    {SF_CHANNEL_MAP_FRONT_LEFT_OF_CENTER, Speaker::kFrontLeftOfCenter},
    {SF_CHANNEL_MAP_FRONT_RIGHT_OF_CENTER, Speaker::kFrontRightOfCenter},
    {SF_CHANNEL_MAP_SIDE_LEFT, Speaker::kSideLeft},
    {SF_CHANNEL_MAP_SIDE_RIGHT, Speaker::kSideRight},
    {SF_CHANNEL_MAP_TOP_CENTER, Speaker::kTopCenter},
    {SF_CHANNEL_MAP_TOP_FRONT_LEFT, Speaker::kTopLeft},
    {SF_CHANNEL_MAP_TOP_FRONT_RIGHT, Speaker::kTopRight},
    {SF_CHANNEL_MAP_TOP_FRONT_CENTER, Speaker::kTopCenter},
    {SF_CHANNEL_MAP_TOP_REAR_LEFT, Speaker::kTopLeft},
    {SF_CHANNEL_MAP_TOP_REAR_RIGHT, Speaker::kTopRight},
    {SF_CHANNEL_MAP_TOP_REAR_CENTER, Speaker::kTopCenter},
};

bool SpeakerOf(int mapValue, Speaker& speaker) {
    const auto* found = std::find_if(std::begin(kMapSpeakers), std::end(kMapSpeakers),
                                     [&](const auto& entry) { return entry.first == mapValue; });
    if (found == std::end(kMapSpeakers)) return false;
    speaker = found->second;
    return true;
}

}  // namespace

std::vector<Speaker> SpeakersOf(SNDFILE* handle, const SF_INFO& info) {
    std::vector<int> map(static_cast<size_t>(info.channels), SF_CHANNEL_MAP_INVALID);
    const int mapBytes = static_cast<int>(map.size() * sizeof(int));
    if (sf_command(handle, SFC_GET_CHANNEL_MAP_INFO, map.data(), mapBytes) == SF_TRUE) {
        std::vector<Speaker> speakers(map.size());
        bool known = true;
        for (size_t i = 0; i < map.size() && known; ++i) known = SpeakerOf(map[i], speakers[i]);
        if (known) return speakers;
    }
    const bool vorbisOrder = (info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_OGG;
    return DefaultSpeakers(info.channels, vorbisOrder ? ChannelOrder::kVorbis : ChannelOrder::kWave);
}

}  // namespace verdin::sndfile
