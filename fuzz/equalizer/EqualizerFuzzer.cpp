// Drives the equalizer with arbitrary formats, block sizes, gains and switching.
//
// Two equalizers get the same calls; their blocks differ only in the headroom after the
// block (zeros for one, 0xFF for the other), so any output that depends on bytes beyond
// the block shows up as a difference. A model of the held byte count checks every
// answer: pass-through, flush (a frame count) or whole hops. With 0 dB on every band and
// the equalizer on throughout, the output must be the input, up to truncation.
#include "engine/equalizer/Equalizer.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <vector>

namespace {

using verdin::Equalizer;

class Reader {
public:
    Reader(const uint8_t* data, size_t size) : data_(data), size_(size) {}
    bool Empty() const { return at_ >= size_; }
    uint8_t Byte() { return at_ < size_ ? data_[at_++] : 0; }
    uint32_t Word(int bytes) {
        uint32_t v = 0;
        for (int i = 0; i < bytes; ++i) v |= uint32_t{Byte()} << (8 * i);
        return v;
    }
    // n bytes of sample data, repeating the input when it runs out.
    void Fill(uint8_t* out, size_t n) {
        for (size_t i = 0; i < n; ++i) out[i] = size_ ? data_[(at_ + i) % size_] : 0;
        at_ += n / 8;  // consume a little, so long blocks do not swallow the whole script
    }

private:
    const uint8_t* data_;
    size_t size_;
    size_t at_ = 0;
};

void Check(bool ok) {
    if (!ok) std::abort();
}

int32_t SampleAt(const uint8_t* p, uint32_t bytes) {
    uint32_t bits = 0;
    for (uint32_t i = 0; i < bytes; ++i) bits |= uint32_t{p[i]} << (8 * i);
    const uint32_t unused = 32 - 8 * bytes;
    return static_cast<int32_t>(bits << unused) >> unused;
}

EqualizerValues ReadValues(Reader& in) {
    EqualizerValues v{};
    const uint8_t kind = in.Byte();
    for (auto& g : v.gain) {
        if (kind % 8 == 0) g = 0;
        else if (kind % 8 == 7) g = static_cast<int32_t>(in.Word(4));  // anything at all
        else g = static_cast<int8_t>(in.Byte()) / 4;                   // the dialog's range and then some
    }
    return v;
}

bool AllZero(const EqualizerValues& v) {
    for (int32_t g : v.gain)
        if (g != 0) return false;
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Reader in(data, size);
    static constexpr uint32_t kBits[] = {8, 16, 24, 32};
    static constexpr uint32_t kRates[] = {44100, 48000, 8000, 22050, 96000, 1, 0, 11025};
    const uint8_t head = in.Byte();
    const uint32_t bits = kBits[head & 3];
    const uint32_t channels = 1 + ((head >> 2) & 1);
    const uint32_t rate = (head >> 3) == 31 ? in.Word(4) : kRates[(head >> 3) & 7];
    const uint32_t sampleBytes = bits / 8, frameBytes = sampleBytes * channels;
    bool enabled = (head >> 6) & 1;

    Equalizer a(enabled), b(enabled);
    EqualizerValues values = ReadValues(in);
    Check(a.SetEqualizerValues(values, rate) == (rate != 0));
    b.SetEqualizerValues(values, rate);
    bool identity = enabled && AllZero(values) && rate != 0;
    std::deque<int32_t> expected;  // input samples not yet given back, for the identity check
    uint64_t held = 0;             // bytes the equalizers hold

    std::vector<uint8_t> pcmA, pcmB;
    for (int step = 0; step < 24 && !in.Empty(); ++step) {
        const uint8_t op = in.Byte();
        if (op >= 0xF0) {
            enabled = op & 1;
            a.SetEqualizerEnabled(enabled);
            b.SetEqualizerEnabled(enabled);
            if (!enabled) identity = false;
            continue;
        }
        if (op >= 0xE8) {
            values = ReadValues(in);
            a.SetEqualizerValues(values, rate);
            b.SetEqualizerValues(values, rate);
            identity = false;
            continue;
        }
        // A block: mostly whole frames, sometimes a ragged byte count, sometimes more
        // than the 32768-byte input buffer holds.
        uint32_t bytes = in.Word(2) & 0x1FFF;
        if ((op & 0x0F) == 1) bytes *= 13;  // now and then up to 106483 bytes
        if (!(op & 2)) bytes -= bytes % frameBytes;
        pcmA.assign(bytes + Equalizer::kOutputHeadroom, 0x00);
        pcmB.assign(bytes + Equalizer::kOutputHeadroom, 0xFF);
        in.Fill(pcmA.data(), bytes);
        std::memcpy(pcmB.data(), pcmA.data(), bytes);
        if (bytes % frameBytes != 0) identity = false;
        if (identity)
            for (uint32_t i = 0; i + sampleBytes <= bytes; i += sampleBytes) expected.push_back(SampleAt(&pcmA[i], sampleBytes));
        const std::vector<uint8_t> block(pcmA.begin(), pcmA.begin() + bytes);

        const uint32_t r = a.Process(pcmA.data(), bytes, bits, channels);
        Check(b.Process(pcmB.data(), bytes, bits, channels) == r);

        uint64_t outBytes;
        if (!enabled && held == 0) {  // pass-through
            Check(r == bytes);
            Check(std::equal(block.begin(), block.end(), pcmA.begin()));
            outBytes = bytes;
        } else if (!enabled) {  // flush: held bytes, then the block, counted in frames
            Check(r == (held + bytes) / frameBytes);
            Check(std::equal(block.begin(), block.end(), pcmA.begin() + held));
            outBytes = held + bytes;
            held = 0;
        } else {  // whole hops
            Check(r % (256 * frameBytes) == 0);
            Check(r <= held + bytes);
            held = held + bytes - r;
            Check(held < 512 * frameBytes);
            outBytes = r;
        }
        Check(outBytes <= bytes + Equalizer::kOutputHeadroom);
        Check(std::equal(pcmA.begin(), pcmA.begin() + outBytes, pcmB.begin()));

        if (identity) {
            for (uint64_t i = 0; i < outBytes; i += sampleBytes) {
                const int32_t want = expected.front(), got = SampleAt(&pcmA[i], sampleBytes);
                expected.pop_front();
                const int32_t towardZero = want > 0 ? want - 1 : want < 0 ? want + 1 : 0;
                Check(got == want || got == towardZero);
            }
        }
    }
    return 0;
}
