#include "engine/stream/RingLayout.h"
#include "engine/stream/RingWriter.h"
#include "engine/stream/SilenceScan.h"

#include <gtest/gtest.h>
#include <vector>

namespace verdin {
namespace {

const PcmFormat kCd{44100, 2, 16};

TEST(RingLayout, SizesFramesAndPrefillLevels) {
    struct Case { int32_t size; int32_t prefill; PcmFormat format; uint32_t bytes, frames, prefillFrames; };
    const Case cases[] = {
        {102400, 10, kCd, 102400, 25600, 10240},        // 10% is 2560, raised to the minimum
        {102400, 100, kCd, 102400, 25600, 25600},       // 100% is the whole ring
        {512000, 50, kCd, 512000, 128000, 64000},
        {512007, 100, kCd, 512000, 128000, 128000},     // rounded down to a multiple of 8
        {1000, 100, kCd, 102400, 25600, 25600},         // below the options page's minimum
        {99999999, 100, kCd, 2048000, 512000, 512000},  // above its maximum
        {102400, 100, PcmFormat{8000, 1, 8}, 102400, 102400, 102400},
        {204800, 150, kCd, 204800, 51200, 51200},       // percent clamped to 100
    };
    for (const Case& c : cases) {
        const RingLayout r = ComputeRingLayout(c.size, c.prefill, c.format);
        EXPECT_EQ(r.bytes, c.bytes) << c.size;
        EXPECT_EQ(r.frames, c.frames) << c.size;
        EXPECT_EQ(r.prefillFrames, c.prefillFrames) << c.size << " " << c.prefill;
    }
}

TEST(SilenceScan, ThresholdsFollowTheLevelAndTheSampleSize) {
    EXPECT_EQ(SilenceThreshold(-100, 16), 0);
    EXPECT_EQ(SilenceThreshold(-20, 16), 3276);
    EXPECT_EQ(SilenceThreshold(-20, 8), 12);
    EXPECT_EQ(SilenceThreshold(-60, 24), 8388);
}

TEST(SilenceScan, TheFirstLoudSampleEndsTheSilenceInAnyChannel) {
    std::vector<int16_t> pcm = {0, 0, 3, -3, 0, 3277, 9, 9};
    const auto* bytes = reinterpret_cast<const uint8_t*>(pcm.data());
    EXPECT_EQ(FirstLoudFrame(bytes, 4, kCd, 3276), 2u);  // right channel of frame 2
    EXPECT_EQ(FirstLoudFrame(bytes, 4, kCd, 0), 1u);
    EXPECT_EQ(FirstLoudFrame(bytes, 2, kCd, 0), 1u);
    EXPECT_EQ(FirstLoudFrame(bytes, 1, kCd, 0), 1u);  // all silent: the frame count
    const int16_t negative[2] = {-3277, 0};
    EXPECT_EQ(FirstLoudFrame(reinterpret_cast<const uint8_t*>(negative), 1, kCd, 3276), 0u);
    // 8-bit samples are read as signed bytes: 0x80 (unsigned silence) reads as -128.
    const uint8_t eight[3] = {0x00, 0x05, 0x80};
    EXPECT_EQ(FirstLoudFrame(eight, 3, PcmFormat{8000, 1, 8}, 5), 2u);
}

TEST(RingWriter, CopiesWrapAroundTheEnd) {
    std::vector<uint8_t> ring(8, 0);
    const uint8_t data[6] = {1, 2, 3, 4, 5, 6};
    EXPECT_EQ(CopyIntoRing(ring.data(), 8, 6, data, 6), 4u);
    EXPECT_EQ(ring, (std::vector<uint8_t>{3, 4, 5, 6, 0, 0, 1, 2}));
}

TEST(RingWriter, ACrossfadeMixesExactlyItsLengthFromOldToNew) {
    // Old track at +8000, new track at -8000, a fade of 4 frames over a 6-frame block.
    const PcmFormat mono{1000, 1, 16};
    std::vector<int16_t> ring(16, 8000);
    const std::vector<int16_t> block(6, -8000);
    Crossfade fade{4, 4};
    const uint32_t mixed = MixIntoRing(reinterpret_cast<uint8_t*>(ring.data()), 32, 28,
                                       reinterpret_cast<const uint8_t*>(block.data()), 6, mono, fade);
    EXPECT_EQ(mixed, 4u);
    EXPECT_EQ(fade.remaining, 0u);
    // (n x L + (o - n) x r) / L with r = 4, 3, 2, 1; writing wraps from frame 14 to 0.
    EXPECT_EQ(ring[14], 8000);
    EXPECT_EQ(ring[15], 4000);
    EXPECT_EQ(ring[0], 0);
    EXPECT_EQ(ring[1], -4000);
    EXPECT_EQ(ring[2], 8000);  // untouched: the caller copies the rest
}

TEST(RingWriter, EightBitFadesWorkOnUnsignedSamplesAndTruncateTowardZero) {
    const PcmFormat mono{1000, 1, 8};
    std::vector<uint8_t> ring(4, 128 + 100);
    const std::vector<uint8_t> block(3, 128 - 50);
    Crossfade fade{3, 3};
    MixIntoRing(ring.data(), 4, 0, block.data(), 3, mono, fade);
    // o = 100, n = -50: r=3 -> 100; r=2 -> (-150 + 300)/3 = 50; r=1 -> (-150 + 150)/3 = 0.
    EXPECT_EQ(ring[0], 228);
    EXPECT_EQ(ring[1], 178);
    EXPECT_EQ(ring[2], 128);

    std::vector<int16_t> r16 = {1};
    const int16_t n16[1] = {0};
    Crossfade odd{3, 2};
    MixIntoRing(reinterpret_cast<uint8_t*>(r16.data()), 2, 0, reinterpret_cast<const uint8_t*>(n16), 1,
                PcmFormat{1000, 1, 16}, odd);
    EXPECT_EQ(r16[0], 0);  // (0 + 1 x 2) / 3 truncates to 0
    Crossfade none{0, 0};
    EXPECT_EQ(MixIntoRing(reinterpret_cast<uint8_t*>(r16.data()), 2, 0, reinterpret_cast<const uint8_t*>(n16), 1,
                          PcmFormat{1000, 1, 16}, none), 0u);
}

}  // namespace
}  // namespace verdin
