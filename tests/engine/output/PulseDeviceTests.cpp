// The PulseAudio device against a private server with a null sink whose monitor is
// recorded. A tone played whole across tracks and round the ring is the stream's tests'
// (tests/engine/stream, tests/system); here what only the device decides.
#include "engine/output/PulseApi.h"
#include "engine/output/PulseConnection.h"
#include "engine/output/PulseDevice.h"
#include "engine/stream/StreamOutput.h"

#include "DeviceTestKit.h"
#include "TempDir.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <memory>

namespace verdin {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr PcmFormat kCd{44100, 2, 16};

class PulseDeviceTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (!test::PulseServer::Installed()) GTEST_SKIP() << "pulseaudio is not installed";
        server_ = std::make_unique<test::PulseServer>();
        ASSERT_TRUE(server_->Running()) << server_->Error();
    }
    std::unique_ptr<PulseDevice> Open(int index = 0) {
        return std::make_unique<PulseDevice>(kCd, ring_.data(), static_cast<uint32_t>(ring_.size()), index, 2);
    }

    std::unique_ptr<test::PulseServer> server_;
    std::vector<uint8_t> ring_ = std::vector<uint8_t>(44100 * 4, 0);
};

TEST_F(PulseDeviceTest, ANegativeCommitIsHeardAsTheCrossfadeMeantItAndTheVolumeAsSet) {
    // The hand-over of a 1000-frame crossfade passes -(1000 x 4), a byte count that the
    // device scales by the frame size once more: the cursor goes back 4000 frames. The
    // ring's other frames hold a tone of their own, so a frame sent from the wrong place
    // or beyond the end is heard.
    test::CopyToRing(ring_, 0, test::StereoTone(44100, 200, 300, 0.2));
    const auto oldTrack = test::StereoTone(20000, 440, 440, 0.5), newTrack = test::StereoTone(8000, 880, 1320, 0.3);
    std::vector<int16_t> expected(oldTrack.begin(), oldTrack.begin() + 32000);
    expected.insert(expected.end(), newTrack.begin(), newTrack.end());
    auto device = Open();
    const auto heard = test::Heard(*server_, *device, 24000, [&](OutputDevice& d) {
        test::CopyToRing(ring_, 0, oldTrack);
        d.CommitFrames(20000);
        d.CommitFrames(-(1000 * 4));
        test::CopyToRing(ring_, 16000, newTrack);
        d.CommitFrames(8000);
    });
    ASSERT_GE(heard.size(), expected.size());
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), heard.begin()));
    EXPECT_TRUE(std::all_of(heard.begin() + long(expected.size()), heard.end(), [](int16_t s) { return s == 0; }))
        << "nothing but silence after the end";

    device = Open();
    device->SetVolume(32768);
    EXPECT_EQ(device->GetVolume(), uint16_t(-602));  // the level in hundredths of a decibel, in 16 bits
    const auto tone = test::StereoTone(22050, 500, 500, 0.5);
    const auto quieter = test::Heard(*server_, *device, 22050, [&](OutputDevice& d) {
        test::CopyToRing(ring_, 0, tone);
        d.CommitFrames(22050);
    });
    ASSERT_GE(quieter.size(), tone.size());
    int peak = 0;  // -6.02 dB: half the amplitude
    for (size_t i = tone.size() / 4; i < tone.size() * 3 / 4; ++i) peak = std::max(peak, std::abs(int{quieter[i]}));
    EXPECT_NEAR(peak, 16384 / 2, 16384 * 0.02);
}

// What a stream does when the server dies under it: StreamOnSoundServer.
TEST_F(PulseDeviceTest, PositionsFollowTheServerClockAndRunOnByTheirOwnOnceTheServerDies) {
    const auto sinks = ListPulseDevices();
    ASSERT_FALSE(sinks.empty());
    EXPECT_EQ(sinks[0].name, test::PulseServer::kSinkName);  // the default sink first
    auto device = Open(5);  // no such entry: the default sink
    ASSERT_TRUE(device->IsOpen()) << device->ErrorText();
    EXPECT_EQ(device->SinkName(), sinks[0].name);
    test::ExpectPositionsKeepTime(*device, 441);  // at most the last timing update
    device->Stop();
    device->Start();
    EXPECT_EQ(device->GetPlayedFrames(), 0);
    EXPECT_EQ(device->GetPlayPosition(), 0u);
    device->CommitFrames(44100);  // then the server dies: the positions run on by the clock
    server_->Kill();
    ASSERT_TRUE(test::WaitUntil([&] { return device->Failed(); }));
    const int64_t before = device->GetPlayedFrames();
    EXPECT_TRUE(test::WaitUntil([&] { return device->GetPlayedFrames() > before + 2000; }));
}

// No server at the address, then a socket that accepts connections but never speaks (a
// hung server): opening gives up soon either way.
TEST(PulseDeviceWithoutServer, OpeningFailsSoonWhenNoServerAnswers) {
    test::TempDir dir;
    const std::string silent = dir.file("silent");
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, silent.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(fd, 4), 0);
    uint8_t ring[4096] = {};
    const char* saved = std::getenv("PULSE_SERVER");
    const std::string restore = saved ? saved : "";
    for (const std::string& server : {dir.file("no-socket-here"), silent}) {
        setenv("PULSE_SERVER", ("unix:" + server).c_str(), 1);
        const auto t0 = Clock::now();
        PulseDevice device(kCd, ring, sizeof ring, 0, 0);
        EXPECT_FALSE(device.IsOpen()) << server;
        EXPECT_FALSE(device.ErrorText().empty());
        EXPECT_LT(Clock::now() - t0, 2500ms);
        EXPECT_EQ(device.Start(), 0);  // every call is harmless on a closed device
        device.CommitFrames(10);
        EXPECT_EQ(device.GetPlayedFrames(), 0);
        EXPECT_EQ(device.GetVolume(), 0u);
    }
    EXPECT_TRUE(ListPulseDevices().empty());
    if (saved) setenv("PULSE_SERVER", restore.c_str(), 1);
    else unsetenv("PULSE_SERVER");
    close(fd);
}

// Run by its own test entry, with a stand-in "libpulse.so.0" that has none of the
// library's functions first on the loader's path: a machine without the sound server's
// client library.
TEST(PulseDeviceWithoutLibrary, OpeningFailsWithAReasonAndTheStreamSaysSo) {
    if (!std::getenv("VERDIN_TEST_WITHOUT_LIBPULSE")) GTEST_SKIP() << "needs the stand-in library";
    uint8_t ring[4096] = {};
    PulseDevice device(kCd, ring, sizeof ring, 0, 0);
    EXPECT_FALSE(device.IsOpen());
    EXPECT_EQ(device.ErrorText(), kPulseLibraryMissing);
    EXPECT_TRUE(ListPulseDevices().empty());
    OutputTarget target;
    target.kind = OutputTarget::kSoundServer;
    const OutputResult made = MakeStreamOutput(target, kCd, sizeof ring);
    EXPECT_FALSE(made.output);
    EXPECT_EQ(made.errorText, "Failed to initialize DirectSound playback.");
}

}  // namespace
}  // namespace verdin
