// verdin-main-window-screenshot OUT.png: the main window on the demo playlist, a few
// seconds into "Bell Steps", with the analyzer, the oscilloscope and the volume bar shown
// and the bands arranged on three lines; saved as a PNG.
#include "WindowKit.h"

#include "shell/ui/playlist/PlaylistView.h"

#include <QApplication>
#include <QPixmap>
#include <QTest>
#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUT.png\n", argv[0]);
        return 2;
    }
    QApplication application(argc, argv);
    using namespace verdin;
    test::WindowHome home;
    home.Seed([](Settings& s) {
        s.frequencyAnalyzer = 1;
        s.oscilloscope = 1;
        s.showVolumeControl = 1;
        s.rebarBandArray = {RebarBand{103, 999, 0}, {125, 0, 0}, {115, 999, 1}, {114, 0, 0},
                            {124, 0, 0}, {111, 999, 1}, {116, 140, 0}};
        s.mainWindowPlacement = {44, 0, 1, -1, -1, -1, -1, 40, 40, 900, 560};
    });
    const std::string demo = std::string(VERDIN_TEST_BUILD_DIR) + "/share/verdin/demo/Verdin Demo.vdp";
    test::WindowRun run("/PLAY \"" + demo + "\"");
    MainWindow& window = run.Window();
    // Row 3: the demo playlist's row, then its pieces; the bells draw clear bars.
    if (!test::WaitUntil([&] { return run.Core().Playing(); }, 20000)) {
        std::fprintf(stderr, "the demo did not play\n");
        return 1;
    }
    run.Core().PlayRow(3);
    if (!test::WaitUntil([&] { return run.Core().Playing() && run.Core().PositionMs() >= 4200; }, 20000)) {
        std::fprintf(stderr, "the demo did not play\n");
        return 1;
    }
    window.View().SelectRows({3, 4});
    QTest::qWait(100);
    return window.grab().save(QString::fromLocal8Bit(argv[1]), "PNG") ? 0 : 1;
}
