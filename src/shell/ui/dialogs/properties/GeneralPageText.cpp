#include "shell/ui/dialogs/properties/GeneralPageText.h"

#include "playlist/TrackRecord.h"

#include <cstdio>
#include <cmath>
#include <cstdlib>

namespace verdin {
namespace {

constexpr const char* kParagraph = "\n\n";

}  // namespace

std::string FormatPropertiesDuration(uint32_t milliseconds) {
    const uint32_t seconds = milliseconds / 1000;
    const uint32_t hundredths = (milliseconds / 10) % 100;
    char text[48];
    if (seconds < 3600) {
        std::snprintf(text, sizeof text, "%u:%02u.%02u", seconds / 60, seconds % 60, hundredths);
    } else {
        std::snprintf(text, sizeof text, "%u:%02u:%02u.%02u", seconds / 3600, seconds / 60 % 60, seconds % 60,
                      hundredths);
    }
    return text;
}

std::string FormatPropertiesBitrate(int32_t bitrate) {
    // The magnitude in 64 bits: the most negative rate has no 32-bit magnitude.
    const long long kilobits = std::llabs(static_cast<long long>(bitrate)) / 1000;
    char text[48];
    std::snprintf(text, sizeof text, bitrate < 0 ? "%lld kb/s (average)" : "%lld kb/s", kilobits);
    return text;
}

std::string FormatCompressionRatio(int32_t sampleRate, int32_t channels, int32_t bitsPerSample, int32_t bitrate) {
    if (bitrate == 0) return "1 : -";
    const double raw = static_cast<double>(sampleRate) * channels * bitsPerSample;
    char text[64];
    std::snprintf(text, sizeof text, "1 : %.3f", raw / std::fabs(static_cast<double>(bitrate)));
    return text;
}

std::string GeneralPageText(const TrackRecord& track) {
    std::string text = track.Path() + track.Body() + track.Extension();
    text += kParagraph;
    text += std::to_string(track.FileSize()) + " bytes";
    text += kParagraph;
    text += FormatPropertiesDuration(track.Duration());
    text += kParagraph;
    text += FormatPropertiesBitrate(track.Bitrate());
    text += kParagraph;
    text += std::to_string(track.SampleRate()) + " Hz";
    text += kParagraph;
    text += std::to_string(track.BitsPerSample()) + (track.Channels() == 2 ? " bit stereo" : " bit mono");
    text += kParagraph;
    text += FormatCompressionRatio(track.SampleRate(), track.Channels(), track.BitsPerSample(), track.Bitrate());
    text += kParagraph;
    return text;
}

}  // namespace verdin
