// Decoding through MPEG_Verdin.so: the PCM, seeking, data offsets.
#include "AudioFiles.h"
#include "DecoderUnderTest.h"
#include "MpegFixtures.h"

#include "Files.h"


namespace verdin::test {
namespace {

TEST_F(MpegModuleTest, DecodesExactlyWhatMpg123Writes) {
    for (const Mp3Fixture& f : All()) {
        SCOPED_TRACE(f.label);
        DecoderUnderTest decoder(plugin_.module(), f.path);
        ASSERT_TRUE(decoder.valid());
        const std::vector<uint8_t> pcm = decoder.DecodeToEnd(f.frameBytes());
        EXPECT_EQ(pcm.size(), f.reference.size());
        EXPECT_TRUE(pcm == f.reference) << "the PCM differs from mpg123's";
    }
}

TEST_F(MpegModuleTest, GaplessTrimmingGivesBackTheEncodedSamples) {
    // Where lame recorded its delay and padding, exactly the source's frames come out.
    for (const Mp3Fixture& f : All()) {
        if (!f.carriesLength) continue;
        SCOPED_TRACE(f.label);
        DecoderUnderTest decoder(plugin_.module(), f.path);
        EXPECT_EQ(decoder.DecodeToEnd(f.frameBytes()).size(), static_cast<size_t>(f.sourceFrames) * f.frameBytes());
    }
}

TEST_F(MpegModuleTest, DataOffsetSkipsWhatLiesInFrontOfTheAudio) {
    // A tag as taggers write it, and a whole other MP3 file of another format: libmpg123
    // would skip a tag by itself, but not the other file, so only a decoder that starts
    // at the offset gets this one right.
    const Mp3Fixture& f = Vbr();
    const struct {
        const char* label;
        std::vector<uint8_t> prefix;
    } cases[] = {{"ID3v2 tag", Id3v2Tag(4096)}, {"another MP3 file", ReadBytes(Mono().path)}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.label);
        const std::string shifted = Dir().file("shifted.mp3");
        PrependBytes(f.path, shifted, c.prefix);
        const auto offset = static_cast<uint32_t>(c.prefix.size());

        DecoderUnderTest decoder(plugin_.module(), shifted, offset);
        ASSERT_TRUE(decoder.valid());
        EXPECT_TRUE(decoder.DecodeToEnd(f.frameBytes()) == f.reference);

        const auto plain = plugin_.Info(f.path);
        const auto withPrefix = plugin_.Info(shifted, offset);
        ASSERT_TRUE(plain && withPrefix);
        EXPECT_EQ(withPrefix->duration, plain->duration);
        EXPECT_EQ(withPrefix->bitrate, plain->bitrate);
        EXPECT_EQ(withPrefix->sampleRate, plain->sampleRate);
        EXPECT_EQ(withPrefix->channels, plain->channels);
        EXPECT_EQ(withPrefix->fileSize, plain->fileSize + offset);
    }
}

TEST_F(MpegModuleTest, SeekLandsOnTheSampleItReports) {
    // After Seek(ms) the decoder continues with the samples a decode from the start has at
    // that position. They are identical for the stereo files; for MPEG-2 (the mono file)
    // libmpg123's synthesis filter may round a few samples one step apart after a seek.
    // A position one sample off would differ by hundreds of steps.
    const uint32_t positions[] = {0, 1, 499, 1234, 2000, 2499};
    for (const Mp3Fixture* f : {&Cbr(), &Vbr(), &Mono()}) {
        for (uint32_t ms : positions) {
            SCOPED_TRACE(f->label + " at " + std::to_string(ms) + " ms");
            DecoderUnderTest decoder(plugin_.module(), f->path);
            ASSERT_TRUE(decoder.valid());
            EXPECT_EQ(decoder.Seek(ms), ms);
            const size_t frame = (static_cast<size_t>(ms) * f->sampleRate + 500) / 1000;
            const std::vector<uint8_t> expected(f->reference.begin() + static_cast<long>(frame * f->frameBytes()),
                                                f->reference.end());
            const int difference = MaxSampleDifference(decoder.DecodeToEnd(f->frameBytes()), expected);
            EXPECT_GE(difference, 0) << "a different length";
            EXPECT_LE(difference, f == &Mono() ? 1 : 0);
        }
    }
}

TEST_F(MpegModuleTest, SeekBackAfterDecodingAndPastTheEnd) {
    const Mp3Fixture& f = Cbr();
    DecoderUnderTest decoder(plugin_.module(), f.path);
    ASSERT_TRUE(decoder.valid());
    decoder.DecodeToEnd(f.frameBytes());

    EXPECT_EQ(decoder.Seek(1000), 1000u);
    const std::vector<uint8_t> tail(f.reference.begin() + 44100 * f.frameBytes(), f.reference.end());
    EXPECT_TRUE(decoder.DecodeToEnd(f.frameBytes()) == tail);

    const uint32_t durationMs = static_cast<uint32_t>(f.sourceFrames * 1000LL / f.sampleRate);
    const uint32_t reached = decoder.Seek(60000);
    EXPECT_GE(reached, durationMs);
    EXPECT_LE(reached, durationMs + 1);
    EXPECT_TRUE(decoder.DecodeToEnd(f.frameBytes()).empty());
}

TEST_F(MpegModuleTest, EqualizerCallsFromAnotherThreadLeaveTheDecodeAlone) {
    DecoderUnderTest decoder(plugin_.module(), Cbr().path);
    ASSERT_TRUE(decoder.valid());
    EXPECT_TRUE(decoder.DecodeToEndWhileEqualizerChanges(Cbr().frameBytes()) == Cbr().reference);
}

}  // namespace
}  // namespace verdin::test
