#pragma once
// The DSP host over copies of the "kit" and "other" test plug-ins in a private directory,
// with the test's window as their parent.
#include "plugins/dsp/DspHost.h"

#include "TempDir.h"
#include "TestModules.h"
#include "TestWindow.h"

#include <gtest/gtest.h>

#include <optional>

namespace verdin::test {

// The modules' indices in their libraries (see TestDspPlugin.c).
enum KitModule { kAppend1, kAppend2, kAppend3, kHalve, kDouble, kNegative, kOverlong, kGate, kFormat };
enum OtherModule { kAppend4, kAppend5 };

class DspHostTest : public ::testing::Test {
protected:
    void SetUp() override {
        kit = PlaceTestModule("kit", dir.str(), "kit.so");
        other = PlaceTestModule("other", dir.str(), "other.so");
        libraries.emplace(window.record(), dir.str() + ";");
    }
    DspModuleRef Kit(int index) const { return {kit, index}; }
    DspModuleRef Other(int index) const { return {other, index}; }
    void Activate(const std::vector<DspModuleRef>& refs) { host.SetActiveList(*libraries, refs); }
    // A stereo 16-bit block of frames through the host, in a buffer with room for twice as
    // many, as streams hand it over; returns the frame count that comes out.
    uint32_t Process(std::vector<int16_t>& block, uint32_t frames, uint32_t bits = 16, uint32_t channels = 2,
                     uint32_t rate = 44100) {
        block.resize(std::max<size_t>(block.size(), 4 * size_t{frames}));
        return DspHost::Process(host.HookContext(), reinterpret_cast<uint8_t*>(block.data()), frames, bits, channels, rate);
    }

    TempDir dir;
    TestWindow window;
    std::string kit, other;
    std::optional<DspLibraryList> libraries;
    DspHost host;
};

// The value every one of the first n samples has, or -1 when they differ.
inline int UniformValue(const std::vector<int16_t>& samples, size_t n) {
    for (size_t i = 1; i < n; ++i)
        if (samples[i] != samples[0]) return -1;
    return samples[0];
}

}  // namespace verdin::test
