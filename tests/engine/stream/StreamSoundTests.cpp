// A stream on a private sound server that dies while the stream plays.
#include "engine/input/InputModuleList.h"
#include "engine/output/AlsaDeviceList.h"
#include "engine/stream/Stream.h"

#include "PcmFixtures.h"
#include "PulseServer.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <set>

namespace verdin {
namespace {

TEST(StreamOnSoundServer, AServerThatDiesWhilePlayingEndsTheStreamWithAReason) {
    if (!test::PulseServer::Installed()) GTEST_SKIP() << "pulseaudio is not installed";
    test::PulseServer server;
    ASSERT_TRUE(server.Running()) << server.Error();
    // With the server up, ALSA names a "default" of its own: the sound card list holds it once, first.
    const auto devices = ListAlsaDevices();
    std::set<std::string> names;
    for (const auto& device : devices) EXPECT_TRUE(names.insert(device.name).second) << device.name;
    EXPECT_EQ(devices.at(0).name, "default");
    test::TempDir dir;
    test::WriteWav(dir.file("a.wav"), 2, 44100, 16, test::Bytes16(test::Sine16(441000, 2, 44100, {500.0})));
    InputModuleList modules;
    modules.LoadInputModules(VERDIN_TEST_PLUGIN_DIR, nullptr);
    Stream stream(modules, StreamOptions{});
    ASSERT_TRUE(stream.OpenStream(dir.file("a.wav"), nullptr)) << stream.ErrorText();
    OutputTarget target;
    target.kind = OutputTarget::kSoundServer;
    ASSERT_TRUE(stream.StartStream(target)) << stream.ErrorText();
    server.Kill();
    auto finished = std::async(std::launch::async, [&] { stream.WaitUntilFinished(); });
    ASSERT_EQ(finished.wait_for(std::chrono::seconds(10)), std::future_status::ready) << "the stream must not hang";
    EXPECT_TRUE(stream.Failed());
    EXPECT_FALSE(stream.ErrorText().empty());
}

}  // namespace
}  // namespace verdin
