#include "FfmpegTrackInfo.h"

#include "kit/ModuleFileFacts.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string>

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/dict.h>
}

namespace verdin::ffmpeg {

namespace {

// Demuxers whose tags only FFmpeg reads here: "mov,mp4,m4a,3gp,3g2,mj2", "asf",
// "matroska,webm".
bool HasTagsOnlyFfmpegReads(const AVFormatContext& format) {
    const std::string_view name = format.iformat ? format.iformat->name : "";
    return name.starts_with("mov,") || name == "asf" || name.starts_with("matroska");
}

std::string MetadataTitle(const AVFormatContext& format) {
    const AVDictionaryEntry* title = av_dict_get(format.metadata, "title", nullptr, 0);
    if (!title || !*title->value) return {};
    const AVDictionaryEntry* artist = av_dict_get(format.metadata, "artist", nullptr, 0);
    return artist && *artist->value ? std::string(artist->value) + " - " + title->value : title->value;
}

int32_t AverageBitRate(const FfmpegFile& file) {
    if (file.frames() <= 0) return 0;
    const uint64_t bytes = file.source().fileSize() - file.source().dataOffset();
    const uint64_t average =
        bytes * 8 * static_cast<uint64_t>(file.sampleRate()) / static_cast<uint64_t>(file.frames());
    return -static_cast<int32_t>(std::min<uint64_t>(average, std::numeric_limits<int32_t>::max()));
}

}  // namespace

void DescribeFfmpegFile(const FfmpegFile& file, const char* path, TrackInfo& info) {
    const std::string tagged = HasTagsOnlyFfmpegReads(*file.format()) ? MetadataTitle(*file.format()) : std::string();
    SetSuggestedTitle(info, tagged.empty() ? FileBodyOf(path) : std::string_view(tagged));
    info.fileSize = TrackFileSize(file.source().fileSize());
    info.seekable = file.frames() > 0 ? 1 : 0;
    info.decoderEqualizes = 0;
    info.duration = static_cast<uint32_t>(std::min<uint64_t>(
        static_cast<uint64_t>(file.frames()) * 1000 / static_cast<uint64_t>(file.sampleRate()),
        std::numeric_limits<uint32_t>::max()));
    info.bitrate = AverageBitRate(file);
    info.sampleRate = file.sampleRate();
    info.channels = file.channels();
    info.bitsPerSample = 16;
}

}  // namespace verdin::ffmpeg
