// The equalizer with arbitrary formats, block sizes, gains and switching. Two equalizers
// get the same calls, their blocks differing only in the headroom after the block (zeros
// for one, 0xFF for the other), so output that depends on bytes beyond the block shows,
// and what comes out must fit the room. What the answers hold is the equalizer tests'
// (tests/engine), against a plain evaluation.
#include "engine/equalizer/Equalizer.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {

using verdin::Equalizer;

void Check(bool ok) {
    if (!ok) std::abort();
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
    const uint32_t frameBytes = bits / 8 * channels;
    bool enabled = (head >> 6) & 1;
    Equalizer a(enabled), b(enabled);
    EqualizerValues v = values();
    a.SetEqualizerValues(v, rate);
    b.SetEqualizerValues(v, rate);
    for (int step = 0; step < 24 && at < size; ++step) {
        const uint8_t op = byte();
        if (op >= 0xE8) {
            if (op >= 0xF0) enabled = op & 1, a.SetEqualizerEnabled(enabled), b.SetEqualizerEnabled(enabled);
            else v = values(), a.SetEqualizerValues(v, rate), b.SetEqualizerValues(v, rate);
            continue;
        }
        // Mostly whole frames, sometimes a ragged count, now and then more than the input buffer holds.
        uint32_t bytes = (word(2) & 0x1FFF) * ((op & 0x0F) == 1 ? 13 : 1);
        if (!(op & 2)) bytes -= bytes % frameBytes;
        std::vector<uint8_t> pcmA(bytes + Equalizer::kOutputHeadroom, 0x00), pcmB(bytes + Equalizer::kOutputHeadroom, 0xFF);
        for (uint32_t i = 0; i < bytes; ++i) pcmA[i] = pcmB[i] = data[(at + i) % size];  // the input, repeated
        at += bytes / 8;
        const uint32_t r = a.Process(pcmA.data(), bytes, bits, channels);
        Check(b.Process(pcmB.data(), bytes, bits, channels) == r && a.ReturnedFrameCount() == b.ReturnedFrameCount());
        const uint64_t out = uint64_t{r} * (a.ReturnedFrameCount() ? frameBytes : 1);  // a flush counts frames
        Check(out <= bytes + Equalizer::kOutputHeadroom && std::equal(pcmA.begin(), pcmA.begin() + out, pcmB.begin()));
    }
    return 0;
}
