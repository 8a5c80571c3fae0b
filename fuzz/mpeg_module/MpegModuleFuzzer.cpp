// Arbitrary bytes through the MPEG module's file path: track information, a decoder,
// decoding to the end, a seek and decoding on from there.
//
// Input: byte 0 is the data offset, byte 1 the seek position in 20 ms steps, the rest is
// the file (held in a memfd and opened by its /proc path, as a player opens a file).
#include "MpegModule.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace {

// A block must hold whole frames of the format the information announced.
void CheckBlock(const TrackInfo& info, bool described, uint32_t bytes) {
    if (!described) return;
    const uint32_t frameBytes = static_cast<uint32_t>(info.bitsPerSample / 8 * info.channels);
    if (frameBytes == 0 || bytes % frameBytes != 0) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static InputModule* const module = verdin::mpeg::AcquireMpegModule();
    static const int fd = memfd_create("mpeg_module_input", MFD_CLOEXEC);
    static const std::string path = "/proc/self/fd/" + std::to_string(fd);
    if (size < 2 || fd < 0) return 0;
    const uint32_t dataOffset = data[0];
    const uint32_t seekMs = data[1] * 20u;
    if (ftruncate(fd, 0) != 0 || pwrite(fd, data + 2, size - 2, 0) != static_cast<ssize_t>(size - 2)) return 0;

    TrackInfo info{};
    const bool described = module->ops->GetFileInfo(module, path.c_str(), dataOffset, &info) != 0;
    if (described && ((info.channels != 1 && info.channels != 2) || info.bitsPerSample != 16 || info.sampleRate <= 0))
        std::abort();

    InputDecoder* decoder = module->ops->OpenDecoder(module, path.c_str(), dataOffset);
    if (!decoder) return 0;
    const void* block = nullptr;
    for (int blocks = 0; blocks < 100000; ++blocks) {
        const uint32_t bytes = decoder->ops->Decode(decoder, &block);
        if (bytes == 0) break;
        CheckBlock(info, described, bytes);
    }
    decoder->ops->Seek(decoder, seekMs);
    for (int blocks = 0; blocks < 100000; ++blocks) {
        const uint32_t bytes = decoder->ops->Decode(decoder, &block);
        if (bytes == 0) break;
        CheckBlock(info, described, bytes);
    }
    decoder->ops->Destroy(decoder);
    return 0;
}
