#pragma once
// Helpers for the tests of the bundled input plug-ins: a plug-in loaded the way the player
// loads it, a decoder driven to its end, and the bytes of prefixed and damaged files.
#include "Files.h"
#include "Process.h"

#include <verdin/input.h>

#include <gtest/gtest.h>

#include <cstring>
#include <dlfcn.h>
#include <optional>
#include <random>
#include <stdexcept>

namespace verdin::test {

// Runs a command; throws with its output when it fails, so a broken fixture fails loudly.
inline void RunOrThrow(const std::vector<std::string>& argv) {
    const CommandResult result = RunCommand(argv);
    if (result.exitCode != 0) throw std::runtime_error(argv[0] + " failed: " + result.output);
}

// dlopen and the entry point once; Release and dlclose at the end. Throws when it cannot load.
class PluginUnderTest {
public:
    explicit PluginUnderTest(const std::string& fileName) {
        const std::string path = std::string(VERDIN_TEST_PLUGIN_DIR) + "/" + fileName;
        library_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!library_) throw std::runtime_error("cannot load " + path + ": " + dlerror());
        auto entry = reinterpret_cast<Verdin_GetInputModuleFunc>(dlsym(library_, VERDIN_INPUT_ENTRY_POINT));
        module_ = entry ? entry(library_, nullptr) : nullptr;
        if (!module_ || !module_->ops) {
            dlclose(library_);
            throw std::runtime_error(path + " gives no module");
        }
    }
    ~PluginUnderTest() {
        ops().Release(module_);
        dlclose(library_);
    }
    PluginUnderTest(const PluginUnderTest&) = delete;
    PluginUnderTest& operator=(const PluginUnderTest&) = delete;

    InputModule* module() const { return module_; }
    const InputModuleOps& ops() const { return *module_->ops; }
    // GetFileInfo into a record holding what the player holds before a module answers.
    std::optional<TrackInfo> Info(const std::string& path, uint32_t dataOffset = 0) const {
        TrackInfo info;
        std::memset(&info, 0, sizeof info);
        info.bitrate = info.sampleRate = info.channels = 1;
        info.bitsPerSample = 8;
        if (!ops().GetFileInfo(module_, path.c_str(), dataOffset, &info)) return std::nullopt;
        return info;
    }
    bool IsOurFile(const std::string& path) const { return ops().IsOurFile(module_, path.c_str(), 0) != 0; }
    // The GetFileTypes texts without the terminating empty one; then the description, and
    // what About writes to standard error.
    std::vector<std::string> Announcements() const {
        std::vector<std::string> texts;
        for (const char* at = ops().GetFileTypes(module_); at && *at; at += texts.back().size() + 1) texts.emplace_back(at);
        texts.emplace_back(ops().GetDescription(module_));
        ::testing::internal::CaptureStderr();
        ops().About(module_);
        texts.push_back(::testing::internal::GetCapturedStderr());
        return texts;
    }

private:
    void* library_ = nullptr;
    InputModule* module_ = nullptr;
};

// A decoder opened for one test and destroyed with it.
class Decoder {
public:
    Decoder(const PluginUnderTest& plugin, const std::string& path, uint32_t dataOffset = 0)
        : decoder_(plugin.ops().OpenDecoder(plugin.module(), path.c_str(), dataOffset)) {}
    ~Decoder() {
        if (decoder_) decoder_->ops->Destroy(decoder_);
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;

    bool valid() const { return decoder_ != nullptr; }
    uint32_t Seek(uint32_t milliseconds) { return decoder_->ops->Seek(decoder_, milliseconds); }
    // Every block until Decode returns 0; each must hold whole frames, and the decoder must end.
    std::vector<uint8_t> ToEnd(uint32_t frameBytes) {
        std::vector<uint8_t> pcm;
        for (size_t blocks = 0; decoder_; ++blocks) {
            const void* block = nullptr;
            const uint32_t bytes = decoder_->ops->Decode(decoder_, &block);
            if (bytes == 0) break;
            if (!block || bytes % frameBytes != 0 || blocks == 1000000) {
                ADD_FAILURE() << "block " << blocks << ": " << bytes << " bytes at " << block << ", frames of " << frameBytes;
                break;
            }
            pcm.insert(pcm.end(), static_cast<const uint8_t*>(block), static_cast<const uint8_t*>(block) + bytes);
        }
        return pcm;
    }

private:
    InputDecoder* decoder_;
};

// A minimal ID3v2.3 tag as taggers write it: a title frame, padded to exactly totalBytes.
inline std::vector<uint8_t> Id3v2Tag(size_t totalBytes) {
    const size_t body = totalBytes - 10;
    std::vector<uint8_t> tag = {'I', 'D', '3', 3, 0, 0};
    for (int shift = 21; shift >= 0; shift -= 7) tag.push_back(static_cast<uint8_t>((body >> shift) & 0x7F));
    const std::string frame = std::string("TIT2\0\0\0\x11\0\0\0", 11) + "A title in a tag";
    tag.insert(tag.end(), frame.begin(), frame.end());
    tag.resize(totalBytes, 0);
    return tag;
}

inline std::vector<uint8_t> Concat(std::vector<uint8_t> a, const std::vector<uint8_t>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// The same pseudo-random bytes in every run.
inline std::vector<uint8_t> Garbage(size_t bytes, uint32_t seed) {
    std::mt19937 generator(seed);
    std::vector<uint8_t> out(bytes);
    for (auto& b : out) b = static_cast<uint8_t>(generator());
    return out;
}

inline std::vector<int16_t> Samples16(const std::vector<uint8_t>& bytes) {
    std::vector<int16_t> out(bytes.size() / 2);
    std::memcpy(out.data(), bytes.data(), out.size() * 2);
    return out;
}

// The largest difference between two runs of 16-bit samples; -1 when their lengths differ.
inline int MaxSampleDifference(const std::vector<uint8_t>& a, const std::vector<uint8_t>& b) {
    if (a.size() != b.size()) return -1;
    const std::vector<int16_t> x = Samples16(a), y = Samples16(b);
    int largest = 0;
    for (size_t i = 0; i < x.size(); ++i) largest = std::max(largest, std::abs(x[i] - y[i]));
    return largest;
}

}  // namespace verdin::test
