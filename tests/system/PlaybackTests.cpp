// Playing a playlist through to its end: continuous play on a sound device, loop mode,
// decoding every track into a numbered WAV file, random entries through a sample space,
// and the bundled plug-in that announces each track on the desktop.
#include "SystemFixture.h"

#include "Files.h"
#include "PcmFixtures.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QVariantMap>
#include <csignal>

namespace verdin::test {

// The desktop's notification service, as far as the notification plug-in uses it.
class NotificationServer : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    QStringList bodies;
public slots:
    uint Notify(const QString&, uint, const QString&, const QString&, const QString& body, const QStringList&,
                const QVariantMap&, int) {
        bodies << body;
        return static_cast<uint>(bodies.size());
    }
};

namespace {

using namespace std::chrono_literals;

TEST_F(SystemTest, ThreeTracksPlayToTheEndAndThePlayerStopsWithLoopOff) {
    SeedSettings([](Settings& s) { UseNullSoundCard(s); });
    auto player = Start({"--headless", "--quit-after-play", "/PLAY", Tone("1.wav", 0.4, 300), Tone("2.wav", 0.4, 400),
                         Tone("3.wav", 0.4, 500)});
    // Continuous play on one device: the rows move on while the player keeps playing.
    EXPECT_TRUE(WaitFor([&] { return player->CurrentRow() == 2; }, 10s));
    // Plug-ins with heavy libraries open them only for their own files.
    EXPECT_EQ(ReadFile("/proc/" + std::to_string(player->Pid()) + "/maps").find("libavformat"), std::string::npos);
    EXPECT_EQ(player->WaitForExit(15s), 0) << player->Output();
    EXPECT_EQ(LoadSavedSettings().savedCurrentIndex, 0) << "after the last row the first is current again";
}

TEST_F(SystemTest, WithLoopOnTheFirstTrackFollowsTheLast) {
    SeedSettings([](Settings& s) {
        UseNullSoundCard(s);
        s.loopMode = 1;
    });
    auto player = Start({"--headless", "/PLAY", Tone("1.wav", 0.3, 300), Tone("2.wav", 0.3, 400), Tone("3.wav", 0.3, 500)});
    ASSERT_TRUE(WaitFor([&] { return player->CurrentRow() == 2; }, 10s));
    EXPECT_TRUE(WaitFor([&] { return player->CurrentRow() == 0; }, 10s));
    EXPECT_EQ(player->Status(), "playing");
    player->Signal(SIGTERM);
    EXPECT_EQ(player->WaitForExit(), 0);
}

TEST_F(SystemTest, APlaylistDecodesIntoNumberedFilesHoldingExactlyEachTracksSamples) {
    SeedSettings([this](Settings& s) { DecodeToFiles(s); });
    std::vector<std::string> tracks;
    for (int i = 0; i < 12; ++i) tracks.push_back(Tone("track" + std::to_string(i) + ".wav", 0.2 + 0.01 * i, 200 + 50 * i));
    std::vector<std::string> arguments{"--headless", "--quit-after-play", "/PLAY"};
    arguments.insert(arguments.end(), tracks.begin(), tracks.end());
    auto player = Start(arguments);
    ASSERT_EQ(player->WaitForExit(30s), 0) << player->Output();
    for (int i = 0; i < 12; ++i) {
        // Twelve entries: numbers are written with a space and a width of two.
        char name[64];
        std::snprintf(name, sizeof name, " %2d. track%d.wav", i + 1, i);
        const std::string file = OutDirectory() + "/" + name;
        ASSERT_TRUE(FileExists(file)) << file;
        EXPECT_EQ(WavData(file), WavData(tracks[static_cast<size_t>(i)])) << file;
    }
}

TEST_F(SystemTest, TracksDeletedAfterPlayingLeaveAnEmptyPlaylistBehind) {
    SeedSettings([this](Settings& s) {
        DecodeToFiles(s);
        s.deleteTracksAfterPlaying = 1;
    });
    auto player = Start({"--headless", "--quit-after-play", "/PLAY", Tone("a.wav", 0.2, 300), Tone("b.wav", 0.2, 400),
                         Tone("c.wav", 0.2, 500)});
    ASSERT_EQ(player->WaitForExit(30s), 0) << player->Output();
    // Each entry numbered 1: the one before it was gone when it started.
    EXPECT_TRUE(FileExists(OutDirectory() + "/1. c.wav"));
    EXPECT_EQ(ReadFile(home_.DefaultPlaylist()).find(".wav"), std::string::npos);
}

TEST_F(SystemTest, RandomEntriesPickFromTheSampleSpace) {
    // Tracks whose file bodies tell them apart; the entry wants the one called "wanted".
    Tone("other.wav", 0.1, 300);
    const std::string wanted = Tone("wanted.wav", 0.15, 700);
    SeedSettings([&](Settings& s) {
        DecodeToFiles(s);
        s.sampleSpaceSearchPath = home_.dir.file("music") + ";";
    });
    WriteFile(home_.DefaultPlaylist(), PlaylistText({";(FILEBODY = \"wanted\")"}));
    auto player = Start({"--headless", "--quit-after-play"});
    ASSERT_TRUE(player->Call("Command", {"108"}));  // play
    ASSERT_EQ(player->WaitForExit(20s), 0) << player->Output();
    const std::string file = OutDirectory() + "/1. wanted.wav";
    ASSERT_TRUE(FileExists(file)) << player->Output();
    EXPECT_EQ(WavData(file), WavData(wanted));
}

TEST_F(SystemTest, AnEmptySampleSpaceWarnsAndDoesNotPlay) {
    SeedSettings([&](Settings& s) {
        DecodeToFiles(s);
        s.sampleSpaceSearchPath = home_.dir.file("nothing-here") + ";";
    });
    WriteFile(home_.DefaultPlaylist(), PlaylistText({";"}));
    auto player = Start({"--headless"});
    ASSERT_TRUE(player->Call("Command", {"108"}));
    EXPECT_EQ(player->Status(), "stopped");
    EXPECT_NE(player->Output().find("No tracks where found from the current sample space path."), std::string::npos)
        << player->Output();
}

// The plug-in asks the player from a thread of its own, twice a second: the tracks are
// long, so each is asked about before the next starts. The title is the playlist's.
TEST_F(SystemTest, TheNotificationPlugInAnnouncesEachTrackThatStarts) {
    int argc = 0;
    QCoreApplication events(argc, nullptr);
    QDBusConnection bus = QDBusConnection::connectToBus(QString::fromStdString(bus_.Address()), QStringLiteral("desktop"));
    NotificationServer server;
    ASSERT_TRUE(bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), &server, QDBusConnection::ExportAllSlots));
    ASSERT_TRUE(bus.registerService(QStringLiteral("org.freedesktop.Notifications")));
    SeedSettings([](Settings& s) { UseNullSoundCard(s); });
    auto player = Start({"--headless", "/PLAY", Tone("first.wav", 30, 300), Tone("second.wav", 30, 400)});
    for (int announced : {1, 2}) {
        EXPECT_TRUE(WaitFor([&] { return QCoreApplication::processEvents(), server.bodies.size() >= announced; }, 20s));
        if (announced == 1) {
            ASSERT_TRUE(player->Call("Command", {"110"}));  // next
        }
    }
    EXPECT_EQ(server.bodies, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
}

}  // namespace
}  // namespace verdin::test

#include "PlaybackTests.moc"
