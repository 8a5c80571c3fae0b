#pragma once
// What a stream takes from the settings when it is set up, and where it plays.
#include <verdin/input.h>

#include <cstdint>
#include <string>

namespace verdin {

struct Settings;

// The DSP stage of the stream step: the plug-in host hands every block through its
// active modules and returns the new frame count (at most twice the frames given; the
// stream's work buffer has that room). Empty when no DSP host is attached.
struct DspHook {
    void* context = nullptr;
    uint32_t (*process)(void* context, uint8_t* samples, uint32_t frames, uint32_t bitsPerSample,
                        uint32_t channels, uint32_t sampleRate) = nullptr;
    explicit operator bool() const { return process != nullptr; }
};

struct StreamOptions {
    int32_t bufferSize = 512000;    // bytes
    int32_t bufferPrefill = 100;    // percent
    int32_t crossfadeLength = 2000; // milliseconds
    int32_t pauseBetweenTracks = 0; // milliseconds
    bool skipSilenceInTheBeginning = false;
    bool skipSilenceInTheEnd = false;
    int32_t silenceLevel = -100;    // dB
    int playerThreadPriority = 2;
    bool ignoreTags = false;        // how the stream reads the track's leading tag
    bool equalizerEnabled = false;
    EqualizerValues equalizerValues{};
    // The track's ReplayGain, worked out by whoever opens the stream: a linear factor on
    // the decoded samples, before the equalizer (SampleGain.h). 1 leaves them as decoded.
    float gain = 1.0f;
    DspHook dsp;
};

StreamOptions StreamOptionsFrom(const Settings& settings);

// The output a stream starts: the kind and what each kind needs.
struct OutputTarget {
    enum Kind : int32_t { kSoundCard = 0, kWavFile = 1, kSoundServer = 2 };
    int32_t kind = kSoundCard;
    int32_t soundCardDevice = -1;   // -1: the default device; n: entry n of the device list
    int32_t soundServerDevice = 0;  // index into the sound server's sinks, 0 the default
    int32_t cooperativeLevel = 2;   // stored and shown only
    // Decoding to files: "<directory>/<number>. <title>.wav", numbers padded by entry count.
    std::string decodeDirectory;
    int32_t trackNumber = 1;
    int32_t entryCount = 1;
    std::string title;
    // The main volume: the low 16 bits, as the settings keep it.
    uint32_t volume = 0xFFFFFFFFu;
};

OutputTarget OutputTargetFrom(const Settings& settings);

}  // namespace verdin
