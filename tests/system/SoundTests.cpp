// The whole player on a sound server: a private PulseAudio with a null sink whose monitor
// is recorded. The player prepares each next track while one plays and hands the device
// over, so a tone split across tracks must come out whole.
#include "SystemFixture.h"

#include "PcmFixtures.h"
#include "PulseServer.h"

#include <cmath>
#include <csignal>
#include <numbers>

namespace verdin::test {
namespace {

using namespace std::chrono_literals;

std::vector<int16_t> Cosine(int frames, double frequency) {
    std::vector<int16_t> out(2 * static_cast<size_t>(frames));
    for (int i = 0; i < frames; ++i)
        out[2 * static_cast<size_t>(i)] = out[2 * static_cast<size_t>(i) + 1] =
            static_cast<int16_t>(std::lround(12000 * std::cos(2 * std::numbers::pi * frequency * i / 44100)));
    return out;
}

TEST_F(SystemTest, ContinuousPlayJoinsTracksWithoutAGapOnTheSoundServer) {
    if (!PulseServer::Installed()) GTEST_SKIP() << "pulseaudio is not installed";
    PulseServer server;
    ASSERT_TRUE(server.Running()) << server.Error();
    MonitorRecorder recorder(server, 44100, 2);
    ASSERT_FALSE(recorder.Failed()) << recorder.Error();
    SeedSettings([](Settings& s) { s.outputType = 2; });

    // One tone cut into three tracks at odd frames; the middle one is short, so it is
    // handed over while the track before it still plays out of the ring.
    const auto tone = Cosine(150001, 523.25);
    const size_t cuts[] = {0, 2 * 70001, 2 * 90017, tone.size()};
    std::vector<std::string> arguments{"--headless", "--quit-after-play", "/PLAY"};
    for (int i = 0; i < 3; ++i) {
        const std::string path = home_.dir.file("music/part" + std::to_string(i) + ".wav");
        WriteWav(path, 2, 44100, 16,
                 Bytes16(std::vector<int16_t>(tone.begin() + static_cast<long>(cuts[i]),
                                              tone.begin() + static_cast<long>(cuts[i + 1]))));
        arguments.push_back(path);
    }
    auto player = std::make_unique<PlayerProcess>(home_, bus_, arguments);
    ASSERT_EQ(player->WaitForExit(30s), 0) << player->Output();
    recorder.WaitForSamples(recorder.Samples().size() + 8820, 2s);
    recorder.Stop();
    const auto heard = recorder.Samples();
    size_t first = 0;
    while (first < heard.size() && heard[first] == 0) ++first;
    ASSERT_GE(heard.size() - first, tone.size()) << "nothing or too little was heard";
    EXPECT_TRUE(std::equal(tone.begin(), tone.end(), heard.begin() + static_cast<long>(first)))
        << "the tone must come out of the server sample for sample";
}

}  // namespace
}  // namespace verdin::test
