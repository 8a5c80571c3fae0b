#pragma once
// A decoder opened through a module for a test, destroyed at the end.
#include <verdin/input.h>

#include <cstdint>
#include <string>
#include <vector>

namespace verdin::test {

class DecoderUnderTest {
public:
    // OpenDecoder(path, dataOffset); valid() tells whether a decoder came back.
    DecoderUnderTest(InputModule* module, const std::string& path, uint32_t dataOffset = 0);
    ~DecoderUnderTest();
    DecoderUnderTest(const DecoderUnderTest&) = delete;
    DecoderUnderTest& operator=(const DecoderUnderTest&) = delete;

    bool valid() const { return decoder_ != nullptr; }
    InputDecoder* get() const { return decoder_; }

    // Every block until Decode returns 0, appended. Each block must be a whole number of
    // frames of frameBytes; a decoder that never ends fails the test after maxBlocks.
    std::vector<uint8_t> DecodeToEnd(uint32_t frameBytes, size_t maxBlocks = 1000000);
    // DecodeToEnd while another thread keeps switching the equalizer and sending values,
    // as the user-interface thread may do during playback.
    std::vector<uint8_t> DecodeToEndWhileEqualizerChanges(uint32_t frameBytes);
    uint32_t Seek(uint32_t milliseconds);

private:
    InputDecoder* decoder_ = nullptr;
};

}  // namespace verdin::test
