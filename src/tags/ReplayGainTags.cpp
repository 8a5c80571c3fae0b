#include "tags/ReplayGainTags.h"

#include <taglib/fileref.h>
#include <taglib/tpropertymap.h>

#include <charconv>
#include <cmath>

namespace verdin {

namespace {

constexpr double kR128ToReplayGainDb = 5.0;

// "-6.54 dB", "+1.2", " 0.98765": the leading number; the unit is not checked.
std::optional<double> LeadingNumber(const std::string& text) {
    const char* begin = text.data();
    const char* end = begin + text.size();
    while (begin < end && (*begin == ' ' || *begin == '\t')) ++begin;
    if (begin < end && *begin == '+') ++begin;
    double value = 0;
    const auto [stop, error] = std::from_chars(begin, end, value);
    if (error != std::errc() || stop == begin || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::optional<double> NumberAt(const TagLib::PropertyMap& properties, const char* key) {
    const auto found = properties.find(key);
    if (found == properties.end() || found->second.isEmpty()) return std::nullopt;
    return LeadingNumber(found->second.front().to8Bit(true));
}

// An R128 gain in ReplayGain's terms.
std::optional<double> R128At(const TagLib::PropertyMap& properties, const char* key) {
    const std::optional<double> q78 = NumberAt(properties, key);
    if (!q78) return std::nullopt;
    return *q78 / 256.0 + kR128ToReplayGainDb;
}

}  // namespace

ReplayGainTags ReadReplayGainTags(const std::string& path) {
    ReplayGainTags tags;
    const TagLib::FileRef file(path.c_str(), false);
    if (file.isNull()) return tags;
    const TagLib::PropertyMap properties = file.file()->properties();
    tags.trackGain = NumberAt(properties, "REPLAYGAIN_TRACK_GAIN");
    tags.albumGain = NumberAt(properties, "REPLAYGAIN_ALBUM_GAIN");
    tags.trackPeak = NumberAt(properties, "REPLAYGAIN_TRACK_PEAK");
    tags.albumPeak = NumberAt(properties, "REPLAYGAIN_ALBUM_PEAK");
    if (!tags.trackGain) tags.trackGain = R128At(properties, "R128_TRACK_GAIN");
    if (!tags.albumGain) tags.albumGain = R128At(properties, "R128_ALBUM_GAIN");
    return tags;
}

}  // namespace verdin
