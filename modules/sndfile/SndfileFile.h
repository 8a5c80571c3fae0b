#pragma once
// A sound file opened with libsndfile, from its data offset on, with what the module
// makes of it.
//
// 8-bit unsigned PCM (the WAV convention, which is also the player's 8-bit format) in
// mono or stereo is delivered exactly as stored; everything else is decoded to 16-bit
// signed samples. 24- and 32-bit PCM keep their top 16 bits (libsndfile's 16-bit reading
// drops the low bits, without dither), so every frame of the file is delivered.
// Floating-point samples are read as floats and converted here: libsndfile hands them to
// a 16-bit reader unscaled (0.5 becomes 0) unless it first scans the whole file for its
// peak.
// Files with more than two channels are folded into stereo (StereoDownmix.h), by the
// speakers the file names or, when it names none, by its format's usual channel order.
// libsndfile keeps a pointer to the source while the file is open, so the object
// neither copies nor moves.
#include "SndfileSource.h"

#include "kit/RegularFile.h"
#include "kit/StereoDownmix.h"

#include <cstdint>
#include <optional>

#include <sndfile.h>

namespace verdin::sndfile {

// How a file's samples reach the player.
enum class SampleDelivery {
    kStoredBytes,        // unsigned 8-bit PCM, as stored
    kSixteenBit,         // libsndfile's 16-bit reading
    kFloatToSixteenBit,  // libsndfile's float reading, converted (FloatSamples.h)
};

class SndfileFile {
public:
    SndfileFile() = default;
    ~SndfileFile();
    SndfileFile(const SndfileFile&) = delete;
    SndfileFile& operator=(const SndfileFile&) = delete;

    // False when the file cannot be read, is not a format libsndfile knows, or has a
    // channel count or rate the player cannot take.
    bool Open(const char* path, uint32_t dataOffset);

    SNDFILE* handle() const { return handle_; }
    const SF_INFO& info() const { return info_; }
    uint64_t fileSize() const { return file_ ? file_->size() : 0; }
    uint32_t dataOffset() const { return static_cast<uint32_t>(source_.dataOffset); }

    SampleDelivery delivery() const;
    int bitsPerSample() const { return delivery() == SampleDelivery::kStoredBytes ? 8 : 16; }
    // The channels delivered: the file's own, or 2 when they are folded into stereo.
    int channels() const { return downmix_ ? 2 : info_.channels; }
    int bytesPerFrame() const { return bitsPerSample() / 8 * channels(); }
    // The fold into stereo, for files of more than two channels; else null.
    const StereoDownmix* downmix() const { return downmix_ ? &*downmix_ : nullptr; }
    // The track's length in frames; 0 when the file does not tell (for FLAC without a
    // total sample count, see FlacLength.h, when its last frame does not either).
    int64_t frames() const { return frames_; }

private:
    // More than any speaker layout has: a header claiming thousands of channels is damage.
    static constexpr int kMaxChannels = 64;

    void Close();

    std::optional<RegularFile> file_;
    SndfileSource source_;
    SF_INFO info_{};
    SNDFILE* handle_ = nullptr;
    int64_t frames_ = 0;
    std::optional<StereoDownmix> downmix_;
};

}  // namespace verdin::sndfile
