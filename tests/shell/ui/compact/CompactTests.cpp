// The mini window and the notification icon, reached through the command table's
// identifiers, and what the settings keep of them from one run to the next.
#include "WindowKit.h"

#include "shell/CommandTable.h"
#include "shell/ui/compact/MiniWindow.h"
#include "shell/ui/compact/Presentation.h"
#include "shell/ui/compact/TrayIcon.h"
#include "shell/ui/controls/StatusWindow.h"

#include <QMenu>
#include <QSystemTrayIcon>

using namespace verdin;
using namespace verdin::test;

namespace {

// Runs what is queued now, including the message boxes it opens (answered by a watcher).
void Settle() {
    bool reached = false;
    QTimer::singleShot(0, [&] { reached = true; });
    QVERIFY(WaitUntil([&] { return reached; }));
}

}  // namespace

class CompactTests : public QObject {
    Q_OBJECT
private slots:
    void theIconsMenuIsTheMainMenuAndTheTransport();
    void miniWindowIconAndTheirSettingsAcrossRuns();
};

void CompactTests::theIconsMenuIsTheMainMenuAndTheTransport() {
    WindowHome home;
    WindowRun run;
    const MainMenus& menus = run.Window().Menus();
    QMenu* menu = run.Window().Compact().Tray().Icon().contextMenu();
    QCOMPARE(menu, menus.notifyIcon);
    const QList<QAction*> entries = menu->actions();
    QCOMPARE(entries.size(), 9);
    QCOMPARE(entries[0]->menu(), menus.file);
    QCOMPARE(entries[1]->menu(), menus.miscellaneous);
    QCOMPARE(entries[2]->menu(), menus.playlist);
    QVERIFY(entries[3]->isSeparator());
    const Action transport[] = {Action::kPreviousTrack, Action::kStop, Action::kPauseResume, Action::kPlay,
                                Action::kNextTrack};
    for (int i = 0; i < 5; ++i) {
        const uint32_t id = entries[4 + i]->data().toUInt();
        QVERIFY2(FindCommand(id) && FindCommand(id)->action == transport[i], qPrintable(entries[4 + i]->text()));
    }
}

// Without a notification area (the test platform has none) minimizing is a normal
// minimize, said once; with one the player hides behind it, and starts there next time.
void CompactTests::miniWindowIconAndTheirSettingsAcrossRuns() {
    WindowHome home;
    QRect placed;
    {
        ModalWatcher watcher;
        WindowRun run;
        MainWindow& window = run.Window();
        MiniWindow& mini = window.Compact().Mini();
        QVERIFY(window.Dispatch(50086));
        QVERIFY(mini.isVisible() && !window.isVisible());
        QCOMPARE(run.Core().GetSettings().miniWindowMode, 1);
        QCOMPARE(mini.size(), QSize(266, 26));
        QCOMPARE(mini.Status().Text(), window.Status().Text());
        const QRect screen = mini.screen()->geometry();
        mini.MoveSnapped(screen.topLeft() + QPoint(7, 100));
        QCOMPARE(mini.pos(), screen.topLeft() + QPoint(0, 100));
        run.Core().ChangeSettings([](Settings& s) { s.miniWindowShowPosition = 0; });
        QCOMPARE(mini.height(), 20);
        for (uint32_t minimize : {125u, 50086u}) {
            QVERIFY(window.Dispatch(minimize));
            Settle();
        }
        QCOMPARE(watcher.Boxes().size(), 1);
        QVERIFY2(watcher.Boxes().front().contains(QStringLiteral("no notification area")), qPrintable(watcher.Boxes().front()));
        QCOMPARE(run.Core().GetSettings().minimized, 0);

        Presentation::SetTrayCheck([] { return true; });
        mini.showNormal();
        QVERIFY(window.Dispatch(122));
        QVERIFY(!mini.isVisible() && window.Compact().Tray().Shown());
        QCOMPARE(run.Core().GetSettings().minimized, 1);
        QCOMPARE(window.Compact().Tray().Icon().toolTip().toStdString(), TipText(run.Core().StatusText()));
        placed = mini.geometry();
    }
    const Settings saved = home.Saved();
    QCOMPARE(QRect(saved.miniWindowX, saved.miniWindowY, saved.miniWindowWidth, 20), placed);
    QCOMPARE(saved.minimized, 1);
    WindowRun run;
    MainWindow& window = run.Window();
    TrayIcon& tray = window.Compact().Tray();
    QVERIFY(tray.Shown() && !window.isVisible() && !window.Compact().Mini().isVisible());
    emit tray.Icon().activated(QSystemTrayIcon::Trigger);
    QVERIFY(!tray.Shown() && window.Compact().Mini().isVisible());
    QCOMPARE(window.Compact().Mini().geometry(), placed);
    QVERIFY(window.Dispatch(123));
    QVERIFY(window.isVisible() && !window.Compact().Mini().isVisible());
    QCOMPARE(run.Core().GetSettings().miniWindowMode, 0);
    QCOMPARE(run.Core().GetSettings().minimized, 0);
    Presentation::SetTrayCheck(nullptr);
}

QTEST_MAIN(CompactTests)
#include "CompactTests.moc"
