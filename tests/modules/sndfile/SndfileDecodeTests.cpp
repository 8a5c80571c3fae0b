// Decoding through WAV_Verdin.so: exact PCM for lossless sources, the 8-bit exception,
// conversions to 16 bits, seeking and data offsets.
#include "SndfileFixtures.h"

#include "AudioFiles.h"
#include "DecoderUnderTest.h"
#include "Files.h"
#include "PcmFixtures.h"

#include <cmath>
#include <filesystem>
#include <sndfile.h>

namespace verdin::test {
namespace {

TEST_F(SndfileModuleTest, LosslessFormatsDecodeToTheirExactSamples) {
    const std::string wav = Wav16("tone.wav");
    const struct {
        const char* label;
        std::string path;
    } cases[] = {
        {"WAV", wav},
        {"FLAC", Convert({"flac", "-s"}, wav, "tone.flac")},
        {"AIFF", Convert({"sox"}, wav, "tone.aiff")},
        {"AU", Convert({"sox"}, wav, "tone.au")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        DecoderUnderTest decoder(plugin_.module(), c.path);
        ASSERT_TRUE(decoder.valid());
        EXPECT_TRUE(decoder.DecodeToEnd(4) == Pcm16());
    }
}

TEST_F(SndfileModuleTest, UnsignedEightBitWavIsDeliveredAsStored) {
    std::vector<uint8_t> stored(2 * 8000);
    for (size_t i = 0; i < stored.size(); ++i) stored[i] = static_cast<uint8_t>(i * 7);
    const std::string path = dir_.file("bytes.wav");
    WriteWav(path, 2, 8000, 8, stored);

    const auto info = plugin_.Info(path);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->bitsPerSample, 8);
    EXPECT_EQ(info->channels, 2);
    DecoderUnderTest decoder(plugin_.module(), path);
    EXPECT_TRUE(decoder.DecodeToEnd(2) == stored);
}

TEST_F(SndfileModuleTest, OtherSampleFormatsBecomeSixteenBitSigned) {
    // 24-bit FLAC keeps its top 16 bits; signed 8-bit AIFF is shifted up.
    std::vector<uint8_t> pcm24;
    std::vector<int16_t> top16;
    for (int i = 0; i < 4000; ++i) {
        const int32_t sample = (i * 2731 % 16777216) - 8388608;  // spans most of the 24-bit range
        for (int b = 0; b < 3; ++b) pcm24.push_back(static_cast<uint8_t>(sample >> (8 * b)));
        top16.push_back(static_cast<int16_t>(sample >> 8));
    }
    WriteWav(dir_.file("deep.wav"), 1, 48000, 24, pcm24);
    const std::string flac24 = Convert({"flac", "-s"}, dir_.file("deep.wav"), "deep.flac");

    std::vector<uint8_t> unsigned8(3000);
    std::vector<int16_t> shifted;
    for (size_t i = 0; i < unsigned8.size(); ++i) {
        unsigned8[i] = static_cast<uint8_t>(i % 256);
        shifted.push_back(static_cast<int16_t>((static_cast<int>(unsigned8[i]) - 128) * 256));
    }
    WriteWav(dir_.file("eight.wav"), 1, 8000, 8, unsigned8);
    const std::string aiff8 = Convert({"sox"}, dir_.file("eight.wav"), "eight.aiff");

    const struct {
        const char* label;
        std::string path;
        std::vector<int16_t> expected;
    } cases[] = {{"24-bit FLAC", flac24, top16}, {"signed 8-bit AIFF", aiff8, shifted}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(plugin_.Info(c.path)->bitsPerSample, 16);
        DecoderUnderTest decoder(plugin_.module(), c.path);
        EXPECT_EQ(Samples16(decoder.DecodeToEnd(2)), c.expected);
    }
}

TEST_F(SndfileModuleTest, FloatSamplesAreScaledAndClippedBeyondFullScale) {
    const std::string path = WriteWithLibsndfile("loud.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 1, 44100,
                                                 {0.5f, 1.5f, -1.5f, -0.25f, 1.0f, -1.0f, 0.0f});
    EXPECT_EQ(plugin_.Info(path)->bitsPerSample, 16);
    DecoderUnderTest decoder(plugin_.module(), path);
    EXPECT_EQ(Samples16(decoder.DecodeToEnd(2)), (std::vector<int16_t>{16384, 32767, -32768, -8192, 32767, -32768, 0}));
}

// Lossy formats: the right amount of audio, and audio that is the tone that went in.
TEST_F(SndfileModuleTest, LossyFormatsDecodeTheirLengthOfTheTone) {
    const std::string wav = Wav16("tone.wav");
    std::vector<float> tone48(48000);
    for (size_t i = 0; i < tone48.size(); ++i) tone48[i] = 0.5f * std::sin(2.0f * 3.14159265f * 440.0f * i / 48000.0f);
    const struct {
        const char* label;
        std::string path;
        int rate, channels;
        size_t frames;
    } cases[] = {
        {"Ogg Vorbis", Convert({"sox"}, wav, "tone.ogg"), kRate, 2, kFrames},
        {"Opus", WriteWithLibsndfile("tone.opus", SF_FORMAT_OGG | SF_FORMAT_OPUS, 1, 48000, tone48), 48000, 1, 48000},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        const auto info = plugin_.Info(c.path);
        ASSERT_TRUE(info);
        EXPECT_EQ(info->sampleRate, c.rate);
        EXPECT_EQ(info->channels, c.channels);
        EXPECT_EQ(info->bitsPerSample, 16);
        EXPECT_NEAR(info->duration, c.frames * 1000.0 / c.rate, 2);
        EXPECT_LT(info->bitrate, 0);

        DecoderUnderTest decoder(plugin_.module(), c.path);
        const std::vector<int16_t> samples = Samples16(decoder.DecodeToEnd(2 * c.channels));
        EXPECT_NEAR(static_cast<double>(samples.size()) / c.channels, c.frames, c.rate / 100.0);
        // A 0.5 full-scale sine has an RMS of about 0.354 of full scale.
        double power = 0;
        for (int16_t s : samples) power += static_cast<double>(s) * s;
        EXPECT_NEAR(std::sqrt(power / samples.size()) / 32768.0, 0.354, 0.03);
    }
}

TEST_F(SndfileModuleTest, SeekLandsOnTheFrameItReports) {
    const std::string wav = Wav16("tone.wav");
    const std::string flac = Convert({"flac", "-s"}, wav, "tone.flac");
    for (const std::string& path : {wav, flac}) {
        for (uint32_t ms : {0u, 1u, 123u, 250u, 499u}) {
            SCOPED_TRACE(path + " at " + std::to_string(ms) + " ms");
            DecoderUnderTest decoder(plugin_.module(), path);
            ASSERT_TRUE(decoder.valid());
            EXPECT_EQ(decoder.Seek(ms), ms);
            const size_t frame = (static_cast<size_t>(ms) * kRate + 500) / 1000;
            const std::vector<uint8_t> expected(Pcm16().begin() + static_cast<long>(frame * 4), Pcm16().end());
            EXPECT_TRUE(decoder.DecodeToEnd(4) == expected);
        }
        DecoderUnderTest decoder(plugin_.module(), path);
        EXPECT_EQ(decoder.Seek(10000), 500u);  // past the end: the end
        EXPECT_TRUE(decoder.DecodeToEnd(4).empty());
    }
}

TEST_F(SndfileModuleTest, DataOffsetSkipsWhatLiesInFrontOfTheAudio) {
    // A tag, and a whole other sound file of another format that only the offset hides.
    const std::string wav = Wav16("tone.wav");
    const std::string flac = Convert({"flac", "-s"}, wav, "tone.flac");
    WriteWav(dir_.file("other.wav"), 1, 8000, 8, std::vector<uint8_t>(800, 0x80));
    const struct {
        const char* label;
        std::vector<uint8_t> prefix;
    } prefixes[] = {{"ID3v2 tag", Id3v2Tag(2048)}, {"another WAV file", ReadBytes(dir_.file("other.wav"))}};
    for (const auto& p : prefixes) {
        for (const std::string& plain : {wav, flac}) {
            SCOPED_TRACE(std::string(p.label) + " before " + plain);
            const std::string shifted = plain + ".shifted";
            PrependBytes(plain, shifted, p.prefix);
            const auto offset = static_cast<uint32_t>(p.prefix.size());
            const auto info = plugin_.Info(shifted, offset);
            ASSERT_TRUE(info);
            EXPECT_EQ(info->duration, 500u);
            EXPECT_EQ(info->channels, 2);
            EXPECT_EQ(info->fileSize, std::filesystem::file_size(plain) + offset);
            DecoderUnderTest decoder(plugin_.module(), shifted, offset);
            ASSERT_TRUE(decoder.valid());
            EXPECT_EQ(decoder.Seek(250), 250u);
            const std::vector<uint8_t> secondHalf(Pcm16().begin() + kFrames / 2 * 4, Pcm16().end());
            EXPECT_TRUE(decoder.DecodeToEnd(4) == secondHalf);
        }
    }
}

TEST_F(SndfileModuleTest, EqualizerCallsFromAnotherThreadLeaveTheDecodeAlone) {
    DecoderUnderTest decoder(plugin_.module(), Convert({"flac", "-s"}, Wav16("tone.wav"), "tone.flac"));
    ASSERT_TRUE(decoder.valid());
    EXPECT_TRUE(decoder.DecodeToEndWhileEqualizerChanges(4) == Pcm16());
}

}  // namespace
}  // namespace verdin::test
