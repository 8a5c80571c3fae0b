// The input module fuzzers, built once per module (fuzz/mpeg_module, fuzz/sndfile_module):
// byte 0 of the input is the data offset, byte 1 the seek position in 20 ms steps, the
// rest the file (held in a memfd and opened by its /proc path, as the player opens a
// file). Track information, a decoder, decoding to the end, the seek and decoding on from
// there; what the information announces must be a format the player takes (8-bit samples
// only where EIGHT_BITS_TOO), and every block must hold whole frames of it.
#include MODULE_HEADER

#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

// libsndfile 1.2.0 leaves libvorbis's header state behind when an Ogg Vorbis stream fails
// to open (about 11 KiB per damaged file; known upstream: libsndfile issues 922 and 1013).
// Allocations made inside libvorbis are not ours to fix; any leak that also holds memory of
// libsndfile's own or of a module is still reported.
extern "C" const char* __lsan_default_suppressions() { return "leak:libvorbis.so\n"; }

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static InputModule* const module = ACQUIRE_MODULE();
    static const int fd = memfd_create("input_module_fuzz", MFD_CLOEXEC);
    static const std::string path = "/proc/self/fd/" + std::to_string(fd);
    if (size < 2 || fd < 0 || ftruncate(fd, 0) != 0) return 0;
    if (pwrite(fd, data + 2, size - 2, 0) != static_cast<ssize_t>(size - 2)) return 0;
    TrackInfo info{};
    const bool described = module->ops->GetFileInfo(module, path.c_str(), data[0], &info) != 0;
    const bool formatOk = (info.channels == 1 || info.channels == 2) && info.sampleRate > 0 &&
                          (info.bitsPerSample == 16 || (EIGHT_BITS_TOO && info.bitsPerSample == 8));
    if (described && !formatOk) std::abort();
    InputDecoder* decoder = module->ops->OpenDecoder(module, path.c_str(), data[0]);
    if (!decoder) return 0;
    const uint32_t frameBytes = static_cast<uint32_t>(info.bitsPerSample / 8 * info.channels);
    for (int pass = 0; pass < 2; ++pass) {
        if (pass == 1) decoder->ops->Seek(decoder, data[1] * 20u);
        const void* block = nullptr;
        for (int blocks = 0; blocks < 100000; ++blocks) {
            const uint32_t bytes = decoder->ops->Decode(decoder, &block);
            if (bytes == 0) break;
            if (described && bytes % frameBytes != 0) std::abort();
        }
    }
    decoder->ops->Destroy(decoder);
    return 0;
}
