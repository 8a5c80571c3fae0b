// WAV_Verdin.so on sound files made here: canonical WAV files written directly, other
// formats encoded from them with flac and sox, and what those tools cannot write (Opus,
// float WAV) with libsndfile's own encoders.
#include "PcmFixtures.h"
#include "PluginKit.h"
#include "TempDir.h"

#include <filesystem>
#include <sndfile.h>
#include <sys/stat.h>

namespace verdin::test {
namespace {

class SndfileModule : public ::testing::Test {
protected:
    // 0.5 s of 16-bit stereo at 44.1 kHz: the PCM every lossless "tone" file holds.
    static constexpr int kFrames = 22050, kRate = 44100;

    static void SetUpTestSuite() {
        dir_ = new TempDir;
        pcm16_ = new std::vector<uint8_t>(Bytes16(Sine16(kFrames, 2, kRate, {440.0, 660.0})));
        WriteWav(Path("Take 2.final.wav"), 2, kRate, 16, *pcm16_);  // its body is the suggested title
        RunOrThrow({"flac", "-s", "-o", Path("tone.flac"), Path("Take 2.final.wav")});
        for (const char* format : {"aiff", "au", "ogg"}) RunOrThrow({"sox", Path("Take 2.final.wav"), Path("tone.") + format});
        std::vector<float> tone48(48000);
        for (size_t i = 0; i < tone48.size(); ++i) tone48[i] = 0.5f * std::sin(2.0f * 3.14159265f * 440.0f * i / 48000.0f);
        WriteWithLibsndfile("tone.opus", SF_FORMAT_OGG | SF_FORMAT_OPUS, 48000, tone48);
    }
    static void TearDownTestSuite() {
        delete pcm16_;
        delete dir_;
    }
    static std::string Path(const std::string& name) { return dir_->file(name); }
    static std::string Wav() { return Path("Take 2.final.wav"); }
    // Mono floats written by libsndfile itself, unclipped.
    static std::string WriteWithLibsndfile(const std::string& name, int format, int rate, const std::vector<float>& samples) {
        SF_INFO info{};
        info.samplerate = rate;
        info.channels = 1;
        info.format = format;
        SNDFILE* file = sf_open(Path(name).c_str(), SFM_WRITE, &info);
        if (!file) throw std::runtime_error("libsndfile cannot write " + name + ": " + sf_strerror(nullptr));
        sf_command(file, SFC_SET_CLIPPING, nullptr, SF_FALSE);
        const sf_count_t written = sf_writef_float(file, samples.data(), sf_count_t(samples.size()));
        sf_close(file);
        if (written != sf_count_t(samples.size())) throw std::runtime_error("libsndfile wrote only part of " + name);
        return Path(name);
    }

