#include "WavHeader.h"

#include <cstring>

namespace verdin {

namespace {

class HeaderWriter {
public:
    explicit HeaderWriter(std::array<uint8_t, kWavHeaderSize>& out) : out_(out) {}
    void Text(const char* text) {
        const size_t n = std::strlen(text);
        std::memcpy(out_.data() + at_, text, n);
        at_ += n;
    }
    void U16(uint32_t v) { Little(v, 2); }
    void U32(uint32_t v) { Little(v, 4); }

private:
    void Little(uint32_t v, int bytes) {
        for (int i = 0; i < bytes; ++i) out_[at_++] = static_cast<uint8_t>(v >> (8 * i));
    }
    std::array<uint8_t, kWavHeaderSize>& out_;
    size_t at_ = 0;
};

}  // namespace

std::array<uint8_t, kWavHeaderSize> MakeWavHeader(const PcmFormat& format, uint32_t dataBytes) {
    std::array<uint8_t, kWavHeaderSize> header{};
    const uint32_t blockAlign = format.BytesPerFrame();
    HeaderWriter w(header);
    w.Text("RIFF");
    w.U32(dataBytes + 36);
    w.Text("WAVEfmt ");
    w.U32(16);
    w.U16(1);
    w.U16(format.channels);
    w.U32(format.sampleRate);
    w.U32(blockAlign * format.sampleRate);
    w.U16(blockAlign);
    w.U16(format.bitsPerSample);
    w.Text("data");
    w.U32(dataBytes);
    return header;
}

}  // namespace verdin
