#include "DecoderUnderTest.h"

#include <gtest/gtest.h>

namespace verdin::test {

DecoderUnderTest::DecoderUnderTest(InputModule* module, const std::string& path, uint32_t dataOffset)
    : decoder_(module->ops->OpenDecoder(module, path.c_str(), dataOffset)) {}

DecoderUnderTest::~DecoderUnderTest() {
    if (decoder_) decoder_->ops->Destroy(decoder_);
}

std::vector<uint8_t> DecoderUnderTest::DecodeToEnd(uint32_t frameBytes, size_t maxBlocks) {
    std::vector<uint8_t> pcm;
    if (!decoder_) return pcm;
    for (size_t blocks = 0;; ++blocks) {
        if (blocks == maxBlocks) {
            ADD_FAILURE() << "the decoder did not end after " << maxBlocks << " blocks";
            break;
        }
        const void* block = nullptr;
        const uint32_t bytes = decoder_->ops->Decode(decoder_, &block);
        if (bytes == 0) break;
        if (!block || frameBytes == 0 || bytes % frameBytes != 0) {
            ADD_FAILURE() << "bad block: " << bytes << " bytes at " << block << ", frames of " << frameBytes;
            break;
        }
        const auto* first = static_cast<const uint8_t*>(block);
        pcm.insert(pcm.end(), first, first + bytes);
    }
    return pcm;
}

uint32_t DecoderUnderTest::Seek(uint32_t milliseconds) {
    return decoder_->ops->Seek(decoder_, milliseconds);
}

}  // namespace verdin::test