    static TempDir* dir_;
    static std::vector<uint8_t>* pcm16_;
    PluginUnderTest plugin_{"WAV_Verdin.so"};
};
TempDir* SndfileModule::dir_ = nullptr;
std::vector<uint8_t>* SndfileModule::pcm16_ = nullptr;

TEST_F(SndfileModule, DescribesAndDecodesEachFormat) {
    // Unsigned 8-bit WAV comes as stored; other formats become 16-bit signed: 24-bit FLAC
    // keeps its top 16 bits, signed 8-bit AIFF is shifted up, floats are scaled and clipped.
    std::vector<uint8_t> stored(2 * 8000), pcm24, unsigned8(3000);
    std::vector<int16_t> top16, shifted;
    for (size_t i = 0; i < stored.size(); ++i) stored[i] = static_cast<uint8_t>(i * 7);
    WriteWav(Path("bytes.wav"), 2, 8000, 8, stored);
    for (int i = 0; i < 4000; ++i) {
        const int32_t sample = (i * 2731 % 16777216) - 8388608;  // spans most of the 24-bit range
        for (int b = 0; b < 3; ++b) pcm24.push_back(static_cast<uint8_t>(sample >> (8 * b)));
        top16.push_back(static_cast<int16_t>(sample >> 8));
    }
    WriteWav(Path("deep.wav"), 1, 48000, 24, pcm24);
    RunOrThrow({"flac", "-s", "-o", Path("deep.flac"), Path("deep.wav")});
    for (size_t i = 0; i < unsigned8.size(); ++i) {
        unsigned8[i] = static_cast<uint8_t>(i % 256);
        shifted.push_back(static_cast<int16_t>((int(unsigned8[i]) - 128) * 256));
    }
    WriteWav(Path("eight.wav"), 1, 8000, 8, unsigned8);
    RunOrThrow({"sox", Path("eight.wav"), Path("eight.aiff")});
    const std::string loud = WriteWithLibsndfile("loud.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 44100,
                                                 {0.5f, 1.5f, -1.5f, -0.25f, 1.0f, -1.0f, 0.0f});
    const struct {
        std::string path;
        uint32_t frameBytes;
        int32_t bits, bitrate;  // bitrate 0: a negative average; -1: not checked
        uint32_t duration;
        std::vector<uint8_t> expected;
    } cases[] = {
        {Wav(), 4, 16, kRate * 32, 500, *pcm16_},
        {Path("tone.flac"), 4, 16, 0, 500, *pcm16_},
        {Path("tone.aiff"), 4, 16, kRate * 32, 500, *pcm16_},
        {Path("tone.au"), 4, 16, kRate * 32, 500, *pcm16_},
        {Path("bytes.wav"), 2, 8, 8000 * 16, 1000, stored},
        {Path("deep.flac"), 2, 16, 0, 83, Bytes16(top16)},
        {Path("eight.aiff"), 2, 16, -1, 375, Bytes16(shifted)},
        {loud, 2, 16, -1, 0, Bytes16({16384, 32767, -32768, -8192, 32767, -32768, 0})},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        const auto info = plugin_.Info(c.path);
        ASSERT_TRUE(info);
        EXPECT_EQ(info->suggestedTitle, std::filesystem::path(c.path).stem().string());  // "Take 2.final" keeps its dot
        EXPECT_EQ(std::tuple(info->fileSize, info->seekable, info->decoderEqualizes, info->duration, info->bitsPerSample),
                  std::tuple(uint32_t(std::filesystem::file_size(c.path)), 1, 0, c.duration, c.bits));
        if (c.bitrate > 0) { EXPECT_EQ(info->bitrate, c.bitrate); }
        if (c.bitrate == 0) { EXPECT_NEAR(-info->bitrate, std::filesystem::file_size(c.path) * 8000.0 / c.duration, -info->bitrate * 0.01); }
        Decoder decoder(plugin_, c.path);
        ASSERT_TRUE(decoder.valid());
        EXPECT_EQ(Samples16(decoder.ToEnd(c.frameBytes)), Samples16(c.expected));
    }
}

TEST_F(SndfileModule, LossyFormatsGiveTheirLengthOfTheTone) {
    const struct {
        std::string path;
        int rate, channels;
        size_t frames;
    } cases[] = {{Path("tone.ogg"), kRate, 2, kFrames}, {Path("tone.opus"), 48000, 1, 48000}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path);
        const auto info = plugin_.Info(c.path);
        ASSERT_TRUE(info);
        EXPECT_EQ(std::tuple(info->sampleRate, info->channels, info->bitsPerSample), std::tuple(c.rate, c.channels, 16));
        EXPECT_NEAR(info->duration, c.frames * 1000.0 / c.rate, 2);
        EXPECT_LT(info->bitrate, 0);
        Decoder decoder(plugin_, c.path);
        const std::vector<int16_t> samples = Samples16(decoder.ToEnd(2 * c.channels));
        EXPECT_NEAR(double(samples.size()) / c.channels, c.frames, c.rate / 100.0);
        double power = 0;
        for (int16_t s : samples) power += double(s) * s;
        EXPECT_NEAR(std::sqrt(power / samples.size()) / 32768.0, 0.354, 0.03);  // the RMS of a half-scale sine
    }
}

TEST_F(SndfileModule, SeekAndDataOffsetLandOnTheFrameTheyReport) {
    for (const std::string& path : {Wav(), Path("tone.flac")}) {
        for (uint32_t ms : {0u, 1u, 123u, 250u, 499u}) {
            Decoder decoder(plugin_, path);
            EXPECT_EQ(decoder.Seek(ms), ms);
            const size_t frame = (size_t(ms) * kRate + 500) / 1000;
            EXPECT_TRUE(decoder.ToEnd(4) == std::vector<uint8_t>(pcm16_->begin() + long(frame * 4), pcm16_->end()))
                << path << " at " << ms << " ms";
        }
        Decoder decoder(plugin_, path);
        EXPECT_EQ(decoder.Seek(10000), 500u);  // past the end: the end
        EXPECT_TRUE(decoder.ToEnd(4).empty());
    }
    // What lies in front of the audio: a tag, or a whole sound file of another format.
    WriteWav(Path("other.wav"), 1, 8000, 8, std::vector<uint8_t>(800, 0x80));
    for (const auto& prefix : {Id3v2Tag(2048), ReadBytes(Path("other.wav"))}) {
        for (const std::string& plain : {Wav(), Path("tone.flac")}) {
            SCOPED_TRACE(plain + " behind " + std::to_string(prefix.size()) + " bytes");
            const std::string shifted = plain + ".shifted";
            WriteBytes(shifted, Concat(prefix, ReadBytes(plain)));
            const auto offset = static_cast<uint32_t>(prefix.size());
            const auto info = plugin_.Info(shifted, offset);
            ASSERT_TRUE(info);
            EXPECT_EQ(std::tuple(info->duration, info->channels, info->fileSize),
                      std::tuple(500u, 2, uint32_t(std::filesystem::file_size(plain) + offset)));
            Decoder decoder(plugin_, shifted, offset);
            EXPECT_EQ(decoder.Seek(250), 250u);
            EXPECT_TRUE(decoder.ToEnd(4) == std::vector<uint8_t>(pcm16_->begin() + kFrames / 2 * 4, pcm16_->end()));
        }
    }
}

TEST_F(SndfileModule, TakesItsExtensionsWithoutRegardToCaseAndAnnouncesThem) {
    const std::pair<const char*, bool> paths[] = {
        {"a.wav", true},  {"B.WAV", true},  {"c.aif", true},  {"d.AIFF", true}, {"e.aifc", true},     {"f.au", true},
        {"g.snd", true},  {"h.flac", true}, {"i.ogg", true},  {"j.oga", true},  {"k.Opus", true},     {"l.mp3", false},
        {"wav", false},   {"/x.wav/y", false}, {"m.wav.txt", false}, {"http://host/n.flac", true},
    };
    for (const auto& [path, taken] : paths) {
        EXPECT_EQ(plugin_.IsOurFile(path), taken) << path;
        EXPECT_EQ(plugin_.IsOurFile(path), taken) << path << " asked again";
    }
    const auto texts = plugin_.Announcements();
    const std::vector<std::string> types = {"WAV audio",        "*.wav",       "AIFF audio", "*.aif;*.aiff;*.aifc",
                                            "Sun/NeXT audio",   "*.au;*.snd",  "FLAC audio", "*.flac",
                                            "Ogg Vorbis audio", "*.ogg;*.oga", "Opus audio", "*.opus"};
    ASSERT_EQ(texts.size(), types.size() + 2);
    EXPECT_EQ(std::vector<std::string>(texts.begin(), texts.begin() + long(types.size())), types);
    EXPECT_NE(texts[types.size()].find("libsndfile"), std::string::npos) << texts[types.size()];
    EXPECT_EQ(texts.back(), texts[types.size()] + "\n");
}

TEST_F(SndfileModule, DamagedEmptyAndUnreadableFiles) {
    const TempDir dir;
    WriteFile(dir.file("empty.wav"), "");
    WriteBytes(dir.file("garbage.wav"), Garbage(64 * 1024, 3));
    const std::vector<uint8_t> wav = ReadBytes(Wav());
    WriteBytes(dir.file("header_cut.wav"), {wav.begin(), wav.begin() + 20});
    WriteWav(dir.file("three_channels.wav"), 3, 8000, 16, std::vector<uint8_t>(6 * 800));
    std::filesystem::create_directory(dir.file("folder.wav"));
    ASSERT_EQ(mkfifo(dir.file("pipe.wav").c_str(), 0600), 0);  // would block a plain open()
    WriteFile(dir.file("locked.wav"), "unreadable");
    chmod(dir.file("locked.wav").c_str(), 0);  // (root reads it anyway; then it is garbage)
    const std::pair<std::string, uint32_t> refused[] = {
        {dir.file("empty.wav"), 0},  {dir.file("garbage.wav"), 0}, {dir.file("header_cut.wav"), 0},
        {dir.file("three_channels.wav"), 0}, {dir.file("folder.wav"), 0}, {dir.file("pipe.wav"), 0},
        {dir.file("missing.wav"), 0}, {dir.file("locked.wav"), 0}, {"http://localhost:1/stream.ogg", 0},
        {Wav(), 1u << 30}, {Wav(), 10},  // offsets past the end and inside the header
    };
    for (const auto& [path, offset] : refused) {
        EXPECT_FALSE(plugin_.Info(path, offset)) << path << " at " << offset;
        EXPECT_FALSE(Decoder(plugin_, path, offset).valid()) << path << " at " << offset;
    }

    WriteWav(dir.file("silence.wav"), 2, 44100, 16, {});  // no frames: an empty track
    EXPECT_EQ(plugin_.Info(dir.file("silence.wav"))->duration, 0u);
    Decoder silence(plugin_, dir.file("silence.wav"));
    EXPECT_TRUE(silence.ToEnd(4).empty());
    EXPECT_EQ(silence.Seek(1000), 0u);

    // Cut short, in the middle of a frame or of a FLAC block: the start of the real thing.
    const std::pair<std::string, size_t> cuts[] = {
        {Wav(), 44 + 40000 + 3}, {Path("tone.flac"), std::filesystem::file_size(Path("tone.flac")) / 2}};
    for (const auto& [source, keep] : cuts) {
        const auto bytes = ReadBytes(source);
        const std::string cut = dir.file("cut" + std::filesystem::path(source).extension().string());
        WriteBytes(cut, {bytes.begin(), bytes.begin() + long(keep)});
        Decoder decoder(plugin_, cut);
        const std::vector<uint8_t> pcm = decoder.ToEnd(4);
        EXPECT_GT(pcm.size(), 0u) << source;
        EXPECT_LT(pcm.size(), pcm16_->size()) << source;
        EXPECT_TRUE(std::equal(pcm.begin(), pcm.end(), pcm16_->begin())) << source;
    }
}

}  // namespace
}  // namespace verdin::test
