// The equalizer with arbitrary formats, block sizes, gains and switching. Two equalizers
// get the same calls, their blocks differing only in the headroom after the block (zeros
// for one, 0xFF for the other), so output that depends on bytes beyond the block shows.
// A count of the bytes held checks every answer: pass-through, a flush (counted in
// frames) or whole hops. At 0 dB, on throughout, the output is the input up to truncation.
#include "engine/equalizer/Equalizer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <vector>

namespace {

using verdin::Equalizer;

void Check(bool ok) {
    if (!ok) std::abort();
}

int32_t SampleAt(const uint8_t* p, uint32_t bytes) {
    uint32_t bits = 0;
    for (uint32_t i = 0; i < bytes; ++i) bits |= uint32_t{p[i]} << (8 * i);
    return static_cast<int32_t>(bits << (32 - 8 * bytes)) >> (32 - 8 * bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    size_t at = 0;
    const auto byte = [&] { return at < size ? data[at++] : uint8_t{0}; };
    const auto word = [&](int bytes) {
        uint32_t v = 0;
        for (int i = 0; i < bytes; ++i) v |= uint32_t{byte()} << (8 * i);
        return v;
    };
    const auto values = [&] {  // all 0 dB, the dialog's range and then some, or anything at all
        EqualizerValues v{};
        const uint8_t kind = byte() % 8;
        for (auto& g : v.gain) g = kind == 0 ? 0 : kind == 7 ? static_cast<int32_t>(word(4)) : static_cast<int8_t>(byte()) / 4;
        return v;
    };
    static constexpr uint32_t kRates[] = {44100, 48000, 8000, 22050, 96000, 1, 0, 11025};
    const uint8_t head = byte();
    const uint32_t bits = 8 * (1 + (head & 3)), channels = 1 + ((head >> 2) & 1);
    const uint32_t rate = (head >> 3) == 31 ? word(4) : kRates[(head >> 3) & 7];
    const uint32_t sampleBytes = bits / 8, frameBytes = sampleBytes * channels;
    bool enabled = (head >> 6) & 1;
    Equalizer a(enabled), b(enabled);
    EqualizerValues v = values();
    Check(a.SetEqualizerValues(v, rate) == (rate != 0));
    b.SetEqualizerValues(v, rate);
    bool identity = enabled && rate != 0 && std::all_of(std::begin(v.gain), std::end(v.gain), [](int32_t g) { return g == 0; });
    std::deque<int32_t> expected;  // input samples not yet given back, for the identity check
    uint64_t held = 0;             // bytes the equalizers hold
    for (int step = 0; step < 24 && at < size; ++step) {
        const uint8_t op = byte();
        if (op >= 0xE8) {
            if (op >= 0xF0) enabled = op & 1, a.SetEqualizerEnabled(enabled), b.SetEqualizerEnabled(enabled);
            else v = values(), a.SetEqualizerValues(v, rate), b.SetEqualizerValues(v, rate);
            identity = identity && op >= 0xF0 && enabled;
            continue;
        }
        // Mostly whole frames, sometimes a ragged count, now and then more than the input buffer holds.
        uint32_t bytes = (word(2) & 0x1FFF) * ((op & 0x0F) == 1 ? 13 : 1);
        if (!(op & 2)) bytes -= bytes % frameBytes;
        identity = identity && bytes % frameBytes == 0;
        std::vector<uint8_t> pcmA(bytes + Equalizer::kOutputHeadroom, 0x00), pcmB(bytes + Equalizer::kOutputHeadroom, 0xFF);
        for (uint32_t i = 0; i < bytes; ++i) pcmA[i] = pcmB[i] = data[(at + i) % size];  // the input, repeated
        at += bytes / 8;
        const std::vector<uint8_t> block(pcmA.begin(), pcmA.begin() + bytes);
        for (uint32_t i = 0; identity && i + sampleBytes <= bytes; i += sampleBytes) expected.push_back(SampleAt(&block[i], sampleBytes));
        const uint32_t r = a.Process(pcmA.data(), bytes, bits, channels);
        Check(b.Process(pcmB.data(), bytes, bits, channels) == r);
        uint64_t out = r;
        if (!enabled) {  // pass-through, or a flush of the held bytes and then the block
            Check(r == (held + bytes) / (held ? frameBytes : 1));
            Check(std::equal(block.begin(), block.end(), pcmA.begin() + held));
            out = held + bytes;
            held = 0;
        } else {  // whole hops
            Check(r % (256 * frameBytes) == 0 && r <= held + bytes);
            held = held + bytes - r;
            Check(held < 512 * frameBytes);
        }
        Check(out <= bytes + Equalizer::kOutputHeadroom && std::equal(pcmA.begin(), pcmA.begin() + out, pcmB.begin()));
        for (uint64_t i = 0; identity && i < out; i += sampleBytes) {
            const int32_t want = expected.front(), got = SampleAt(&pcmA[i], sampleBytes);
            expected.pop_front();
            Check(got == want || got == want - (want > 0) + (want < 0));
        }
    }
    return 0;
}
