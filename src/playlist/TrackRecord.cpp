#include "TrackRecord.h"

#include "engine/input/InputModuleList.h"
#include "engine/stream/TrackProbe.h"
#include "playlist/files/CueTrackPath.h"
#include "tags/TagReader.h"

#include <algorithm>
#include <cstring>

namespace verdin {

TrackRecord::TrackRecord(std::string_view fullName) : name_(SplitTrackName(fullName)) {}

TrackRecord& TrackRecord::NullTrack() {
    static TrackRecord null("null track");
    return null;
}

bool TrackRecord::IsNullTrack() const {
    return name_.path.empty() && name_.extension.empty() && name_.body == "null track";
}

bool TrackRecord::IsUrl() const { return name_.path.find("://") != std::string::npos; }

TrackInfo TrackRecord::Info() const {
    TrackInfo info{};
    const size_t n = std::min(suggestedTitle_.size(), sizeof info.suggestedTitle - 1);
    std::memcpy(info.suggestedTitle, suggestedTitle_.data(), n);
    info.fileSize = fileSize_;
    info.seekable = seekable_;
    info.decoderEqualizes = decoderEqualizes_;
    info.duration = duration_;
    info.bitrate = bitrate_;
    info.sampleRate = sampleRate_;
    info.channels = channels_;
    info.bitsPerSample = bitsPerSample_;
    return info;
}

void TrackRecord::SetInfo(const TrackInfo& info) {
    ++revision_;
    suggestedTitle_.assign(info.suggestedTitle, strnlen(info.suggestedTitle, sizeof info.suggestedTitle));
    if (info.fileSize) fileSize_ = info.fileSize;
    seekable_ = info.seekable != 0;
    decoderEqualizes_ = info.decoderEqualizes != 0;
    duration_ = info.duration;
    bitrate_ = info.bitrate;
    sampleRate_ = info.sampleRate;
    channels_ = info.channels;
    bitsPerSample_ = info.bitsPerSample;
}

bool TrackRecord::RetrieveInformation(const InputModuleList& modules, bool ignoreTags, bool offUserThread) {
    if (IsNullTrack()) return false;
    ++revision_;
    infoRetrieved_ = true;
    audioStart_ = 0;
    const std::string full = FullName();
    if (SplitCueTrackPath(full)) return RetrieveCueTrackInformation(modules, offUserThread);
    if (!IsUrl()) {
        // A file read again (after it changed, or vanished) keeps nothing of its old tag.
        tag_.Clear();
        tagVersion_ = {};
        TagReadOptions options;
        options.mode = ignoreTags ? TagMode::Ignore : TagMode::Read;
        const TagReadResult read = ReadTrackTag(full, options, tag_);
        if (!read.opened) {
            exists_ = false;
            return false;
        }
        tagVersion_ = read.version;
        audioStart_ = read.audioStart;
        fileSize_ = static_cast<uint32_t>(std::min<uint64_t>(read.fileSize, UINT32_MAX));
    }
    InputModule* module = modules.FindModuleFor(full, audioStart_);
    if (offUserThread && module && !modules.IsReentrant(module)) {
        infoRetrieved_ = false;
        return false;
    }
    TrackInfo info = Info();
    if (!module || !module->ops || !module->ops->GetFileInfo ||
        module->ops->GetFileInfo(module, full.c_str(), audioStart_, &info) == 0) {
        exists_ = false;
        return false;
    }
    exists_ = true;
    SetInfo(info);
    return true;
}

bool TrackRecord::RetrieveCueTrackInformation(const InputModuleList& modules, bool offUserThread) {
    tag_.Clear();
    tagVersion_ = {};
    std::string error;
    const std::optional<CueTrackSource> source = ResolveCueTrack(FullName(), error);
    uint32_t imageStart = 0;
    if (!source || !MeasureAudioStart(source->image, imageStart)) {
        exists_ = false;
        return false;
    }
    InputModule* module = modules.FindModuleFor(source->image, imageStart);
    if (offUserThread && module && !modules.IsReentrant(module)) {
        infoRetrieved_ = false;
        return false;
    }
    TrackInfo info = Info();
    if (!module || !module->ops || !module->ops->GetFileInfo ||
        module->ops->GetFileInfo(module, source->image.c_str(), imageStart, &info) == 0) {
        exists_ = false;
        return false;
    }
    // The track's length: to the next track's start, or what is left of the image.
    const int64_t lengthMs = source->end >= 0 ? (source->end - source->begin) * 1000 / kCdFramesPerSecond
                                              : info.duration - source->begin * 1000 / kCdFramesPerSecond;
    info.duration = static_cast<uint32_t>(std::clamp<int64_t>(lengthMs, 0, UINT32_MAX));
    info.suggestedTitle[0] = '\0';
    exists_ = true;
    SetInfo(info);
    if (!source->title.empty()) tag_.SetText(FrameId::Title, source->title);
    if (!source->performer.empty()) tag_.SetText(FrameId::LeadArtist, source->performer);
    if (!source->albumTitle.empty()) tag_.SetText(FrameId::Album, source->albumTitle);
    return true;
}

}  // namespace verdin
