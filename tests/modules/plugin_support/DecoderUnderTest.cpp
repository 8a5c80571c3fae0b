#include "DecoderUnderTest.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

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

std::vector<uint8_t> DecoderUnderTest::DecodeToEndWhileEqualizerChanges(uint32_t frameBytes) {
    if (!decoder_) return {};
    std::atomic<bool> decoding{true};  // written by the decoding thread at the end, read by the caller
    std::thread caller([&] {
        EqualizerValues values{};
        for (int32_t i = 0; decoding.load(std::memory_order_acquire); ++i) {
            decoder_->ops->SetEqualizerEnabled(decoder_, i & 1);
            values.gain[i & 15] = i % 24 - 12;
            decoder_->ops->SetEqualizerValues(decoder_, &values);
        }
    });
    std::vector<uint8_t> pcm = DecodeToEnd(frameBytes);
    decoding.store(false, std::memory_order_release);
    caller.join();
    return pcm;
}

uint32_t DecoderUnderTest::Seek(uint32_t milliseconds) {
    return decoder_->ops->Seek(decoder_, milliseconds);
}

}  // namespace verdin::test
