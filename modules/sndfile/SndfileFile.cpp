#include "SndfileFile.h"

#include "FlacLength.h"
#include "SpeakerLayout.h"

namespace verdin::sndfile {

SndfileFile::~SndfileFile() {
    Close();
}

void SndfileFile::Close() {
    if (handle_) sf_close(handle_);
    handle_ = nullptr;
    frames_ = 0;
    downmix_.reset();
    file_.reset();
}

bool SndfileFile::Open(const char* path, uint32_t dataOffset) {
    Close();
    file_ = RegularFile::Open(path);
    if (!file_ || dataOffset >= file_->size()) return false;
    source_ = SndfileSource{file_->fd(), static_cast<sf_count_t>(dataOffset),
                            static_cast<sf_count_t>(file_->size() - dataOffset), 0};
    info_ = SF_INFO{};
    handle_ = sf_open_virtual(&kSndfileSourceIo, SFM_READ, &info_, &source_);
    if (!handle_) return false;
    if (info_.channels < 1 || info_.channels > kMaxChannels || info_.samplerate <= 0) {
        Close();
        return false;
    }
    if (info_.channels > 2) downmix_.emplace(SpeakersOf(handle_, info_));
    frames_ = info_.frames > 0 && info_.frames != SF_COUNT_MAX ? info_.frames : 0;
    if (frames_ == 0 && (info_.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_FLAC)
        frames_ = FlacLengthFromLastFrame(source_.fd, source_.dataOffset, source_.length);
    // Float and lossy sources may go past full scale: clip instead of wrapping round.
    sf_command(handle_, SFC_SET_CLIPPING, nullptr, SF_TRUE);
    return true;
}

SampleDelivery SndfileFile::delivery() const {
    switch (info_.format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_U8: return downmix_ ? SampleDelivery::kSixteenBit : SampleDelivery::kStoredBytes;
    case SF_FORMAT_FLOAT:
    case SF_FORMAT_DOUBLE: return SampleDelivery::kFloatToSixteenBit;
    default: return SampleDelivery::kSixteenBit;
    }
}

}  // namespace verdin::sndfile
